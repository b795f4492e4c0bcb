#pragma once

#include <functional>

namespace orvel {

/// Calls a handler on the window thread when the system asks the program to end (SIGTERM, SIGHUP, SIGINT where there
/// are signals). Without it a running take would be cut off. At most one at a time.
class QuitSignals {
  public:
    explicit QuitSignals(std::function<void()> handler);
    ~QuitSignals();
    QuitSignals(const QuitSignals &) = delete;
    QuitSignals &operator=(const QuitSignals &) = delete;
    QuitSignals(QuitSignals &&) = delete;
    QuitSignals &operator=(QuitSignals &&) = delete;

  private:
    struct Watch;
    Watch *watch_ = nullptr;
};

} // namespace orvel
