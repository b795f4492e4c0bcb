#include "platform/jet/raw_file.h"

#include "platform/jet/error.h"
#include "platform/runtime_error.h"

#include <QFile>

namespace orvel::jet {

namespace {

QString textOf(const std::filesystem::path &path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

class StoredFile : public RawFile {
  public:
    explicit StoredFile(std::unique_ptr<StorageFile> file) : file_(std::move(file)) {}

    [[nodiscard]] std::uint64_t size() const override { return static_cast<std::uint64_t>(file_->size()); }
    [[nodiscard]] FileIdentity identity() const override { return file_->identity(); }

    void read(std::uint64_t at, std::span<std::uint8_t> into) const override {
        if (file_->read(static_cast<qint64>(at), std::as_writable_bytes(into)) < into.size()) {
            throw Error(Fault::Damaged, "het bestand is korter dan het hoort te zijn");
        }
    }

    void write(std::uint64_t at, std::span<const std::uint8_t> bytes) override {
        file_->write(static_cast<qint64>(at), std::as_bytes(bytes));
    }

    void sync() override { file_->sync(); }

    void lock() override {
        if (!file_->tryLockAll()) {
            throw Error(Fault::Locked, "");
        }
    }

  private:
    std::unique_ptr<StorageFile> file_;
};

} // namespace

FileOpener storageOpener(Storage &storage) {
    return [&storage](const std::filesystem::path &path, RawFile::Mode mode) -> std::unique_ptr<RawFile> {
        const bool isWrite = mode == RawFile::Mode::Write;
        try {
            return std::make_unique<StoredFile>(
                storage.open(textOf(path), isWrite ? Storage::Access::Change : Storage::Access::Read));
        } catch (const RuntimeError &error) {
            if (error.number() == ErrorNumber::PathAccess) {
                throw Error(Fault::NotADatabase, ""); // a folder, a pipe
            }
            throw;
        }
    };
}

bool isHeld(const std::filesystem::path &path) {
    try {
        return systemStorage().open(textOf(path), Storage::Access::Read)->isLockedElsewhere();
    } catch (const RuntimeError &error) {
        return error.number() != ErrorNumber::FileNotFound && error.number() != ErrorNumber::PathAccess;
    }
}

} // namespace orvel::jet
