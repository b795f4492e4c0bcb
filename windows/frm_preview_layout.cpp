// How the preview window is put together.
#include "windows/frm_preview.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

void frmPreview::layOut() {
    const int line = fontMetrics().height();
    for (LedLabel *label : {ledTitle, ledArtist}) {
        label->setCharacters(24);
        label->setScrollSpeed(200);
        label->setMinimumHeight(line * 2);
    }
    ledArtist->setColour(QColor(0xFF, 0xDD, 0x33));
    lblProblem->setProperty("role", QStringLiteral("attention"));
    lblProblem->setObjectName(QStringLiteral("lblProblem"));
    lblProblem->setWordWrap(true);
    lblProblem->setMinimumHeight(line);
    sliPlay->setRange(0, 0);
    sliPlay->setSingleStep(1000);
    sliPlay->setPageStep(10000);
    volCue->setFixedSize(line * 5, line * 5);
    playButton->setProperty("role", QStringLiteral("primary"));
    playButton->setDefault(true);
    stopButton->setAutoDefault(false);

    auto *buttons = new QHBoxLayout(cmdPlay);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addWidget(playButton);
    buttons->addWidget(pauseButton);
    buttons->addWidget(stopButton);
    // The button is as wide as the wider of its captions.
    pauseButton->ensurePolished();
    pauseButton->setMinimumWidth(pauseButton->sizeHint().width() + fontMetrics().averageCharWidth());

    auto *scale = new LevelScale(this);
    scale->setObjectName(QStringLiteral("MMLevelScaleX1"));
    auto *meters = new QVBoxLayout;
    meters->setSpacing(2);
    meters->addWidget(MMLevelX1);
    meters->addWidget(scale);
    meters->addWidget(MMLevelX2);

    auto *volumeCaption = new QLabel(tr("Volume"), this);
    volumeCaption->setProperty("role", QStringLiteral("muted"));
    volumeCaption->setAlignment(Qt::AlignCenter);
    auto *volume = new QVBoxLayout;
    volume->addStretch();
    volume->addWidget(volCue, 0, Qt::AlignCenter);
    volume->addWidget(volumeCaption);
    volume->addStretch();

    auto *controls = new QHBoxLayout;
    controls->addWidget(cmdPlay);
    controls->addStretch();
    controls->addWidget(timePanels());

    auto *left = new QVBoxLayout;
    left->setSpacing(line / 2);
    left->addWidget(ledTitle);
    left->addWidget(ledArtist);
    left->addWidget(sliPlay);
    left->addLayout(controls);

    auto *top = new QHBoxLayout;
    top->setSpacing(line);
    top->addLayout(left, 1);
    top->addLayout(volume);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(line / 2, line / 2, line / 2, line / 2);
    all->setSpacing(line / 2);
    all->addLayout(top);
    all->addLayout(meters);
    all->addWidget(lblProblem);
}

QWidget *frmPreview::timePanels() {
    auto *group = new QWidget(this);
    auto *grid = new QGridLayout(group);
    grid->setContentsMargins(0, 0, 0, 0);
    const std::array panels = {std::pair{lcdMin, tr("min")}, std::pair{lcdSec, tr("sec")},
                               std::pair{lcdMsec, tr("ms")}};
    lcdMsec->setMinimumWidth(lcdMsec->sizeHint().width() * 3 / 2);
    auto *kind = new QLabel(tr("nog"), group);
    kind->setObjectName(QStringLiteral("lblNog"));
    kind->setToolTip(tr("Zo lang is er nog te horen"));
    grid->addWidget(kind, 0, 0, Qt::AlignVCenter | Qt::AlignRight);
    int column = 1;
    for (const auto &[display, unit] : panels) {
        auto *caption = new QLabel(unit, group);
        caption->setProperty("role", QStringLiteral("muted"));
        caption->setAlignment(Qt::AlignCenter);
        display->setMinimumHeight(fontMetrics().height() * 2);
        grid->addWidget(display, 0, column);
        grid->addWidget(caption, 1, column);
        ++column;
    }
    return group;
}

} // namespace orvel
