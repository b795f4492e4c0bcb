#pragma once

#include "tests/platform/audio/temp_folder.h"

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace orvel::test {

/// A PulseAudio server of the test's own, in a temporary folder and on a private socket, with no devices but those that
/// the test loads. While it lives, every client in this process and its children talks to it (PULSE_SERVER and kin are
/// set). It dies with the test's process, however that ends. One at a time.
class PrivatePulse {
  public:
    /// Starts the server and waits for it; fails the program when there is none.
    PrivatePulse();
    ~PrivatePulse();
    PrivatePulse(const PrivatePulse &) = delete;
    PrivatePulse(PrivatePulse &&) = delete;
    PrivatePulse &operator=(const PrivatePulse &) = delete;
    PrivatePulse &operator=(PrivatePulse &&) = delete;

    /// Sets the variables of a server that is not there, for tests without one.
    static void pointNowhere();

    /// For instance load("module-null-sink", {"sink_name=A"}); returns the module's number, -1 when it refused.
    int load(const QString &module, const QStringList &arguments = {});
    void unload(int module);
    /// A null sink whose monitor's description is "Monitor of <name>"; returns the module's number.
    int loadNullSink(const QString &name);
    /// The same without the null sink's habit of rendering two seconds ahead of a clock that it then sleeps by.
    int loadPromptSink(const QString &name);
    /// A microphone: what is played to the null sink <name>-speaker is what the source <name> records.
    void loadMicrophone(const QString &name);
    /// What `pactl` prints.
    QString pactl(const QStringList &arguments);
    /// Starts playing a file to a sink; wait with waitForTool().
    pid_t play(const QString &path, const QString &sink);

    /// Kills the server, not giving it a chance to say goodbye.
    void kill();
    /// Stops (SIGSTOP) or continues the server: one that hangs.
    void freeze(bool frozen) const;
    /// Starts it again on the same socket, without devices.
    void restart();

  private:
    void start();

    TempFolder folder_;
    pid_t pid_ = -1;
};

} // namespace orvel::test
