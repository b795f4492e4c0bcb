#include "platform/away/away_file_system.h"

#include "platform/runtime_error.h"

#include <QDir>

namespace orvel {

namespace {

QString folderOf(const QString &path) {
    return path.section(u'/', 0, -2);
}

/// Giving a lock back may take its time; nobody waits for it.
class AwayLock : public FileLock {
  public:
    AwayLock(std::shared_ptr<FileSystem> files, std::unique_ptr<FileLock> real, AwayWork &work, QString place)
        : files_(std::move(files)), real_(std::move(real)), work_(work), place_(std::move(place)) {}
    AwayLock(const AwayLock &) = delete;
    AwayLock(AwayLock &&) = delete;
    AwayLock &operator=(const AwayLock &) = delete;
    AwayLock &operator=(AwayLock &&) = delete;
    ~AwayLock() override {
        work_.post(place_, [files = std::move(files_), real = std::move(real_)]() mutable { real.reset(); });
    }

  private:
    std::shared_ptr<FileSystem> files_; ///< lives as long as its lock
    std::shared_ptr<FileLock> real_;
    AwayWork &work_;
    QString place_;
};

} // namespace

AwayFileSystem::AwayFileSystem(std::shared_ptr<FileSystem> real, AwayWork &work, const QString &station)
    : real_(std::move(real)), work_(work), station_(QDir::cleanPath(station)) {}

bool AwayFileSystem::isAway(const QString &path) const {
    return isOutside(path, station_);
}

/// Runs a job in a place; path tells whether it lies outside the station.
template <class Job>
auto AwayFileSystem::in(const QString &place, const QString &path, Job job) const {
    if (!isAway(path)) {
        return job(*real_);
    }
    return work_.run(place, [real = real_, job = std::move(job)] { return job(*real); });
}

/// The same for a question whose answer is "nothing" where nobody answers.
template <class Job>
auto AwayFileSystem::look(const QString &place, const QString &path, Job job) const {
    using Answer = decltype(job(*real_));
    try {
        return in(place, path, std::move(job));
    } catch (const RuntimeError &error) {
        if (error.number() != ErrorNumber::DiskNotReady) {
            throw;
        }
        return Answer();
    }
}

bool AwayFileSystem::fileExists(const QString &path) const {
    return look(folderOf(path), path, [path](const FileSystem &files) { return files.fileExists(path); });
}

qint64 AwayFileSystem::fileSize(const QString &path) const {
    return in(folderOf(path), path, [path](const FileSystem &files) { return files.fileSize(path); });
}

bool AwayFileSystem::folderExists(const QString &path) const {
    return look(path, path, [path](const FileSystem &files) { return files.folderExists(path); });
}

bool AwayFileSystem::isSameFolder(const QString &one, const QString &other) const {
    return look(isAway(one) ? one : other, isAway(one) ? one : other,
                [one, other](const FileSystem &files) { return files.isSameFolder(one, other); });
}

QStringList AwayFileSystem::list(const QString &folder, const QString &pattern) const {
    return look(folder, folder, [folder, pattern](const FileSystem &files) { return files.list(folder, pattern); });
}

QStringList AwayFileSystem::folders(const QString &folder) const {
    return look(folder, folder, [folder](const FileSystem &files) { return files.folders(folder); });
}

QStringList AwayFileSystem::drives() const {
    // Every medium is asked, also one that does not answer.
    const QString everywhere = QStringLiteral("/");
    const QStringList drives =
        look(QObject::tr("schijven"), everywhere, [](const FileSystem &files) { return files.drives(); });
    return drives.isEmpty() ? QStringList{everywhere} : drives;
}

qint64 AwayFileSystem::freeBytes(const QString &folder) const {
    return in(folder, folder, [folder](const FileSystem &files) { return files.freeBytes(folder); });
}

std::shared_ptr<const std::atomic<Writable>> AwayFileSystem::askWritable(const QString &folder) {
    if (!isAway(folder)) {
        return real_->askWritable(folder);
    }
    const auto answer = std::make_shared<std::atomic<Writable>>(Writable::Unknown);
    work_.post(folder, [real = real_, folder, answer] { answer->store(real->askWritable(folder)->load()); });
    return answer;
}

QByteArray AwayFileSystem::read(const QString &path) const {
    return in(folderOf(path), path, [path](const FileSystem &files) { return files.read(path); });
}

void AwayFileSystem::write(const QString &path, const QByteArray &content) {
    in(folderOf(path), path, [path, content](FileSystem &files) { files.write(path, content); });
}

bool AwayFileSystem::copy(const QString &source, const QString &target, const Progress &progress) {
    if (!isAway(source) && !isAway(target)) {
        return real_->copy(source, target, progress);
    }
    // Of a copy that is stopped in its last moment only the disk knows how it ended.
    const auto isWhole = std::make_shared<std::atomic<bool>>(false);
    const auto job = [real = real_, source, target, isWhole](AwayTask &task) {
        *isWhole = real->copy(source, target, [&task](qint64 done, qint64 total) {
            task.bytesTotal = total;
            task.bytesDone = done;
            return !task.abandoned;
        });
    };
    work_.runWithProgress(folderOf(isAway(target) ? target : source), job, progress);
    return *isWhole;
}

void AwayFileSystem::link(const QString &source, const QString &target) {
    const QString &away = isAway(target) ? target : source;
    in(folderOf(away), away, [source, target](FileSystem &files) { files.link(source, target); });
}

void AwayFileSystem::move(const QString &source, const QString &target) {
    const QString &away = isAway(target) ? target : source;
    in(folderOf(away), away, [source, target](FileSystem &files) { files.move(source, target); });
}

void AwayFileSystem::remove(const QString &path) {
    in(folderOf(path), path, [path](FileSystem &files) { files.remove(path); });
}

void AwayFileSystem::makeFolder(const QString &path) {
    in(path, path, [path](FileSystem &files) { files.makeFolder(path); });
}

std::unique_ptr<FileLock> AwayFileSystem::tryLock(const QString &path, const QByteArray &content) {
    const QString place = folderOf(path);
    auto lock = in(place, path, [path, content](FileSystem &files) { return files.tryLock(path, content); });
    return lock && isAway(path) ? std::make_unique<AwayLock>(real_, std::move(lock), work_, place) : std::move(lock);
}

} // namespace orvel
