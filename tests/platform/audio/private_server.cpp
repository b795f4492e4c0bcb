#include "tests/platform/audio/private_server.h"

#include "tests/platform/audio/outside_tool.h"

#include <chrono>
#include <thread>

namespace orvel::test {
namespace {

using namespace std::chrono_literals;

void setVariable(const char *name, const QString &value) {
    setenv(name, value.toLocal8Bit().constData(), 1);
}

void setVariables(const QString &folder, const QString &socket) {
    setVariable("PULSE_SERVER", "unix:" + folder + '/' + socket);
    setVariable("PULSE_COOKIE", folder + "/cookie");
    for (const char *name : {"PULSE_RUNTIME_PATH", "PULSE_STATE_PATH", "XDG_CONFIG_HOME"}) {
        setVariable(name, folder);
    }
    unsetenv("PULSE_SINK");
    unsetenv("PULSE_SOURCE");
}

} // namespace

PrivateServer::PrivateServer(const QString &socket) {
    setVariables(folder_.path(), socket);
}

PrivateServer::~PrivateServer() {
    pointNowhere();
}

void PrivateServer::pointNowhere() {
    setVariables(QStringLiteral("/nonexistent"), QStringLiteral("socket"));
}

pid_t PrivateServer::startProgram(const QStringList &command) {
    // setpriv: the server must not outlive a test that crashed.
    return startTool("setpriv", QStringList{"--pdeathsig", "KILL"} + command, folder_.path("out"), folder_.path("err"));
}

void PrivateServer::waitForAnswer() {
    for (int i = 0; i < 100; ++i) {
        if (runTool("pactl", {"info"}).exitCode == 0) {
            return;
        }
        std::this_thread::sleep_for(50ms);
    }
    qFatal("no private sound server: %s", contentOf(folder_.path("err")).constData());
}

int PrivateServer::load(const QString &module, const QStringList &arguments) {
    bool loaded = false;
    const int number = pactl(QStringList{"load-module", module} + arguments).trimmed().toInt(&loaded);
    return loaded ? number : -1;
}

void PrivateServer::unload(int module) {
    pactl({"unload-module", QString::number(module)});
}

int PrivateServer::loadNullSink(const QString &name, const QStringList &format) {
    return load("module-null-sink",
                QStringList{"sink_name=" + name, "sink_properties=device.description=" + name} + format);
}

void PrivateServer::loadMicrophone(const QString &name, const QStringList &format) {
    loadNullSink(name + "-speaker", format);
    load("module-remap-source", QStringList{"master=" + name + "-speaker.monitor", "source_name=" + name,
                                            "source_properties=device.description=" + name} +
                                    format);
}

QString PrivateServer::pactl(const QStringList &arguments) {
    return runTool("pactl", arguments).output;
}

pid_t PrivateServer::play(const QString &path, const QString &sink) {
    return startTool("paplay", {"--device=" + sink, path});
}

} // namespace orvel::test
