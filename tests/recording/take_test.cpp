// Names and files of a take, the parts of a time, and how the players play.
#include "platform/runtime_error.h"
#include "recording/player_settings.h"
#include "recording/take.h"
#include "recording/time_parts.h"
#include "settings/settings.h"
#include "station/places.h"

#include <array>
#include <gtest/gtest.h>

namespace orvel {

namespace {

Take takeNamed(const QString &name, const QString &station = {}) {
    return {Take::Kind::Playlist, {QStringLiteral("avond.mdb"), 2, name}, station};
}

const Places station(QStringLiteral("/huis"));

} // namespace

TEST(TakeNames, AVersionHasItsStationsCodeInFront) {
    EXPECT_EQ(takeNamed(QStringLiteral("LINK")).version(), QStringLiteral("LINK"));
    EXPECT_EQ(takeNamed(QStringLiteral("LINK"), QStringLiteral("012")).version(), QStringLiteral("012LINK"));
    EXPECT_EQ(takeNamed(QStringLiteral("LINK"), QStringLiteral("990")).version(), QStringLiteral("990LINK"));
    EXPECT_EQ(takeNamed({}, QStringLiteral("012")).version(), QStringLiteral("012"));
}

TEST(TakeNames, TheGeneralVersionHasNoCode) {
    for (const char *code : {"000", "999"}) {
        EXPECT_EQ(takeNamed(QStringLiteral("LINK"), QString::fromLatin1(code)).version(), QStringLiteral("LINK"));
    }
}

TEST(TakeNames, TheRecordingIsOfTheStepTheRestOfTheVersion) {
    const TakeFiles files = filesOf(takeNamed(QStringLiteral("LINK"), QStringLiteral("012")), station, {});
    EXPECT_EQ(files.wav, QStringLiteral("/huis/temp/LINK.wav"));
    EXPECT_EQ(files.mp3, QStringLiteral("/huis/temp/012LINK.mp3"));
    EXPECT_EQ(files.filed, QStringLiteral("/huis/ok/012LINK.mp3"));
}

TEST(TakeNames, AServerIsTheOnlyPlaceWhereOneIsUsed) {
    Settings settings;
    settings.VoicetrackPath = QStringLiteral("/server/stemmen");
    EXPECT_EQ(filesOf(takeNamed(QStringLiteral("LINK")), station, settings).filed, QStringLiteral("/huis/ok/LINK.mp3"));
    settings.ServerMode = true;
    const TakeFiles files = filesOf(takeNamed(QStringLiteral("LINK"), QStringLiteral("012")), station, settings);
    EXPECT_EQ(files.filed, QStringLiteral("/server/stemmen/012LINK.mp3"));
    EXPECT_EQ(files.wav, QStringLiteral("/huis/temp/LINK.wav"));
}

TEST(TakeNames, AnEmptyNameIsAName) {
    const TakeFiles files = filesOf(takeNamed({}), station, {});
    EXPECT_EQ(files.wav, QStringLiteral("/huis/temp/.wav"));
    EXPECT_EQ(files.filed, QStringLiteral("/huis/ok/.mp3"));
}

TEST(TakeNames, ANameThatLeavesItsFolderIsRefused) {
    Settings server;
    server.ServerMode = true;
    server.VoicetrackPath = QStringLiteral("/server");
    for (const char *bad : {"../LINK", "/LINK", "a/b"}) {
        for (const Settings &settings : {Settings(), server}) {
            try {
                static_cast<void>(filesOf(takeNamed(QString::fromLatin1(bad)), station, settings));
                ADD_FAILURE() << bad;
            } catch (const RuntimeError &error) {
                EXPECT_EQ(error.number(), ErrorNumber::BadFileName) << bad;
            }
        }
    }
}

TEST(TakeNames, TakesAreTheSameWhenEverythingIs) {
    const Take one = takeNamed(QStringLiteral("LINK"));
    EXPECT_EQ(one, takeNamed(QStringLiteral("LINK")));
    EXPECT_FALSE(one == takeNamed(QStringLiteral("LINK"), QStringLiteral("012")));
    Take elsewhere = one;
    elsewhere.step.stap = 3;
    EXPECT_FALSE(one == elsewhere);
}

TEST(TimeOfADisplay, IsSplitIntoItsParts) {
    const auto parts = [](std::int32_t milliseconds) {
        const TimeParts time = helper::splitTime(milliseconds);
        return std::array<int, 4>{time.hours, time.minutes, time.seconds, time.millis};
    };
    using Parts = std::array<int, 4>;
    EXPECT_EQ(parts(0), (Parts{0, 0, 0, 0}));
    EXPECT_EQ(parts(999), (Parts{0, 0, 0, 999}));
    EXPECT_EQ(parts(1000), (Parts{0, 0, 1, 0}));
    EXPECT_EQ(parts(59'999), (Parts{0, 0, 59, 999}));
    EXPECT_EQ(parts(60'000), (Parts{0, 1, 0, 0}));
    EXPECT_EQ(parts(3'599'999), (Parts{0, 59, 59, 999}));
    EXPECT_EQ(parts(3'600'000), (Parts{1, 0, 0, 0}));
    EXPECT_EQ(parts(2'147'483'647), (Parts{596, 31, 23, 647}));
}

TEST(ThePlayers, PlayOnTheCardAndWithTheBuffersOfTheSettings) {
    Settings settings;
    settings.CCard = 3;
    settings.Cbuffer_size = 4096;
    settings.CBuffers = 7;
    settings.CCallBack = 2;
    const PlayerSettings made = playerSettings(settings);
    EXPECT_EQ(made.device, 3);
    EXPECT_EQ(made.bufferSize, 4096);
    EXPECT_EQ(made.buffers, 7);
    EXPECT_EQ(made.callBackMode, 2);
}

} // namespace orvel
