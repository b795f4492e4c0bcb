#pragma once

#include "recording/take_shelf.h"

#include <QWidget>

class QHBoxLayout;
class QPushButton;
class QToolButton;

namespace orvel {

class DryListening;
class Retouching;
class TakeSession;

/// The takes of the selected step, where there is more than one: a click makes another one the take that is listened to
/// and saved. And what can be done with the take as it was recorded: hearing it beside the processed one, and
/// processing it anew.
class TakesPanel : public QWidget {
    Q_OBJECT

  public:
    TakesPanel(TakeSession &session, Retouching &retouching, DryListening &dry, QWidget *parent = nullptr);

    /// Chooses the take behind the current one.
    QToolButton *const cmdNextTake;
    QPushButton *const cmdDroog; ///< checked while the dry take is heard
    QPushButton *const cmdOpnieuw;

    /// As the session has them.
    void show();
    void cmdNextTake_Click();
    void cmdDroog_Click();
    void cmdOpnieuw_Click();

  private:
    void rebuild();
    void showDry();
    QToolButton *buttonOf(const ShelvedTake &take);

    TakeSession &session_;
    Retouching &retouching_;
    DryListening &dry_;
    std::vector<ShelvedTake> shown_;
    QWidget *choice_; ///< the takes, where there is more than one
    QHBoxLayout *list_;
};

} // namespace orvel
