#pragma once

#include <QString>
#include <QStringList>

#include <utility>

namespace orvel {

class FileSystem;
class Prompts;

/// Whether the program has worked in a folder, or may: there are settings or playlists to do.
[[nodiscard]] bool isHome(const FileSystem &files, const QString &folder);

/// The home that is given, and not the presenter's to choose: `wanted` (the environment's ORVEL_HOME), or else the
/// program's own folder where that is a home that can be written, as on a stick; empty where it is to be chosen.
[[nodiscard]] QString givenHome(FileSystem &files, const QString &wanted, const QString &programFolder);

/// Where homes come from.
struct HomePlaces {
    QString list;   ///< the file that remembers them, the user's own
    QString folder; ///< where new ones are made
    QString sample; ///< a home to copy: its settings have @STATION@ for its folder. Empty, or away, where there is none
};

/// The homes of one user: folders that settings, playlists and work files hang under. For users: "werkmap".
class Homes {
  public:
    Homes(FileSystem &files, HomePlaces places) : files_(files), places_(std::move(places)) {}

    /// As they are remembered, the one used last first; also those that are away. No folder stands there twice.
    [[nodiscard]] QStringList all() const;
    [[nodiscard]] bool isThere(const QString &folder) const { return isHome(files_, folder); }
    [[nodiscard]] bool hasSample() const;
    [[nodiscard]] const QString &folder() const { return places_.folder; }

    /// Remembers a home as the one used last. Throws what FileSystem::write() throws.
    void use(const QString &home);
    /// The home is remembered no more; its folder stays.
    void forget(const QString &home);
    /// Makes a home of a folder, which need not exist; what is in it stays. With the sample's settings and template,
    /// but without its catalogues.
    void prepare(const QString &home);
    /// Whether a folder is a home, now or because the presenter wants one made of it.
    bool adopt(Prompts &prompts, const QString &folder);
    /// A new home of that name; one that is there already is that one. Throws BadFileName for a name that is none.
    QString make(const QString &name);
    /// A new home with all that the sample has.
    QString makeSample();

  private:
    void remember(const QStringList &homes);
    void copyAll(const QString &from, const QString &target);
    void copyMissing(const QString &name, const QString &home);

    FileSystem &files_;
    HomePlaces places_;
};

} // namespace orvel
