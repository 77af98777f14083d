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
        QTest::newRow("COM1") << "COM1"
                              << "COM1"
                              << "/dev/ttyS0";
        QTest::newRow("COM16") << "COM16"
                               << "COM16"
                               << "/dev/ttyS15";
        QTest::newRow("minúsculas y blancos") << " com3 "
                                              << "COM3"
                                              << "/dev/ttyS2";
        QTest::newRow("COM17") << "COM17"
                               << ""
                               << "";
        QTest::newRow("COM0") << "COM0"
                              << ""
                              << "";
        QTest::newRow("COM01") << "COM01"
                               << "COM1"
                               << "/dev/ttyS0";
        QTest::newRow("sólo el número") << "3"
                                        << ""
                                        << "";
        QTest::newRow("LPT1") << "LPT1"
                              << ""
                              << "";
        QTest::newRow("USB") << "/dev/ttyUSB0"
                             << "/dev/ttyUSB0"
                             << "/dev/ttyUSB0";
        QTest::newRow("por id") << "/dev/serial/by-id/usb-Epson_TM-if00"
                                << "/dev/serial/by-id/usb-Epson_TM-if00"
                                << "/dev/serial/by-id/usb-Epson_TM-if00";
        QTest::newRow("fuera de /dev") << "/dev/../etc/passwd"
                                       << ""
                                       << "";
        QTest::newRow("sólo /dev/") << "/dev/"
                                    << ""
                                    << "";
        QTest::newRow("acaba en /") << "/dev/serial/"
                                    << ""
                                    << "";
        QTest::newRow("con blanco dentro") << "/dev/tty USB0"
                                           << ""
                                           << "";
        QTest::newRow("sin /dev") << "ttyUSB0"
                                  << ""
                                  << "";
        QTest::newRow("vacío") << ""
                               << ""
                               << "";
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
