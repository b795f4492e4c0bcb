#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace orvel::test {

// Programs are started with posix_spawn: ThreadSanitizer loses sight of the locks of a process that has used QProcess.

/// Starts a program; its output goes to files. Variables ("NAME=value") come on top of our own environment.
pid_t startTool(const QString &program, const QStringList &arguments, const QString &outputFile = "/dev/null",
                const QString &errorFile = "/dev/null", const QStringList &variables = {});
/// Waits for its end: the exit code, -1 when it was killed.
int waitForTool(pid_t pid);

/// What a program that is not ours said.
struct ToolResult {
    int exitCode = -1; ///< -1 when it was killed, 124 when it took longer than half a minute
    QString output;    ///< standard output
    QString errors;    ///< standard error
};

/// Runs a program to its end, half a minute at most.
ToolResult runTool(const QString &program, const QStringList &arguments, const QStringList &variables = {});

/// The value of one line of `sox file -n <effects> stat`, for instance "RMS     amplitude"; -1 when there is none.
double soxStat(const QString &path, const QString &name, const QStringList &effects = {});

} // namespace orvel::test
