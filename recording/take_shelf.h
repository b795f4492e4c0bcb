#pragma once

#include "recording/take.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

class FileSystem;
class Recovery;

/// One of a step's takes.
struct ShelvedTake {
    int number = 0;            ///< from 1, in the order of recording
    QString begun;             ///< local time of its recording, "20:31"
    std::int32_t lengthMs = 0; ///< as it was left
    bool isFiled = false;      ///< the voice track was made of it
    bool isCurrent = false;    ///< the one that is listened to and saved

    bool operator==(const ShelvedTake &) const = default;
};

/// Every take of a step, in "\takes\": a new one never destroys the one before. Each is there as it was left and as it
/// was recorded, before processing ("droog"). They stay until the playlist is finished; of what was recorded the rules
/// of the recovery folder hold then. Takes of the plain recorder have no shelf. The take on the desk itself stays in
/// "\temp\", where the program works on it: here it has a second name.
class TakeShelf {
  public:
    TakeShelf(FileSystem &files, const Places &places, Recovery &recovery)
        : files_(files), places_(places), recovery_(recovery) {}

    /// In the order of recording; nothing of another step's.
    [[nodiscard]] std::vector<ShelvedTake> takes(const Take &take) const;
    /// The recording in "\temp\" is complete and not processed: it becomes the current take. Throws what the disk
    /// throws.
    void add(const Take &take);
    /// What stands in "\temp\" will be replaced or cleared away: it is on the shelf as it is now, as a take of its own
    /// when it was not recorded here. Throws what the disk throws.
    void putAside(const Take &take);
    /// The voice track was made of the take in "\temp\", which is put aside. Throws what the disk throws.
    void filed(const Take &take);
    /// Puts another take into "\temp\"; the one that was made the voice track stands there already, as such. What stood
    /// there is put aside. Throws what the disk throws, SubscriptOutOfRange for a take that there is not.
    void choose(const Take &take, int number);
    /// The current take as it was recorded; empty when there is none.
    [[nodiscard]] QString dry(const Take &take) const;

    /// The shelves of playlists that are not in this folder any more are cleared; none where the folder itself is away.
    void clearFinished(const QString &newFolder);
    /// Originals that are not packed yet.
    [[nodiscard]] std::vector<QString> unpacked() const;
    /// Where a packed original goes, beside the one that is not packed.
    [[nodiscard]] static QString packed(const QString &dry);

  private:
    struct Entry {
        int number = 0;
        QString begun;
        bool isFiled = false;
    };
    struct Shelf {
        QString playlist;
        int stap = 0;
        int current = 0; ///< in "\temp\"; 0 for none of these
        std::vector<Entry> entries;
    };

    [[nodiscard]] std::optional<Shelf> read(const QString &name) const;
    /// Of the current take, or of the filed one where none stands on the desk; 0 without.
    [[nodiscard]] static int shownOf(const Shelf &shelf);
    static Entry &addEntry(Shelf &shelf);
    [[nodiscard]] Shelf shelfOf(const Take &take) const;
    void write(const QString &name, const Shelf &shelf);
    void replace(const QString &source, const QString &target);
    void clear(const QString &name, const Shelf &shelf);
    void keepDry(const QString &name, const QString &path);
    [[nodiscard]] std::int32_t lengthOf(const QString &wav) const;

    FileSystem &files_;
    const Places &places_;
    Recovery &recovery_;
};

} // namespace orvel
