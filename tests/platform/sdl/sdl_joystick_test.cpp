#include "platform/sdl/sdl_joystick.h"

#include <SDL.h>
#include <csignal>
#include <gtest/gtest.h>
#include <optional>

namespace orvel {
namespace {

using Buttons = std::vector<int>;

/// A joystick that SDL believes in.
class SdlJoystickTest : public testing::Test {
  protected:
    SDL_Joystick *plugIn(int buttons = 8) {
        place = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, 2, buttons, 0);
        EXPECT_GE(place, 0) << SDL_GetError();
        EXPECT_EQ(joystick->pressed(), Buttons()) << "plugging in presses nothing";
        SDL_Joystick *device = SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(place));
        EXPECT_NE(device, nullptr) << "it was opened when it came";
        return device;
    }

    void unplug() { SDL_JoystickDetachVirtual(place); }

    /// The button, counted from 0 as SDL does, goes down; what SDL's next look makes of it.
    Buttons press(SDL_Joystick *device, int button) {
        SDL_JoystickSetVirtualButton(device, button, SDL_PRESSED);
        Buttons pressed = joystick->pressed();
        SDL_JoystickSetVirtualButton(device, button, SDL_RELEASED);
        return pressed;
    }

    std::optional<SdlJoystick> joystick{std::in_place};
    int place = -1;
};

TEST_F(SdlJoystickTest, CountsButtonsFromOne) {
    SDL_Joystick *device = plugIn();
    EXPECT_EQ(press(device, 0), Buttons{1});
    EXPECT_EQ(joystick->pressed(), Buttons()) << "letting go presses nothing";
    EXPECT_EQ(press(device, 3), Buttons{4});
    unplug();
}

TEST_F(SdlJoystickTest, AButtonThatIsHeldIsPressedOnce) {
    SDL_Joystick *device = plugIn();
    SDL_JoystickSetVirtualButton(device, 1, SDL_PRESSED);
    EXPECT_EQ(joystick->pressed(), Buttons{2});
    EXPECT_EQ(joystick->pressed(), Buttons());
    unplug();
}

TEST_F(SdlJoystickTest, TellsButtonsInTheirOrder) {
    SDL_Joystick *device = plugIn();
    SDL_JoystickSetVirtualButton(device, 3, SDL_PRESSED);
    SDL_JoystickUpdate();
    SDL_JoystickSetVirtualButton(device, 0, SDL_PRESSED);
    EXPECT_EQ(joystick->pressed(), (Buttons{4, 1}));
    unplug();
}

TEST_F(SdlJoystickTest, FollowsWhatIsPulledOutAndPluggedInAgain) {
    SDL_Joystick *device = plugIn();
    EXPECT_EQ(press(device, 0), Buttons{1});
    SDL_JoystickSetVirtualButton(device, 1, SDL_PRESSED);
    unplug();
    (void)joystick->pressed();
    EXPECT_EQ(joystick->pressed(), Buttons());
    device = plugIn();
    EXPECT_EQ(press(device, 2), Buttons{3});
    unplug();
}

TEST_F(SdlJoystickTest, StickMovementsDoNotHideButtons) {
    SDL_Joystick *device = plugIn();
    for (int i = 0; i < 70'000; ++i) { // more than SDL's queue holds
        SDL_JoystickSetVirtualAxis(device, 0, static_cast<Sint16>(i % 30'000));
        SDL_JoystickUpdate();
    }
    EXPECT_EQ(press(device, 0), Buttons{1});
    unplug();
}

TEST_F(SdlJoystickTest, HearsButtonsWithoutAWindow) {
    EXPECT_EQ(SDL_WasInit(SDL_INIT_VIDEO), 0U) << "no window of SDL's own";
    EXPECT_STREQ(SDL_GetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS), "1");
}

TEST_F(SdlJoystickTest, LeavesSignalsAlone) {
    (void)joystick->pressed();
    struct sigaction action {};
    sigaction(SIGINT, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL) << "Ctrl+C must still end the program";
}

TEST_F(SdlJoystickTest, CanBeMadeAgain) {
    plugIn();
    unplug();
    joystick.reset();
    joystick.emplace();
    SDL_Joystick *device = plugIn();
    EXPECT_EQ(press(device, 0), Buttons{1});
    unplug();
}

TEST(SdlJoystickWithoutDevices, NeverPresses) {
    SdlJoystick joystick;
    EXPECT_EQ(joystick.pressed(), Buttons());
}

} // namespace
} // namespace orvel
