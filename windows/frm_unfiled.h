#pragma once

#include "platform/wave_player.h"
#include "production/unfinished.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

class SoundCard;

/// The takes that were recorded and not filed when the program started: each can be listened to, filed for its own
/// step, or left where it is.
class frmUnfiled : public QDialog {
    Q_OBJECT

  public:
    /// save: files a take; false when it is still waiting.
    frmUnfiled(SoundCard &sound, const PlayerSettings &output, std::vector<UnfiledTake> takes,
               std::function<bool(const UnfiledTake &take)> save, QWidget *parent = nullptr);

    QTableWidget *const lstTakes;
    QPushButton *const cmdPlay;
    QPushButton *const cmdSave;
    QPushButton *const cmdLeave;
    QLabel *const lblResult;

    void cmdPlay_Click();
    void cmdSave_Click();
    void cmdLeave_Click() { close(); }

    void done(int result) override;

  private:
    void layOut();
    void fill();
    void showState();
    void player_End();
    [[nodiscard]] int row() const { return lstTakes->currentRow(); }

    std::vector<UnfiledTake> takes_;
    std::function<bool(const UnfiledTake &take)> save_;
    std::unique_ptr<WavePlayer> player_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon playIcon_{QStringLiteral(":/icons/play.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
};

} // namespace orvel
