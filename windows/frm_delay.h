#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace orvel {

class DelayMeasurement;

/// Measures how much later the recording card hears what the output plays: what to do first, how it goes, and what came
/// of it. Closing the window stops a measurement that runs.
class frmDelay : public QDialog {
    Q_OBJECT

  public:
    /// The measurement outlives the window.
    explicit frmDelay(DelayMeasurement &delay, QWidget *parent = nullptr);

    QLabel *const lblCard; ///< which card, and what was measured of it
    QLabel *const lblDelay;
    QProgressBar *const prgDelay;
    QPushButton *const cmdMeasure; ///< starts, or stops what runs
    QPushButton *const cmdQuit;

    /// Called each time before the window opens.
    void Form_Load();
    /// How far it is, and what there is to say.
    void showProgress();
    void cmdMeasure_Click();
    void done(int result) override;

  private:
    void layOut();

    DelayMeasurement &delay_;
};

} // namespace orvel
