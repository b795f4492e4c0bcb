#pragma once

#include "settings/settings.h"
#include "widgets/led_spin.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QWidget>

#include <utility>
#include <vector>

namespace orvel {

struct StageKnob;
struct Stage;

/// The studio stages that a take passes through, built from the table of stages: which are on, and their settings.
class ProcessorPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ProcessorPanel(QWidget *parent = nullptr);

    /// Shows the settings, within the knobs' limits; gives a sentence that tells what had to be changed, or nothing.
    QString show(ProcessorSettings settings);
    using QWidget::show;
    [[nodiscard]] ProcessorSettings settings() const;

  private:
    void addStage(const Stage &stage);
    void addKnob(QGroupBox &frame, const StageKnob &knob, int column);

    std::vector<std::pair<const char *, QCheckBox *>> checks_; ///< by key
    std::vector<std::pair<const char *, LedSpin *>> knobs_;    ///< by key
};

} // namespace orvel
