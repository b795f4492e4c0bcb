#pragma once

#include "recording/take_shelf.h"

#include <QWidget>

class QHBoxLayout;
class QToolButton;

namespace orvel {

class TakeSession;

/// The takes of the selected step, where there is more than one: a click makes another one the take that is listened to
/// and saved.
class TakesPanel : public QWidget {
    Q_OBJECT

  public:
    explicit TakesPanel(TakeSession &session, QWidget *parent = nullptr);

    /// Chooses the take behind the current one.
    QToolButton *const cmdNextTake;

    /// As the session has them.
    void show();
    void cmdNextTake_Click();

  private:
    void rebuild();
    QToolButton *buttonOf(const ShelvedTake &take);

    TakeSession &session_;
    std::vector<ShelvedTake> shown_;
    QHBoxLayout *list_;
};

} // namespace orvel
