#pragma once

#include <QString>

namespace orvel {

/// A stored folder with a literal that begins with a backslash, joined as they stand. Where paths have no backslashes,
/// those of the literal become separators.
QString joined(const QString &folder, const QString &literal);

/// A name (or a pattern of names) in a folder. The name comes from the folder's list and is taken as it stands: a
/// backslash in it is a character like any other where paths have none.
QString inFolder(const QString &folder, const QString &name);

/// folder + literalFolder + name + extension for a name that comes from a database or the user; an empty name is fine.
/// Throws BadFileName when the name would leave the folder or cannot be a file name on the system at hand.
QString takeFile(const QString &folder, const QString &literalFolder, const QString &name, const QString &extension);

} // namespace orvel
