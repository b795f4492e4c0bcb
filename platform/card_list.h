#pragma once

#include "platform/audio.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace orvel {

/// A recording card as a sound server describes it.
struct Card {
    QString key;  ///< what the server calls it; the same when the card comes back
    QString name; ///< what the presenter reads
    QStringList lines;
    int activeLine = 1; ///< from 1
    bool canRecord = true;

    bool operator==(const Card &) const = default;
};

/// The enumerating half of every backend: numbers cards and lines and follows what comes and goes.
class CardList : public AudioRecord {
  public:
    /// look: the cards that are there now, in their order. Called by refresh() and once here.
    explicit CardList(std::function<std::vector<Card>()> look);

    bool refresh() override;
    [[nodiscard]] int deviceCount() const override;
    [[nodiscard]] bool canRecord(int device) const override;
    [[nodiscard]] QString deviceName(int device) const override;
    [[nodiscard]] int currentDevice() const override { return currentDevice_; }
    void setCurrentDevice(int device) override;
    [[nodiscard]] int lineCount() const override;
    [[nodiscard]] int currentLine() const override { return currentLine_; }
    void setCurrentLine(int line) override { currentLine_ = line; }
    [[nodiscard]] QString lineName() const override;

    /// The key of a card, counted from 1; empty when there is no such card.
    [[nodiscard]] QString key(int device) const;

  private:
    [[nodiscard]] const Card *find(int device) const;

    std::function<std::vector<Card>()> look_;
    std::vector<Card> cards_;
    int currentDevice_ = 0;
    QString currentKey_; ///< of the card that was made current last, also while it is away
    int currentLine_ = 1;
};

} // namespace orvel
