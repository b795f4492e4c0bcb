#pragma once

#include <array>
#include <cstddef>

namespace orvel {

/// How a microphone is spoken into.
enum class InputVerdict {
    Unknown, ///< nothing was heard yet
    Silent,  ///< nobody speaks
    TooSoft,
    Good,
    TooLoud
};

/// Tells how a microphone is spoken into, by the loud parts of the last three seconds: the level that a tenth of them
/// passes; one sample at full scale in them is too loud. Speech rises and falls; what stays alike all the time and is
/// not loud is the room. Near a limit the verdict stays as it is, so that it does not flicker.
class InputLevel {
  public:
    static constexpr int lookMs = 40;

    /// Of the next 40 ms: the highest sample, 0..1.
    void heard(float peak);
    /// The card was opened anew, or is gone.
    void reset() { *this = InputLevel(); }
    [[nodiscard]] InputVerdict verdict() const { return verdict_; }

  private:
    static constexpr std::size_t looks = 3000 / lookMs;

    [[nodiscard]] float levelOf(double part) const;
    [[nodiscard]] InputVerdict judged() const;

    std::array<float, looks> levels_{}; ///< dB, the oldest one goes first
    std::size_t count_ = 0;
    std::size_t next_ = 0;
    InputVerdict verdict_ = InputVerdict::Unknown;
};

} // namespace orvel
