#include "core/regional.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QString& campoDe(RegionalSettings& r, int campo) {
    QString* campos[] = {&r.formatoFechaCorta,      &r.separadorFecha,      &r.formatoHora,
                         &r.separadorHora,          &r.separadorDecimal,    &r.separadorMiles,
                         &r.separadorDecimalMoneda, &r.separadorMilesMoneda};
    return *campos[campo];
}

} // namespace

class TestRegional : public QObject {
    Q_OBJECT
private slots:
    void requeridosYDelSistemaPasan() {
        QCOMPARE(comprobarConfiguracionRegional(RegionalSettings::requeridos()), std::nullopt);
        QCOMPARE(comprobarConfiguracionRegional(RegionalSettings::delSistema()), std::nullopt);
        QCOMPARE(kTituloConflictoRegional.toString(), u"Conflicto con la configuración de Windows"_s);
    }

    // The message names the first value that differs and the one it must be (which checks the
    // required values too); the values after it, wrong as well, are not mentioned.
    void primerValorDistinto_data() {
        QTest::addColumn<int>("campo"); // 0 short date ... 7 currency thousands, as in RegionalSettings
        QTest::addColumn<QString>("hallado");
        QTest::addColumn<QString>("frase");
        QTest::addColumn<QString>("requerido");
        auto fila = [](const char* nombre, int a0, QString a1, QString a2, QString a3) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3;
        };
        fila("fecha corta con año de dos cifras", 0, "dd/MM/yy", "como formato de fecha corta el valor  ",
             "dd/MM/yyyy");
        fila("separador de fecha", 1, "-", "como separador en el formato de fecha el valor  ", "/");
        fila("formato de hora HH", 2, "HH:mm:ss", "como formato de hora el valor  ", "H:mm:ss");
        fila("separador de hora", 3, ".", "como separador en el formato de hora el valor  ", ":");
        fila("decimal", 4, ".", u"como separador decimal numérico el valor "_s, ",");
        fila("miles", 5, ",", "como separador numérico de miles el valor ", ".");
        fila("miles vacio", 5, "", "como separador numérico de miles el valor ", ".");
        fila("decimal de moneda", 6, ".", "como separador decimal de moneda el valor ", ",");
        fila("miles de moneda espacio", 7, " ", "como separador de miles para la moneda el valor ", ".");
    }
    void primerValorDistinto() {
        QFETCH(int, campo);
        QFETCH(QString, hallado);
        QFETCH(QString, frase);
        QFETCH(QString, requerido);
        RegionalSettings r = RegionalSettings::requeridos();
        campoDe(r, campo) = hallado;
        for (int despues = campo + 1; despues < 8; ++despues)
            campoDe(r, despues) = u"Y"_s;
        QCOMPARE(comprobarConfiguracionRegional(r).value_or(QString()),
                 u"La Configuración Regional de su ordenador indica que tiene configurado "_s + frase +
                     u'\'' + hallado +
                     u"'\nPara un correcto funcionamiento de Pramelvix, debe cambiarlo a '"_s + requerido +
                     u"'\nAcceda a la sección de configuración de Windows y realice esa modificación para "
                     "poder iniciar Pramelvix."_s);
    }
};

QTEST_GUILESS_MAIN(TestRegional)
#include "test_regional.moc"
