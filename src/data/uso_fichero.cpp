#include "data/uso_fichero.h"

#include <QElapsedTimer>
#include <QThread>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

UsoFicheroBD::UsoFicheroBD(const QString& ficheroBD) : ruta_(ficheroBD + QStringLiteral(".uso")) {}

UsoFicheroBD::~UsoFicheroBD() {
    soltar();
}

namespace {
int abrir(const QString& ruta) {
    return ::open(ruta.toLocal8Bit().constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0660);
}
} // namespace

bool UsoFicheroBD::compartir(int esperaMs) {
    soltar();
    fd_ = abrir(ruta_);
    if (fd_ < 0) return true; // a folder where the file cannot be made: nothing to coordinate with
    QElapsedTimer reloj;
    reloj.start();
    while (::flock(fd_, LOCK_SH | LOCK_NB) != 0) {
        if (reloj.elapsed() >= esperaMs) {
            soltar();
            return false;
        }
        QThread::msleep(50);
    }
    return true;
}

bool UsoFicheroBD::exclusivo() {
    soltar();
    fd_ = abrir(ruta_);
    if (fd_ < 0) return false;
    if (::flock(fd_, LOCK_EX | LOCK_NB) == 0) return true;
    soltar();
    return false;
}

void UsoFicheroBD::soltar() {
    if (fd_ < 0) return;
    ::close(fd_); // releases the lock
    fd_ = -1;
}
