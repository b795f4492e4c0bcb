#pragma once

#include "platform/audio.h"

#include <QByteArray>

#include <map>
#include <memory>
#include <vector>

namespace orvel {

/// What a sound card has in its own electronics beside what the sound server offers: microphone boost and automatic
/// gain. Reading waits for nothing but the kernel; a card that is gone has nothing.
class AlsaGain {
  public:
    AlsaGain();
    ~AlsaGain();
    AlsaGain(const AlsaGain &) = delete;
    AlsaGain(AlsaGain &&) = delete;
    AlsaGain &operator=(const AlsaGain &) = delete;
    AlsaGain &operator=(AlsaGain &&) = delete;

    /// card: its number in ALSA. Switches are yes/no, boosts count the card's own steps.
    [[nodiscard]] std::vector<LineProperty> properties(const QByteArray &card);
    /// Nothing happens when the card has no such property. Throws DeviceError when the card refuses.
    void set(const QByteArray &card, const QString &name, const QVariant &value);

  private:
    class Mixer;
    /// Null when there is no such card.
    Mixer *mixer(const QByteArray &card);

    std::map<QByteArray, std::unique_ptr<Mixer>> mixers_; ///< open, by card
};

} // namespace orvel
