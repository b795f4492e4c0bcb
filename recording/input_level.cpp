#include "recording/input_level.h"

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

// dB below full scale, of the highest samples of 40 ms.
constexpr float noLevel = -96;
constexpr float clippedLevel = -0.001F;
constexpr float softestVoice = -52; ///< below this nobody can be told from the room
constexpr float loudestRoom = -32;  ///< what is louder is spoken, also when it does not rise and fall
constexpr float softestGood = -24;
constexpr float loudestGood = -4;
constexpr float riseOfVoice = 10; ///< from its soft to its loud parts at least
constexpr float sluggishness = 1.5F;
constexpr std::size_t leastLooks = 10; ///< 0.4 s

} // namespace

void InputLevel::heard(float peak) {
    levels_[next_] = peak > 0 ? std::max(noLevel, 20 * std::log10(peak)) : noLevel;
    next_ = next_ + 1 == looks ? 0 : next_ + 1;
    count_ = std::min(count_ + 1, looks);
    if (count_ >= leastLooks) {
        verdict_ = judged();
    }
}

/// The level that this part of the looks does not pass.
float InputLevel::levelOf(double part) const {
    std::array<float, looks> sorted = levels_;
    const auto at = static_cast<std::ptrdiff_t>(part * static_cast<double>(count_ - 1));
    std::nth_element(sorted.begin(), sorted.begin() + at, sorted.begin() + static_cast<std::ptrdiff_t>(count_));
    return *(sorted.begin() + at);
}

InputVerdict InputLevel::judged() const {
    const float loud = levelOf(0.9);
    const float soft = levelOf(0.2);
    const float highest = *std::max_element(levels_.begin(), levels_.begin() + static_cast<std::ptrdiff_t>(count_));
    if (highest >= clippedLevel) {
        return InputVerdict::TooLoud;
    }
    // What the verdict is now may be missed by a little.
    const auto slack = [this](InputVerdict verdict) { return verdict_ == verdict ? sluggishness : 0.0F; };
    const bool isVoice =
        loud > softestVoice && (loud > loudestRoom || loud - soft >= riseOfVoice - slack(InputVerdict::TooSoft));
    if (!isVoice) {
        return InputVerdict::Silent;
    }
    if (loud > loudestGood - slack(InputVerdict::TooLoud)) {
        return InputVerdict::TooLoud;
    }
    return loud < softestGood + slack(InputVerdict::TooSoft) - slack(InputVerdict::Good) ? InputVerdict::TooSoft
                                                                                         : InputVerdict::Good;
}

} // namespace orvel
