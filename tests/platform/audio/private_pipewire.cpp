#include "tests/platform/audio/private_pipewire.h"

#include "tests/platform/audio/outside_tool.h"

#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

namespace orvel::test {
namespace {

using namespace std::chrono_literals;

/// Of the server's programs; clients find it as they find PulseAudio.
constexpr const char *kBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char *kFolders[]{"XDG_RUNTIME_DIR", "XDG_STATE_HOME"};
const QString kServer = QStringLiteral(ORVEL_SOURCE_DIR "/packaging/sound-server");

} // namespace

PrivatePipeWire::PrivatePipeWire() : PrivateServer(QStringLiteral("native")) {
    const QString bus = "unix:path=" + folder().path("bus");
    setenv(kBus, bus.toLocal8Bit().constData(), 1);
    for (const char *name : kFolders) {
        setenv(name, folder().path().toLocal8Bit().constData(), 1);
    }
    start({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + bus}, "bus");
    start({kServer, "pipewire"}, "pipewire-0");
    start({kServer, "wireplumber"});
    start({kServer, "pipewire-pulse"}, "native");
    waitForAnswer();
    // The session manager comes to it when it likes: nothing records or plays before.
    for (int i = 0; i < 100 && !pactl({"list", "short", "sinks"}).contains("auto_null"); ++i) {
        std::this_thread::sleep_for(50ms);
    }
}

PrivatePipeWire::~PrivatePipeWire() {
    std::reverse(pids_.begin(), pids_.end());
    for (const pid_t pid : pids_) {
        ::kill(pid, SIGKILL);
        waitForTool(pid);
    }
    unsetenv(kBus);
    for (const char *name : kFolders) {
        unsetenv(name);
    }
}

void PrivatePipeWire::start(const QStringList &command, const QString &socket) {
    pids_.push_back(startProgram(command));
    for (int i = 0; i < 500 && !socket.isEmpty() && !QFileInfo::exists(folder().path(socket)); ++i) {
        std::this_thread::sleep_for(10ms);
    }
}

} // namespace orvel::test
