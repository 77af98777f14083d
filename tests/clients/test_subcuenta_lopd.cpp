// The subaccount check shared by every record with a ledger subaccount, and the
// data-protection notice (single and list variants).
#include "clients/aviso_lopd.h"
#include "clients/subcuenta.h"
#include "scripted_dialogs.h"

#include <QtTest>

class TestSubcuentaLopd : public QObject {
    Q_OBJECT

    static QString prefijo(const QString& sujeto, const QString& p) {
        return QStringLiteral(" La Subcuenta Contable ") + sujeto + QStringLiteral(" debe comenzar por '") +
               p + QStringLiteral("'.");
    }
    static QString numerica(const QString& sujeto) {
        return QStringLiteral(" La Subcuenta Contable ") + sujeto +
               QStringLiteral(" sólo puede contener caracteres numéricos.");
    }

private slots:
    void subcuenta_data() {
        QTest::addColumn<QString>("subcuenta");
        QTest::addColumn<QString>("prefijo");
        QTest::addColumn<QString>("sujeto");
        QTest::addColumn<bool>("obligatoria");
        QTest::addColumn<QString>("mensaje");
        const QString p = QStringLiteral("430");
        const QString s = QStringLiteral("para el Cliente");
        QTest::newRow("vacía aceptada") << QString() << p << s << false << QString();
        QTest::newRow("blancos aceptados") << QStringLiteral("   ") << p << s << false << QString();
        QTest::newRow("un carácter") << QStringLiteral("4") << p << s << false << prefijo(s, p);
        QTest::newRow("dos caracteres") << QStringLiteral("43") << p << s << false << prefijo(s, p);
        QTest::newRow("430 y letra") << QStringLiteral("430A") << p << s << false << numerica(s);
        QTest::newRow("430 con punto") << QStringLiteral("430.1") << p << s << false << numerica(s);
        QTest::newRow("430 con coma") << QStringLiteral("430,1") << p << s << false << numerica(s);
        QTest::newRow("empieza por 431") << QStringLiteral("4310001") << p << s << false << prefijo(s, p);
        QTest::newRow("letras delante") << QStringLiteral("A430001") << p << s << false << prefijo(s, p);
        QTest::newRow("430 solo") << QStringLiteral("430") << p << s << false << QString();
        QTest::newRow("completa con blancos")
            << QStringLiteral(" 4300000012 ") << p << s << false << QString();
        QTest::newRow("obligatoria vacía")
            << QString() << QStringLiteral("400") << QStringLiteral("para el Proveedor") << true
            << QStringLiteral(" Debe especificar antes la Subcuenta Contable para el Proveedor.");
        QTest::newRow("otro prefijo")
            << QStringLiteral("4300001") << QStringLiteral("400") << QStringLiteral("para el Proveedor")
            << true << prefijo(QStringLiteral("para el Proveedor"), QStringLiteral("400"));
    }

    void subcuenta() {
        QFETCH(QString, subcuenta);
        QFETCH(QString, prefijo);
        QFETCH(QString, sujeto);
        QFETCH(bool, obligatoria);
        QFETCH(QString, mensaje);
        const auto m = comprobarSubcuenta(subcuenta, prefijo, sujeto, obligatoria);
        QCOMPARE(m.value_or(QString()), mensaje);
        QCOMPARE(m.has_value(), !mensaje.isEmpty());

        ScriptedDialogs d;
        QCOMPARE(validarSubcuenta(d, subcuenta, prefijo, sujeto, obligatoria), mensaje.isEmpty());
        if (mensaje.isEmpty()) {
            QVERIFY(d.mensajes().isEmpty());
        } else {
            QCOMPARE(d.mensajes().size(), 1);
            QCOMPARE(d.ultimo().icono, Icono::Critico);
            QCOMPARE(d.ultimo().titulo, QStringLiteral("¡Atención!"));
            QCOMPARE(d.ultimoTexto(), mensaje);
        }
    }

    void avisoSencillo_data() {
        QTest::addColumn<bool>("esDocumento");
        QTest::addColumn<bool>("respuesta");
        QTest::addColumn<QString>("segundaLinea");
        const QString doc = QStringLiteral("Si desea continuar con la impresión de este documento pulse "
                                           "sobre 'Sí', para cancelar  pulse sobre 'No'.");
        const QString envio = QStringLiteral(
            "Si desea continuar con este envío pulse sobre 'Sí', para cancelar  pulse sobre 'No'.");
        QTest::newRow("documento, sí") << true << true << doc;
        QTest::newRow("documento, no") << true << false << doc;
        QTest::newRow("envío, sí") << false << true << envio;
        QTest::newRow("envío, no") << false << false << envio;
    }

    void avisoSencillo() {
        QFETCH(bool, esDocumento);
        QFETCH(bool, respuesta);
        QFETCH(QString, segundaLinea);
        ScriptedDialogs d;
        d.responder(respuesta);
        QCOMPARE(avisoLopd(d, QStringLiteral("Marta Núñez"), esDocumento), respuesta);
        QCOMPARE(d.mensajes().size(), 1);
        QVERIFY(d.ultimo().pregunta);
        QCOMPARE(d.ultimo().titulo, QStringLiteral("ATENCIÓN"));
        QCOMPARE(d.ultimoTexto(),
                 QStringLiteral("El cliente Marta Núñez ha indicado expresamente su NO "
                                "CONSENTIMIENTO para el envío de información amparándose en la "
                                "Ley Orgánica de Protección de Datos.\n") +
                     segundaLinea);
    }

    void avisoLista() {
        auto fila = [](qint64 id, const QString& nombre, const QString& lopd, const QString& mascota = {}) {
            DestinatarioLopd d;
            d.IdCliente = id;
            d.Cliente = nombre;
            d.LOPD = lopd;
            d.Mascota = mascota;
            return d;
        };
        const QList<DestinatarioLopd> filas = {
            fila(1, QStringLiteral("Ana"), QStringLiteral("1")),
            fila(2, QStringLiteral("Blas"), QStringLiteral("2"), QStringLiteral("Toby")),
            fila(3, QStringLiteral("Celia"), QStringLiteral("0")),
            fila(4, QStringLiteral("Dora"), QStringLiteral("2"), QStringLiteral("Misi")),
            fila(5, QStringLiteral("Eloy"), QStringLiteral("2")),
        };

        AvisoLopdLista sinAviso({filas.at(0), filas.at(2)}, false);
        QVERIFY(!sinAviso.hayAviso());
        QCOMPARE(sinAviso.aceptar().size(), 2);

        AvisoLopdLista l(filas, false);
        QVERIFY(l.hayAviso());
        QCOMPARE(l.titulo(), QStringLiteral("ATENCIÓN"));
        QVERIFY(l.texto().contains(QStringLiteral("este envío")));
        QCOMPARE(l.avisados().size(), 3);
        QCOMPARE(l.avisados().at(1).Mascota, QStringLiteral("Misi"));
        for (const auto& d : l.avisados())
            QVERIFY(!d.incluir);

        auto nombres = [](const QList<DestinatarioLopd>& l) {
            QStringList n;
            for (const auto& d : l)
                n << d.Cliente;
            return n;
        };
        // Nothing ticked: only those who need no notice go on.
        QCOMPARE(nombres(l.aceptar()), QStringList({QStringLiteral("Ana"), QStringLiteral("Celia")}));
        // A ticked row goes back in its place.
        l.setIncluir(1, true);
        QCOMPARE(nombres(l.aceptar()),
                 QStringList({QStringLiteral("Ana"), QStringLiteral("Celia"), QStringLiteral("Dora")}));
        l.setIncluir(7, true); // out of range: ignored
        l.incluirTodos(true);
        QCOMPARE(nombres(l.aceptar()).size(), 5);
        QCOMPARE(nombres(l.aceptar()).at(1), QStringLiteral("Blas"));
        l.incluirTodos(false);
        QCOMPARE(nombres(l.aceptar()).size(), 2);
        // Cancelling keeps nothing.
        l.salir = true;
        QVERIFY(l.aceptar().isEmpty());

        AvisoLopdLista documento(filas, true);
        QVERIFY(documento.texto().contains(QStringLiteral("la impresión de este documento")));
    }
};

QTEST_GUILESS_MAIN(TestSubcuentaLopd)
#include "test_subcuenta_lopd.moc"
