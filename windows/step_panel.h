#pragma once

#include "recording/talk_words.h"
#include "widgets/elided_label.h"
#include "widgets/gauge.h"
#include "widgets/waveform.h"

#include <QLabel>
#include <QWidget>

namespace orvel {

class TakePicture;
struct TakeMarks;
struct CurrentStep;

/// What the presenter must know of the selected step while talking: its file name, the talk-over times, what stands
/// before and behind it, the take's outline and the talk-over bar.
class StepPanel : public QWidget {
    Q_OBJECT

  public:
    explicit StepPanel(const TakePicture &picture, QWidget *parent = nullptr);

    QLabel *const lblBestand;
    QLabel *const lblTalk; ///< how much is left, or too long
    QLabel *const lblOuttro;
    QLabel *const lblIntro;
    QLabel *const lblInOut;
    ElidedLabel *const lblPrevious;
    ElidedLabel *const lblYou;
    ElidedLabel *const lblNext;
    Waveform *const wavTake;
    Gauge *const barRec;

    /// fileName: what lblBestand shows.
    void show(const CurrentStep &step, const QString &fileName, const Neighbours &neighbours);
    using QWidget::show;
    /// There is more of the take's outline, or another one.
    void showPicture();
    /// Where there is speech in the take, and where it was too loud.
    void showMarks(const TakeMarks &marks);
    /// Without the neighbours, which the grid shows too, and with a lower bar.
    void setDense(bool dense);
    void showPhase(const TalkPhase &phase);
    /// The bar alone: this runs a hundred times a second.
    void showBar(const CurrentStep &step);

  private:
    void layOut();

    const TakePicture &picture_;
};

} // namespace orvel
