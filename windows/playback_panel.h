#pragma once

#include <QIcon>
#include <QPushButton>

namespace orvel {

class Listening;
class TakeSession;

/// The button that plays the selected step's take.
class PlaybackPanel : public QWidget {
    Q_OBJECT

  public:
    PlaybackPanel(Listening &listening, const TakeSession &session, QWidget *parent = nullptr);

    QPushButton *const cmdPlay;

    /// The button's caption as the session has it.
    void show();
    void cmdPlay_Click();

  private:
    Listening &listening_;
    const TakeSession &session_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon listenIcon_{QStringLiteral(":/icons/listen.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
};

} // namespace orvel
