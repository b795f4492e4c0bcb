// Writing: the keys, their spelling and order, and what stays.
#include "platform/fake/faulty_file_system.h"
#include "tests/settings/settings_fixture.h"

namespace orvel {

using Saving = test::SettingsFile;
using test::contentOf;
using test::errorOf;

namespace {

/// Settings of which no two that a file keeps are the same by accident.
Settings oddSettings() {
    Settings settings;
    settings.Databasepath = QStringLiteral("M:\\db");
    settings.VoicetrackPath = QStringLiteral("/srv/été");
    settings.ImportPath = settings.ExportPath = QStringLiteral("niet schrijven");
    settings.Nodelete = true;
    settings.Cbuffer_size = 4096;
    settings.CBuffers = 8;
    settings.CCard = 1;
    settings.CCallBack = 2;
    settings.RecCard = 7;
    settings.Mute = true;
    settings.BitRate = 3;
    settings.Countdown = 5;
    settings.Network = true;
    settings.ServerMode = false;
    std::int32_t colour = 1;
    for (const auto field : {&Settings::MusBack, &Settings::JingBack, &Settings::RecBack, &Settings::EventBack,
                             &Settings::TijdBack, &Settings::PresBack, &Settings::MusTxt, &Settings::jingTxt,
                             &Settings::RecTxt, &Settings::EventTxt, &Settings::TijdTxt, &Settings::PresTxt}) {
        settings.*field = colour++;
    }
    return settings;
}

} // namespace

TEST_F(Saving, TheSetupWritesItsKeysInTheirOrderAndSpelling) {
    saveSetup(disk, folder.path(), oddSettings());
    EXPECT_EQ(contentOf(path), "[Files]\r\nDatabasepath=M:\\db\r\nVoiceTrackPath=/srv/\xC3\xA9t\xC3\xA9\r\n\r\n"
                               "[Audio]\r\nCBuffer_size=4096\r\nCBuffers=8\r\nCCard=1\r\nCCallback=2\r\nMute=1\r\n"
                               "BitRate=3\r\n\r\n"
                               "[Program]\r\nCountdown=5\r\nNetwork=1\r\nServer=0\r\n\r\n"
                               "[Colors]\r\nMusBack=1\r\nJingBack=2\r\nRecBack=3\r\nEventBack=4\r\nPresBack=6\r\n"
                               "MusTxt=7\r\njingTxt=8\r\nRecTxt=9\r\nEventTxt=10\r\nPresTxt=12\r\n");
}

TEST_F(Saving, TheEndOfTheProgramWritesItsKeysInTheirOrder) {
    load(test::everyKey());
    ASSERT_TRUE(QFile::remove(path));
    processor.set("UseNorm", 0);
    processor.set("RevRate", -1);
    saveAudio(disk, folder.path(), {3, {}}, processor);
    EXPECT_EQ(contentOf(path), "[Audio]\r\nRecCard=3\r\n\r\n"
                               "[AudioProcessor]\r\nUseAmp=1\r\nAmp=201\r\nUseNorm=0\r\nNorm=202\r\nUseTrim=1\r\n"
                               "Trim=203\r\nAttack=204\r\nUseComp=1\r\nCompTresh=205\r\nCompRate=206\r\n"
                               "CompRMS=207\r\nUseReverb=1\r\nRevDelay=208\r\nRevDepth=209\r\nRevDecay=210\r\n"
                               "RevRate=-1\r\n");
}

TEST_F(Saving, WhatWasSavedIsRead) {
    const Settings saved = oddSettings();
    saveSetup(disk, folder.path(), saved);
    load();
    EXPECT_EQ(settings.Databasepath, saved.Databasepath);
    EXPECT_EQ(settings.VoicetrackPath, saved.VoicetrackPath);
    EXPECT_EQ(settings.Cbuffer_size, 4096);
    EXPECT_EQ(settings.CBuffers, 8);
    EXPECT_EQ(settings.CCallBack, 2);
    EXPECT_EQ(settings.Countdown, 5);
    EXPECT_TRUE(settings.Mute);
    EXPECT_TRUE(settings.Network);
    EXPECT_FALSE(settings.ServerMode);
    EXPECT_EQ(settings.jingTxt, 8);
    EXPECT_EQ(settings.TijdBack, 0xFFFFFF) << "never written";
    EXPECT_EQ(settings.RecCard, 0) << "not the setup's";
}

TEST_F(Saving, HandWrittenKeysSurviveEverySave) {
    writeFile("; ons station\r\n[Files]\r\nNodelete=1\r\nimportpath = /in\r\nExportPath=/uit\r\n"
              "voicetrackpath=/oud\r\n\r\n[Eigen]\r\nx=y\r\n\r\n[Colors]\r\nTijdBack=255\r\nTijdTxt=7\r\n"
              "; slot\r\n");
    for (int round = 0; round < 2; ++round) {
        saveSetup(disk, folder.path(), oddSettings());
        saveAudio(disk, folder.path(), {3, {}}, processor);
        const QByteArray content = contentOf(path);
        for (const char *line : {"; ons station\r\n[Files]\r\nNodelete=1\r\nimportpath = /in\r\nExportPath=/uit\r\n",
                                 "\r\nVoiceTrackPath=/srv/\xC3\xA9t\xC3\xA9\r\n", "\r\n\r\n[Eigen]\r\nx=y\r\n\r\n",
                                 "[Colors]\r\nTijdBack=255\r\nTijdTxt=7\r\n; slot\r\n"}) {
            EXPECT_EQ(content.count(line), 1) << line << "\nin\n" << content.constData();
        }
        EXPECT_EQ(content.toLower().count("voicetrackpath"), 1) << "one key, whatever its spelling";
    }
    load();
    EXPECT_EQ(settings.VoicetrackPath, QStringLiteral("/srv/été"));
    EXPECT_EQ(settings.ImportPath, QStringLiteral("/in"));
    EXPECT_TRUE(settings.Nodelete);
    EXPECT_EQ(settings.TijdBack, 255);
    EXPECT_EQ(settings.TijdTxt, 7);
}

TEST_F(Saving, ASecondSaveChangesNothing) {
    saveSetup(disk, folder.path(), oddSettings());
    saveAudio(disk, folder.path(), {3, {}}, processor);
    const QByteArray once = contentOf(path);
    saveAudio(disk, folder.path(), {3, {}}, processor);
    saveSetup(disk, folder.path(), oddSettings());
    EXPECT_EQ(contentOf(path), once);
}

TEST_F(Saving, ADiskThatRefusesLeavesTheFileAsItWas) {
    writeFile(test::everyKey());
    FaultyFileSystem broken(disk);
    broken.fail(FaultyFileSystem::Operation::Write, path, ErrorNumber::DiskFull);
    EXPECT_EQ(errorOf([&] { saveSetup(broken, folder.path(), oddSettings()); }), 61);
    EXPECT_EQ(errorOf([&] { saveAudio(broken, folder.path(), {3, {}}, processor); }), 61);
    EXPECT_EQ(contentOf(path), test::everyKey());
}

} // namespace orvel
