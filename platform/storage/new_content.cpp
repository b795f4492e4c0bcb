#include "platform/storage/new_content.h"

#include "platform/runtime_error.h"
#include "platform/storage/leftovers.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <utility>

namespace orvel {

TemporaryFile makeTemporaryBeside(Storage &storage, const QString &target) {
    constexpr int mostTries = 5;
    for (int tries = 1;; ++tries) {
        const QByteArray random = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
        const QString path = QFileInfo(target).path() + u'/' + Leftovers::nameOf(random);
        try {
            return {path, storage.create(path, target)};
        } catch (const RuntimeError &error) {
            if (error.number() != ErrorNumber::FileExists || tries == mostTries) {
                throw;
            }
        }
    }
}

NewContent::NewContent(Storage &storage, const QString &target, Leftovers &leftovers)
    : storage_(storage), leftovers_(leftovers), target_(target) {
    leftovers_.sweep(QFileInfo(target).path());
    temporary_ = makeTemporaryBeside(storage_, target);
}

NewContent::~NewContent() {
    if (temporary_.path.isEmpty()) {
        return;
    }
    temporary_.file.reset();
    try {
        storage_.remove(temporary_.path);
    } catch (const RuntimeError &error) {
        if (error.number() != ErrorNumber::FileNotFound) {
            leftovers_.remember(temporary_.path);
        }
    }
}

void NewContent::append(std::span<const std::byte> bytes) {
    temporary_.file->write(size_, bytes);
    size_ += static_cast<qint64>(bytes.size());
}

void NewContent::finish() {
    const std::unique_ptr<StorageFile> file = std::move(temporary_.file);
    file->takePermissionsOf(target_);
    file->sync();
    file->close();
}

void NewContent::replaceTarget() {
    if (temporary_.file) {
        finish();
    }
    if (!storage_.rename(temporary_.path, target_)) {
        throw RuntimeError(ErrorNumber::PathAccess, target_);
    }
    temporary_.path.clear();
}

} // namespace orvel
