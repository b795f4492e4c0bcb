#pragma once

#include "platform/join_player.h"
#include "recording/join_files.h"

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <optional>

namespace orvel {

class Playlist;
class TakeSession;
struct CurrentStep;
struct Platform;

/// What listening to joins needs of the rest of the program; all of it outlives it.
struct JoinListeningContext {
    Platform &platform;
    const Playlist &playlist;
    const CurrentStep &step;
    const JoinFiles &files;
    TakeSession &session;
    std::function<void(int row)> showRow;
    std::function<void(const QString &sentence)> tell;
};

/// In verband: the selected take between its neighbours, as it will be on air. Hele uur: every take of the playlist
/// like that, one after the other.
class JoinListening {
    Q_DECLARE_TR_FUNCTIONS(JoinListening)

  public:
    explicit JoinListening(JoinListeningContext context);

    void setOutput(const PlayerSettings &output) { player_->setOutput(output); }
    /// Captions of the two buttons; the one whose playing runs stops it.
    [[nodiscard]] QString contextCaption() const;
    [[nodiscard]] QString hourCaption() const;
    /// Start, or stop whatever plays. Throw what the player throws; the desk is idle then.
    void cmdInVerband_Click();
    void cmdHeleUur_Click();

  private:
    [[nodiscard]] bool isPlaying() const;
    bool play(int row);
    void playNext(int row);
    void ended();
    void stop();
    void endHour();

    JoinListeningContext context_;
    std::unique_ptr<JoinPlayer> player_;
    /// The hour that plays.
    struct Hour {
        QString playlist; ///< its path
        int row = 0;      ///< that is heard
        int skipped = 0;  ///< slots without a take
    };
    std::optional<Hour> hour_;
};

} // namespace orvel
