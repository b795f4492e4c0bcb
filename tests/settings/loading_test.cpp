// Every key reaches its field, and no value can do harm.
#include "platform/fake/faulty_file_system.h"
#include "tests/settings/settings_fixture.h"

namespace orvel {

using Loading = test::SettingsFile;

namespace {

constexpr std::array numbers = {&Settings::CBuffers, &Settings::Cbuffer_size, &Settings::CCallBack,
                                &Settings::CCard,    &Settings::RecCard,      &Settings::Countdown};
constexpr std::array truths = {&Settings::Nodelete, &Settings::Mute, &Settings::Network, &Settings::ServerMode,
                               &Settings::FreeFormat};
constexpr std::array backColours = {&Settings::MusBack,   &Settings::JingBack, &Settings::RecBack,
                                    &Settings::EventBack, &Settings::TijdBack, &Settings::PresBack};
constexpr std::array textColours = {&Settings::MusTxt,   &Settings::jingTxt, &Settings::RecTxt,
                                    &Settings::EventTxt, &Settings::TijdTxt, &Settings::PresTxt};

void expectDefaults(const Settings &settings, const ProcessorSettings &processor) {
    EXPECT_EQ(settings.BitRate, 2);
    EXPECT_EQ(settings.UseProcessor.bits(), -1);
    for (const auto field : truths) {
        EXPECT_EQ((settings.*field).bits(), 0);
    }
    for (const auto field : numbers) {
        EXPECT_EQ(settings.*field, 0);
    }
    for (const auto field : backColours) {
        EXPECT_EQ(settings.*field, 0xFFFFFF);
    }
    for (const auto field : textColours) {
        EXPECT_EQ(settings.*field, 0);
    }
    for (const char *key : test::processorChecks) {
        EXPECT_EQ(processor[key], 0) << key;
    }
    for (const char *key : test::processorValues) {
        EXPECT_EQ(processor[key], 0) << key;
    }
}

} // namespace

TEST_F(Loading, EveryKeyReachesItsFieldAndGoesWithTheFile) {
    load(test::everyKey());
    EXPECT_EQ(settings.Databasepath, QStringLiteral("/srv/db"));
    EXPECT_EQ(settings.ImportPath, QStringLiteral("/srv/import"));
    EXPECT_EQ(settings.ExportPath, QStringLiteral("/srv/export"));
    EXPECT_EQ(settings.VoicetrackPath, QStringLiteral("/srv/tracks"));
    EXPECT_EQ(settings.BitRate, 4);
    for (const auto field : truths) {
        EXPECT_EQ((settings.*field).bits(), -1);
    }
    const std::array<int, numbers.size()> written = {11, 12, 13, 14, 15, 17};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        EXPECT_EQ(settings.*numbers.at(i), written.at(i)) << i;
    }
    std::int32_t value = 101;
    for (const auto &colours : {backColours, textColours}) {
        for (const auto field : colours) {
            EXPECT_EQ(settings.*field, value++);
        }
    }
    for (const char *key : test::processorChecks) {
        EXPECT_EQ(processor[key], 1) << key;
    }
    value = 201;
    for (const char *key : test::processorValues) {
        EXPECT_EQ(processor[key], value++) << key;
    }
    load("");
    expectDefaults(settings, processor);
    EXPECT_EQ(settings.VoicetrackPath, QString());
}

TEST_F(Loading, AFileWithEveryValueWrongGivesTheDefaults) {
    for (const char *wrong : {"rotzooi", "ja", "2e", "0x1", "99999999999999999999", "-99999999999", "nan", "inf", "",
                              "1,5", "1 2", "\xFF\xFE\x01", "[1]", "=1", ";1"}) {
        QByteArray content;
        for (const QByteArray &line : test::everyKey().split('\n')) {
            const bool isNumber = line.contains('=') && !line.toLower().contains("path");
            content += (isNumber ? line.left(line.indexOf('=') + 1) + wrong : line) + '\n';
        }
        load(content);
        SCOPED_TRACE(wrong);
        expectDefaults(settings, processor);
    }
}

TEST_F(Loading, TruthIsExactlyOne) {
    const auto isOn = [&](const char *value) {
        load(QByteArray("[Files]\nNodelete=") + value + "\n[Program]\nNetwork=" + value + "\n");
        EXPECT_EQ(settings.Nodelete.bits(), settings.Network.bits()) << value;
        return settings.Nodelete.bits() == -1;
    };
    for (const char *on : {"1", "1.0", "01", " 1 ", "\"1\""}) {
        EXPECT_TRUE(isOn(on)) << on;
    }
    for (const char *off : {"yes", "ja", "2", "-1", "0", "", "1.5", "1 ; aan", "True", "11"}) {
        EXPECT_FALSE(isOn(off)) << off;
    }
}

TEST_F(Loading, NumbersAreRoundedAndFitTheirField) {
    const auto countdown = [&](const char *value) {
        load(QByteArray("[Program]\nCountdown=") + value + "\n");
        return settings.Countdown;
    };
    EXPECT_EQ(countdown("2.5"), 2);
    EXPECT_EQ(countdown("3.5"), 4);
    EXPECT_EQ(countdown("32767"), 32767);
    EXPECT_EQ(countdown("32768"), 0);
    EXPECT_EQ(countdown("-32768"), -32768);
    EXPECT_EQ(countdown("-32769"), 0);
    load("[AudioProcessor]\nAmp=2147483647\nNorm=2147483648\nTrim=-70000\n[Audio]\nBitRate=9\nRecCard=-4\n");
    EXPECT_EQ(processor["Amp"], 2147483647);
    EXPECT_EQ(processor["Norm"], 0);
    EXPECT_EQ(processor["Trim"], -70000);
    EXPECT_EQ(settings.BitRate, 9) << "checked where it is used";
    EXPECT_EQ(settings.RecCard, -4);
}

TEST_F(Loading, AnUnreadableFileReadsAsEmptyAndIsNeverOverwritten) {
    writeFile(test::everyKey());
    FaultyFileSystem broken(disk);
    broken.fail(FaultyFileSystem::Operation::Read, path, ErrorNumber::PermissionDenied);
    LoadSettings(broken, folder.path(), settings, processor);
    expectDefaults(settings, processor);
    EXPECT_EQ(test::errorOf([&] { saveSetup(broken, folder.path(), settings); }), 75);
    EXPECT_EQ(test::errorOf([&] { saveAudio(broken, folder.path(), {3, {}}, processor); }), 75);
    EXPECT_EQ(test::contentOf(path), test::everyKey());
}

TEST_F(Loading, ALoudnessGoalIsOffUnlessAStationSetsIt) {
    load("");
    EXPECT_EQ(settings.LoudnessTarget, 0);
    EXPECT_EQ(settings.TruePeak, -1);
    load("[Loudness]\nTarget=-18\nTruePeak=-2\n");
    EXPECT_EQ(settings.LoudnessTarget, -18);
    EXPECT_EQ(settings.TruePeak, -2);
    load("[Loudness]\nTarget=hard\nTruePeak=\n");
    EXPECT_EQ(settings.LoudnessTarget, 0);
    EXPECT_EQ(settings.TruePeak, -1);
}

TEST_F(Loading, DriveLettersAreFound) {
    writeFile("[Drives]\nm=" + folder.path("muziek").toUtf8() + "\nJ=jingles\nX=\n");
    const DriveMap drives = loadDrives(disk, folder.path());
    EXPECT_EQ(drives.resolve(QStringLiteral("M:\\a.mp3")), folder.path("muziek/a.mp3"));
    EXPECT_EQ(drives.resolve(QStringLiteral("j:\\a.mp3")), folder.path("jingles/a.mp3"));
    EXPECT_EQ(drives.resolve(QStringLiteral("X:\\a.mp3")), QStringLiteral("X:/a.mp3"));
}

} // namespace orvel
