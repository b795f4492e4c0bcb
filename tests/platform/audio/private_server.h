#pragma once

#include "tests/platform/audio/temp_folder.h"

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace orvel::test {

/// A sound server of the test's own, in a temporary folder and on a private socket, with no devices but those that the
/// test loads. While it lives, every client in this process and its children talks to it (PULSE_SERVER and kin are
/// set). It dies with the test's process, however that ends. One at a time.
class PrivateServer {
  public:
    virtual ~PrivateServer();
    PrivateServer(const PrivateServer &) = delete;
    PrivateServer(PrivateServer &&) = delete;
    PrivateServer &operator=(const PrivateServer &) = delete;
    PrivateServer &operator=(PrivateServer &&) = delete;

    /// Sets the variables of a server that is not there, for tests without one.
    static void pointNowhere();

    /// For instance load("module-null-sink", {"sink_name=A"}); returns the module's number, -1 when it refused.
    int load(const QString &module, const QStringList &arguments = {});
    void unload(int module);
    /// A null sink whose monitor's description is "Monitor of <name>"; returns the module's number. The format is, for
    /// instance, {"rate=48000", "channels=1"}.
    int loadNullSink(const QString &name, const QStringList &format = {});
    /// A microphone: what is played to the null sink <name>-speaker is what the source <name> records.
    void loadMicrophone(const QString &name, const QStringList &format = {});
    /// What `pactl` prints.
    QString pactl(const QStringList &arguments);
    /// Starts playing a file to a sink; wait with waitForTool().
    pid_t play(const QString &path, const QString &sink);

  protected:
    /// Points every client to this socket.
    explicit PrivateServer(const QString &socket);
    /// Starts one of the server's programs.
    pid_t startProgram(const QStringList &command);
    /// Waits until the server answers; fails the program when it does not.
    void waitForAnswer();

    [[nodiscard]] const TempFolder &folder() const { return folder_; }

  private:
    TempFolder folder_;
};

} // namespace orvel::test
