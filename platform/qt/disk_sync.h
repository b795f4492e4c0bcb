#pragma once

#include <QFileDevice>
#include <QString>

namespace orvel {

/// Waits until what was written to an open file is on the disk; false when it cannot be.
bool syncFile(int handle);
/// Makes a rename in a folder permanent, where folders need that.
void syncFolder(const QString &folder);
/// Renames over an existing file as one step, on one disk.
bool replaceFile(const QString &source, const QString &target);
/// What the system gives to a file that somebody makes.
QFileDevice::Permissions newFilePermissions();
/// Whether a folder's disk has no room left.
bool isFull(const QString &folder);

} // namespace orvel
