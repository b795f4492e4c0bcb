#pragma once

#include "tests/platform/audio/outside_tool.h"

#include <QFileInfo>
#include <QString>

#include <chrono>
#include <csignal>
#include <thread>

namespace orvel::test {

/// Somebody else's program that records what an output plays, into a mono WAV file, until told to stop.
class Listener {
  public:
    /// Returns when it hears.
    Listener(const QString &sink, const QString &path) : path_(path) {
        pid_ = startTool("parec", {"--device=" + sink + ".monitor", "--file-format=wav", "--rate=44100", "--channels=1",
                                   "--format=s16le", "--latency-msec=10", path});
        for (int i = 0; i < 500 && QFileInfo(path).size() < 4096; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    ~Listener() { stop(); }
    Listener(const Listener &) = delete;
    Listener(Listener &&) = delete;
    Listener &operator=(const Listener &) = delete;
    Listener &operator=(Listener &&) = delete;

    /// The file, complete.
    QString stop() {
        if (pid_ > 0) {
            ::kill(pid_, SIGTERM);
            waitForTool(pid_);
            pid_ = -1;
        }
        return path_;
    }

  private:
    QString path_;
    pid_t pid_ = -1;
};

} // namespace orvel::test
