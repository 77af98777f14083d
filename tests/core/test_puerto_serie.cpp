// The receipt printer's serial port: one rule for the configuration that accepts it and the
// printing that opens it.
#include "core/puerto_serie.h"

#include <QtTest>

class TestPuertoSerie : public QObject {
    Q_OBJECT
private slots:
    void puertos() {
        struct Caso {
            const char* puerto;
            const char* normalizado; // "" = refused
            const char* dispositivo;
        };
        const Caso casos[] = {
            {"COM1", "COM1", "/dev/ttyS0"},
            {"COM16", "COM16", "/dev/ttyS15"},
            {" com3 ", "COM3", "/dev/ttyS2"},
            {"COM17", "", ""},
            {"COM0", "", ""},
            {"COM01", "COM1", "/dev/ttyS0"},
            {"3", "", ""},
            {"/dev/ttyUSB0", "/dev/ttyUSB0", "/dev/ttyUSB0"},
            {"/dev/serial/by-id/usb-Epson_TM-if00", "/dev/serial/by-id/usb-Epson_TM-if00",
             "/dev/serial/by-id/usb-Epson_TM-if00"},
            {"/dev/../etc/passwd", "", ""},
            {"/dev/", "", ""},
            {"/dev/tty USB0", "", ""},
            {"ttyUSB0", "", ""},
            {"", "", ""},
        };
        for (const Caso& c : casos) {
            QVERIFY2(puertoSerieNormalizado(QString(c.puerto)) == QString(c.normalizado), c.puerto);
            QVERIFY2(dispositivoSerie(QString(c.puerto)) == QString(c.dispositivo), c.puerto);
        }
    }
};

QTEST_GUILESS_MAIN(TestPuertoSerie)
#include "test_puerto_serie.moc"
