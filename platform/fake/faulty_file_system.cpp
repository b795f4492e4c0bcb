#include "platform/fake/faulty_file_system.h"

namespace orvel {

void FaultyFileSystem::fail(Operation operation, const QString &pathPart, ErrorNumber number) {
    faults_.append({operation, pathPart, number});
}

void FaultyFileSystem::failCopyAfter(qint64 bytes, const QString &pathPart, ErrorNumber number) {
    faults_.append({Operation::Copy, pathPart, number, bytes});
}

void FaultyFileSystem::check(Operation operation, const QString &path, qint64 bytes) const {
    for (const Fault &fault : faults_) {
        if (fault.operation == operation && path.contains(fault.pathPart) && bytes >= fault.afterBytes) {
            throw RuntimeError(fault.number, path);
        }
    }
}

QStringList FaultyFileSystem::list(const QString &folder, const QString &pattern) const {
    check(Operation::List, folder);
    return real_.list(folder, pattern);
}

QByteArray FaultyFileSystem::read(const QString &path) const {
    check(Operation::Read, path);
    return real_.read(path);
}

void FaultyFileSystem::write(const QString &path, const QByteArray &content) {
    check(Operation::Write, path);
    real_.write(path, content);
}

bool FaultyFileSystem::copy(const QString &source, const QString &target, const Progress &progress) {
    check(Operation::Copy, target);
    return real_.copy(source, target, [&](qint64 done, qint64 total) {
        check(Operation::Copy, target, done);
        return !progress || progress(done, total);
    });
}

void FaultyFileSystem::link(const QString &source, const QString &target) {
    check(Operation::Link, target);
    real_.link(source, target);
}

void FaultyFileSystem::move(const QString &source, const QString &target) {
    check(Operation::Move, target);
    real_.move(source, target);
}

void FaultyFileSystem::remove(const QString &path) {
    check(Operation::Remove, path);
    real_.remove(path);
}

void FaultyFileSystem::makeFolder(const QString &path) {
    check(Operation::MakeFolder, path);
    real_.makeFolder(path);
}

std::unique_ptr<FileLock> FaultyFileSystem::tryLock(const QString &path, const QByteArray &content) {
    check(Operation::Lock, path);
    return real_.tryLock(path, content);
}

} // namespace orvel
