#include "core/regional.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestRegional : public QObject {
    Q_OBJECT
private slots:
    void requeridos();
    void delSistemaPasa();
    void fechaCortaConAnoDeDosCifras();
    void cadaValorPorSeparado_data();
    void cadaValorPorSeparado();
    void soloElPrimero_data();
    void soloElPrimero();
};

void TestRegional::requeridos() {
    const RegionalSettings r = RegionalSettings::requeridos();
    QCOMPARE(r.formatoFechaCorta, u"dd/MM/yyyy"_s);
    QCOMPARE(r.separadorFecha, u"/"_s);
    QCOMPARE(r.formatoHora, u"H:mm:ss"_s);
    QCOMPARE(r.separadorHora, u":"_s);
    QCOMPARE(r.separadorDecimal, u","_s);
    QCOMPARE(r.separadorMiles, u"."_s);
    QCOMPARE(r.separadorDecimalMoneda, u","_s);
    QCOMPARE(r.separadorMilesMoneda, u"."_s);
    QCOMPARE(comprobarConfiguracionRegional(r), std::nullopt);
    QCOMPARE(kTituloConflictoRegional.toString(),
             QString::fromUtf8("Conflicto con la configuración de Windows"));
}

void TestRegional::delSistemaPasa() {
    QCOMPARE(comprobarConfiguracionRegional(RegionalSettings::delSistema()), std::nullopt);
}

void TestRegional::fechaCortaConAnoDeDosCifras() {
    RegionalSettings r = RegionalSettings::requeridos();
    r.formatoFechaCorta = u"dd/MM/yy"_s;
    const std::optional<QString> mensaje = comprobarConfiguracionRegional(r);
    QVERIFY(mensaje.has_value());
    QCOMPARE(*mensaje,
             QString::fromUtf8(
                 "La Configuración Regional de su ordenador indica que tiene configurado como formato "
                 "de fecha corta el valor  'dd/MM/yy'\n"
                 "Para un correcto funcionamiento de Pramelvix, debe cambiarlo a 'dd/MM/yyyy'\n"
                 "Acceda a la sección de configuración de Windows y realice esa modificación para "
                 "poder iniciar Pramelvix."));
}

namespace {

QString textoEsperado(const char* frase, const QString& hallado, const char* requerido) {
    return QString::fromUtf8("La Configuración Regional de su ordenador indica que tiene configurado ") +
           QString::fromUtf8(frase) + "'" + hallado +
           "'\nPara un correcto funcionamiento de Pramelvix, debe "
           "cambiarlo a '" +
           QString::fromUtf8(requerido) +
           QString::fromUtf8("'\nAcceda a la sección de configuración de Windows y realice esa modificación "
                             "para poder iniciar Pramelvix.");
}

} // namespace

void TestRegional::cadaValorPorSeparado_data() {
    QTest::addColumn<int>("campo");
    QTest::addColumn<QString>("hallado");
    QTest::addColumn<QString>("esperado");
    auto fila = [](const char* nombre, int a0, QString a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    // campo: 0 short date ... 7 currency thousands, in the order of RegionalSettings.
    fila("fecha corta m/d/yyyy", 0, "M/d/yyyy",
         textoEsperado("como formato de fecha corta el valor  ", "M/d/yyyy", "dd/MM/yyyy"));
    fila("separador de fecha", 1, "-",
         textoEsperado("como separador en el formato de fecha el valor  ", "-", "/"));
    fila("formato de hora HH", 2, "HH:mm:ss",
         textoEsperado("como formato de hora el valor  ", "HH:mm:ss", "H:mm:ss"));
    fila("formato de hora 12 h", 2, "h:mm:ss tt",
         textoEsperado("como formato de hora el valor  ", "h:mm:ss tt", "H:mm:ss"));
    fila("separador de hora", 3, ".",
         textoEsperado("como separador en el formato de hora el valor  ", ".", ":"));
    fila("decimal", 4, ".", textoEsperado("como separador decimal numérico el valor ", ".", ","));
    fila("miles", 5, ",", textoEsperado("como separador numérico de miles el valor ", ",", "."));
    fila("miles vacio", 5, "", textoEsperado("como separador numérico de miles el valor ", "", "."));
    fila("decimal de moneda", 6, ".", textoEsperado("como separador decimal de moneda el valor ", ".", ","));
    fila("miles de moneda espacio", 7, " ",
         textoEsperado("como separador de miles para la moneda el valor ", " ", "."));
}

namespace {

QString& campoDe(RegionalSettings& r, int campo) {
    QString* campos[] = {&r.formatoFechaCorta,      &r.separadorFecha,      &r.formatoHora,
                         &r.separadorHora,          &r.separadorDecimal,    &r.separadorMiles,
                         &r.separadorDecimalMoneda, &r.separadorMilesMoneda};
    return *campos[campo];
}

} // namespace

void TestRegional::cadaValorPorSeparado() {
    QFETCH(int, campo);
    QFETCH(QString, hallado);
    QFETCH(QString, esperado);
    RegionalSettings r = RegionalSettings::requeridos();
    campoDe(r, campo) = hallado;
    QCOMPARE(comprobarConfiguracionRegional(r).value_or(QString()), esperado);
}

void TestRegional::soloElPrimero_data() {
    QTest::addColumn<int>("primero");
    QTest::addColumn<int>("segundo");
    QTest::addColumn<QString>("fraseEsperada");
    auto fila = [](const char* nombre, int a0, int a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    fila("fecha y hora", 0, 2, "como formato de fecha corta el valor  'X'");
    fila("hora y decimal", 2, 4, "como formato de hora el valor  'X'");
    fila("separador de hora y miles de moneda", 3, 7, "como separador en el formato de hora el valor  'X'");
    fila("decimal y miles", 4, 5, QString::fromUtf8("como separador decimal numérico el valor 'X'"));
    fila("moneda: decimal y miles", 6, 7, "como separador decimal de moneda el valor 'X'");
}

void TestRegional::soloElPrimero() {
    QFETCH(int, primero);
    QFETCH(int, segundo);
    QFETCH(QString, fraseEsperada);
    RegionalSettings r = RegionalSettings::requeridos();
    campoDe(r, primero) = u"X"_s;
    campoDe(r, segundo) = u"Y"_s;
    const QString mensaje = comprobarConfiguracionRegional(r).value_or(QString());
    QVERIFY2(mensaje.contains(fraseEsperada + u'\n'), qPrintable(mensaje));
    QVERIFY2(!mensaje.contains(u"'Y'"), qPrintable(mensaje));
}

QTEST_GUILESS_MAIN(TestRegional)
#include "test_regional.moc"
