#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "platform/wave_player.h"
#include "playlist/voice_tracks.h"
#include "production/sound_lengths.h"

#include <QIcon>
#include <QPushButton>
#include <QTableWidget>
#include <QWidget>

#include <memory>
#include <vector>

namespace orvel {

/// Which stations have their version of a step, how long it is, and what it sounds like.
class StationVersions : public QWidget {
    Q_OBJECT

  public:
    /// output: where versions are played.
    StationVersions(Platform &platform, const PlayerSettings &output, QWidget *parent);

    QTableWidget *const lstVersions;
    QPushButton *const cmdPlay;

    /// No versions, and there is nothing to see.
    void show(std::vector<StationVersion> versions);
    /// Ends the sound.
    void stop();
    void cmdPlay_Click();

  Q_SIGNALS:
    /// A station was chosen in the list.
    void chosen(const QString &code);

  private:
    void layOut();
    void showLengths();
    void showState();
    void row_Click();
    [[nodiscard]] const StationVersion *selected() const;

    std::vector<StationVersion> versions_;
    SoundLengths lengths_;
    std::unique_ptr<Timer> tmrLengths_; ///< as long as files are being measured
    std::unique_ptr<WavePlayer> player_;
    QIcon playIcon_{QStringLiteral(":/icons/play.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
};

} // namespace orvel
