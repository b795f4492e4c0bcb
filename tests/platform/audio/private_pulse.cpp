#include "tests/platform/audio/private_pulse.h"

#include "tests/platform/audio/outside_tool.h"

#include <chrono>
#include <csignal>
#include <thread>

namespace orvel::test {
namespace {

using namespace std::chrono_literals;

void setVariables(const QString &folder) {
    const QByteArray socket = ("unix:" + folder + "/socket").toLocal8Bit();
    const QByteArray path = folder.toLocal8Bit();
    setenv("PULSE_SERVER", socket.constData(), 1);
    setenv("PULSE_RUNTIME_PATH", path.constData(), 1);
    setenv("PULSE_STATE_PATH", path.constData(), 1);
    setenv("PULSE_COOKIE", (path + "/cookie").constData(), 1);
    setenv("XDG_CONFIG_HOME", path.constData(), 1);
    unsetenv("PULSE_SINK");
    unsetenv("PULSE_SOURCE");
}

} // namespace

PrivatePulse::PrivatePulse() {
    setVariables(folder_.path());
    start();
}

PrivatePulse::~PrivatePulse() {
    kill();
    pointNowhere();
}

void PrivatePulse::pointNowhere() {
    setVariables(QStringLiteral("/nonexistent"));
}

void PrivatePulse::start() {
    // setpriv: the server must not outlive a test that crashed.
    const QStringList arguments{"--pdeathsig",
                                "KILL",
                                ORVEL_SOURCE_DIR "/packaging/sound-server",
                                "pulseaudio",
                                "-n",
                                "--daemonize=no",
                                "--use-pid-file=no",
                                "--exit-idle-time=-1",
                                "--realtime=no",
                                "--high-priority=no",
                                "-L",
                                "module-native-protocol-unix auth-anonymous=1 socket=" + folder_.path("socket")};
    pid_ = startTool("setpriv", arguments, folder_.path("out"), folder_.path("err"));
    for (int i = 0; i < 100; ++i) {
        if (runTool("pactl", {"info"}).exitCode == 0) {
            return;
        }
        std::this_thread::sleep_for(50ms);
    }
    qFatal("no private sound server: %s", contentOf(folder_.path("err")).constData());
}

int PrivatePulse::load(const QString &module, const QStringList &arguments) {
    bool loaded = false;
    const int number = pactl(QStringList{"load-module", module} + arguments).trimmed().toInt(&loaded);
    return loaded ? number : -1;
}

void PrivatePulse::unload(int module) {
    pactl({"unload-module", QString::number(module)});
}

int PrivatePulse::loadNullSink(const QString &name) {
    return load("module-null-sink", {"sink_name=" + name, "sink_properties=device.description=" + name});
}

int PrivatePulse::loadPromptSink(const QString &name) {
    return load("module-null-sink", {"norewinds=1", "sink_name=" + name, "sink_properties=device.description=" + name});
}

void PrivatePulse::loadMicrophone(const QString &name) {
    loadNullSink(name + "-speaker");
    load("module-remap-source", {"master=" + name + "-speaker.monitor", "source_name=" + name,
                                 "source_properties=device.description=" + name});
}

QString PrivatePulse::pactl(const QStringList &arguments) {
    return runTool("pactl", arguments).output;
}

pid_t PrivatePulse::play(const QString &path, const QString &sink) {
    return startTool("paplay", {"--device=" + sink, path});
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
    QFile::remove(folder_.path("socket"));
    start();
}

} // namespace orvel::test
