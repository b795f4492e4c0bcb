#include "platform/sdl/sdl_joystick.h"

#include <SDL.h>
#include <map>

namespace orvel {
namespace {

void setHints() {
    // The presenter's hand is on the button while another window has the focus.
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    // Buttons have the numbers that the system gives them, and no USB device is taken from the system.
    SDL_SetHint(SDL_HINT_JOYSTICK_HIDAPI, "0");
}

/// Sticks that nobody asks about would fill the queue.
void listenToButtonsOnly() {
    for (const Uint32 type : {SDL_JOYAXISMOTION, SDL_JOYBALLMOTION, SDL_JOYHATMOTION, SDL_JOYBUTTONUP}) {
        SDL_EventState(type, SDL_IGNORE);
    }
}

} // namespace

class SdlJoystick::Impl {
  public:
    Impl() : isThere_(begin()) {}

    ~Impl() {
        for (const auto &[number, joystick] : open_) {
            SDL_JoystickClose(joystick);
        }
        if (isThere_) {
            SDL_QuitSubSystem(SDL_INIT_JOYSTICK);
        }
    }

    Impl(const Impl &) = delete;
    Impl(Impl &&) = delete;
    Impl &operator=(const Impl &) = delete;
    Impl &operator=(Impl &&) = delete;

    std::vector<int> pressed() {
        std::vector<int> buttons;
        SDL_Event event;
        while (isThere_ && SDL_PollEvent(&event) == 1) {
            if (event.type == SDL_JOYDEVICEADDED) {
                open(event.jdevice.which);
            } else if (event.type == SDL_JOYDEVICEREMOVED) {
                close(event.jdevice.which);
            } else if (event.type == SDL_JOYBUTTONDOWN) {
                buttons.push_back(event.jbutton.button + 1);
            }
        }
        return buttons;
    }

  private:
    static bool begin() {
        setHints();
        const bool isThere = SDL_InitSubSystem(SDL_INIT_JOYSTICK) == 0;
        listenToButtonsOnly();
        return isThere;
    }

    void open(int place) {
        if (SDL_Joystick *joystick = SDL_JoystickOpen(place)) {
            open_[SDL_JoystickInstanceID(joystick)] = joystick;
        }
    }

    void close(SDL_JoystickID number) {
        if (const auto found = open_.find(number); found != open_.end()) {
            SDL_JoystickClose(found->second);
            open_.erase(found);
        }
    }

    bool isThere_; ///< the system has joysticks
    std::map<SDL_JoystickID, SDL_Joystick *> open_;
};

SdlJoystick::SdlJoystick() : impl_(std::make_unique<Impl>()) {}
SdlJoystick::~SdlJoystick() = default;

std::vector<int> SdlJoystick::pressed() {
    return impl_->pressed();
}

} // namespace orvel
