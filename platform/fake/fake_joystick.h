#pragma once

#include "platform/joystick.h"

#include <utility>

namespace orvel {

/// A joystick pressed by a test.
class FakeJoystick : public Joystick {
  public:
    [[nodiscard]] std::vector<int> pressed() override { return std::exchange(pressed_, {}); }
    void press(int button) { pressed_.push_back(button); }

  private:
    std::vector<int> pressed_;
};

} // namespace orvel
