#include "windows/processor_panel.h"

#include "production/stages.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace orvel {

ProcessorPanel::ProcessorPanel(QWidget *parent) : QWidget(parent) {
    auto *layout = new QHBoxLayout(this);
    layout->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    for (const Stage &stage : stages()) {
        addStage(stage);
    }
}

void ProcessorPanel::addStage(const Stage &stage) {
    const QString caption = QString::fromUtf8(stage.caption);
    auto *frame = new QGroupBox(caption, this);
    auto *grid = new QGridLayout(frame);
    auto *check = new QCheckBox(QStringLiteral("ingeschakeld"), frame);
    check->setObjectName(QString::fromLatin1(stage.checkName));
    check->setAccessibleName(caption + QStringLiteral(" ingeschakeld"));
    grid->addWidget(check, 0, 0, 1, 4);
    grid->setRowStretch(2, 1);
    layout()->addWidget(frame);
    checks_.emplace_back(stage.key, check);
    int column = 0;
    for (const StageKnob &knob : stage.knobs) {
        addKnob(*frame, knob, column++);
    }
}

void ProcessorPanel::addKnob(QGroupBox &frame, const StageKnob &knob, int column) {
    const QString label = QString::fromUtf8(knob.label);
    auto *spin = new LedSpin(&frame);
    spin->setObjectName(QString::fromLatin1(knob.name));
    spin->setAccessibleName(frame.title() + u' ' + label);
    spin->setRange(knob.minimum, knob.maximum);
    spin->setStep(knob.step);
    spin->setDigits(knob.maximum >= 1000 ? 4 : 3);
    spin->setUnit(QString::fromUtf8(knob.unit));
    spin->setToolTip(QString::fromUtf8(knob.toolTip));
    auto *caption = new QLabel(label, &frame);
    caption->setProperty("role", QStringLiteral("muted"));
    auto *grid = qobject_cast<QGridLayout *>(frame.layout());
    grid->addWidget(caption, 1, column);
    grid->addWidget(spin, 2, column, Qt::AlignTop | Qt::AlignLeft);
    knobs_.emplace_back(knob.key, spin);
}

QString ProcessorPanel::show(ProcessorSettings settings) {
    const QString sentence = bringWithinLimits(settings);
    for (const auto &[key, check] : checks_) {
        check->setChecked(settings[key] != 0);
    }
    for (const auto &[key, spin] : knobs_) {
        spin->setValue(settings[key]);
    }
    return sentence;
}

ProcessorSettings ProcessorPanel::settings() const {
    ProcessorSettings settings = processorKeys();
    for (const auto &[key, check] : checks_) {
        settings.set(key, check->isChecked() ? 1 : 0);
    }
    for (const auto &[key, spin] : knobs_) {
        settings.set(key, spin->value());
    }
    return settings;
}

} // namespace orvel
