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
    bool isMonitor = false; ///< records an output, not a voice

    bool operator==(const Card &) const = default;
};

/// Two cards of one make have one name; a presenter must be able to tell them apart: " (2)" comes behind the second.
void tellApart(QStringList &names);

/// What an input line can do, and how it stands.
struct LineState {
    bool hasVolume = false;
    bool hasBalance = false;
    bool hasSelect = false;
    bool selected = false;
    int volume = 0;  ///< 0 .. 65535
    int balance = 0; ///< -100 .. 100

    bool operator==(const LineState &) const = default;
};

/// The mixer of a backend: what happens to one line, from 1, of the card with this key. Setting throws DeviceError.
class LineMixer {
  public:
    virtual ~LineMixer() = default;

    [[nodiscard]] virtual LineState state(const QString &key, int line) const = 0;
    virtual void setVolume(const QString &key, int line, int volume) = 0;
    virtual void setBalance(const QString &key, int line, int balance) = 0;
    virtual void select(const QString &key, int line, bool selected) = 0;
    [[nodiscard]] virtual std::vector<LineProperty> properties(const QString &key, int line) const = 0;
    virtual void setProperty(const QString &key, int line, const QString &name, const QVariant &value) = 0;
};

/// The enumerating half of every backend: numbers cards and lines and follows what comes and goes. The first real input
/// is current until somebody chooses.
class CardList : public AudioRecord {
  public:
    /// look: the cards that are there now, in their order. Called by refresh() and once here. mixer outlives the list.
    CardList(std::function<std::vector<Card>()> look, LineMixer &mixer);

    bool refresh() override;
    [[nodiscard]] int deviceCount() const override;
    [[nodiscard]] int inputCount() const override;
    [[nodiscard]] bool canRecord(int device) const override;
    [[nodiscard]] QString deviceName(int device) const override;
    [[nodiscard]] int currentDevice() const override { return currentDevice_; }
    void setCurrentDevice(int device) override;
    [[nodiscard]] int lineCount() const override;
    [[nodiscard]] int currentLine() const override { return currentLine_; }
    void setCurrentLine(int line) override { currentLine_ = line; }
    [[nodiscard]] QString lineName() const override;
    [[nodiscard]] bool lineHasVolume() const override { return state().hasVolume; }
    [[nodiscard]] bool lineHasBalance() const override { return state().hasBalance; }
    [[nodiscard]] bool lineHasSelect() const override { return state().hasSelect; }
    [[nodiscard]] int lineVolume() const override { return state().volume; }
    void setLineVolume(int volume) override;
    [[nodiscard]] int lineBalance() const override { return state().balance; }
    void setLineBalance(int balance) override;
    [[nodiscard]] bool lineSelected() const override { return state().selected; }
    void setLineSelected(bool selected) override;
    [[nodiscard]] int propertyCount() const override;
    [[nodiscard]] LineProperty lineProperty(int index) const override;
    void setLineProperty(int index, const QVariant &value) override;

    /// The key of a card, counted from 1; empty when there is no such card.
    [[nodiscard]] QString key(int device) const;

  private:
    /// What look() finds, in the order of the numbers.
    [[nodiscard]] std::vector<Card> lookInOrder() const;
    void chooseFirstInput() { setCurrentDevice(inputCount() > 0 ? 1 : 0); }
    [[nodiscard]] const Card *find(int device) const;
    /// The current card, when the current line is one of its lines.
    [[nodiscard]] const Card *cardOfLine() const;
    [[nodiscard]] LineState state() const;

    std::function<std::vector<Card>()> look_;
    LineMixer &mixer_;
    std::vector<Card> cards_;
    int currentDevice_ = 0;
    QString currentKey_; ///< of the card that was made current last, also while it is away
    int currentLine_ = 1;
};

} // namespace orvel
