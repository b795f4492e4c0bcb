#include "platform/qt/disk_file_system.h"
#include "tests/settings/settings_fixture.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class SettingsFile : public testing::Test {
  protected:
    void put(const QByteArray &content) { disk.write(file(), content); }
    [[nodiscard]] QByteArray content() const { return disk.read(file()); }
    [[nodiscard]] QString file() const { return folder.filePath(QStringLiteral("orvel.ini")); }
    void load() {
        settings = {};
        processor = test::processorKeys();
        LoadSettings(disk, folder.path(), settings, processor);
    }
    [[nodiscard]] bool has(const QByteArray &line) const { return content().split('\n').contains(line); }

    QTemporaryDir folder;
    DiskFileSystem disk;
    Settings settings;
    ProcessorSettings processor = test::processorKeys();
};

void expectMostDefaults(const Settings &settings, const ProcessorSettings &processor) {
    EXPECT_EQ(settings.BitRate, 2);
    EXPECT_EQ(settings.RecCard, 0);
    EXPECT_FALSE(settings.Network || settings.ServerMode || settings.Mute || settings.Nodelete);
    EXPECT_EQ(settings.UseProcessor.bits(), -1);
    EXPECT_EQ(settings.MusBack, 16777215);
    EXPECT_EQ(settings.TijdBack, 16777215);
    EXPECT_EQ(settings.PresTxt, 0);
    EXPECT_EQ(processor["UseReverb"], 0);
    EXPECT_EQ(processor["CompRate"], 0);
}

} // namespace

TEST_F(SettingsFile, AMissingFileGivesTheDefaults) {
    load();
    expectMostDefaults(settings, processor);
    EXPECT_EQ(settings.NewPath, folder.filePath(QStringLiteral("new")));
    EXPECT_EQ(settings.OkPath, folder.filePath(QStringLiteral("ok")));
}

TEST_F(SettingsFile, AnEmptyFileGivesTheDefaults) {
    put("");
    load();
    expectMostDefaults(settings, processor);
}

TEST_F(SettingsFile, ValuesThatAreNoneLeaveTheFieldsAndLoadingGoesOn) {
    put("[Audio]\nCBuffers=veel\nCbuffer_size=99999\nCCard=\nRecCard=x\nBitRate=?\nMute=ja\n"
        "[Program]\nNetwork=yes\nServer=2\nCountdown=vijf\n[Colors]\nMusBack=rood\n[Files]\nNodelete=2\n"
        "[AudioProcessor]\nUseAmp=yes\nAmp=luid\nRevDelay=250\n");
    load();
    EXPECT_EQ(settings.CBuffers, 0);
    EXPECT_EQ(settings.Cbuffer_size, 0);
    EXPECT_EQ(settings.Countdown, 0);
    EXPECT_FALSE(settings.Network || settings.ServerMode || settings.Mute || settings.Nodelete);
    EXPECT_EQ(processor["UseAmp"], 0);
    EXPECT_EQ(processor["Amp"], 0);
    EXPECT_EQ(processor["RevDelay"], 250);
}

TEST_F(SettingsFile, NamesMatchWithoutRegardToCase) {
    put("[FILES]\nVOICETRACKPATH=\\\\server\\vt\nnodelete=1\n[program]\nNETWORK=1\nserver=1\ncountdown=5\n");
    load();
    EXPECT_EQ(settings.VoicetrackPath, QStringLiteral("\\\\server\\vt"));
    EXPECT_EQ(settings.Nodelete.bits(), -1);
    EXPECT_TRUE(settings.Network && settings.ServerMode);
    EXPECT_EQ(settings.Countdown, 5);
}

TEST_F(SettingsFile, SavingTheSetupWritesItsSpellingsAndKeepsTheRest) {
    put("; van de technicus\n[Files]\nVoicetrackPath=oud\nImportPath=D:\\in\n[Colors]\nTijdBack=123\n[Eigen]\nx=y\n");
    load();
    settings.VoicetrackPath = QStringLiteral("/server");
    settings.Cbuffer_size = 2048;
    settings.CCallBack = 2;
    settings.Network = true;
    saveSetup(disk, folder.path(), settings);
    for (const char *line : {"VoiceTrackPath=/server", "CBuffer_size=2048", "CCallback=2", "Network=1", "TijdBack=123",
                             "ImportPath=D:\\in", "; van de technicus", "x=y"}) {
        EXPECT_TRUE(has(line)) << line;
    }
    EXPECT_FALSE(content().contains("TijdTxt"));
    load();
    EXPECT_EQ(settings.VoicetrackPath, QStringLiteral("/server"));
    EXPECT_EQ(settings.TijdBack, 123);
}

TEST_F(SettingsFile, SavingTheAudioWritesItsKeysInTheirOrder) {
    processor.set("UseComp", 1);
    processor.set("CompTresh", -18);
    saveAudio(disk, folder.path(), {3, {}}, processor);
    EXPECT_EQ(
        content().replace("\r", ""),
        "[Audio]\nRecCard=3\n\n[AudioProcessor]\nUseAmp=0\nAmp=0\nUseNorm=0\nNorm=0\nUseTrim=0\nTrim=0\nAttack=0\n"
        "UseComp=1\nCompTresh=-18\nCompRate=0\nCompRMS=0\nUseReverb=0\nRevDelay=0\nRevDepth=0\nRevDecay=0\n"
        "RevRate=0\n");
}

} // namespace orvel
