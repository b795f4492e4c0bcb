#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "settings/settings.h"
#include "widgets/level_meter.h"
#include "windows/mixer_strip.h"

#include <QComboBox>
#include <QGroupBox>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

/// The choice of the recording card, and its mixer: one strip an input line. Follows cards that come and go and volumes
/// that somebody else moves.
class CardPanel : public QWidget {
    Q_OBJECT

  public:
    CardPanel(Platform &platform, std::function<void(const QString &)> tell, QWidget *parent = nullptr);

    QComboBox *const cobKaart;
    QGroupBox *const Frame14;

    /// Fills the list with the cards that can record; the current card stays current.
    void listCards();
    /// Selects the stored card: by its name, or by its position where no name is known. One that is not there, and a
    /// position where a monitor stands, select the first card instead, which is no monitor. It is told, and
    /// the stored card stays the one to store until the presenter chooses.
    void selectCard(const StoredCard &card);
    /// What to store: the card that was chosen last, also while it is unplugged.
    [[nodiscard]] const StoredCard &chosenCard() const { return chosenCard_; }
    void cobKaart_Click();
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

  private:
    void makeStrips();
    void connectStrip(int index);
    void showLine(int index);
    void lookForChanges();
    void followCards();
    /// Where the stored card stands in the list; -1 when it is not there.
    [[nodiscard]] int positionOf(const StoredCard &card) const;

    Platform &platform_;
    std::function<void(const QString &)> tell_;
    std::unique_ptr<Timer> tmrCards_;
    std::vector<MixerStrip *> strips_;
    std::int16_t LineCount = 0;
    StoredCard chosenCard_;
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
    /// A mono level, shown on both.
    void setLevel(float peak) { setLevels(peak, peak); }
};

} // namespace orvel
