// The receipt printer's serial port: one rule for the configuration that accepts it and the
// printing that opens it.
#include "core/puerto_serie.h"

#include <QtTest>

class TestPuertoSerie : public QObject {
    Q_OBJECT
private slots:
    void puertos_data() {
        QTest::addColumn<QString>("puerto");
        QTest::addColumn<QString>("normalizado"); // "" = refused
        QTest::addColumn<QString>("dispositivo");
        auto fila = [](const char* nombre, const char* puerto, const char* normalizado,
                       const char* dispositivo) {
            QTest::newRow(nombre) << QString(puerto) << QString(normalizado) << QString(dispositivo);
        };
        fila("COM1", "COM1", "COM1", "/dev/ttyS0");
        fila("COM16", "COM16", "COM16", "/dev/ttyS15");
        fila("minúsculas y blancos", " com3 ", "COM3", "/dev/ttyS2");
        fila("COM17", "COM17", "", "");
        fila("COM0", "COM0", "", "");
        fila("COM01", "COM01", "COM1", "/dev/ttyS0");
        fila("sólo el número", "3", "", "");
        fila("LPT1", "LPT1", "", "");
        fila("USB", "/dev/ttyUSB0", "/dev/ttyUSB0", "/dev/ttyUSB0");
        fila("por id", "/dev/serial/by-id/usb-Epson_TM-if00", "/dev/serial/by-id/usb-Epson_TM-if00",
             "/dev/serial/by-id/usb-Epson_TM-if00");
        fila("fuera de /dev", "/dev/../etc/passwd", "", "");
        fila("sólo /dev/", "/dev/", "", "");
        fila("acaba en /", "/dev/serial/", "", "");
        fila("con blanco dentro", "/dev/tty USB0", "", "");
        fila("sin /dev", "ttyUSB0", "", "");
        fila("vacío", "", "", "");
    }
    void puertos() {
        QFETCH(QString, puerto);
        QFETCH(QString, normalizado);
        QFETCH(QString, dispositivo);
        QCOMPARE(puertoSerieNormalizado(puerto), normalizado);
        QCOMPARE(dispositivoSerie(puerto), dispositivo);
    }
};

QTEST_GUILESS_MAIN(TestPuertoSerie)
#include "test_puerto_serie.moc"
