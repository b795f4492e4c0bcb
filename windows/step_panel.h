#pragma once

#include "widgets/gauge.h"

#include <QLabel>
#include <QWidget>

namespace orvel {

struct CurrentStep;

/// What the presenter must know of the selected step while talking: its file name, the talk-over times and the
/// talk-over bar.
class StepPanel : public QWidget {
    Q_OBJECT

  public:
    explicit StepPanel(QWidget *parent = nullptr);

    QLabel *const lblBestand;
    QLabel *const lblOuttro;
    QLabel *const lblIntro;
    QLabel *const lblInOut;
    Gauge *const barRec;

    /// fileName: what lblBestand shows.
    void show(const CurrentStep &step, const QString &fileName);
    using QWidget::show;
    /// The bar alone: this runs a hundred times a second.
    void showBar(const CurrentStep &step);
};

} // namespace orvel
