#pragma once

#include "settings/settings.h"

#include <QStringList>

namespace orvel {

// What the setup dialog decides.

/// Whether anything was ever set: false where the settings file is missing or without any key.
[[nodiscard]] bool hasSettings(FileSystem &files, const QString &programFolder);

/// Why the folder of the catalogues cannot be used; empty when it can. used: whether catalogues are wanted at all.
[[nodiscard]] QString databaseFolderProblem(const FileSystem &files, const QString &folder, bool used);

/// Why the server's folder of voice tracks cannot be used; empty when it can. An empty folder is fine unless used.
[[nodiscard]] QString voiceFolderProblem(const FileSystem &files, const QString &folder, bool used);

/// What a folder is for that was never filled in; empty for one that was.
[[nodiscard]] QString missingDatabaseFolder(const QString &folder);
[[nodiscard]] QString missingVoiceFolder(const QString &folder);

/// Where a chooser of folders begins: in the one of the text, or in the program's own where there is no text or the
/// folder gives no answer.
[[nodiscard]] QString chooserStart(const FileSystem &files, const QString &text, const QString &programFolder);

/// Name of a callback mode; empty for one that has none.
[[nodiscard]] QString callbackName(int mode);

/// What an output is called by its number: -1 is the system's default output. A number past the list is named as such.
[[nodiscard]] QString outputName(const QStringList &outputs, int number);

/// The bit rate to store: the position that is selected in the list or, with nothing selected (-1), the stored one,
/// which is not in the list then.
[[nodiscard]] std::int16_t chosenBitRate(int selected, std::int16_t stored);

/// Takes over what a saved setup changes at once; the rest is in force after a restart.
void applySetup(const Settings &saved, Settings &inForce);

} // namespace orvel
