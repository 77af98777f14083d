#include "core/regional.h"

#include <QtTest>
#include <tuple>

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
    void primerValorDistinto() {
        // Field (0 short date ... 7 currency thousands, as in RegionalSettings), found, phrase, required.
        const std::tuple<int, QString, QString, QString> casos[] = {
            {0, u"dd/MM/yy"_s, u"como formato de fecha corta el valor  "_s, u"dd/MM/yyyy"_s},
            {1, u"-"_s, u"como separador en el formato de fecha el valor  "_s, u"/"_s},
            {2, u"HH:mm:ss"_s, u"como formato de hora el valor  "_s, u"H:mm:ss"_s},
            {3, u"."_s, u"como separador en el formato de hora el valor  "_s, u":"_s},
            {4, u"."_s, u"como separador decimal numérico el valor "_s, u","_s},
            {5, u","_s, u"como separador numérico de miles el valor "_s, u"."_s},
            {5, u""_s, u"como separador numérico de miles el valor "_s, u"."_s},
            {6, u"."_s, u"como separador decimal de moneda el valor "_s, u","_s},
            {7, u" "_s, u"como separador de miles para la moneda el valor "_s, u"."_s},
        };
        for (const auto& [campo, hallado, frase, requerido] : casos) {
            RegionalSettings r = RegionalSettings::requeridos();
            campoDe(r, campo) = hallado;
            for (int despues = campo + 1; despues < 8; ++despues)
                campoDe(r, despues) = u"Y"_s;
            QCOMPARE(
                comprobarConfiguracionRegional(r).value_or(QString()),
                u"La Configuración Regional de su ordenador indica que tiene configurado "_s + frase + u'\'' +
                    hallado + u"'\nPara un correcto funcionamiento de Pramelvix, debe cambiarlo a '"_s +
                    requerido +
                    u"'\nAcceda a la sección de configuración de Windows y realice esa modificación para "
                    "poder iniciar Pramelvix."_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestRegional)
#include "test_regional.moc"
