#pragma once

#include "platform/card_list.h"

#include <map>
#include <optional>
#include <utility>

namespace orvel {

/// A mixer with one source that records: lines of a card are alike until a test says otherwise.
class FakeLineMixer : public LineMixer {
  public:
    struct Line {
        LineState state{true, true, true, false, 65535, 0};
        std::vector<LineProperty> properties;
    };

    /// What a test sets up or looks at. The first line of a card is selected at first.
    [[nodiscard]] Line &line(const QString &key, int line) const;
    /// Volumes become multiples of this, as on a card with few steps.
    void setVolumeStep(int step) { volumeStep_ = step; }
    /// The card keeps its properties whatever is set.
    void refuseProperties() { refusesProperties_ = true; }

    [[nodiscard]] LineState state(const QString &key, int line) const override { return this->line(key, line).state; }
    void setVolume(const QString &key, int line, int volume) override;
    void setBalance(const QString &key, int line, int balance) override;
    void select(const QString &key, int line, bool selected) override;
    [[nodiscard]] std::vector<LineProperty> properties(const QString &key, int line) const override {
        return this->line(key, line).properties;
    }
    void setProperty(const QString &key, int line, const QString &name, const QVariant &value) override;

  private:
    mutable std::map<std::pair<QString, int>, Line> lines_;
    int volumeStep_ = 1;
    bool refusesProperties_ = false;
};

} // namespace orvel
