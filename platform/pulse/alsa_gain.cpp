#include "platform/pulse/alsa_gain.h"

#include "platform/runtime_error.h"

#include <alsa/asoundlib.h>
#include <functional>

namespace orvel {
namespace {

bool hasVolume(snd_mixer_elem_t *element) {
    return snd_mixer_selem_has_capture_volume(element) != 0 || snd_mixer_selem_has_common_volume(element) != 0;
}

bool hasSwitch(snd_mixer_elem_t *element) {
    return snd_mixer_selem_has_capture_switch(element) != 0 || snd_mixer_selem_has_common_switch(element) != 0;
}

/// Drivers have agreed on these names and no others ("Mic Boost", "Front Mic Boost", "Auto Gain Control"). What the
/// sound server sets itself, the volume, is not touched.
QString dutchName(snd_mixer_elem_t *element) {
    QString name = QString::fromUtf8(snd_mixer_selem_get_name(element));
    if (const unsigned twin = snd_mixer_selem_get_index(element); twin > 0) {
        name += QStringLiteral(" %1").arg(twin + 1);
    }
    if (name.contains(QStringLiteral("Boost"))) {
        return QStringLiteral("Versterking (%1)").arg(name);
    }
    if (name.contains(QStringLiteral("Auto Gain")) || name.startsWith(QStringLiteral("AGC"))) {
        return QStringLiteral("Automatische sterkte (%1)").arg(name);
    }
    return {};
}

/// A card that was pulled out is no news for the terminal.
void keepQuiet(const char * /*file*/, int /*line*/, const char * /*function*/, int /*error*/, const char * /*format*/,
               ...) {}

LineProperty switchOf(snd_mixer_elem_t *element, const QString &name) {
    int isOn = 0;
    if (snd_mixer_selem_has_capture_switch(element) != 0) {
        snd_mixer_selem_get_capture_switch(element, SND_MIXER_SCHN_MONO, &isOn);
    } else {
        snd_mixer_selem_get_playback_switch(element, SND_MIXER_SCHN_MONO, &isOn);
    }
    return {name, isOn != 0, 0, 1};
}

LineProperty volumeOf(snd_mixer_elem_t *element, const QString &name) {
    long least = 0;
    long most = 0;
    long volume = 0;
    if (snd_mixer_selem_has_capture_volume(element) != 0) {
        snd_mixer_selem_get_capture_volume_range(element, &least, &most);
        snd_mixer_selem_get_capture_volume(element, SND_MIXER_SCHN_MONO, &volume);
    } else { // one for both directions, filed under playback
        snd_mixer_selem_get_playback_volume_range(element, &least, &most);
        snd_mixer_selem_get_playback_volume(element, SND_MIXER_SCHN_MONO, &volume);
    }
    return {name, static_cast<int>(volume), static_cast<int>(least), static_cast<int>(most)};
}

int setSwitch(snd_mixer_elem_t *element, bool on) {
    return snd_mixer_selem_has_capture_switch(element) != 0
               ? snd_mixer_selem_set_capture_switch_all(element, on ? 1 : 0)
               : snd_mixer_selem_set_playback_switch_all(element, on ? 1 : 0);
}

int setVolume(snd_mixer_elem_t *element, int volume) {
    return snd_mixer_selem_has_capture_volume(element) != 0 ? snd_mixer_selem_set_capture_volume_all(element, volume)
                                                            : snd_mixer_selem_set_playback_volume_all(element, volume);
}

} // namespace

class AlsaGain::Mixer {
  public:
    explicit Mixer(const QByteArray &card) {
        const QByteArray name = "hw:" + card;
        snd_lib_error_set_handler(keepQuiet);
        isOpen_ = snd_mixer_open(&mixer_, 0) == 0 && snd_mixer_attach(mixer_, name.constData()) == 0 &&
                  snd_mixer_selem_register(mixer_, nullptr, nullptr) == 0 && snd_mixer_load(mixer_) == 0;
    }
    ~Mixer() {
        if (mixer_ != nullptr) {
            snd_mixer_close(mixer_);
        }
    }
    Mixer(const Mixer &) = delete;
    Mixer(Mixer &&) = delete;
    Mixer &operator=(const Mixer &) = delete;
    Mixer &operator=(Mixer &&) = delete;

    /// Takes over what others have changed; false when the card is gone.
    bool update() { return isOpen_ && snd_mixer_handle_events(mixer_) >= 0; }

    void each(const std::function<void(snd_mixer_elem_t *, const QString &)> &look) {
        for (snd_mixer_elem_t *element = snd_mixer_first_elem(mixer_); element != nullptr;
             element = snd_mixer_elem_next(element)) {
            const QString name = dutchName(element);
            if (!name.isEmpty() && (hasVolume(element) || hasSwitch(element))) {
                look(element, name);
            }
        }
    }

  private:
    snd_mixer_t *mixer_ = nullptr;
    bool isOpen_ = false;
};

AlsaGain::AlsaGain() = default;
AlsaGain::~AlsaGain() = default;

AlsaGain::Mixer *AlsaGain::mixer(const QByteArray &card) {
    std::unique_ptr<Mixer> &mixer = mixers_[card];
    if (mixer && mixer->update()) {
        return mixer.get();
    }
    mixer = std::make_unique<Mixer>(card); // for the first time, or another card that has the number now
    return mixer->update() ? mixer.get() : nullptr;
}

std::vector<LineProperty> AlsaGain::properties(const QByteArray &card) {
    std::vector<LineProperty> properties;
    Mixer *open = card.isEmpty() ? nullptr : mixer(card);
    if (open != nullptr) {
        open->each([&](snd_mixer_elem_t *element, const QString &name) {
            properties.push_back(hasVolume(element) ? volumeOf(element, name) : switchOf(element, name));
        });
    }
    return properties;
}

void AlsaGain::set(const QByteArray &card, const QString &name, const QVariant &value) {
    Mixer *open = card.isEmpty() ? nullptr : mixer(card);
    if (open == nullptr) {
        return;
    }
    int result = 0;
    open->each([&](snd_mixer_elem_t *element, const QString &own) {
        if (own == name) {
            result = hasVolume(element) ? setVolume(element, value.toInt()) : setSwitch(element, value.toBool());
        }
    });
    if (result < 0) {
        throw RuntimeError(ErrorNumber::DeviceError, {}, QStringLiteral("de geluidskaart weigert"));
    }
}

} // namespace orvel
