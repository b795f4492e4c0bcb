#pragma once

#include "playlist/step_marks.h"

#include <QString>

namespace orvel {

class Places;
struct Settings;

/// One spoken link: which step of which playlist it belongs to, whatever row is selected meanwhile, and under which
/// name it is filed. A take of the plain recorder has a name only.
struct Take {
    enum class Kind { Playlist, Recorder };

    Kind kind = Kind::Playlist;
    StepId step;
    QString stationCode; ///< of the station that this version is for: three characters; empty for none in particular

    [[nodiscard]] const QString &name() const { return step.name; }
    /// The base name it is filed under: with the station's code in front, but for "000" and "999".
    [[nodiscard]] QString version() const;

    bool operator==(const Take &) const = default;
};

/// Every file of a take, from the recording to the filed voice track.
struct TakeFiles {
    QString wav;   ///< in "\temp\"
    QString mp3;   ///< in "\temp\", on its way
    QString filed; ///< in "\ok\", or in the server's folder
};

/// Throws BadFileName for a name that would leave its folder.
TakeFiles filesOf(const Take &take, const Places &places, const Settings &settings);

} // namespace orvel
