#pragma once

#include "platform/joystick.h"

#include <memory>

namespace orvel {

/// Joysticks as SDL finds them, now and while the program runs. Without any, or without a system that has them, no
/// button is ever pressed. One at a time.
class SdlJoystick : public Joystick {
  public:
    SdlJoystick();
    ~SdlJoystick() override;
    SdlJoystick(const SdlJoystick &) = delete;
    SdlJoystick(SdlJoystick &&) = delete;
    SdlJoystick &operator=(const SdlJoystick &) = delete;
    SdlJoystick &operator=(SdlJoystick &&) = delete;

    [[nodiscard]] std::vector<int> pressed() override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace orvel
