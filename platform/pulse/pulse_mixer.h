#pragma once

#include "platform/card_list.h"
#include "platform/pulse/alsa_gain.h"
#include "platform/pulse/pulse_devices.h"

#include <map>

namespace orvel {

/// A card is a source of the server, a line is one of its ports. The source has one volume, which acts on the port that
/// records: the other lines have none until they are selected.
class PulseMixer : public LineMixer {
  public:
    explicit PulseMixer(PulseControls &controls) : controls_(controls) {}

    [[nodiscard]] LineState state(const QString &key, int line) const override;
    void setVolume(const QString &key, int line, int volume) override;
    void setBalance(const QString &key, int line, int balance) override;
    /// A source always records from one of its ports: unselecting does nothing.
    void select(const QString &key, int line, bool selected) override;
    [[nodiscard]] std::vector<LineProperty> properties(const QString &key, int line) const override;
    void setProperty(const QString &key, int line, const QString &name, const QVariant &value) override;

  private:
    PulseControls &controls_;
    mutable AlsaGain gain_; ///< opens cards when it is asked about them
    /// Of sources at volume 0: the server forgets a balance when there is nothing left to balance.
    std::map<QString, int> silentBalances_;
};

} // namespace orvel
