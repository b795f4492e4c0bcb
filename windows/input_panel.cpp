#include "windows/input_panel.h"

#include "widgets/theme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace orvel {

namespace {

/// A sign and a word: never the colour alone.
QString verdictCaption(InputVerdict verdict) {
    switch (verdict) {
    case InputVerdict::Silent:
        return QStringLiteral("\u25CB ") + InputPanel::tr("stil");
    case InputVerdict::TooSoft:
        return QStringLiteral("\u25BC ") + InputPanel::tr("te zacht");
    case InputVerdict::Good:
        return QStringLiteral("\u2713 ") + InputPanel::tr("goed");
    case InputVerdict::TooLoud:
        return QStringLiteral("\u25B2 ") + InputPanel::tr("te luid");
    case InputVerdict::Unknown:
        break;
    }
    return {};
}

/// The place of a label as wide as its widest caption, so that nothing beside it moves.
void keepWidth(QLabel &label) {
    label.ensurePolished();
    int width = 0;
    for (const InputVerdict verdict :
         {InputVerdict::Silent, InputVerdict::TooSoft, InputVerdict::Good, InputVerdict::TooLoud}) {
        QFont bold = label.font();
        bold.setBold(true);
        width = std::max(width, QFontMetrics(bold).horizontalAdvance(verdictCaption(verdict)));
    }
    label.setMinimumWidth(width + label.fontMetrics().averageCharWidth());
}

} // namespace

InputPanel::InputPanel(QWidget *parent)
    : QWidget(parent), lblInput(new QLabel(this)), ledClip(new Lamp(this)),
      lblClip(new QLabel(tr("overstuurd"), this)) {
    lblInput->setObjectName(QStringLiteral("lblInput"));
    lblInput->setAccessibleDescription(tr("Niveau van de microfoon"));
    setStyleProperty(*lblInput, "role", QStringLiteral("value"));
    keepWidth(*lblInput);
    ledClip->setObjectName(QStringLiteral("ledClip"));
    ledClip->setAccessibleName(tr("Overstuurd"));
    ledClip->setToolTip(tr("De laatste opname was ergens te luid"));
    lblClip->setObjectName(QStringLiteral("lblClip"));
    setStyleProperty(*lblClip, "role", QStringLiteral("attention"));
    auto *clip = new QHBoxLayout;
    clip->addWidget(ledClip);
    clip->addWidget(lblClip);
    clip->addStretch();
    for (QWidget *part : std::array<QWidget *, 2>{ledClip, lblClip}) {
        QSizePolicy keepsItsPlace = part->sizePolicy();
        keepsItsPlace.setRetainSizeWhenHidden(true);
        part->setSizePolicy(keepsItsPlace);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(lblInput);
    layout->addLayout(clip);
    show(InputVerdict::Unknown, false);
}

void InputPanel::show(InputVerdict verdict, bool hasClipped) {
    lblInput->setText(verdictCaption(verdict));
    setStyleProperty(*lblInput, "role",
                     verdict == InputVerdict::TooLoud ? QStringLiteral("attention") : QStringLiteral("value"));
    ledClip->setLit(hasClipped);
    ledClip->setVisible(hasClipped);
    lblClip->setVisible(hasClipped);
}

} // namespace orvel
