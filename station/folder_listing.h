#pragma once

#include <QStringList>

namespace orvel {

class FileSystem;

/// Names of the files of a folder that fit one of the patterns ("*.wav"), without regard to case, each once, in the
/// order of the alphabet. Empty where there is no such folder.
[[nodiscard]] QStringList filesIn(const FileSystem &files, const QString &folder, const QStringList &patterns);

/// Position of the drive that a folder is on: the one deepest in the tree that it is below. -1 without one.
[[nodiscard]] int driveOf(const QString &folder, const QStringList &drives);

} // namespace orvel
