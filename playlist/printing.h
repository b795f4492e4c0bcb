#pragma once

#include "platform/platform.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"

#include <QVariantMap>

namespace orvel {

class Places;
class VoiceTracks;

/// Prints the open playlist through the station's template "\rep\play0.rpt".
class Printing {
  public:
    Printing(Platform &platform, const Places &places, const CurrentStep &step, const Playlist &playlist,
             const VoiceTracks &tracks)
        : platform_(platform), rptPrint(platform.report), places_(places), step_(step), playlist_(playlist),
          tracks_(tracks) {}

    /// Shows the running order in a print preview; nothing happens before a step was selected. Throws FileNotFound
    /// (the template), InvalidProperty (the template's line) and what the database throws.
    void Printen() const;

    /// What the template may use. Of the playlist: playlist, date, count, slots, done, length, steps. Of each step:
    /// number, time, performer, title, length (m:ss), intro and outro (seconds), voicetrack, presentation, finished,
    /// missing (finished, but its MP3 is not in its folder), lacking (the stations that a finished step has nothing
    /// for, where it is voiced per station), and every field under its own name in lower case. Without a value: blank.
    [[nodiscard]] QVariantMap values() const;

  private:
    Platform &platform_;
    ReportViewer &rptPrint;
    const Places &places_;
    const CurrentStep &step_;
    const Playlist &playlist_;
    const VoiceTracks &tracks_;
};

} // namespace orvel
