#pragma once

#include <QString>

namespace orvel {

class FileSystem;
class Places;

/// Makes the folders that the program works in and tries to write in each of them: better told at the start than when
/// the presenter has spoken. Gives a sentence about the first one that cannot be written, or nothing.
QString makeWorkFolders(FileSystem &files, const Places &places);

/// Whether files can be made in a folder; tries.
[[nodiscard]] bool canWrite(FileSystem &files, const QString &folder);

} // namespace orvel
