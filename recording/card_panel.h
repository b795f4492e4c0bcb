#pragma once

#include "platform/platform.h"
#include "widgets/level_meter.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>

#include <vector>

namespace orvel {

/// The choice of the recording card and the names of its input lines.
class CardPanel : public QWidget {
    Q_OBJECT

  public:
    explicit CardPanel(Platform &platform, QWidget *parent = nullptr);

    QComboBox *const cobKaart;
    QGroupBox *const Frame14;

    /// Fills the list with the cards that can record; the current card stays current.
    void listCards();
    /// Selects a list position; one that is not in the list selects the first card.
    void selectCard(int position);
    void cobKaart_Click();
    /// Shows the first count lines of the current card.
    void BuildMixerStrips(int count);
    /// Input lines of the current card, seven at most.
    [[nodiscard]] int lineCount() const;

  private:
    Platform &platform_;
    std::vector<QLabel *> strips_;
};

/// The level meters of the two channels with their scale.
class MeterPanel : public QWidget {
    Q_OBJECT

  public:
    explicit MeterPanel(QWidget *parent = nullptr);

    LevelMeter *const levLeft;
    LevelMeter *const levRight;

    /// A mono level, shown on both.
    void setLevel(float peak);
};

} // namespace orvel
