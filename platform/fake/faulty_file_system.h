#pragma once

#include "platform/file_system.h"
#include "platform/runtime_error.h"

#include <QList>

#include <optional>

namespace orvel {

/// Another file system with faults: the operations named fail for paths that hold a text.
class FaultyFileSystem : public FileSystem {
  public:
    enum class Operation { List, Read, Write, Copy, Link, Move, Remove, MakeFolder, Lock };

    explicit FaultyFileSystem(FileSystem &real) : real_(real) {}

    /// From now on, for the paths (of a copy or a move: the target's) that contain the text.
    void fail(Operation operation, const QString &pathPart, ErrorNumber number);
    /// From now on, copies to such paths fail after so many bytes, whatever the disk did with them.
    void failCopyAfter(qint64 bytes, const QString &pathPart, ErrorNumber number);
    void heal() { faults_.clear(); }
    /// The disk has so many bytes left; -1: as many as the real one.
    void setFreeBytes(qint64 bytes) { freeBytes_ = bytes; }
    /// What every folder answers that is asked whether it can be written; without an answer, the real one is asked.
    void setWritable(std::optional<Writable> writable) { writable_ = writable; }

    [[nodiscard]] bool fileExists(const QString &path) const override { return real_.fileExists(path); }
    [[nodiscard]] qint64 fileSize(const QString &path) const override { return real_.fileSize(path); }
    [[nodiscard]] bool folderExists(const QString &path) const override { return real_.folderExists(path); }
    [[nodiscard]] bool isSameFolder(const QString &one, const QString &other) const override {
        return real_.isSameFolder(one, other);
    }
    [[nodiscard]] QStringList list(const QString &folder, const QString &pattern) const override;
    [[nodiscard]] QStringList folders(const QString &folder) const override { return real_.folders(folder); }
    [[nodiscard]] QStringList drives() const override { return real_.drives(); }
    [[nodiscard]] qint64 freeBytes(const QString &folder) const override {
        return freeBytes_ >= 0 ? freeBytes_ : real_.freeBytes(folder);
    }
    [[nodiscard]] std::shared_ptr<const std::atomic<Writable>> askWritable(const QString &folder) override {
        return writable_ ? std::make_shared<const std::atomic<Writable>>(*writable_) : real_.askWritable(folder);
    }
    [[nodiscard]] QByteArray read(const QString &path) const override;
    void write(const QString &path, const QByteArray &content) override;
    bool copy(const QString &source, const QString &target, const Progress &progress) override;
    void link(const QString &source, const QString &target) override;
    void move(const QString &source, const QString &target) override;
    void remove(const QString &path) override;
    void makeFolder(const QString &path) override;
    [[nodiscard]] std::unique_ptr<FileLock> tryLock(const QString &path, const QByteArray &content) override;

  private:
    struct Fault {
        Operation operation;
        QString pathPart;
        ErrorNumber number;
        qint64 afterBytes = 0;
    };

    void check(Operation operation, const QString &path, qint64 bytes = 0) const;

    FileSystem &real_;
    QList<Fault> faults_;
    qint64 freeBytes_ = -1;
    std::optional<Writable> writable_;
};

} // namespace orvel
