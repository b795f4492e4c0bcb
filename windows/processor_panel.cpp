#include "windows/processor_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace orvel {

ProcessorPanel::ProcessorPanel(QWidget *parent) : QWidget(parent) {
    auto *layout = new QHBoxLayout(this);
    layout->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    makeLevelStages();
    makeCompressor();
    makeReverb();
}

QGroupBox *ProcessorPanel::stage(const QString &caption, const char *checkName, QCheckBox *&check) {
    auto *frame = new QGroupBox(caption, this);
    auto *grid = new QGridLayout(frame);
    check = new QCheckBox(QStringLiteral("ingeschakeld"), frame);
    check->setObjectName(QString::fromLatin1(checkName));
    check->setAccessibleName(caption + QStringLiteral(" ingeschakeld"));
    grid->addWidget(check, 0, 0, 1, 4);
    grid->setRowStretch(2, 1);
    layout()->addWidget(frame);
    return frame;
}

LedSpin *ProcessorPanel::knob(QGroupBox *stage, const Knob &knob) {
    auto *spin = new LedSpin(stage);
    spin->setObjectName(QString::fromLatin1(knob.name));
    spin->setAccessibleName(stage->title() + u' ' + knob.label);
    spin->setRange(knob.minimum, knob.maximum);
    spin->setStep(knob.step);
    spin->setDigits(knob.maximum >= 1000 ? 4 : 3);
    spin->setUnit(knob.unit);
    spin->setToolTip(knob.toolTip);
    auto *caption = new QLabel(knob.label, stage);
    caption->setProperty("role", QStringLiteral("muted"));
    auto *grid = qobject_cast<QGridLayout *>(stage->layout());
    const int column = static_cast<int>(stage->findChildren<LedSpin *>().size()) - 1;
    grid->addWidget(caption, 1, column);
    grid->addWidget(spin, 2, column, Qt::AlignTop | Qt::AlignLeft);
    return spin;
}

void ProcessorPanel::makeLevelStages() {
    const QString dB = QStringLiteral("dB");
    const QString ms = QStringLiteral("ms");
    QGroupBox *amp = stage(QStringLiteral("Versterking"), "chkAmp", chkAmp);
    ledAmp = knob(amp, {"ledAmp", tr("Niveau"), dB, -15, 15, 1, tr("Maakt de opname luider of stiller")});
    QGroupBox *norm = stage(QStringLiteral("Normalisatie"), "chkNorm", chkNorm);
    ledNorm = knob(norm, {"ledNorm", tr("Niveau"), QStringLiteral("%"), 0, 100, 1,
                          tr("Brengt de luidste piek op dit deel van het maximum")});
    QGroupBox *trim = stage(QStringLiteral("Trimmen"), "chkTrim", chkTrim);
    ledTrim = knob(trim, {"ledTrim", tr("Drempel"), dB, -90, 0, 1,
                          tr("Stilte onder dit niveau wordt aan begin en einde weggeknipt")});
    ledAttack =
        knob(trim, {"ledAttack", QStringLiteral("Attack"), ms, 0, 1000, 10, tr("Wordt bij de instellingen bewaard")});
}

void ProcessorPanel::makeCompressor() {
    QGroupBox *comp = stage(QStringLiteral("Compressor"), "chkComp", chkComp);
    ledCompTreshold = knob(comp, {"ledCompTreshold", QStringLiteral("Treshold"), QStringLiteral("dB"), -96, 0, 1,
                                  tr("Vanaf dit niveau wordt het geluid samengedrukt")});
    ledCompRate = knob(comp, {"ledCompRate", QStringLiteral("Rate"), QStringLiteral("%"), 1, 100, 1,
                              tr("Hoe sterk er wordt samengedrukt: 100 is een begrenzer")});
    ledCompRMS = knob(comp, {"ledCompRMS", QStringLiteral("RMStime"), QStringLiteral("ms"), 0, 1000, 10,
                             tr("Wordt bij de instellingen bewaard")});
}

void ProcessorPanel::makeReverb() {
    const QString percent = QStringLiteral("%");
    QGroupBox *reverb = stage(QStringLiteral("Reverb"), "chkReverb", chkReverb);
    ledRevDelay = knob(reverb, {"ledRevDelay", QStringLiteral("Delay"), QStringLiteral("ms"), 0, 1000, 10,
                                tr("Tijd tot de eerste weerkaatsing")});
    ledRevDepth = knob(
        reverb, {"ledRevDepth", QStringLiteral("Depth"), percent, 1, 100, 1, tr("Aandeel van de galm in het geluid")});
    ledRevDecay =
        knob(reverb, {"ledRevDecay", QStringLiteral("Decay"), percent, 1, 100, 1, tr("Hoe lang de galm naklinkt")});
    ledRevRate =
        knob(reverb, {"ledRevRate", QStringLiteral("Rate"), percent, 1, 100, 1, tr("Hoe levendig de galm beweegt")});
}

QString ProcessorPanel::show(const ProcessorSettings &settings) {
    QStringList changed;
    const auto turn = [&changed](LedSpin *spin, int wanted) {
        const int value = wanted == 0 ? 0 : std::clamp(wanted, spin->minimum(), spin->maximum());
        if (value != wanted) {
            changed << tr("%1 van %2 naar %3").arg(spin->accessibleName()).arg(wanted).arg(value);
        }
        spin->setValue(value);
    };
    chkAmp->setChecked(settings.chkAmp != 0);
    turn(ledAmp, settings.ledAmp);
    chkNorm->setChecked(settings.chkNorm != 0);
    turn(ledNorm, settings.ledNorm);
    chkTrim->setChecked(settings.chkTrim != 0);
    turn(ledTrim, settings.ledTrim);
    turn(ledAttack, settings.ledAttack);
    chkComp->setChecked(settings.chkComp != 0);
    turn(ledCompTreshold, settings.ledCompTreshold);
    turn(ledCompRate, settings.ledCompRate);
    turn(ledCompRMS, settings.ledCompRMS);
    chkReverb->setChecked(settings.chkReverb != 0);
    turn(ledRevDelay, settings.ledRevDelay);
    turn(ledRevDepth, settings.ledRevDepth);
    turn(ledRevDecay, settings.ledRevDecay);
    turn(ledRevRate, settings.ledRevRate);
    return changed.isEmpty() ? QString()
                             : tr("Buiten de grenzen in orvel.ini: %1.").arg(changed.join(QStringLiteral(", ")));
}

ProcessorSettings ProcessorPanel::settings() const {
    ProcessorSettings settings;
    settings.chkAmp = chkAmp->isChecked() ? 1 : 0;
    settings.ledAmp = ledAmp->value();
    settings.chkNorm = chkNorm->isChecked() ? 1 : 0;
    settings.ledNorm = ledNorm->value();
    settings.chkTrim = chkTrim->isChecked() ? 1 : 0;
    settings.ledTrim = ledTrim->value();
    settings.ledAttack = ledAttack->value();
    settings.chkComp = chkComp->isChecked() ? 1 : 0;
    settings.ledCompTreshold = ledCompTreshold->value();
    settings.ledCompRate = ledCompRate->value();
    settings.ledCompRMS = ledCompRMS->value();
    settings.chkReverb = chkReverb->isChecked() ? 1 : 0;
    settings.ledRevDelay = ledRevDelay->value();
    settings.ledRevDepth = ledRevDepth->value();
    settings.ledRevDecay = ledRevDecay->value();
    settings.ledRevRate = ledRevRate->value();
    return settings;
}

} // namespace orvel
