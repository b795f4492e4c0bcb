#pragma once

#include "platform/wave_player.h"
#include "recording/time_parts.h"
#include "settings/settings.h"
#include "station/drive_map.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace orvel {

class Catalogues;
class FileSystem;
struct FoundMusic;

/// What the preview needs of the rest of the program; all of it outlives the preview.
struct PreviewSources {
    const FileSystem &files;
    const Settings &settings;
    const DriveMap &drives;
    Catalogues &catalogues;
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
    explicit Preview(PreviewSources sources) : sources_(sources) {}

    /// Loads the record with this number of a kind's catalogue. Nothing, and the player keeps its file, where there is
    /// no such record, no such kind, or no use of catalogues at all. A catalogue or file that cannot be opened is a
    /// problem, and the player holds no file then.
    [[nodiscard]] std::optional<Previewed> load(int kind, std::int32_t track, WavePlayer &player);

    /// From the start of the file. Throws DeviceError when there is no output.
    void play(WavePlayer &player);
    void stop(WavePlayer &player);
    /// Holds the player where it is, or lets it go on from there; nothing where neither can be done.
    void pauseOrGoOn(WavePlayer &player);
    [[nodiscard]] bool isPaused() const { return isPaused_; }
    [[nodiscard]] bool canPause(const WavePlayer &player) const {
        return isPaused_ || player.state() == WavePlayer::playing;
    }
    /// Jumps to a position, in milliseconds; what is paused stays so.
    void seek(WavePlayer &player, std::int32_t position) const;

  private:
    void loadFile(const FoundMusic &found, WavePlayer &player, Previewed &shown);

    PreviewSources sources_;
    bool isPaused_ = false;
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
