// Sketches and photographs of a visit: the marks' text, the picture's path, the default
// pictures, the photograph files, and the sketch and photograph widgets.
#include "clinical/croquis.h"
#include "clinical/fotos_visita.h"
#include "clinical/ui/croquis_widget.h"
#include "clinical/ui/fotos_widget.h"
#include "gui.h"

#include <QColorDialog>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {
bool escribir(const QString& ruta, const QByteArray& datos) {
    QDir().mkpath(QFileInfo(ruta).path());
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(datos) == datos.size();
}

QByteArray leer(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList nombres(const QStringList& rutas) {
    QStringList n;
    for (const QString& r : rutas)
        n << QFileInfo(r).fileName();
    return n;
}

// A picture file of the given format.
bool imagen(const QString& ruta, const char* formato, QSize tamano = {64, 48}) {
    QImage i(tamano, QImage::Format_RGB32);
    i.fill(Qt::darkCyan);
    QDir().mkpath(QFileInfo(ruta).path());
    return i.save(ruta, formato);
}

void clic(QWidget* w, QPointF p) {
    QTest::mouseClick(w, Qt::LeftButton, {}, p.toPoint());
}
} // namespace

class TestCroquis : public QObject {
    Q_OBJECT

private slots:
    void textoDeLasMarcas() {
        const QList<MarcaCroquis> marcas = {{0.25, 0.75, TamanoMarca::Grande, QColor(0xff, 0, 0)},
                                            {0, 1, TamanoMarca::Pequeno, QColor(0x12, 0xab, 0xef)},
                                            {1.0 / 3, 0.5, TamanoMarca::Mediano, QColor(0, 0, 0)}};
        const QString texto = textoMarcas(marcas);
        QCOMPARE(texto, u"0.2500;0.7500;G;#ff0000\n0.0000;1.0000;P;#12abef\n0.3333;0.5000;M;#000000\n"_s);
        int malas = -1;
        const QList<MarcaCroquis> leidas = leerMarcas(texto, &malas);
        QCOMPARE(malas, 0);
        QCOMPARE(textoMarcas(leidas), texto);
        QCOMPARE(leidas.at(1).tamano, TamanoMarca::Pequeno);
        QCOMPARE(leidas.at(1).color, QColor(0x12, 0xab, 0xef));

        // What the reader would refuse is never written: edges clamp, no number is left out,
        // no colour is black.
        QCOMPARE(textoMarcas({{1.2, -0.5, TamanoMarca::Grande, QColor()},
                              {std::nan(""), 0.5, TamanoMarca::Grande, QColor(Qt::red)}}),
                 u"1.0000;0.0000;G;#000000\n"_s);

        const struct {
            const char* caso;
            QString texto;
            int marcas;
            int descartadas;
        } filas[] = {
            {"vacío", u""_s, 0, 0},
            {"líneas en blanco", u"\n  \n\r\n"_s, 0, 0},
            {"bordes y CRLF", u"0;1;P;#ABCDEF\r\n1;0;G;#000000"_s, 2, 0},
            {"coma decimal", u"0,5;0.5;M;#00ff00"_s, 0, 1},
            {"fuera de 0..1", u"1.01;0.5;M;#00ff00\n0.5;-0.1;M;#00ff00"_s, 0, 2},
            {"no es un número", u"nan;0.5;M;#00ff00\nx;0.5;M;#00ff00\n;0.5;M;#00ff00"_s, 0, 3},
            {"tamaño desconocido", u"0.5;0.5;X;#00ff00\n0.5;0.5;m;#00ff00\n0.5;0.5;;#00ff00"_s, 0, 3},
            {"color", u"0.5;0.5;M;red\n0.5;0.5;M;#12345\n0.5;0.5;M;#1234567\n0.5;0.5;M;#12345g"_s, 0, 4},
            {"campos de menos o de más", u"0.5;0.5;M\n0.5;0.5;M;#000000;x"_s, 0, 2},
            {"una mala entre buenas", u"0.1;0.2;G;#ff0000\n0.1;0.2\n0.3;0.4;P;#00ff00"_s, 2, 1},
        };
        for (const auto& f : filas) {
            int descartadas = -1;
            const QList<MarcaCroquis> m = leerMarcas(f.texto, &descartadas);
            QVERIFY2(m.size() == f.marcas && descartadas == f.descartadas, f.caso);
        }
        const QList<MarcaCroquis> buenas = leerMarcas(u"0.1;0.2;G;#ff0000\nmal\n0.3;0.4;P;#00ff00"_s);
        QCOMPARE(buenas.at(1).x, 0.3);
        QCOMPARE(buenas.at(1).color, QColor(Qt::green));
    }

    void rutaDelCroquis() {
        QTemporaryDir dir;
        const QString datos = dir.path();
        const QString croquis = datos + u"/Croquis/"_s;
        const struct {
            QString especialidad, especie, esperada;
        } filas[] = {
            {u"Dermatología"_s, u"Perro"_s, u"Dermatología/Perro.gif"_s},
            {u"../.."_s, u"../../etc/passwd"_s, u"___../___.._etc_passwd.gif"_s},
            {u".."_s, u"."_s, u"__/_.gif"_s},
            {u""_s, u"  "_s, u"_/_.gif"_s},
            {u"C:\\Windows"_s, u"a\0b*?\"<>|"_s, u"C__Windows/a_b______.gif"_s},
        };
        for (const auto& f : filas) {
            const QString ruta = rutaCroquis(datos, f.especialidad, f.especie);
            QVERIFY2(ruta == croquis + f.esperada, qPrintable(ruta));
            QCOMPARE(QDir::cleanPath(ruta), ruta);
        }

        // A clinic's folder and file written in another case are found.
        const QString propio = croquis + u"DERMATOLOGÍA/perro.GIF"_s;
        QVERIFY(escribir(propio, "GIF89a"));
        QCOMPARE(rutaCroquis(datos, u"Dermatología"_s, u"Perro"_s), propio);

        QCOMPARE(textoCroquisNoEncontrado(u"/datos/Croquis/Oftalmología/Hurón.gif"_s),
                 u" No se ha encontrado el archivo con el croquis para esta Especialidad y esta Especie: "
                 "'/datos/Croquis/Oftalmología/Hurón.gif'."_s);
    }

    void croquisPorDefectoInstalados() {
        QTemporaryDir dir;
        const QString datos = dir.path();
        const QString propio = datos + u"/Croquis/Oftalmología/Gato.gif"_s;
        QVERIFY(escribir(propio, "el croquis de la clínica"));
        QCOMPARE(instalarCroquisPorDefecto(datos), QString());
        QCOMPARE(croquisPorDefecto().size(), 5);
        for (const CroquisPorDefecto& c : croquisPorDefecto()) {
            const QString ruta = rutaCroquis(datos, c.especialidad, c.especie);
            if (ruta == propio) continue;
            const QImage i(ruta);
            QVERIFY2(i.size() == QSize(480, 320), qPrintable(ruta));
            // Dark lines on white: the corner is white, the middle row crosses the drawing.
            QCOMPARE(i.pixelColor(0, 0), QColor(Qt::white));
            int oscuros = 0;
            for (int x = 0; x < i.width(); ++x)
                oscuros += qGray(i.pixel(x, 160)) < 128;
            QVERIFY2(oscuros >= 4, qPrintable(ruta));
            QVERIFY2(leer(ruta) == leer(c.recurso), qPrintable(ruta));
        }
        QCOMPARE(leer(propio), "el croquis de la clínica");

        QTemporaryDir otro;
        QVERIFY(escribir(otro.filePath(u"Croquis"_s), "no es una carpeta"));
        QVERIFY(instalarCroquisPorDefecto(otro.path()).startsWith(u"No se ha podido crear la carpeta '"_s));
    }

    void fotografias() {
        QTemporaryDir dir;
        const QString datos = dir.path();
        const QString fotos = datos + u"/FotosVisitas/"_s;
        for (const char* n :
             {"7_2.jpg", "7_10.jpg", "7_1.JPG", "7_rx.jpg", "70_1.jpg", "17_4.jpg", "7_3.txt", "7_.jpg"})
            QVERIFY(escribir(fotos + QLatin1String(n), "x"));
        QCOMPARE(nombres(fotosVisita(datos, 7)),
                 (QStringList{u"7_1.JPG"_s, u"7_2.jpg"_s, u"7_10.jpg"_s, u"7_rx.jpg"_s}));
        QVERIFY(fotosVisita(datos, 8).isEmpty());

        // A PNG is converted; a JPEG keeps its bytes; numbers follow the highest one.
        const QString png = dir.filePath(u"origen/placa.png"_s), jpg = dir.filePath(u"origen/ojo.jpeg"_s);
        QVERIFY(imagen(png, "PNG") && imagen(jpg, "JPG"));
        QString error;
        const QString nueva = anyadirFotoVisita(datos, 7, png, &error);
        QCOMPARE(nueva, fotos + u"7_11.jpg"_s);
        QImageReader lector(nueva);
        QCOMPARE(lector.format(), QByteArray("jpeg"));
        QCOMPARE(lector.size(), QSize(64, 48));
        QCOMPARE(anyadirFotoVisita(datos, 7, jpg, &error), fotos + u"7_12.jpg"_s);
        QCOMPARE(leer(fotos + u"7_12.jpg"_s), leer(jpg));
        // The first photograph of a visit makes the folder if it is missing.
        QTemporaryDir vacio;
        QCOMPARE(anyadirFotoVisita(vacio.path(), 3, jpg, &error), vacio.path() + u"/FotosVisitas/3_1.jpg"_s);

        const QString texto = dir.filePath(u"origen/notas.txt"_s);
        QVERIFY(escribir(texto, "no es una imagen"));
        const struct {
            qint64 visita;
            QString origen, mensaje;
        } fallos[] = {
            {7, dir.filePath(u"no/existe.jpg"_s),
             u"No se ha podido leer el archivo '%1'."_s.arg(dir.filePath(u"no/existe.jpg"_s))},
            {7, texto, u"El archivo '%1' no es una imagen que se pueda añadir a la visita."_s.arg(texto)},
            {0, jpg, u"Guarde la visita antes de añadirle fotografías."_s},
        };
        for (const auto& f : fallos) {
            error.clear();
            QCOMPARE(anyadirFotoVisita(datos, f.visita, f.origen, &error), QString());
            QCOMPARE(error, f.mensaje);
        }
        QCOMPARE(fotosVisita(datos, 7).size(), 6);

        // Only a photograph inside FotosVisitas is ever deleted.
        const QString fuera = datos + u"/Otros/7_1.jpg"_s;
        QVERIFY(escribir(fuera, "x") && escribir(fotos + u"notas_1.jpg"_s, "x"));
        QVERIFY(QFile::link(fuera, fotos + u"7_20.jpg"_s));
        for (const QString& ruta : {fuera, fotos + u"../Otros/7_1.jpg"_s, fotos + u"7_20.jpg"_s,
                                    fotos + u"7_3.txt"_s, fotos + u"7_.jpg"_s, fotos + u"notas_1.jpg"_s})
            QVERIFY2(!eliminarFotoVisita(ruta), qPrintable(ruta));
        QVERIFY(QFileInfo::exists(fuera) && QFileInfo::exists(fotos + u"7_3.txt"_s));
        QVERIFY(eliminarFotoVisita(fotos + u"7_10.jpg"_s));
        QVERIFY(!QFileInfo::exists(fotos + u"7_10.jpg"_s));
    }

    void marcarYBorrarEnElCroquis() {
        CroquisWidget w;
        w.resize(600, 300);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        w.setFondo(u":/croquis/dermatologia_perro.gif"_s);
        QVERIFY(w.hayFondo());
        // The 480x320 picture fits the height: 450x300, centred.
        QCOMPARE(w.areaImagen(), QRectF(75, 0, 450, 300));
        QSignalSpy cambios(&w, &CroquisWidget::marcasCambiadas);
        w.setTamano(TamanoMarca::Grande);
        w.setColor(Qt::blue);
        clic(&w, {75 + 0.25 * 450, 150});
        QCOMPARE(w.marcas().size(), 1);
        const MarcaCroquis m = w.marcas().first();
        QVERIFY2(std::abs(m.x - 0.25) <= 1.0 / 450 && std::abs(m.y - 0.5) <= 1.0 / 300,
                 qPrintable(u"%1 %2"_s.arg(m.x).arg(m.y)));
        QCOMPARE(m.tamano, TamanoMarca::Grande);
        QCOMPARE(m.color, QColor(Qt::blue));
        clic(&w, {20, 150}); // beside the picture
        QCOMPARE(w.marcas().size(), 1);

        // Erasing: a click off every mark removes nothing; one within the mark's radius removes it.
        w.setBorrar(true);
        clic(&w, {75 + 0.25 * 450 + 20, 150});
        QCOMPARE(w.marcas().size(), 1);
        clic(&w, {75 + 0.25 * 450 + 8, 152});
        QVERIFY(w.marcas().isEmpty());
        QCOMPARE(cambios.count(), 2);

        // Read-only: clicks and clearing change nothing.
        w.setBorrar(false);
        clic(&w, {300, 150});
        w.setSoloLectura(true);
        clic(&w, {200, 100});
        w.limpiar();
        QCOMPARE(w.marcas().size(), 1);
        w.setSoloLectura(false);

        // Without the picture the area stays white and takes no marks.
        w.setFondo(u"/no/existe/Perro.gif"_s);
        QVERIFY(!w.hayFondo());
        clic(&w, {200, 100});
        QCOMPARE(w.marcas().size(), 1);
        QCOMPARE(cambios.count(), 3);
    }

    void panelDelCroquis() {
        CroquisPanel panel;
        panel.resize(600, 360);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        auto* croquis = hijo<CroquisWidget>(panel, u"croquis"_s);
        QSignalSpy cambios(&panel, &CroquisPanel::marcasCambiadas);

        panel.setFondo(u"/no/existe/Gato.gif"_s);
        auto* aviso = hijo<QLabel>(panel, u"lblCroquisNoEncontrado"_s);
        QVERIFY(aviso->isVisible());
        QCOMPARE(aviso->text(), textoCroquisNoEncontrado(u"/no/existe/Gato.gif"_s));
        panel.setFondo(u":/croquis/oftalmologia_gato.gif"_s);
        QVERIFY(!aviso->isVisible());

        pulsar(panel, u"cmdPequeno"_s);
        alAbrirModal([](QDialog* d) {
            auto* colores = qobject_cast<QColorDialog*>(d);
            QVERIFY(colores);
            colores->setCurrentColor(QColor(0x33, 0x66, 0x99));
            colores->accept();
        });
        pulsar(panel, u"cmdColor"_s);
        const QPointF centro = croquis->areaImagen().center();
        clic(croquis, centro);
        clic(croquis, centro + QPointF(40, 0));
        QCOMPARE(croquis->marcas().size(), 2);
        QCOMPARE(croquis->marcas().first().tamano, TamanoMarca::Pequeno);
        QCOMPARE(croquis->marcas().first().color, QColor(0x33, 0x66, 0x99));
        capturar(panel, u"croquis.png"_s);

        pulsar(panel, u"cmdBorrar"_s);
        clic(croquis, centro);
        QCOMPARE(croquis->marcas().size(), 1);
        // Choosing a size draws again.
        pulsar(panel, u"cmdGrande"_s);
        QVERIFY(!hijo<QAbstractButton>(panel, u"cmdBorrar"_s)->isChecked());
        clic(croquis, centro);
        QCOMPARE(croquis->marcas().last().tamano, TamanoMarca::Grande);
        pulsar(panel, u"cmdLimpiar"_s);
        QVERIFY(croquis->marcas().isEmpty());
        QCOMPARE(cambios.count(), 5);

        panel.setSoloLectura(true);
        QVERIFY(!hijo<QAbstractButton>(panel, u"cmdLimpiar"_s)->isEnabled());
        clic(croquis, centro);
        QVERIFY(croquis->marcas().isEmpty());
    }

    void tiraDeFotografias() {
        Sesion ses;
        QTemporaryDir dir;
        ses.e.configuracionBD.servidor = dir.path();
        const QString fotos = dir.path() + u"/FotosVisitas/"_s;
        QVERIFY(imagen(fotos + u"5_1.jpg"_s, "JPG") && imagen(dir.filePath(u"rx.png"_s), "PNG"));
        FotosWidget w(ses.e);
        QList<QUrl> abiertas;
        w.abrirUrl = [&abiertas](const QUrl& url) {
            abiertas << url;
            return false;
        };
        auto* lista = hijo<QListWidget>(w, u"lstFotos"_s);
        auto habilitado = [&w](const char* boton) {
            return hijo<QWidget>(w, QLatin1String(boton))->isEnabled();
        };

        w.setVisita(std::nullopt);
        QVERIFY(lista->count() == 0 && !habilitado("cmdAnadirFoto") && !habilitado("cmdQuitarFoto"));
        w.setVisita(5);
        QCOMPARE(lista->count(), 1);
        QVERIFY(habilitado("cmdAnadirFoto") && !habilitado("cmdAbrirFoto") && !habilitado("cmdQuitarFoto"));

        ses.d.fichero(dir.filePath(u"rx.png"_s));
        pulsar(w, u"cmdAnadirFoto"_s);
        QCOMPARE(ses.d.ultimo().titulo, u"Añadir fotografía"_s);
        QCOMPARE(nombres(w.fotos()), (QStringList{u"5_1.jpg"_s, u"5_2.jpg"_s}));
        QCOMPARE(lista->currentRow(), 1);
        capturar(w, u"fotos-visita.png"_s);
        ses.d.fichero(dir.filePath(u"FotosVisitas"_s));
        pulsar(w, u"cmdAnadirFoto"_s);
        QCOMPARE(ses.d.ultimoTexto(),
                 u"No se ha podido leer el archivo '%1'."_s.arg(dir.filePath(u"FotosVisitas"_s)));

        pulsar(w, u"cmdAbrirFoto"_s);
        QCOMPARE(abiertas, QList<QUrl>{QUrl::fromLocalFile(fotos + u"5_2.jpg"_s)});
        QCOMPARE(ses.d.ultimoTexto(),
                 u"No se ha podido abrir la fotografía '%1'."_s.arg(fotos + u"5_2.jpg"_s));

        ses.d.no();
        pulsar(w, u"cmdQuitarFoto"_s);
        QCOMPARE(ses.d.ultimoTexto(), u"¿Desea quitar la fotografía seleccionada de esta visita?"_s);
        QCOMPARE(lista->count(), 2);
        ses.d.si();
        pulsar(w, u"cmdQuitarFoto"_s);
        QCOMPARE(nombres(w.fotos()), QStringList{u"5_1.jpg"_s});
        QVERIFY(!QFileInfo::exists(fotos + u"5_2.jpg"_s));
        QCOMPARE(ses.d.sinRespuesta(), 0);
    }
};

PMX_GUI_TEST_MAIN(TestCroquis)
#include "test_croquis.moc"
