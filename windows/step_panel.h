#pragma once

#include "widgets/gauge.h"

#include <QLabel>
#include <QWidget>

namespace orvel {

/// What the presenter must know of the selected step while talking: its file name, the talk-over times and the
/// talk-over bar. The grid writes it, the recording session counts the bar down.
class StepPanel : public QWidget {
    Q_OBJECT

  public:
    explicit StepPanel(QWidget *parent = nullptr);

    QLabel *const lblBestand;
    QLabel *const lblOuttro;
    QLabel *const lblIntro;
    QLabel *const lblInOut;
    Gauge *const barRec;

    void showTimes(bool visible);
};

} // namespace orvel
