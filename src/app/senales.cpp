#include "app/senales.h"

#include <QSocketNotifier>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {
int tuberia[2] = {-1, -1};
int avisoPermanente[2] = {-1, -1};

void manejador(int) {
    const char c = 1;
    [[maybe_unused]] const auto n = ::write(tuberia[0], &c, 1);
    [[maybe_unused]] const auto m = ::write(avisoPermanente[0], &c, 1);
}
} // namespace

AvisoTerminar::AvisoTerminar(std::function<void()> alTerminar, QObject* padre)
    : QObject(padre), alTerminar_(std::move(alTerminar)) {
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, tuberia) != 0) return;
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, avisoPermanente) != 0) return;
    notificador_ = new QSocketNotifier(tuberia[1], QSocketNotifier::Read, this);
    connect(notificador_, &QSocketNotifier::activated, this, &AvisoTerminar::recibido);
    struct sigaction sa {};
    sa.sa_handler = manejador;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGHUP, &sa, nullptr);
}

AvisoTerminar::~AvisoTerminar() {
    std::signal(SIGTERM, SIG_DFL);
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGHUP, SIG_DFL);
}

int AvisoTerminar::descriptor() const {
    return avisoPermanente[1];
}

void AvisoTerminar::recibido() {
    char c;
    [[maybe_unused]] const auto n = ::read(tuberia[1], &c, 1);
    if (alTerminar_) alTerminar_();
}
