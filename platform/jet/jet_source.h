#pragma once

#include "platform/jet/page_store.h"

#include <QString>

#include <memory>

namespace orvel {

/// A database file by its path, and the promise that it stays the same file: an open handle keeps its identity from
/// being given to another one. Copies share the handle.
class JetSource {
  public:
    /// Throws FileNotFound, PermissionDenied, DatabaseDamaged, PathAccess, and what a storage says of its disk.
    JetSource(jet::FileOpener opener, const QString &path);

    [[nodiscard]] const QString &path() const { return path_; }
    [[nodiscard]] const std::filesystem::path &nativePath() const { return nativePath_; }
    [[nodiscard]] const jet::FileOpener &opener() const { return opener_; }

    /// The file as it is now. Throws like the constructor; PathAccess for another file under the same path.
    [[nodiscard]] std::unique_ptr<jet::PageStore> read() const;

  private:
    QString path_;
    std::filesystem::path nativePath_;
    jet::FileOpener opener_;
    std::shared_ptr<jet::PageStore> first_;
};

/// Runs a piece of work on a database file; what it throws becomes a RuntimeError with the file's path.
[[noreturn]] void throwRuntimeError(const jet::Error &error, const QString &path);

template <typename Work>
auto withRuntimeErrors(const QString &path, const Work &work) {
    try {
        return work();
    } catch (const jet::Error &error) {
        throwRuntimeError(error, path);
    }
}

} // namespace orvel
