// The subaccount check shared by every record with a ledger subaccount, and the
// data-protection notice (single and list variants).
#include "clients/aviso_lopd.h"
#include "clients/subcuenta.h"
#include "scripted_dialogs.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestSubcuentaLopd : public QObject {
    Q_OBJECT

private slots:
    void subcuenta_data() {
        QTest::addColumn<QString>("subcuenta");
        QTest::addColumn<bool>("obligatoria"); // and with the suppliers' prefix and wording
        QTest::addColumn<QString>("mensaje");
        auto fila = [](const char* nombre, const char* subcuenta, const QString& mensaje,
                       bool obligatoria = false) {
            QTest::newRow(nombre) << QString::fromUtf8(subcuenta) << obligatoria << mensaje;
        };
        const QString prefijo = u" La Subcuenta Contable para el Cliente debe comenzar por '430'."_s;
        const QString numerica =
            u" La Subcuenta Contable para el Cliente sólo puede contener caracteres numéricos."_s;
        fila("vacía aceptada", "", {});
        fila("blancos aceptados", "   ", {});
        fila("dos caracteres", "43", prefijo);
        fila("430 y letra", "430A", numerica);
        fila("empieza por 431", "4310001", prefijo);
        fila("430 solo", "430", {});
        fila("completa con blancos", " 4300000012 ", {});
        fila("obligatoria vacía", "", u" Debe especificar antes la Subcuenta Contable para el Proveedor."_s,
             true);
        fila("otro prefijo", "4300001",
             u" La Subcuenta Contable para el Proveedor debe comenzar por '400'."_s, true);
    }

    void subcuenta() {
        QFETCH(QString, subcuenta);
        QFETCH(bool, obligatoria);
        QFETCH(QString, mensaje);
        const QString prefijo = obligatoria ? u"400"_s : u"430"_s;
        const QString sujeto = obligatoria ? u"para el Proveedor"_s : u"para el Cliente"_s;
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

    // Before a document (Yes goes on) or a mailing (No stops it).
    void avisoSencillo() {
        const QString primera = u"El cliente Marta Núñez ha indicado expresamente su NO CONSENTIMIENTO para el "
                                "envío de información amparándose en la Ley Orgánica de Protección de Datos.\n"_s;
        for (const bool esDocumento : {true, false}) {
            ScriptedDialogs d;
            d.responder(esDocumento);
            QCOMPARE(avisoLopd(d, u"Marta Núñez"_s, esDocumento), esDocumento);
            QVERIFY(d.ultimo().pregunta);
            QCOMPARE(d.ultimo().titulo, u"ATENCIÓN"_s);
            QCOMPARE(d.ultimoTexto(), primera + (esDocumento ? u"Si desea continuar con la impresión de este "
                                                                "documento pulse sobre 'Sí', para cancelar  pulse "
                                                                "sobre 'No'."_s
                                                              : u"Si desea continuar con este envío pulse sobre "
                                                                "'Sí', para cancelar  pulse sobre 'No'."_s));
        }
    }

    void avisoLista() {
        const QList<DestinatarioLopd> filas = {
            {1, u"Ana"_s, {}, {}, u"1"_s},   {2, u"Blas"_s, {}, u"Toby"_s, u"2"_s},
            {3, u"Celia"_s, {}, {}, u"0"_s}, {4, u"Dora"_s, {}, u"Misi"_s, u"2"_s},
            {5, u"Eloy"_s, {}, {}, u"2"_s},
        };
        AvisoLopdLista sinAviso({filas.at(0), filas.at(2)}, false);
        QVERIFY(!sinAviso.hayAviso());
        QCOMPARE(sinAviso.aceptar().size(), 2);

        AvisoLopdLista l(filas, false);
        QVERIFY(l.hayAviso());
        QCOMPARE(l.avisados().size(), 3);
        auto nombres = [](const QList<DestinatarioLopd>& l) {
            QStringList n;
            for (const auto& d : l)
                n << d.Cliente;
            return n;
        };
        // The shown rows start excluded: only those who need no notice go on.
        QCOMPARE(nombres(l.aceptar()), QStringList({u"Ana"_s, u"Celia"_s}));
        // A ticked row goes back in its place.
        l.setIncluir(1, true);
        QCOMPARE(nombres(l.aceptar()), QStringList({u"Ana"_s, u"Celia"_s, u"Dora"_s}));
        l.setIncluir(7, true); // out of range: ignored
        l.incluirTodos(true);
        QCOMPARE(nombres(l.aceptar()), QStringList({u"Ana"_s, u"Blas"_s, u"Celia"_s, u"Dora"_s, u"Eloy"_s}));
        // Cancelling keeps nothing.
        l.salir = true;
        QVERIFY(l.aceptar().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSubcuentaLopd)
#include "test_subcuenta_lopd.moc"
