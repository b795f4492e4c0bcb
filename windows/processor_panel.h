#pragma once

#include "settings/settings.h"
#include "widgets/led_spin.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QWidget>

namespace orvel {

/// The studio stages that a take passes through: which are on, and their settings.
class ProcessorPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ProcessorPanel(QWidget *parent = nullptr);

    QCheckBox *chkAmp = nullptr;
    QCheckBox *chkNorm = nullptr;
    QCheckBox *chkTrim = nullptr;
    QCheckBox *chkComp = nullptr;
    QCheckBox *chkReverb = nullptr;
    LedSpin *ledAmp = nullptr;
    LedSpin *ledNorm = nullptr;
    LedSpin *ledTrim = nullptr;
    LedSpin *ledAttack = nullptr;
    LedSpin *ledCompTreshold = nullptr;
    LedSpin *ledCompRate = nullptr;
    LedSpin *ledCompRMS = nullptr;
    LedSpin *ledRevDelay = nullptr;
    LedSpin *ledRevDepth = nullptr;
    LedSpin *ledRevDecay = nullptr;
    LedSpin *ledRevRate = nullptr;

    /// A value outside its knob's limits becomes the limit; gives a sentence that tells it, or nothing. A value that is
    /// missing is 0, and shown so even where a knob begins at 1.
    QString show(const ProcessorSettings &settings);
    using QWidget::show;
    [[nodiscard]] ProcessorSettings settings() const;

  private:
    struct Knob {
        const char *name;
        QString label;
        QString unit;
        int minimum;
        int maximum;
        int step;
        QString toolTip;
    };

    QGroupBox *stage(const QString &caption, const char *checkName, QCheckBox *&check);
    LedSpin *knob(QGroupBox *stage, const Knob &knob);
    void makeLevelStages();
    void makeCompressor();
    void makeReverb();
};

} // namespace orvel
