#include "windows/playback_panel.h"

#include "recording/listening.h"
#include "recording/take_session.h"
#include "windows/on.h"

#include <QHBoxLayout>

namespace orvel {

PlaybackPanel::PlaybackPanel(Listening &listening, const TakeSession &session, QWidget *parent)
    : QWidget(parent), cmdPlay(new QPushButton(listening.caption(), this)), listening_(listening), session_(session) {
    cmdPlay->setObjectName(QStringLiteral("cmdPlay"));
    cmdPlay->setIcon(listenIcon_);
    cmdPlay->setToolTip(QStringLiteral("Beluister opname"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdPlay);
    layout->addStretch();
    on(cmdPlay, &QPushButton::clicked, this, &PlaybackPanel::cmdPlay_Click);
}

void PlaybackPanel::cmdPlay_Click() {
    listening_.cmdPlay_Click();
}

void PlaybackPanel::show() {
    if (cmdPlay->text() != listening_.caption()) {
        cmdPlay->setText(listening_.caption());
        cmdPlay->setIcon(session_.state() == SessionState::Listening ? stopIcon_ : listenIcon_);
    }
}

} // namespace orvel
