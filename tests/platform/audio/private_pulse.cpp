#include "tests/platform/audio/private_pulse.h"

#include "tests/platform/audio/outside_tool.h"

#include <csignal>

namespace orvel::test {

PrivatePulse::PrivatePulse() : PrivateServer(QStringLiteral("socket")) {
    start();
}

PrivatePulse::~PrivatePulse() {
    kill();
}

void PrivatePulse::start() {
    pid_ = startProgram({ORVEL_SOURCE_DIR "/packaging/sound-server", "pulseaudio", "-n", "--daemonize=no",
                         "--use-pid-file=no", "--exit-idle-time=-1", "--realtime=no", "--high-priority=no", "-L",
                         "module-native-protocol-unix auth-anonymous=1 socket=" + folder().path("socket")});
    waitForAnswer();
}

void PrivatePulse::kill() {
    if (pid_ > 0) {
        ::kill(pid_, SIGCONT);
        ::kill(pid_, SIGKILL);
        waitForTool(pid_);
        pid_ = -1;
    }
}

void PrivatePulse::freeze(bool frozen) const {
    ::kill(pid_, frozen ? SIGSTOP : SIGCONT);
}

void PrivatePulse::restart() {
    kill();
    QFile::remove(folder().path("socket"));
    start();
}

} // namespace orvel::test
