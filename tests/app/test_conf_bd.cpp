// The database settings screen: its status texts, its checks and what it writes.
#include "app/conf_bd_form.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QMap>

class TestConfBd : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};

    struct Sesion {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };

    std::unique_ptr<Sesion> sesion() {
        auto s = std::make_unique<Sesion>();
        s->e = std::make_unique<Entorno>(s->t.db(), s->d, reloj_);
        s->e->ajustes().completarPorDefecto();
        return s;
    }

    static QMap<QString, QString> parametros(Database& db) {
        QMap<QString, QString> m;
        QSqlQuery q = db.ejecutar(QStringLiteral("SELECT Clave, Valor FROM Parametros"));
        while (q.next())
            m.insert(q.value(0).toString(),
                     q.value(1).isNull() ? QStringLiteral("<NULL>") : q.value(1).toString());
        return m;
    }

private slots:
    void textoAutocompactacion_data() {
        QTest::addColumn<QString>("dias");
        QTest::addColumn<QString>("texto");
        const QString no = QStringLiteral("AUTOCOMPACTACIÓN DESACTIVADA");
        QTest::newRow("vacío") << "" << no;
        QTest::newRow("cero") << "0" << no;
        QTest::newRow("ceros") << "000" << no;
        QTest::newRow("negativo") << "-5" << no;
        QTest::newRow("letras") << "siete" << no;
        QTest::newRow("decimal") << "2,5" << no;
        QTest::newRow("siete") << "7"
                               << "AUTOCOMPACTACIÓN ACTIVADA CADA 7 DÍAS";
        QTest::newRow("con blancos y ceros") << " 015 "
                                             << "AUTOCOMPACTACIÓN ACTIVADA CADA 15 DÍAS";
        QTest::newRow("uno") << "1"
                             << "AUTOCOMPACTACIÓN ACTIVADA CADA 1 DÍAS";
    }

    void textoAutocompactacion() {
        QFETCH(QString, dias);
        QFETCH(QString, texto);
        QCOMPARE(::textoAutocompactacion(dias), texto);
    }

    void textoContabilidad_data() {
        QTest::addColumn<QString>("valor");
        QTest::addColumn<QString>("texto");
        const QString todos = QStringLiteral("CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS");
        QTest::newRow("S") << "S"
                           << "CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES";
        QTest::newRow("N") << "N" << todos;
        QTest::newRow("minúscula") << "s" << todos;
        QTest::newRow("SI") << "SI" << todos;
        QTest::newRow("vacío") << "" << todos;
        QTest::newRow("con blanco") << "S " << todos;
    }

    void textoContabilidad() {
        QFETCH(QString, valor);
        QFETCH(QString, texto);
        QCOMPARE(::textoContabilidad(valor), texto);
    }

    // The screen's status texts follow what the database holds, a missing key included.
    void estadoSegunLaBaseDeDatos() {
        auto s = sesion();
        Ajustes a = s->e->ajustes();
        a.borrar(claves::DIAS_COMPACTACION);
        a.escribir(claves::CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("SI"));
        a.escribir(claves::MULTIPUESTO, QStringLiteral("NO"));
        ConfBdForm f(*s->e);
        QCOMPARE(f.titulo(), QStringLiteral("Configuración de la Base de Datos"));
        QVERIFY(f.cargar());
        QCOMPARE(f.textoAutocompactacion(), QStringLiteral("AUTOCOMPACTACIÓN DESACTIVADA"));
        QCOMPARE(f.textoContabilidad(), QStringLiteral("CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS"));
        QCOMPARE(f.multipuesto(), QStringLiteral("NO"));

        a.escribir(claves::DIAS_COMPACTACION, QStringLiteral("30"));
        a.escribir(claves::CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("S"));
        QVERIFY(f.cargar());
        QCOMPARE(f.textoAutocompactacion(), QStringLiteral("AUTOCOMPACTACIÓN ACTIVADA CADA 30 DÍAS"));
        QCOMPARE(f.textoContabilidad(), QStringLiteral("CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES"));
        // The texts follow the fields as they are edited.
        f.setValor(claves::DIAS_COMPACTACION, QStringLiteral("0"));
        QCOMPARE(f.textoAutocompactacion(), QStringLiteral("AUTOCOMPACTACIÓN DESACTIVADA"));
        QVERIFY(s->d.mensajes().isEmpty());
    }

    void rechazos_data() {
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QString>("valor");
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<QString>("mensaje");
        const QString mal = QStringLiteral("Información introducida errónea");
        const QString dias =
            QStringLiteral("Los días entre compactaciones deben ser un número entero igual o mayor que "
                           "0 (0 desactiva la autocompactación).");
        QTest::newRow("días vacío") << claves::DIAS_COMPACTACION << "" << mal << dias;
        QTest::newRow("días negativo") << claves::DIAS_COMPACTACION << "-1" << mal << dias;
        QTest::newRow("días letras") << claves::DIAS_COMPACTACION << "7a" << mal << dias;
        QTest::newRow("contabilidad") << claves::CONTAB_SOLO_ADMINISTRADORES << "SI" << mal
                                      << "El campo 'Contabilidad sólo para administradores' debe ser S o N.";
        const QString puerto =
            QStringLiteral("El puerto UDP del chat debe ser un número entero entre 1 y 65535.");
        QTest::newRow("puerto cero") << claves::PUERTO_UDP_CHAT << "0" << mal << puerto;
        QTest::newRow("puerto alto") << claves::PUERTO_UDP_CHAT << "65536" << mal << puerto;
        QTest::newRow("puerto letras") << claves::PUERTO_UDP_CHAT << "chat" << mal << puerto;
        QTest::newRow("espera")
            << claves::ESPERA_ENTRE_SMS << "2,5" << mal
            << "La espera entre SMS debe ser un número entero de segundos igual o mayor que 0.";
        QTest::newRow("correo") << claves::EMAIL_TIPO_CONF << "SMTP" << mal
                                << "El envío del correo electrónico debe ser CDO, MAPI o NINGUNA.";
        QTest::newRow("instalación") << claves::TIPOINSTALACION << "  "
                                     << "Campos obligatorios no informados"
                                     << "Debe informar el tipo de instalación.";
        QTest::newRow("instalación larga")
            << claves::TIPOINSTALACION << QString(21, QLatin1Char('X')) << mal
            << "El campo 'Tipo de instalación' no puede tener más de 20 caracteres.";
        QTest::newRow("nif") << claves::NIF_PRESENT << "1234567" << mal
                             << "El NIF del presentador debe tener 9 letras o cifras.";
        QTest::newRow("nombre largo")
            << claves::NOM_ORDENANTE << QString(71, QLatin1Char('n')) << mal
            << "El campo 'Nombre del ordenante' no puede tener más de 70 caracteres.";
        QTest::newRow("sufijo") << claves::SUF_ORDENANTE << "1A0" << mal
                                << "El sufijo del ordenante debe tener 3 cifras.";
        QTest::newRow("entidad") << claves::ENT_PRESENT << "123" << mal
                                 << "La entidad del presentador debe tener 4 cifras.";
        QTest::newRow("oficina") << claves::OFI_PRESENT << "12345" << mal
                                 << "La oficina del presentador debe tener 4 cifras.";
        QTest::newRow("cuenta")
            << claves::CCC_ORDENANTE << "ES12 3456" << mal
            << "La cuenta del ordenante debe tener 20 cifras (C.C.C.) o ser un IBAN español (ES y 22 "
               "cifras).";
        QTest::newRow("bic") << claves::BIC_ORDENANTE << "CAIXESBB1" << mal
                             << "El BIC del ordenante debe tener 8 u 11 letras o cifras.";
    }

    // A wrong value is named, its field takes the focus, and nothing at all is written.
    void rechazos() {
        QFETCH(QString, clave);
        QFETCH(QString, valor);
        QFETCH(QString, titulo);
        QFETCH(QString, mensaje);
        auto s = sesion();
        const auto antes = parametros(s->t.db());
        ConfBdForm f(*s->e);
        QVERIFY(f.cargar());
        // Another field changed too: it must not be written either.
        if (clave != claves::NOM_PRESENT)
            f.setValor(claves::NOM_PRESENT, QStringLiteral("Clínica Veterinaria"));
        f.setValor(clave, valor);
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo, titulo);
        QCOMPARE(s->d.ultimoTexto(), mensaje);
        QCOMPARE(f.foco(), clave);
        QCOMPARE(parametros(s->t.db()), antes);
    }

    // The checks run in screen order: the first wrong field is the one named.
    void ordenDeLasComprobaciones() {
        auto s = sesion();
        ConfBdForm f(*s->e);
        QVERIFY(f.cargar());
        f.setValor(claves::BIC_ORDENANTE, QStringLiteral("X"));
        f.setValor(claves::EMAIL_TIPO_CONF, QStringLiteral("OTRO"));
        f.setValor(claves::PUERTO_UDP_CHAT, QStringLiteral("0"));
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::PUERTO_UDP_CHAT);
        f.setValor(claves::PUERTO_UDP_CHAT, QStringLiteral("6000"));
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::EMAIL_TIPO_CONF);
        f.setValor(claves::EMAIL_TIPO_CONF, QStringLiteral("MAPI"));
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::BIC_ORDENANTE);
        QCOMPARE(s->d.mensajes().size(), 3);
    }

    // Saving writes what changed, tidied, and nothing else; MULTIPUESTO is never written.
    void guardar() {
        auto s = sesion();
        Ajustes a = s->e->ajustes();
        a.borrar(claves::ESPERA_ENTRE_SMS);
        a.escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
        const auto antes = parametros(s->t.db());
        ConfBdForm f(*s->e);
        QVERIFY(f.cargar());
        QCOMPARE(f.valor(claves::ESPERA_ENTRE_SMS), QStringLiteral("5")); // the known default
        f.setValor(claves::DIAS_COMPACTACION, QStringLiteral(" 007 "));
        f.setValor(claves::CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("S"));
        f.setValor(claves::EMAIL_TIPO_CONF, QStringLiteral("CDO"));
        f.setValor(claves::NIF_PRESENT, QStringLiteral("b12345678"));
        f.setValor(claves::CCC_ORDENANTE, QStringLiteral("es91 2100 0418 4502 0005 1332"));
        f.setValor(claves::BIC_ORDENANTE, QStringLiteral("caixesbbxxx"));
        f.setValor(claves::MULTIPUESTO, QStringLiteral("NO"));
        QVERIFY2(f.guardar(), qPrintable(s->d.ultimoTexto()));
        QVERIFY(s->d.mensajes().isEmpty());

        auto esperado = antes;
        esperado.insert(claves::DIAS_COMPACTACION, QStringLiteral("7"));
        esperado.insert(claves::CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("S"));
        esperado.insert(claves::EMAIL_TIPO_CONF, QStringLiteral("CDO"));
        esperado.insert(claves::NIF_PRESENT, QStringLiteral("B12345678"));
        esperado.insert(claves::CCC_ORDENANTE, QStringLiteral("ES9121000418450200051332"));
        esperado.insert(claves::BIC_ORDENANTE, QStringLiteral("CAIXESBBXXX"));
        QCOMPARE(parametros(s->t.db()), esperado);
        QCOMPARE(f.textoAutocompactacion(), QStringLiteral("AUTOCOMPACTACIÓN ACTIVADA CADA 7 DÍAS"));

        // A second form reads back what was saved.
        ConfBdForm otra(*s->e);
        QVERIFY(otra.cargar());
        QCOMPARE(otra.valor(claves::CCC_ORDENANTE), QStringLiteral("ES9121000418450200051332"));
        QCOMPARE(otra.textoContabilidad(), QStringLiteral("CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES"));
    }

    void errorDeBaseDeDatos() {
        auto s = sesion();
        ConfBdForm f(*s->e);
        QVERIFY(f.cargar());
        f.setValor(claves::DIAS_COMPACTACION, QStringLiteral("3"));
        s->t.db().ejecutarDirecto(QStringLiteral("DROP TABLE Parametros"));
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo,
                 QStringLiteral("guardar la configuración en la 'Configuración de la Base de Datos'"));
        QVERIFY(s->d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")));
        QVERIFY(!f.cargar());
        QCOMPARE(s->d.mensajes().size(), 2);
    }
};

PMX_STORE_TEST_MAIN(TestConfBd)
#include "test_conf_bd.moc"
