#include "recording/guard.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr float voice = 0.2F;
constexpr float room = 0.0005F; // -66 dB: a quiet studio
constexpr int lookMs = 40;

class TheGuard : public testing::Test {
  protected:
    void look(SessionState state, int milliseconds, float peak, int countdownLeft = 0) {
        for (int passed = 0; passed < milliseconds; passed += lookMs) {
            now += lookMs;
            guard.look({now, state, isFirst, countdownLeft, peak, -1});
            isFirst = false;
        }
    }
    void clip(std::int64_t at) {
        now += lookMs;
        guard.look({now, SessionState::Recording, false, 0, 1, at});
    }
    [[nodiscard]] bool tells(Danger danger) const {
        const std::vector<Warning> warnings = guard.warnings();
        return std::any_of(warnings.begin(), warnings.end(), [&](const Warning &w) { return w.danger == danger; });
    }

    Guard guard;
    std::int64_t now = 100'000;
    bool isFirst = true;
};

} // namespace

TEST_F(TheGuard, HasNothingToTellWhenAllIsWell) {
    guard.card(QStringLiteral("Studiomicrofoon"), QStringLiteral("Studiomicrofoon"));
    guard.disk(INT64_C(10) << 30);
    guard.server(ServerState::Writable, QStringLiteral("/srv"));
    look(SessionState::Idle, 2000, room);
    look(SessionState::CountingDown, 2000, room, 1);
    EXPECT_TRUE(guard.warnings().empty()) << "a quiet room is no dead microphone";
    look(SessionState::Recording, 2000, room);
    look(SessionState::Recording, 2000, voice);
    look(SessionState::Recording, 2800, room);
    EXPECT_TRUE(guard.warnings().empty());
    EXPECT_FALSE(guard.hasClipped());
}

TEST_F(TheGuard, ADeadMicrophoneIsToldBeforeTheTakeBegins) {
    look(SessionState::Idle, 2000, 0);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent)) << "nobody has to speak yet";
    look(SessionState::CountingDown, 1000, 0, 3);
    look(SessionState::CountingDown, 1000, 0, 2);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
    look(SessionState::CountingDown, 40, 0, 1);
    EXPECT_TRUE(tells(Danger::MicrophoneSilent)) << "with a second left";
    look(SessionState::Recording, 1000, 0);
    EXPECT_TRUE(tells(Danger::MicrophoneSilent)) << "it goes on in the take";
    look(SessionState::Recording, 40, voice);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
}

TEST_F(TheGuard, ACardThatWasJustOpenedGetsASecond) {
    look(SessionState::CountingDown, 960, 0, 1);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
    look(SessionState::CountingDown, 80, 0, 1);
    EXPECT_TRUE(tells(Danger::MicrophoneSilent));
}

TEST_F(TheGuard, ThreeSecondsOfATakeWithoutAVoiceAreTold) {
    look(SessionState::CountingDown, 1000, room, 1);
    look(SessionState::Recording, 2960, room);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent)) << "a presenter takes a breath";
    look(SessionState::Recording, 120, room);
    EXPECT_TRUE(tells(Danger::MicrophoneSilent));
    look(SessionState::Recording, 40, voice);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
    look(SessionState::Recording, 3040, room);
    EXPECT_TRUE(tells(Danger::MicrophoneSilent)) << "and again";
    look(SessionState::Processing, 40, 0);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent)) << "it ends with the take";
}

TEST_F(TheGuard, SilenceBeforeTheTakeIsNotThatOfTheTake) {
    look(SessionState::Idle, 10'000, room);
    look(SessionState::Recording, 1000, room);
    EXPECT_FALSE(tells(Danger::MicrophoneSilent));
}

TEST_F(TheGuard, ClippingIsToldKeptAndForgottenByTheNextTake) {
    look(SessionState::Recording, 400, voice);
    clip(417);
    EXPECT_TRUE(tells(Danger::Clipping));
    EXPECT_TRUE(guard.hasClipped());
    look(SessionState::Recording, 3000, voice);
    EXPECT_FALSE(tells(Danger::Clipping)) << "it is over";
    clip(3500);
    EXPECT_TRUE(tells(Danger::Clipping));
    look(SessionState::Processing, 40, 0);
    look(SessionState::Idle, 5000, voice);
    EXPECT_FALSE(tells(Danger::Clipping));
    EXPECT_TRUE(guard.hasClipped()) << "the lamp stays on";
    EXPECT_EQ(guard.clips(), (std::vector<std::int32_t>{417, 3500}));
    look(SessionState::CountingDown, 1000, voice, 1);
    EXPECT_TRUE(guard.hasClipped()) << "a count-down may be called off";
    look(SessionState::Recording, 40, voice);
    EXPECT_FALSE(guard.hasClipped());
    EXPECT_TRUE(guard.clips().empty());
}

TEST_F(TheGuard, AnotherCardThanTheChosenOneIsTold) {
    guard.card(QStringLiteral("Mengtafel"), QStringLiteral("Webcam"));
    ASSERT_EQ(guard.warnings().size(), 1U);
    EXPECT_EQ(guard.warnings().front().words, QStringLiteral("Er wordt opgenomen met Webcam, niet met Mengtafel."));
    guard.card(QStringLiteral("Mengtafel"), {});
    EXPECT_EQ(guard.warnings().front().words, QStringLiteral("De gekozen opnamekaart Mengtafel is er niet."));
    guard.card(QStringLiteral("Mengtafel"), QStringLiteral("Mengtafel"));
    EXPECT_TRUE(guard.warnings().empty());
    guard.card({}, QStringLiteral("Webcam"));
    EXPECT_TRUE(guard.warnings().empty()) << "none was ever chosen";
    guard.card(QStringLiteral("USB Audio Stereo"), QStringLiteral("USB Audio  Stereo"));
    EXPECT_TRUE(guard.warnings().empty()) << "the settings file holds it in one line";
}

TEST_F(TheGuard, LessThanTenMinutesOfDiskAreTold) {
    constexpr std::int64_t second = 88'200;
    guard.disk(600 * second);
    EXPECT_FALSE(tells(Danger::DiskNearlyFull));
    guard.disk(600 * second - 1);
    ASSERT_TRUE(tells(Danger::DiskNearlyFull));
    EXPECT_EQ(guard.warnings().front().words, QStringLiteral("De schijf is bijna vol: nog 9 min ruimte voor opnames."));
    guard.disk(59 * second);
    EXPECT_EQ(guard.warnings().front().words, QStringLiteral("De schijf is vol: nog geen minuut ruimte voor opnames."));
    guard.disk(-1);
    EXPECT_FALSE(tells(Danger::DiskNearlyFull)) << "nobody knows";
    guard.disk(0);
    EXPECT_TRUE(tells(Danger::DiskNearlyFull));
}

TEST_F(TheGuard, AServerThatCannotBeWrittenIsTold) {
    guard.server(ServerState::NotWritable, QStringLiteral("/srv/tracks"));
    ASSERT_TRUE(tells(Danger::ServerNotWritable));
    EXPECT_TRUE(guard.warnings().front().words.contains(QStringLiteral("/srv/tracks")));
    guard.server(ServerState::Silent, QStringLiteral("/srv/tracks"));
    EXPECT_TRUE(guard.warnings().front().words.contains(QStringLiteral("antwoordt niet")));
    guard.server(ServerState::Writable, QStringLiteral("/srv/tracks"));
    EXPECT_FALSE(tells(Danger::ServerNotWritable));
}

TEST_F(TheGuard, TheMostUrgentComesFirst) {
    guard.server(ServerState::Silent, {});
    guard.disk(0);
    guard.card(QStringLiteral("A"), QStringLiteral("B"));
    look(SessionState::Recording, 3100, 0);
    ASSERT_EQ(guard.warnings().size(), 4U);
    EXPECT_EQ(guard.warnings().front().danger, Danger::MicrophoneSilent);
    EXPECT_EQ(guard.warnings().back().danger, Danger::ServerNotWritable);
}

} // namespace orvel
