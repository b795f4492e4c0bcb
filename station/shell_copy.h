#pragma once

#include "platform/platform.h"

#include <QString>

#include <functional>

namespace orvel {

/// What a copy did; the caller of a take that was not copied must not delete it.
struct ShellCopyResult {
    int copied = 0;
    int skipped = 0;      ///< the presenter said no, or stopped, or the disk failed
    bool stopped = false; ///< by the presenter or the disk, before every file had its turn
};

/// What a caller of a copy wants to know, and to decide, on the way.
struct CopyWatch {
    /// Asked before a file is overwritten, after the presenter's yes; false passes it over.
    std::function<bool(const QString &target)> mayOverwrite;
    /// After each file that was copied.
    std::function<void(const QString &target, bool replaced)> fileCopied;
    /// After each file that was copied or passed over.
    std::function<void()> fileDone;
};

/// What the windows share.
namespace Global {

/// Copies Source (a file, or a folder and a wildcard pattern) to Destination (a folder or a file name) with a progress
/// window under Title for copies that take long, and a question before a file is overwritten or a folder is made.
/// Silent: no window and no questions. No matching source: nothing happens. A failure is shown, never thrown.
ShellCopyResult ShellCopyFile(Platform &platform, const QString &Source, const QString &Destination, bool Silent,
                              const QString &Title, const CopyWatch &watch = {});

} // namespace Global

} // namespace orvel
