#include "platform/fake/faulty_storage.h"

#include "platform/storage/storage_error.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <mutex>

namespace orvel {

class FaultyStorage::Faults {
  public:
    void add(Call call, int code, const QString &pathPart, int from) {
        const std::lock_guard lock(mutex_);
        faults_.append({call, code, pathPart, from});
    }
    void addLimit(qint64 bytes, const QString &pathPart, int code) {
        const std::lock_guard lock(mutex_);
        limits_.append({bytes, pathPart, code});
    }
    void setOnSync(std::function<void()> action) {
        const std::lock_guard lock(mutex_);
        onSync_ = std::move(action);
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        faults_.clear();
        limits_.clear();
        onSync_ = nullptr;
    }

    /// The code that a call fails with, 0 without a fault.
    int codeOf(Call call, const QString &path) {
        const std::lock_guard lock(mutex_);
        for (Fault &fault : faults_) {
            if (fault.call == call && path.contains(fault.pathPart) && --fault.callsLeft <= 0) {
                return fault.code;
            }
        }
        return 0;
    }

    void check(Call call, const QString &path, StorageSubject subject) {
        if (const int code = codeOf(call, path)) {
            throw storageError(code, path, subject);
        }
    }

    /// How far a file may grow, and the code for what goes beyond.
    std::pair<qint64, int> limitOf(const QString &path) {
        const std::lock_guard lock(mutex_);
        for (const Limit &limit : limits_) {
            if (path.contains(limit.pathPart)) {
                return {limit.bytes, limit.code};
            }
        }
        return {std::numeric_limits<qint64>::max(), 0};
    }

    void runOnSync() {
        std::function<void()> action;
        {
            const std::lock_guard lock(mutex_);
            action = onSync_;
        }
        if (action) {
            action();
        }
    }

  private:
    struct Fault {
        Call call;
        int code;
        QString pathPart;
        int callsLeft;
    };
    struct Limit {
        qint64 bytes;
        QString pathPart;
        int code;
    };

    std::mutex mutex_;
    QList<Fault> faults_;
    QList<Limit> limits_;
    std::function<void()> onSync_;
};

namespace {

using Call = FaultyStorage::Call;

class FaultyFile : public StorageFile {
  public:
    FaultyFile(std::unique_ptr<StorageFile> real, QString path, std::shared_ptr<FaultyStorage::Faults> faults)
        : real_(std::move(real)), path_(std::move(path)), faults_(std::move(faults)) {}

    [[nodiscard]] qint64 size() const override { return real_->size(); }
    [[nodiscard]] FileIdentity identity() const override { return real_->identity(); }
    [[nodiscard]] std::size_t read(qint64 at, std::span<std::byte> into) const override {
        check(Call::Read);
        return real_->read(at, into);
    }
    void write(qint64 at, std::span<const std::byte> bytes) override {
        check(Call::Write);
        const auto [limit, code] = faults_->limitOf(path_);
        const auto room = static_cast<std::size_t>(std::max<qint64>(limit - at, 0));
        real_->write(at, bytes.first(std::min(bytes.size(), room)));
        if (bytes.size() > room) {
            throw storageError(code, path_, StorageSubject::Content);
        }
    }
    void resize(qint64 size) override {
        check(Call::Resize);
        real_->resize(size);
    }
    void takePermissionsOf(const QString &path) override { real_->takePermissionsOf(path); }
    void sync() override {
        faults_->runOnSync();
        const int code = faults_->codeOf(Call::Sync, path_);
        if (code != 0 && !meansNoSync(code)) {
            throw storageError(code, path_, StorageSubject::Content);
        }
        if (code == 0) {
            real_->sync();
        }
    }
    void close() override {
        real_->close();
        check(Call::Close);
    }
    [[nodiscard]] bool tryLockAll() override { return real_->tryLockAll(); }
    [[nodiscard]] bool isLockedElsewhere() const override { return real_->isLockedElsewhere(); }
    [[nodiscard]] bool tryLockMark() override { return real_->tryLockMark(); }

  private:
    void check(Call call) const { faults_->check(call, path_, StorageSubject::Content); }

    std::unique_ptr<StorageFile> real_;
    QString path_;
    std::shared_ptr<FaultyStorage::Faults> faults_;
};

} // namespace

int FaultyStorage::defaultFullCode() {
    return ENOSPC;
}

FaultyStorage::FaultyStorage(Storage &real) : real_(real), faults_(std::make_shared<Faults>()) {}

void FaultyStorage::fail(Call call, int code, const QString &pathPart, int from) {
    faults_->add(call, code, pathPart, from);
}

void FaultyStorage::fillUpAt(qint64 bytes, const QString &pathPart, int code) {
    faults_->addLimit(bytes, pathPart, code);
}

void FaultyStorage::onSync(std::function<void()> action) {
    faults_->setOnSync(std::move(action));
}

void FaultyStorage::heal() {
    faults_->clear();
}

std::unique_ptr<StorageFile> FaultyStorage::open(const QString &path, Access access) {
    faults_->check(Call::Open, path, StorageSubject::Name);
    return std::make_unique<FaultyFile>(real_.open(path, access), path, faults_);
}

std::unique_ptr<StorageFile> FaultyStorage::create(const QString &path, const QString &toldAs) {
    faults_->check(Call::Create, toldAs, StorageSubject::Name);
    return std::make_unique<FaultyFile>(real_.create(path, toldAs), toldAs, faults_);
}

bool FaultyStorage::rename(const QString &source, const QString &target) {
    const int code = faults_->codeOf(Call::Rename, target);
    if (code != 0 && code != EXDEV) {
        throw storageError(code, target, StorageSubject::Name);
    }
    return code == 0 && real_.rename(source, target);
}

bool FaultyStorage::link(const QString &source, const QString &target) {
    return faults_->codeOf(Call::Link, target) == 0 && real_.link(source, target);
}

void FaultyStorage::remove(const QString &path) {
    faults_->check(Call::Remove, path, StorageSubject::Name);
    real_.remove(path);
}

void FaultyStorage::makeFolder(const QString &path) {
    faults_->check(Call::MakeFolder, path, StorageSubject::Name);
    real_.makeFolder(path);
}

} // namespace orvel
