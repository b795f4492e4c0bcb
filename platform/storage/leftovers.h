#pragma once

#include <QByteArray>
#include <QMutex>
#include <QSet>
#include <QString>

namespace orvel {

/// Temporary files that could not be removed when their copy failed: the share went away with them. They are removed
/// when something is written into their folder again; those of an earlier run, too. Thread-safe.
class Leftovers {
  public:
    /// The name of a temporary file of this machine's user, with a random part that the caller gives. It has no
    /// extension that anybody lists or plays.
    static QString nameOf(const QByteArray &random);

    void remember(const QString &path);
    /// Removes what was left in a folder. Never fails.
    void sweep(const QString &folder);

  private:
    static void removeOld(const QString &folder);

    QMutex mutex_;
    QSet<QString> paths_;
    QSet<QString> sweptFolders_; ///< in this run
};

} // namespace orvel
