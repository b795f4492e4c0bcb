#include "platform/ebur128/ebur128_meter.h"

#include <cmath>
#include <ebur128.h>

namespace orvel {

/// Of one take. A rate or samples that the library refuses leave it without a result.
class Ebur128Meter::State {
  public:
    explicit State(int sampleRate)
        : state_(ebur128_init(1, static_cast<unsigned long>(sampleRate), EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK)),
          isSound_(state_ != nullptr && ebur128_set_channel(state_, 0, EBUR128_DUAL_MONO) == EBUR128_SUCCESS) {}
    State(const State &) = delete;
    State(State &&) = delete;
    State &operator=(const State &) = delete;
    State &operator=(State &&) = delete;
    ~State() {
        if (state_ != nullptr) {
            ebur128_destroy(&state_);
        }
    }

    void add(std::span<const std::int16_t> samples) {
        isSound_ = isSound_ && (samples.empty() ||
                                ebur128_add_frames_short(state_, samples.data(), samples.size()) == EBUR128_SUCCESS);
    }

    [[nodiscard]] std::optional<Loudness> result() {
        double lufs = 0;
        double peak = 0;
        const bool isKnown = isSound_ && ebur128_loudness_global(state_, &lufs) == EBUR128_SUCCESS &&
                             ebur128_true_peak(state_, 0, &peak) == EBUR128_SUCCESS;
        // What is too short or too soft has a loudness of minus infinity.
        if (!isKnown || !std::isfinite(lufs) || peak <= 0) {
            return std::nullopt;
        }
        return Loudness{lufs, 20 * std::log10(peak)};
    }

  private:
    ebur128_state *state_;
    bool isSound_;
};

Ebur128Meter::Ebur128Meter() = default;
Ebur128Meter::~Ebur128Meter() = default;

void Ebur128Meter::start(int sampleRate) {
    state_ = sampleRate > 0 ? std::make_unique<State>(sampleRate) : nullptr;
}

void Ebur128Meter::add(std::span<const std::int16_t> samples) {
    if (state_) {
        state_->add(samples);
    }
}

std::optional<Loudness> Ebur128Meter::result() {
    return state_ ? state_->result() : std::nullopt;
}

} // namespace orvel
