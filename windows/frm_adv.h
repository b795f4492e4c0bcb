#pragma once

#include "platform/audio.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

namespace orvel {

/// The properties that a card offers for the selected input line beyond volume and balance, one at a time. What the
/// card does not take snaps back without a word.
class frmAdv : public QDialog {
    Q_OBJECT

  public:
    /// The recorder outlives the window.
    explicit frmAdv(AudioRecord &AudioRecord1, QWidget *parent = nullptr);

    QComboBox *const Combo1;
    QCheckBox *const Check1;
    QSlider *const Slider1;
    QLabel *const lblValue; ///< what Slider1 stands at
    QLabel *const lblNone;  ///< says that the line has no properties
    QPushButton *const cmdClose;

    /// Takes over the selected line; called each time before the window opens.
    void Form_Load();
    void Combo1_Click();
    void Check1_Click();
    void Slider1_Change();

  private:
    void layOut();
    /// An empty window that says why.
    void showNothing();
    /// Shows the selected property as the recorder has it now.
    void showProperty();
    void showNumber(const LineProperty &property);
    void write(const QVariant &value);

    AudioRecord &AudioRecord1_;
};

} // namespace orvel
