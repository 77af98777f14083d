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
    void textosDeEstado() {
        const QString no = u"AUTOCOMPACTACIÓN DESACTIVADA"_s;
        const std::pair<QString, QString> compactacion[] = {
            {u""_s, no},
            {u"2,5"_s, no},
            {u" 015 "_s, u"AUTOCOMPACTACIÓN ACTIVADA CADA 15 DÍAS"_s},
            {u"1"_s, u"AUTOCOMPACTACIÓN ACTIVADA CADA 1 DÍAS"_s},
        };
        for (const auto& [dias, texto] : compactacion)
            QVERIFY2(::textoAutocompactacion(dias) == texto, qPrintable(dias));
        const QString todos = u"CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS"_s;
        const std::pair<QString, QString> contabilidad[] = {
            {u"S"_s, u"CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES"_s},
            {u"s"_s, todos},
            {QString(), todos},
        };
        for (const auto& [valor, texto] : contabilidad)
            QVERIFY2(::textoContabilidad(valor) == texto, qPrintable(valor));
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
    }

    // A wrong value is named, its field takes the focus, and nothing at all is written.
    void rechazos() {
        const QString mal = u"Información introducida errónea"_s;
        const QString dias = u"Los días entre compactaciones deben ser un número entero igual o mayor que "
                             "0 (0 desactiva la autocompactación)."_s;
        const QString puerto = u"El puerto UDP del chat debe ser un número entero entre 1 y 65535."_s;
        const struct {
            QString clave, valor, titulo, mensaje;
        } casos[] = {
            {claves::DIAS_COMPACTACION, u""_s, mal, dias},
            {claves::DIAS_COMPACTACION, u"-1"_s, mal, dias},
            {claves::CONTAB_SOLO_ADMINISTRADORES, u"SI"_s, mal,
             u"El campo 'Contabilidad sólo para administradores' debe ser S o N."_s},
            {claves::PUERTO_UDP_CHAT, u"65536"_s, mal, puerto},
            {claves::ESPERA_ENTRE_SMS, u"2,5"_s, mal,
             u"La espera entre SMS debe ser un número entero de segundos igual o mayor que 0."_s},
            {claves::EMAIL_TIPO_CONF, u"SMTP"_s, mal,
             u"El envío del correo electrónico debe ser CDO, MAPI o NINGUNA."_s},
            {claves::TIPOINSTALACION, u"  "_s, u"Campos obligatorios no informados"_s,
             u"Debe informar el tipo de instalación."_s},
            {claves::TIPOINSTALACION, QString(21, QLatin1Char('X')), mal,
             u"El campo 'Tipo de instalación' no puede tener más de 20 caracteres."_s},
            {claves::NIF_PRESENT, u"1234567"_s, mal,
             u"El NIF del presentador debe tener 9 letras o cifras."_s},
            {claves::NOM_ORDENANTE, QString(71, QLatin1Char('n')), mal,
             u"El campo 'Nombre del ordenante' no puede tener más de 70 caracteres."_s},
            {claves::SUF_ORDENANTE, u"1A0"_s, mal, u"El sufijo del ordenante debe tener 3 cifras."_s},
            {claves::ENT_PRESENT, u"123"_s, mal, u"La entidad del presentador debe tener 4 cifras."_s},
            {claves::OFI_PRESENT, u"12345"_s, mal, u"La oficina del presentador debe tener 4 cifras."_s},
            {claves::CCC_ORDENANTE, u"ES12 3456"_s, mal,
             u"La cuenta del ordenante debe tener 20 cifras (C.C.C.) o ser un IBAN español (ES y 22 cifras)."_s},
            {claves::BIC_ORDENANTE, u"CAIXESBB1"_s, mal,
             u"El BIC del ordenante debe tener 8 u 11 letras o cifras."_s},
        };
        auto s = sesion();
        const auto antes = parametros(s->db());
        for (const auto& caso : casos) {
            s->d.limpiar();
            ConfBdForm f(s->e);
            QVERIFY(f.cargar());
            // Another field changed too: it must not be written either.
            f.setValor(claves::NOM_PRESENT, u"Clínica Veterinaria"_s);
            f.setValor(caso.clave, caso.valor);
            QVERIFY2(!f.guardar(), qPrintable(caso.clave));
            QVERIFY2(s->d.textos() == QStringList{caso.mensaje} && s->d.ultimo().titulo == caso.titulo,
                     qPrintable(s->d.textos().join(u'|')));
            QVERIFY2(f.foco() == caso.clave && parametros(s->db()) == antes, qPrintable(caso.clave));
        }
    }

    // The checks run in screen order: the first wrong field is the one named.
    void ordenDeLasComprobaciones() {
        auto s = sesion();
        ConfBdForm f(s->e);
        QVERIFY(f.cargar());
        f.setValor(claves::BIC_ORDENANTE, u"X"_s);
        f.setValor(claves::PUERTO_UDP_CHAT, u"0"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::PUERTO_UDP_CHAT);
        f.setValor(claves::PUERTO_UDP_CHAT, u"6000"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(f.foco(), claves::BIC_ORDENANTE);
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
    }

    void errorDeBaseDeDatos() {
        auto s = sesion();
        ConfBdForm f(s->e);
        QVERIFY(f.cargar());
        f.setValor(claves::DIAS_COMPACTACION, u"3"_s);
        s->db().ejecutarDirecto(u"DROP TABLE Parametros"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimo().titulo,
                 u"guardar la configuración en la 'Configuración de la Base de Datos'"_s);
        QVERIFY(s->d.ultimoTexto().startsWith(u"Error en B.D.: "_s));
        QVERIFY(!f.cargar());
    }
};

PMX_STORE_TEST_MAIN(TestConfBd)
#include "test_conf_bd.moc"
