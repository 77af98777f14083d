// The subaccount check shared by every record with a ledger subaccount, and the
// data-protection notice (single and list variants).
#include "clients/aviso_lopd.h"
#include "clients/subcuenta.h"
#include "scripted_dialogs.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestSubcuentaLopd : public QObject {
    Q_OBJECT

    static QString prefijo(const QString& sujeto, const QString& p) {
        return u" La Subcuenta Contable "_s + sujeto + u" debe comenzar por '"_s + p + u"'."_s;
    }
    static QString numerica(const QString& sujeto) {
        return u" La Subcuenta Contable "_s + sujeto + u" sólo puede contener caracteres numéricos."_s;
    }

private slots:
    void subcuenta_data() {
        QTest::addColumn<QString>("subcuenta");
        QTest::addColumn<QString>("prefijo");
        QTest::addColumn<QString>("sujeto");
        QTest::addColumn<bool>("obligatoria");
        QTest::addColumn<QString>("mensaje");
        auto fila = [](const char* nombre, QString a0, QString a1, QString a2, bool a3, QString a4) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4;
        };
        const QString p = u"430"_s;
        const QString s = u"para el Cliente"_s;
        fila("vacía aceptada", QString(), p, s, false, QString());
        fila("blancos aceptados", u"   "_s, p, s, false, QString());
        fila("un carácter", u"4"_s, p, s, false, prefijo(s, p));
        fila("dos caracteres", u"43"_s, p, s, false, prefijo(s, p));
        fila("430 y letra", u"430A"_s, p, s, false, numerica(s));
        fila("430 con punto", u"430.1"_s, p, s, false, numerica(s));
        fila("430 con coma", u"430,1"_s, p, s, false, numerica(s));
        fila("empieza por 431", u"4310001"_s, p, s, false, prefijo(s, p));
        fila("letras delante", u"A430001"_s, p, s, false, prefijo(s, p));
        fila("430 solo", u"430"_s, p, s, false, QString());
        fila("completa con blancos", u" 4300000012 "_s, p, s, false, QString());
        fila("obligatoria vacía", QString(), u"400"_s, u"para el Proveedor"_s, true,
             u" Debe especificar antes la Subcuenta Contable para el Proveedor."_s);
        fila("otro prefijo", u"4300001"_s, u"400"_s, u"para el Proveedor"_s, true,
             prefijo(u"para el Proveedor"_s, u"400"_s));
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
            QCOMPARE(d.ultimo().titulo, u"¡Atención!"_s);
            QCOMPARE(d.ultimoTexto(), mensaje);
        }
    }

    void avisoSencillo_data() {
        QTest::addColumn<bool>("esDocumento");
        QTest::addColumn<bool>("respuesta");
        QTest::addColumn<QString>("segundaLinea");
        auto fila = [](const char* nombre, bool a0, bool a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        const QString doc = u"Si desea continuar con la impresión de este documento pulse "
                            "sobre 'Sí', para cancelar  pulse sobre 'No'."_s;
        const QString envio =
            u"Si desea continuar con este envío pulse sobre 'Sí', para cancelar  pulse sobre 'No'."_s;
        fila("documento, sí", true, true, doc);
        fila("documento, no", true, false, doc);
        fila("envío, sí", false, true, envio);
        fila("envío, no", false, false, envio);
    }

    void avisoSencillo() {
        QFETCH(bool, esDocumento);
        QFETCH(bool, respuesta);
        QFETCH(QString, segundaLinea);
        ScriptedDialogs d;
        d.responder(respuesta);
        QCOMPARE(avisoLopd(d, u"Marta Núñez"_s, esDocumento), respuesta);
        QCOMPARE(d.mensajes().size(), 1);
        QVERIFY(d.ultimo().pregunta);
        QCOMPARE(d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(d.ultimoTexto(), u"El cliente Marta Núñez ha indicado expresamente su NO "
                                  "CONSENTIMIENTO para el envío de información amparándose en la "
                                  "Ley Orgánica de Protección de Datos.\n"_s +
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
            fila(1, u"Ana"_s, u"1"_s),   fila(2, u"Blas"_s, u"2"_s, u"Toby"_s),
            fila(3, u"Celia"_s, u"0"_s), fila(4, u"Dora"_s, u"2"_s, u"Misi"_s),
            fila(5, u"Eloy"_s, u"2"_s),
        };

        AvisoLopdLista sinAviso({filas.at(0), filas.at(2)}, false);
        QVERIFY(!sinAviso.hayAviso());
        QCOMPARE(sinAviso.aceptar().size(), 2);

        AvisoLopdLista l(filas, false);
        QVERIFY(l.hayAviso());
        QCOMPARE(l.titulo(), u"ATENCIÓN"_s);
        QVERIFY(l.texto().contains(u"este envío"_s));
        QCOMPARE(l.avisados().size(), 3);
        QCOMPARE(l.avisados().at(1).Mascota, u"Misi"_s);
        for (const auto& d : l.avisados())
            QVERIFY(!d.incluir);

        auto nombres = [](const QList<DestinatarioLopd>& l) {
            QStringList n;
            for (const auto& d : l)
                n << d.Cliente;
            return n;
        };
        // Nothing ticked: only those who need no notice go on.
        QCOMPARE(nombres(l.aceptar()), QStringList({u"Ana"_s, u"Celia"_s}));
        // A ticked row goes back in its place.
        l.setIncluir(1, true);
        QCOMPARE(nombres(l.aceptar()), QStringList({u"Ana"_s, u"Celia"_s, u"Dora"_s}));
        l.setIncluir(7, true); // out of range: ignored
        l.incluirTodos(true);
        QCOMPARE(nombres(l.aceptar()).size(), 5);
        QCOMPARE(nombres(l.aceptar()).at(1), u"Blas"_s);
        l.incluirTodos(false);
        QCOMPARE(nombres(l.aceptar()).size(), 2);
        // Cancelling keeps nothing.
        l.salir = true;
        QVERIFY(l.aceptar().isEmpty());

        AvisoLopdLista documento(filas, true);
        QVERIFY(documento.texto().contains(u"la impresión de este documento"_s));
    }
};

QTEST_GUILESS_MAIN(TestSubcuentaLopd)
#include "test_subcuenta_lopd.moc"
