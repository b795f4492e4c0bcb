#pragma once

#include "platform/runtime_error.h"

#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <fcntl.h>
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

/// Puts in place of a file that this process has open one that fails with an input/output error wherever it is written:
/// the kernel's view of memory where none is. False when the file is not open.
inline bool breakDiskUnder(const QString &path) {
    const QString wanted = QFileInfo(path).canonicalFilePath();
    const QFileInfoList open = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System);
    for (const QFileInfo &one : open) {
        if (one.symLinkTarget() == wanted) {
            const int broken = ::open("/proc/self/mem", O_RDWR | O_CLOEXEC);
            const bool isBroken = broken >= 0 && ::dup2(broken, one.fileName().toInt()) >= 0;
            ::close(broken);
            return isBroken;
        }
    }
    return false;
}

} // namespace orvel::test
