#pragma once

#include "platform/runtime_error.h"

namespace orvel {

/// What a system's error code is about: a file's name (opening, renaming, removing) or what is in an open file.
enum class StorageSubject { Name, Content };

/// The one table from the system's error codes (errno) to what the presenter is told.
RuntimeError storageError(int code, const QString &path, StorageSubject subject);

/// Whether a sync that fails with this code was one that the disk cannot do at all: some shares and user-space file
/// systems say so. There is nothing to wait for then, and nothing has failed.
bool meansNoSync(int code);

} // namespace orvel
