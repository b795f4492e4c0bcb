#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "recording/cards.h"
#include "widgets/level_meter.h"
#include "windows/mixer_strip.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

class DelayMeasurement;

/// The choice of the recording card, and its mixer: one strip an input line. Follows cards that come and go and volumes
/// that somebody else moves.
class CardPanel : public QWidget {
    Q_OBJECT

  public:
    CardPanel(Platform &platform, const DelayMeasurement &delay, std::function<void(const QString &)> tell,
              QWidget *parent = nullptr);

    QComboBox *const cobKaart;
    QLabel *const lblDelay;      ///< what was measured of the card
    QPushButton *const cmdDelay; ///< measures it
    QGroupBox *const Frame14;

    /// Fills the list with the cards that can record; the current card stays current.
    void listCards();
    /// Selects the stored card or, when it is not there, the first one, which is told.
    void selectCard(const StoredCard &card);
    /// What to store: the card that was chosen last, also while it is away.
    [[nodiscard]] const StoredCard &chosenCard() const { return choice_.toStore(); }
    void cobKaart_Click();
    /// What was measured of the card that records, and whether it can be measured now.
    void showDelay(bool canMeasure);
    /// Fills the strips of the first count lines of the current card.
    void BuildMixerStrips(int count);
    void slVolume_Change(int index);
    void slBalance_Change(int index);
    void chSelect_MouseUp(int index);
    /// Selects an input line and asks for its advanced properties.
    void cmdAdvanced_Click(int index);
    /// Input lines of the current card, seven at most.
    [[nodiscard]] int lineCount() const;
    /// Strip of an input line, from 1.
    [[nodiscard]] MixerStrip &strip(int index) { return *strips_.at(static_cast<std::size_t>(index - 1)); }
    /// From now on the list and the strips follow what is plugged in.
    void watch() { tmrCards_->setEnabled(true); }

  Q_SIGNALS:
    void advancedWanted();
    void delayWanted();

  private:
    void makeStrips();
    void connectStrip(int index);
    void showLine(int index);
    void lookForChanges();
    void followCards();
    /// Shows a position of the list without choosing it; -1 for none.
    void show(int position);
    /// Records from the selected card, and shows its lines.
    void useCard();

    Platform &platform_;
    const DelayMeasurement &delay_;
    std::function<void(const QString &)> tell_;
    std::unique_ptr<Timer> tmrCards_;
    std::vector<MixerStrip *> strips_;
    std::int16_t LineCount = 0;
    std::vector<ListedCard> cards_; ///< as the list shows them
    CardChoice choice_;
};

/// The level meters of the two channels with their scale.
class MeterPanel : public QWidget {
    Q_OBJECT

  public:
    explicit MeterPanel(QWidget *parent = nullptr);

    LevelMeter *const levLeft;
    LevelMeter *const levRight;

    /// Highest samples since the last look, 0..1.
    void setLevels(float left, float right);
    /// Without the scale.
    void setDense(bool dense) { scale_->setVisible(!dense); }
    /// A mono level, shown on both.
    void setLevel(float peak) { setLevels(peak, peak); }

  private:
    LevelScale *const scale_;
};

} // namespace orvel
