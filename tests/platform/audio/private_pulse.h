#pragma once

#include "tests/platform/audio/private_server.h"

namespace orvel::test {

/// A PulseAudio server of the test's own.
class PrivatePulse : public PrivateServer {
  public:
    /// Starts the server and waits for it; fails the program when there is none.
    PrivatePulse();
    ~PrivatePulse() override;
    PrivatePulse(const PrivatePulse &) = delete;
    PrivatePulse(PrivatePulse &&) = delete;
    PrivatePulse &operator=(const PrivatePulse &) = delete;
    PrivatePulse &operator=(PrivatePulse &&) = delete;

    /// A null sink without its habit of rendering two seconds ahead of a clock that it then sleeps by.
    int loadPromptSink(const QString &name) { return loadNullSink(name, {"norewinds=1"}); }
    /// Kills the server, not giving it a chance to say goodbye.
    void kill();
    /// Stops (SIGSTOP) or continues the server: one that hangs.
    void freeze(bool frozen) const;
    /// Starts it again on the same socket, without devices.
    void restart();

  private:
    void start();

    pid_t pid_ = -1;
};

} // namespace orvel::test
