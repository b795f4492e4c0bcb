#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace orvel::test {

/// What a program that is not ours said.
struct ToolResult {
    int exitCode = -1; ///< -1 when it did not run to its end
    QString output;    ///< standard output
    QString errors;    ///< standard error
};

/// Runs a program to its end, half a minute at most.
inline ToolResult runTool(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments, QIODevice::ReadOnly);
    ToolResult result;
    if (process.waitForFinished(30'000) && process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.errors = QString::fromUtf8(process.readAllStandardError());
    return result;
}

/// The value of one line of `sox file -n stat`, for instance "RMS     amplitude"; -1 when there is none.
inline double soxStat(const QString &path, const QString &name, const QStringList &effects = {}) {
    const QString text = runTool(QStringLiteral("sox"), QStringList{path, QStringLiteral("-n")} + effects +
                                                            QStringList{QStringLiteral("stat")})
                             .errors;
    for (const QString &line : text.split(u'\n')) {
        if (line.startsWith(name + u':')) {
            return line.section(u':', 1).trimmed().toDouble();
        }
    }
    return -1;
}

} // namespace orvel::test
