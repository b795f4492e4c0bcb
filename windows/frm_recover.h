#pragma once

#include "platform/platform.h"
#include "platform/wave_player.h"
#include "station/restoring.h"

#include <QDialog>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include <functional>
#include <memory>

namespace orvel {

/// What the window needs of the rest of the program; all of it outlives the window.
struct RecoverContext {
    SoundCard &sound;
    RestoringContext restoring;
    /// A file was put back; replaced: in the place of another one.
    std::function<void(const KeptFile &kept, bool replaced)> putBack;
};

/// Shows what the recovery folder keeps, lets the presenter listen to it, and puts it back.
class frmRecover : public QDialog {
    Q_OBJECT

  public:
    explicit frmRecover(RecoverContext context, QWidget *parent = nullptr);

    QTableWidget *const lstKept; ///< kind, name, time; what was kept last stands first
    QLabel *const lblResult;
    QPushButton *const cmdPlay;
    QPushButton *const cmdTerug;
    QPushButton *const cmdQuit;

    /// Called each time before the window opens.
    void Form_Load();
    void cmdPlay_Click();
    void cmdTerug_Click();
    void cmdQuit_Click() { reject(); }
    void done(int result) override;

  private:
    void layOut();
    void fill();
    void showState();
    /// The selected one; null without a selection.
    [[nodiscard]] const KeptFile *selected() const;
    void player_End();

    RecoverContext context_;
    Restoring restoring_;
    std::vector<KeptFile> kept_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon playIcon_{QStringLiteral(":/icons/play.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
    std::unique_ptr<WavePlayer> player_;
};

} // namespace orvel
