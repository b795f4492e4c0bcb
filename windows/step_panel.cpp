#include "windows/step_panel.h"

#include "playlist/current_step.h"
#include "recording/take_marks.h"
#include "recording/take_picture.h"
#include "widgets/theme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <array>

namespace orvel {

namespace {

template <class Label = QLabel>
Label *label(QWidget *parent, const char *name, const QString &description, const char *role) {
    auto *made = new Label(parent);
    made->setObjectName(QString::fromLatin1(name));
    // What is read out is the text itself.
    made->setAccessibleDescription(description);
    made->setProperty("role", QString::fromLatin1(role));
    return made;
}

QColor colourOf(TalkBar::Colour colour) {
    switch (colour) {
    case TalkBar::Colour::Blue:
        return {0x00, 0x00, 0xFF};
    case TalkBar::Colour::Yellow:
        return {0xFF, 0xFF, 0x00};
    case TalkBar::Colour::Red:
        return {0xFF, 0x00, 0x00};
    }
    return {};
}

/// What the stretches of a take mean: the bar's three meanings, in words and in its colours, light enough to be read.
std::vector<Waveform::Zone> zonesOf(const CurrentStep &step) {
    if (!step.times.visible || step.TalkTotalMs <= 0) {
        return {};
    }
    const double outro = step.PrevOutroMs;
    const double post = step.TalkTotalMs;
    return {{outro, {0x6E, 0x9B, 0xFF}, StepPanel::tr("◀ outro")},
            {post, {0xF2, 0xD2, 0x3C}, StepPanel::tr("▶ intro")},
            {post, {0xFF, 0x5A, 0x4E}, StepPanel::tr("■ te lang")}};
}

} // namespace

StepPanel::StepPanel(const TakePicture &picture, QWidget *parent)
    : QWidget(parent), lblBestand(label(this, "lblBestand", tr("Bestand van de stap"), "title")),
      lblTalk(label(this, "lblTalk", tr("Resterende praattijd"), "title")),
      lblOuttro(label(this, "lblOuttro", tr("Outro van het vorige item"), "value")),
      lblIntro(label(this, "lblIntro", tr("Intro van het volgende item"), "value")),
      lblInOut(label(this, "lblInOut", tr("Totale praattijd"), "value")),
      lblPrevious(label<ElidedLabel>(this, "lblPrevious", tr("Vorig item"), "muted")),
      lblYou(label<ElidedLabel>(this, "lblYou", tr("Praattijd van deze link"), "value")),
      lblNext(label<ElidedLabel>(this, "lblNext", tr("Volgend item"), "muted")), wavTake(new Waveform(this)),
      barRec(new Gauge(this)), picture_(picture) {
    barRec->setObjectName(QStringLiteral("barRec"));
    barRec->setAccessibleName(tr("Praattijd"));
    barRec->setMinimumHeight(fontMetrics().height() * 2);
    wavTake->setObjectName(QStringLiteral("wavTake"));
    wavTake->setAccessibleName(tr("Golfvorm van de opname"));
    wavTake->setSource([this](double from, double to) {
        const auto sample = [this](double ms) { return static_cast<std::int64_t>(ms * picture_.sampleRate() / 1000); };
        const Extent extent = picture_.peaks().between(sample(from), std::max(sample(from) + 1, sample(to)));
        return Waveform::Column{extent.low, extent.high};
    });
    lblBestand->setText(QStringLiteral("geen bestand"));
    layOut();
    show(CurrentStep(), lblBestand->text(), {});
}

void StepPanel::layOut() {
    auto *line = new QHBoxLayout;
    line->setSpacing(fontMetrics().height() * 2);
    line->addWidget(lblBestand);
    line->addWidget(lblTalk);
    line->addStretch();
    for (QLabel *time : {lblOuttro, lblIntro, lblInOut}) {
        line->addWidget(time);
        QSizePolicy keepsItsPlace = time->sizePolicy();
        keepsItsPlace.setRetainSizeWhenHidden(true);
        time->setSizePolicy(keepsItsPlace);
    }
    auto *neighbours = new QHBoxLayout;
    neighbours->addWidget(lblPrevious, 1);
    neighbours->addWidget(lblYou);
    neighbours->addWidget(lblNext, 1);
    lblNext->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(fontMetrics().height() / 4);
    layout->addLayout(line);
    layout->addLayout(neighbours);
    layout->addWidget(wavTake, 1);
    layout->addWidget(barRec);
}

void StepPanel::show(const CurrentStep &step, const QString &fileName, const Neighbours &neighbours) {
    lblBestand->setText(fileName);
    lblOuttro->setText(step.times.lblOuttro);
    lblIntro->setText(step.times.lblIntro);
    lblInOut->setText(step.times.lblInOut);
    for (QLabel *label : {lblOuttro, lblIntro, lblInOut}) {
        label->setVisible(step.times.visible);
    }
    lblPrevious->setText(neighbours.previous);
    lblYou->setText(neighbours.talk);
    lblNext->setText(neighbours.next);
    wavTake->setZones(zonesOf(step));
    wavTake->setAxis(step.times.visible ? step.TalkTotalMs : 0);
    showBar(step);
}

void StepPanel::setDense(bool dense) {
    for (QWidget *label : std::array<QWidget *, 3>{lblPrevious, lblYou, lblNext}) {
        label->setVisible(!dense);
    }
    const int low = barRec->minimumSizeHint().height();
    barRec->setMinimumHeight(dense ? low : fontMetrics().height() * 2);
    barRec->setMaximumHeight(dense ? low : QWIDGETSIZE_MAX);
}

void StepPanel::showPicture() {
    wavTake->setLength(picture_.lengthMs());
}

void StepPanel::showMarks(const TakeMarks &marks) {
    std::vector<Waveform::Stretch> speech;
    for (const SpeechTimes &one : marks.speech) {
        speech.push_back({static_cast<double>(one.begin), static_cast<double>(one.end)});
    }
    wavTake->setMarks(std::move(speech), {marks.clips.begin(), marks.clips.end()});
    const QString words = marksInWords(marks);
    if (words != wavTake->toolTip()) {
        wavTake->setToolTip(words);
        wavTake->setAccessibleDescription(words);
    }
}

void StepPanel::showPhase(const TalkPhase &phase) {
    const bool isTooLong = phase.part == TalkPhase::Part::TooLong;
    if (lblTalk->property("urgent").toString() != QVariant(isTooLong).toString()) {
        setStyleProperty(*lblTalk, "urgent", QVariant(isTooLong).toString());
    }
    lblTalk->setText(phase.words);
}

void StepPanel::showBar(const CurrentStep &step) {
    barRec->setMaximum(step.barRec.maximum);
    barRec->setValue(step.barRec.value);
    barRec->setBarColour(colourOf(step.barRec.colour));
}

} // namespace orvel
