#include "platform/guarded.h"
#include "platform/qt/quit_signals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace orvel {

namespace {

constexpr std::array signals_ = {SIGTERM, SIGHUP, SIGINT};

/// Both ends of a pipe: a signal's handler may do next to nothing, but it may write.
std::array<int, 2> &pipeEnds() {
    static std::array<int, 2> ends = {-1, -1};
    return ends;
}

void onSignal(int /*number*/) {
    const char byte = 1;
    static_cast<void>(!::write(pipeEnds()[0], &byte, 1));
}

void setHandlers(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : signals_) {
        sigaction(number, &action, nullptr);
    }
}

} // namespace

struct QuitSignals::Watch {
    explicit Watch(std::function<void()> theHandler)
        : handler(std::move(theHandler)), notifier(pipeEnds()[1], QSocketNotifier::Read) {
        QObject::connect(&notifier, &QSocketNotifier::activated, [this] {
            char byte = 0;
            static_cast<void>(!::read(pipeEnds()[1], &byte, 1));
            guarded(handler);
        });
    }

    std::function<void()> handler;
    QSocketNotifier notifier;
};

QuitSignals::QuitSignals(std::function<void()> handler) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pipeEnds().data()) != 0) {
        return;
    }
    watch_ = new Watch(std::move(handler)); // NOLINT(cppcoreguidelines-owning-memory): a private type of this file
    setHandlers(onSignal);
}

QuitSignals::~QuitSignals() {
    setHandlers(SIG_DFL);
    delete watch_; // NOLINT(cppcoreguidelines-owning-memory)
    for (int &end : pipeEnds()) {
        if (end >= 0) {
            ::close(end);
            end = -1;
        }
    }
}

} // namespace orvel
