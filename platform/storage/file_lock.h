#pragma once

#include "platform/file_system.h"
#include "platform/storage/storage.h"

namespace orvel {

/// FileSystem::tryLock() on a storage, which outlives the lock.
std::unique_ptr<FileLock> lockFile(Storage &storage, const QString &path, const QByteArray &content);

} // namespace orvel
