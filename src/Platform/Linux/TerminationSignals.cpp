#include "Platform/Linux/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <tuple>
#include <unistd.h>

namespace morvane {

namespace {

/// Never closed: a signal may come at any time.
int event = -1;

/// Nothing else is safe in a signal handler.
void note(int) {
    const int error = errno;
    const std::uint64_t one = 1;
    std::ignore = ::write(event, &one, sizeof one);
    errno = error;
}

void catchSignal(int signal, void (*handler)(int), unsigned flags) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
        return;
    }
    action = {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(flags | SA_RESTART);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

void endOnTerminationSignals(QCoreApplication &application) {
    event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (event < 0) {
        return;
    }
    auto *notifier = new QSocketNotifier(event, QSocketNotifier::Read, &application);
    // Not `quit`, which a window may refuse.
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::exit();
    });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        catchSignal(signal, &note, SA_RESETHAND);
    }
}

/// Not SIG_IGN, which every program started from here would inherit.
void failWritesPastLimit() {
    catchSignal(
        SIGXFSZ, [](int) {}, 0);
}

} // namespace morvane
