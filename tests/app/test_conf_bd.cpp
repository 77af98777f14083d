// The database settings screen: its status texts, its checks and what it writes.
#include "app/conf_bd_form.h"
#include "sesion.h"

#include <QMap>

class TestConfBd : public QObject {
    Q_OBJECT

    static std::unique_ptr<Sesion> sesion() {
        auto s = std::make_unique<Sesion>(QDateTime(QDate(2026, 3, 2), QTime(10, 0)));
        s->e.ajustes().completarPorDefecto();
        return s;
    }

    static QMap<QString, QString> parametros(Database& db) {
        QMap<QString, QString> m;
        QSqlQuery q = db.ejecutar(u"SELECT Clave, Valor FROM Parametros"_s);
        while (q.next())
            m.insert(q.value(0).toString(), q.value(1).isNull() ? u"<NULL>"_s : q.value(1).toString());
        return m;
    }

private slots:
    void textoAutocompactacion_data() {
        QTest::addColumn<QString>("dias");
        QTest::addColumn<QString>("texto");
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        const QString no = u"AUTOCOMPACTACIÓN DESACTIVADA"_s;
        fila("vacío", "", no);
        fila("ceros", "000", no);
        fila("negativo", "-5", no);
        fila("letras", "siete", no);
        fila("decimal", "2,5", no);
        fila("con blancos y ceros", " 015 ", "AUTOCOMPACTACIÓN ACTIVADA CADA 15 DÍAS");
        fila("uno", "1", "AUTOCOMPACTACIÓN ACTIVADA CADA 1 DÍAS");
    }

    void textoAutocompactacion() {
        QFETCH(QString, dias);
        QFETCH(QString, texto);
        QCOMPARE(::textoAutocompactacion(dias), texto);
    }

    void textoContabilidad_data() {
        QTest::addColumn<QString>("valor");
        QTest::addColumn<QString>("texto");
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        const QString todos = u"CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS"_s;
        fila("S", "S", "CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES");
        fila("minúscula", "s", todos);
        fila("SI", "SI", todos);
        fila("vacío", "", todos);
        fila("con blanco", "S ", todos);
    }

    void textoContabilidad() {
        QFETCH(QString, valor);
        QFETCH(QString, texto);
        QCOMPARE(::textoContabilidad(valor), texto);
    }

    // The screen's status texts follow what the database holds, a missing key included.
    void estadoSegunLaBaseDeDatos() {
        auto s = sesion();
        Ajustes a = s->e.ajustes();
        a.borrar(claves::DIAS_COMPACTACION);
        a.escribir(claves::CONTAB_SOLO_ADMINISTRADORES, u"SI"_s);
        a.escribir(claves::MULTIPUESTO, u"NO"_s);
        ConfBdForm f(s->e);
        QCOMPARE(f.titulo(), u"Configuración de la Base de Datos"_s);
        QVERIFY(f.cargar());
        QCOMPARE(f.textoAutocompactacion(), u"AUTOCOMPACTACIÓN DESACTIVADA"_s);
        QCOMPARE(f.textoContabilidad(), u"CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS"_s);
        QCOMPARE(f.multipuesto(), u"NO"_s);
        // The texts follow the fields as they are edited.
        f.setValor(claves::DIAS_COMPACTACION, u"30"_s);
        f.setValor(claves::CONTAB_SOLO_ADMINISTRADORES, u"S"_s);
        QCOMPARE(f.textoAutocompactacion(), u"AUTOCOMPACTACIÓN ACTIVADA CADA 30 DÍAS"_s);
        QCOMPARE(f.textoContabilidad(), u"CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES"_s);
        QVERIFY(s->d.mensajes().isEmpty());
    }

    void rechazos_data() {
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QString>("valor");
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<QString>("mensaje");
        auto fila = [](const char* nombre, QString a0, QString a1, QString a2, QString a3) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3;
        };
        const QString mal = u"Información introducida errónea"_s;
        const QString dias = u"Los días entre compactaciones deben ser un número entero igual o mayor que "
                             "0 (0 desactiva la autocompactación)."_s;
        fila("días vacío", claves::DIAS_COMPACTACION, "", mal, dias);
        fila("días negativo", claves::DIAS_COMPACTACION, "-1", mal, dias);
        fila("días letras", claves::DIAS_COMPACTACION, "7a", mal, dias);
        fila("contabilidad", claves::CONTAB_SOLO_ADMINISTRADORES, "SI", mal,
             "El campo 'Contabilidad sólo para administradores' debe ser S o N.");
        const QString puerto = u"El puerto UDP del chat debe ser un número entero entre 1 y 65535."_s;
        fila("puerto cero", claves::PUERTO_UDP_CHAT, "0", mal, puerto);
        fila("puerto alto", claves::PUERTO_UDP_CHAT, "65536", mal, puerto);
        fila("espera", claves::ESPERA_ENTRE_SMS, "2,5", mal,
             "La espera entre SMS debe ser un número entero de segundos igual o mayor que 0.");
        fila("correo", claves::EMAIL_TIPO_CONF, "SMTP", mal,
             "El envío del correo electrónico debe ser CDO, MAPI o NINGUNA.");
        fila("instalación", claves::TIPOINSTALACION, "  ", "Campos obligatorios no informados",
             "Debe informar el tipo de instalación.");
        fila("instalación larga", claves::TIPOINSTALACION, QString(21, QLatin1Char('X')), mal,
             "El campo 'Tipo de instalación' no puede tener más de 20 caracteres.");
        fila("nif", claves::NIF_PRESENT, "1234567", mal,
             "El NIF del presentador debe tener 9 letras o cifras.");
        fila("nombre largo", claves::NOM_ORDENANTE, QString(71, QLatin1Char('n')), mal,
             "El campo 'Nombre del ordenante' no puede tener más de 70 caracteres.");
        fila("sufijo", claves::SUF_ORDENANTE, "1A0", mal, "El sufijo del ordenante debe tener 3 cifras.");
        fila("entidad", claves::ENT_PRESENT, "123", mal, "La entidad del presentador debe tener 4 cifras.");
        fila("oficina", claves::OFI_PRESENT, "12345", mal, "La oficina del presentador debe tener 4 cifras.");
        fila("cuenta", claves::CCC_ORDENANTE, "ES12 3456", mal,
             "La cuenta del ordenante debe tener 20 cifras (C.C.C.) o ser un IBAN español (ES y 22 "
             "cifras).");
        fila("bic", claves::BIC_ORDENANTE, "CAIXESBB1", mal,
             "El BIC del ordenante debe tener 8 u 11 letras o cifras.");
    }

    // A wrong value is named, its field takes the focus, and nothing at all is written.
    void rechazos() {
        QFETCH(QString, clave);
        QFETCH(QString, valor);
        QFETCH(QString, titulo);
        QFETCH(QString, mensaje);
        auto s = sesion();
        const auto antes = parametros(s->db());
        ConfBdForm f(s->e);
        QVERIFY(f.cargar());
        // Another field changed too: it must not be written either.
        if (clave != claves::NOM_PRESENT) f.setValor(claves::NOM_PRESENT, u"Clínica Veterinaria"_s);
        f.setValor(clave, valor);
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo, titulo);
        QCOMPARE(s->d.ultimoTexto(), mensaje);
        QCOMPARE(f.foco(), clave);
        QCOMPARE(parametros(s->db()), antes);
    }

    // The checks run in screen order: the first wrong field is the one named.
    void ordenDeLasComprobaciones() {
        auto s = sesion();
        ConfBdForm f(s->e);
        QVERIFY(f.cargar());
        f.setValor(claves::BIC_ORDENANTE, u"X"_s);
        f.setValor(claves::EMAIL_TIPO_CONF, u"OTRO"_s);
        f.setValor(claves::PUERTO_UDP_CHAT, u"0"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::PUERTO_UDP_CHAT);
        f.setValor(claves::PUERTO_UDP_CHAT, u"6000"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::EMAIL_TIPO_CONF);
        f.setValor(claves::EMAIL_TIPO_CONF, u"MAPI"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::BIC_ORDENANTE);
        QCOMPARE(s->d.mensajes().size(), 3);
    }

    // Saving writes what changed, tidied, and nothing else; MULTIPUESTO is never written.
    void guardar() {
        auto s = sesion();
        Ajustes a = s->e.ajustes();
        a.borrar(claves::ESPERA_ENTRE_SMS);
        a.escribir(claves::MULTIPUESTO, u"SI"_s);
        const auto antes = parametros(s->db());
        ConfBdForm f(s->e);
        QVERIFY(f.cargar());
        QCOMPARE(f.valor(claves::ESPERA_ENTRE_SMS), u"5"_s); // the known default
        f.setValor(claves::DIAS_COMPACTACION, u" 007 "_s);
        f.setValor(claves::CONTAB_SOLO_ADMINISTRADORES, u"S"_s);
        f.setValor(claves::EMAIL_TIPO_CONF, u"CDO"_s);
        f.setValor(claves::NIF_PRESENT, u"b12345678"_s);
        f.setValor(claves::CCC_ORDENANTE, u"es91 2100 0418 4502 0005 1332"_s);
        f.setValor(claves::BIC_ORDENANTE, u"caixesbbxxx"_s);
        f.setValor(claves::MULTIPUESTO, u"NO"_s);
        QVERIFY2(f.guardar(), qPrintable(s->d.ultimoTexto()));
        QVERIFY(s->d.mensajes().isEmpty());

        auto esperado = antes;
        esperado.insert(claves::DIAS_COMPACTACION, u"7"_s);
        esperado.insert(claves::CONTAB_SOLO_ADMINISTRADORES, u"S"_s);
        esperado.insert(claves::EMAIL_TIPO_CONF, u"CDO"_s);
        esperado.insert(claves::NIF_PRESENT, u"B12345678"_s);
        esperado.insert(claves::CCC_ORDENANTE, u"ES9121000418450200051332"_s);
        esperado.insert(claves::BIC_ORDENANTE, u"CAIXESBBXXX"_s);
        QCOMPARE(parametros(s->db()), esperado);
        QCOMPARE(f.textoAutocompactacion(), u"AUTOCOMPACTACIÓN ACTIVADA CADA 7 DÍAS"_s);

        // A second form reads back what was saved.
        ConfBdForm otra(s->e);
        QVERIFY(otra.cargar());
        QCOMPARE(otra.valor(claves::CCC_ORDENANTE), u"ES9121000418450200051332"_s);
        QCOMPARE(otra.textoContabilidad(), u"CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES"_s);
    }

    void errorDeBaseDeDatos() {
        auto s = sesion();
        ConfBdForm f(s->e);
        QVERIFY(f.cargar());
        f.setValor(claves::DIAS_COMPACTACION, u"3"_s);
        s->db().ejecutarDirecto(u"DROP TABLE Parametros"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo,
                 u"guardar la configuración en la 'Configuración de la Base de Datos'"_s);
        QVERIFY(s->d.ultimoTexto().startsWith(u"Error en B.D.: "_s));
        QVERIFY(!f.cargar());
        QCOMPARE(s->d.mensajes().size(), 2);
    }
};

PMX_STORE_TEST_MAIN(TestConfBd)
#include "test_conf_bd.moc"
