#include "windows/join_panel.h"

#include "recording/allowed.h"
#include "recording/join_listening.h"
#include "recording/talk_along.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QHBoxLayout>

namespace orvel {

namespace {

constexpr int fullVolume = 65535;

void setIfOther(QPushButton &button, const QString &caption) {
    if (button.text() != caption) {
        button.setText(caption);
    }
}

} // namespace

JoinPanel::JoinPanel(JoinListening &joins, TalkAlong &along, QWidget *parent)
    : QWidget(parent),
      cmdInVerband(namedButton(this, "cmdInVerband", joins.contextCaption(),
                               tr("Hoor de opname tussen het vorige en het volgende item"), ":/icons/listen.svg")),
      cmdHeleUur(namedButton(this, "cmdHeleUur", joins.hourCaption(),
                             tr("Hoor alle links van de playlist na elkaar in verband"), ":/icons/listen.svg")),
      chkMeeluisteren(named(new QCheckBox(tr("Meeluisteren"), this), "chkMeeluisteren", tr("Meeluisteren"))),
      sldMeeluisteren(named(new QSlider(Qt::Horizontal, this), "sldMeeluisteren", tr("Volume van het meeluisteren"))),
      lblMeeluisteren(new QLabel(this)), joins_(joins), along_(along) {
    lblMeeluisteren->setObjectName(QStringLiteral("lblMeeluisteren"));
    lblMeeluisteren->setProperty("role", QStringLiteral("muted"));
    layOut();
    on(cmdInVerband, &QPushButton::clicked, this, &JoinPanel::cmdInVerband_Click);
    on(cmdHeleUur, &QPushButton::clicked, this, &JoinPanel::cmdHeleUur_Click);
    on(chkMeeluisteren, &QCheckBox::clicked, this, &JoinPanel::chkMeeluisteren_Click);
    on(sldMeeluisteren, &QSlider::valueChanged, this, &JoinPanel::sldMeeluisteren_Change);
}

void JoinPanel::layOut() {
    sldMeeluisteren->setRange(0, 100);
    sldMeeluisteren->setPageStep(10);
    sldMeeluisteren->setFixedWidth(fontMetrics().averageCharWidth() * 10);
    for (QPushButton *button : {cmdInVerband, cmdHeleUur}) {
        button->setProperty("role", QStringLiteral("low"));
    }
    sldMeeluisteren->setToolTip(tr("Hoe luid het vorige en het volgende item bij de opname te horen zijn"));
    // It gives way to everything else: the whole of it is its tooltip, and the status line tells what matters.
    lblMeeluisteren->setMinimumWidth(1);
    lblMeeluisteren->setMaximumWidth(remarkWidth());
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdInVerband);
    layout->addWidget(cmdHeleUur);
    layout->addSpacing(fontMetrics().height());
    layout->addWidget(chkMeeluisteren);
    layout->addWidget(sldMeeluisteren);
    layout->addWidget(lblMeeluisteren, 1);
}

void JoinPanel::setDense(bool dense) {
    for (QPushButton *button : {cmdInVerband, cmdHeleUur}) {
        button->setIcon(dense ? QIcon() : QIcon(QStringLiteral(":/icons/listen.svg")));
    }
    sldMeeluisteren->setFixedWidth(fontMetrics().averageCharWidth() * (dense ? 5 : 10));
    lblMeeluisteren->setHidden(dense); // what it says is the tooltip of the switch too
}

int JoinPanel::remarkWidth() const {
    return fontMetrics().averageCharWidth() * 28;
}

void JoinPanel::show(const Allowed &may) {
    cmdInVerband->setEnabled(may.cmdInVerband);
    cmdHeleUur->setEnabled(may.cmdHeleUur);
    setIfOther(*cmdInVerband, joins_.contextCaption());
    setIfOther(*cmdHeleUur, joins_.hourCaption());
    const bool isPossible = along_.isPossible();
    const QString remark = along_.remark();
    chkMeeluisteren->setEnabled(isPossible);
    chkMeeluisteren->setChecked(isPossible && along_.isOn());
    chkMeeluisteren->setToolTip(
        remark.isEmpty() ? tr("Hoor het vorige en het volgende item bij het inspreken. Gebruik een koptelefoon.")
                         : remark);
    chkMeeluisteren->setAccessibleDescription(remark);
    sldMeeluisteren->setEnabled(isPossible && along_.isOn());
    sldMeeluisteren->setValue((along_.volume() * 100 + fullVolume / 2) / fullVolume);
    lblMeeluisteren->setText(fontMetrics().elidedText(remark, Qt::ElideRight, remarkWidth()));
    lblMeeluisteren->setAccessibleName(remark);
    lblMeeluisteren->setToolTip(remark);
}

void JoinPanel::cmdInVerband_Click() {
    joins_.cmdInVerband_Click();
}

void JoinPanel::cmdHeleUur_Click() {
    joins_.cmdHeleUur_Click();
}

void JoinPanel::chkMeeluisteren_Click() {
    along_.setOn(chkMeeluisteren->isChecked());
}

void JoinPanel::sldMeeluisteren_Change() {
    if (const int volume = sldMeeluisteren->value(); volume != (along_.volume() * 100 + fullVolume / 2) / fullVolume) {
        along_.setVolume(volume * fullVolume / 100);
    }
}

} // namespace orvel
