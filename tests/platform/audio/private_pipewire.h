#pragma once

#include "tests/platform/audio/private_server.h"

#include <vector>

namespace orvel::test {

/// A PipeWire server of the test's own, as a desktop has it: with its session manager and its PulseAudio side. Without
/// devices it makes itself one output, "Dummy Output". Its clock runs at 48 kHz, whatever the devices are.
class PrivatePipeWire : public PrivateServer {
  public:
    /// Starts the server and waits for it; fails the program when there is none.
    PrivatePipeWire();
    ~PrivatePipeWire() override;
    PrivatePipeWire(const PrivatePipeWire &) = delete;
    PrivatePipeWire(PrivatePipeWire &&) = delete;
    PrivatePipeWire &operator=(const PrivatePipeWire &) = delete;
    PrivatePipeWire &operator=(PrivatePipeWire &&) = delete;

  private:
    /// Starts a program; returns when it has made its socket.
    void start(const QStringList &command, const QString &socket = {});

    std::vector<pid_t> pids_;
};

} // namespace orvel::test
