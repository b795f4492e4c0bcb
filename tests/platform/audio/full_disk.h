#pragma once

#include "platform/runtime_error.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvel::test {

/// The number of the run-time error that an action throws, 0 when it throws none.
template <typename Action>
int errorOf(Action action) {
    try {
        action();
    } catch (const RuntimeError &error) {
        return static_cast<int>(error.number());
    }
    return 0;
}

/// Runs an action in a process of its own; true when the action returned true. The child leaves without clean-up: that
/// is the parent's.
template <typename Action>
bool inChild(Action action) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(action() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// From now on no file of this process grows beyond so many bytes: as near to a full disk as one comes without rights.
/// In a child only.
inline void limitFileSize(rlim_t bytes) {
    const rlimit size{bytes, bytes};
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    setrlimit(RLIMIT_FSIZE, &size);
}

} // namespace orvel::test
