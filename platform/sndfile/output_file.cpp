#include "platform/sndfile/output_file.h"

#include "platform/runtime_error.h"
#include "platform/storage/new_content.h"

#include <QFileInfo>

#include <algorithm>

namespace orvel {
namespace {

/// Throws when there can be no such file, whatever the disk says.
void checkPlace(const QString &path) {
    const QFileInfo info(path);
    // A device or a pipe is not replaced either. A link is: what it points to does not matter.
    if (path.isEmpty() || info.isDir() || (info.exists() && !info.isFile() && !info.isSymLink())) {
        throw RuntimeError(ErrorNumber::PathAccess, path);
    }
    if (!QFileInfo(info.absolutePath()).isDir()) {
        throw RuntimeError(ErrorNumber::PathNotFound, path);
    }
}

void takePlace(Storage &storage, const QString &temporary, const QString &path) {
    try {
        if (!storage.rename(temporary, path)) {
            throw RuntimeError(ErrorNumber::PathAccess, path);
        }
    } catch (const RuntimeError &) {
        try {
            storage.remove(temporary);
        } catch (const RuntimeError &) {
            // What went wrong first is told.
        }
        throw;
    }
}

} // namespace

OutputFile::OutputFile(Storage &storage, const QString &path) {
    checkPlace(path);
    TemporaryFile temporary = makeTemporaryBeside(storage, path);
    takePlace(storage, temporary.path, path);
    file_ = std::move(temporary.file);
}

void OutputFile::write(std::span<const std::byte> bytes) {
    try {
        file_->write(position_, bytes);
    } catch (const RuntimeError &) {
        position_ = std::clamp(file_->size(), position_, position_ + static_cast<qint64>(bytes.size()));
        throw;
    }
    position_ += static_cast<qint64>(bytes.size());
}

} // namespace orvel
