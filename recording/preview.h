#pragma once

#include "platform/database.h"
#include "platform/wave_player.h"
#include "recording/time_parts.h"
#include "settings/settings.h"
#include "station/drive_map.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace orvel {

class FileSystem;

/// Name of the file that holds the records of a kind of step (TrackStep or JingleStep).
[[nodiscard]] QString catalogueName(int kind);

/// Opens the catalogue of a kind in the folder of the databases, in the order of its numbers. Throws what opening and
/// querying throw.
[[nodiscard]] std::unique_ptr<RecordSet> openedCatalogue(DatabaseEngine &databases, const QString &databasePath,
                                                         int kind);

/// What the preview needs of the rest of the program; all of it outlives the preview. A catalogue is null while it is
/// not open.
struct PreviewSources {
    const FileSystem &files;
    const Settings &settings;
    const DriveMap &drives;
    const std::unique_ptr<RecordSet> &datTracks;
    const std::unique_ptr<RecordSet> &datJingles;
    /// Opens a kind's catalogue anew. Throws what openedCatalogue() throws; the catalogue is null then.
    std::function<void(int kind)> reopenCatalogue;
};

/// What there is to see of a step that was loaded.
struct Previewed {
    QString title;
    QString description; ///< of a track its artist
    QString problem;     ///< why it cannot be played; empty when it can
    QString details;     ///< for whoever has to mend that
};

/// Finds the track or jingle of a step in the catalogues and loads its file into a player.
class Preview {
  public:
    explicit Preview(PreviewSources sources) : sources_(std::move(sources)) {}

    /// Loads the record with this number of a kind's catalogue. Nothing, and the player keeps its file, where there is
    /// no such record, no such kind, or no use of catalogues at all. A catalogue or file that cannot be opened is a
    /// problem, and the player holds no file then.
    [[nodiscard]] std::optional<Previewed> load(int kind, std::int32_t track, WavePlayer &player);

  private:
    [[nodiscard]] const std::unique_ptr<RecordSet> &catalogue(int kind) const;
    /// The kind's records as the file has them now. Throws when there are none to be had.
    [[nodiscard]] RecordSet &freshRecords(int kind) const;
    void loadFile(const QString &cataloguePath, WavePlayer &player, Previewed &shown) const;

    PreviewSources sources_;
    QString SearchCriterion;
};

/// Whether a text is too long for the display and has to scroll.
[[nodiscard]] inline bool scrolls(const QString &text) {
    constexpr qsizetype labelCharacters = 24;
    return text.size() > labelCharacters;
}

/// Jumps to a position, in milliseconds, in silence.
void seek(WavePlayer &player, std::int32_t position);

/// What is still to be heard. Throws Overflow when the difference does not fit 32 bits.
[[nodiscard]] TimeParts remainingTime(const WavePlayer &player);

} // namespace orvel
