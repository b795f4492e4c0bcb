#pragma once

#include <vector>

namespace orvel {

/// The buttons of every joystick that is plugged in, now or later; a window needs no focus for them.
class Joystick {
  public:
    virtual ~Joystick() = default;

    /// Numbers, from 1, of the buttons that went down since the last look, in their order. Cheap, meant for a timer.
    [[nodiscard]] virtual std::vector<int> pressed() = 0;
};

} // namespace orvel
