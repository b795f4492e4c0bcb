#include "platform/fake/faulty_file_system.h"
#include "platform/ini_file.h"
#include "platform/qt/disk_file_system.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace orvel {

using test::contentOf;
using test::errorOf;
using test::writeContent;

namespace {

const QString section = QStringLiteral("Files");
const QString key = QStringLiteral("Databasepath");

class Ini : public testing::Test {
  protected:
    [[nodiscard]] IniFile file() { return {disk, path}; }
    /// A value of a file with this content.
    QString valueIn(const QByteArray &content, const QString &from = section, const QString &name = key) {
        writeContent(path, content);
        return file().value(from, name);
    }
    /// What becomes of a file when one value is set.
    QByteArray afterSetting(const QByteArray &content, const QString &into, const QString &name, const QString &value) {
        writeContent(path, content);
        IniFile ini = file();
        ini.setValue(into, name, value);
        ini.save();
        return contentOf(path);
    }
    QByteArray afterSetting(const QByteArray &content, const QString &value) {
        return afterSetting(content, section, key, value);
    }

    test::TempFolder folder;
    QString path = folder.path("orvel.ini");
    DiskFileSystem disk;
};

} // namespace

TEST_F(Ini, NamesMatchWithoutRegardToCase) {
    EXPECT_EQ(valueIn("[FILES]\ndatabasePATH=M:\\data\n"), QStringLiteral("M:\\data"));
    EXPECT_EQ(valueIn("  [ files ]  \n  DatabasePath  =  M:\\data  \n"), QStringLiteral("M:\\data"));
    EXPECT_EQ(valueIn("[Été]\nÉté=1\n", QStringLiteral("ÉTÉ"), QStringLiteral("été")), QStringLiteral("1"));
}

TEST_F(Ini, AValueIsWhatStandsBehindTheFirstEqualsSign) {
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=a=b;c\n"), QStringLiteral("a=b;c"));
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=\n"), QString());
    EXPECT_EQ(valueIn("[Files]\nDatabasepath\n"), QString());
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=\" a b \"\n"), QStringLiteral(" a b "));
    EXPECT_EQ(valueIn("[Files]\nDatabasepath='a'\n"), QStringLiteral("a"));
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=\"\n"), QStringLiteral("\""));
}

TEST_F(Ini, KeysOutsideTheirSectionAndInCommentsAreNone) {
    EXPECT_EQ(valueIn("Databasepath=a\n[Audio]\nDatabasepath=b\n;Databasepath=c\n"), QString());
    EXPECT_EQ(valueIn("[Files]\n;Databasepath=c\n # Databasepath=c\n"), QString());
}

TEST_F(Ini, OfKeysThatStandTwiceTheFirstCountsInSectionsThatStandTwiceToo) {
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=a\nDatabasepath=b\n[files]\nDatabasepath=c\n"), QStringLiteral("a"));
    EXPECT_EQ(valueIn("[Files]\nOther=a\n[Audio]\n[files]\nDatabasepath=c\n"), QStringLiteral("c"));
}

TEST_F(Ini, AMissingFileIsEmptyAndComesIntoBeing) {
    IniFile ini = file();
    EXPECT_EQ(ini.value(section, key), QString());
    ini.setValue(section, key, QStringLiteral("a"));
    ini.setValue(QStringLiteral("Audio"), QStringLiteral("Mute"), QStringLiteral("1"));
    ini.save();
    EXPECT_EQ(contentOf(path), "[Files]\r\nDatabasepath=a\r\n\r\n[Audio]\r\nMute=1\r\n");
}

TEST_F(Ini, EverythingElseStaysAsItIs) {
    const QByteArray before = "; van het station\r\n\r\nlos\r\n[Other]\r\n  Odd Key = 1 ; x\r\n\r\n[files]\r\n"
                              "databasepath = a\r\n# eind\r\n\r\n[Colors]\r\nTijdBack=1\r\n\r\n\r\n";
    const QByteArray after = "; van het station\r\n\r\nlos\r\n[Other]\r\n  Odd Key = 1 ; x\r\n\r\n[files]\r\n"
                             "Databasepath=b\r\n# eind\r\n\r\n[Colors]\r\nTijdBack=1\r\n\r\n\r\n";
    EXPECT_EQ(afterSetting(before, QStringLiteral("b")), after);
}

TEST_F(Ini, AKeyGetsTheWritersSpellingAlsoWhenItsValueStays) {
    EXPECT_EQ(
        afterSetting("[Files]\nVoicetrackPath=a\n", section, QStringLiteral("VoiceTrackPath"), QStringLiteral("a")),
        "[Files]\nVoiceTrackPath=a\n");
}

TEST_F(Ini, NewKeysGoToTheEndOfTheirSectionNewSectionsToTheEndOfTheFile) {
    EXPECT_EQ(afterSetting("[Files]\nA=1\n\n\n[Audio]\nB=2\n", QStringLiteral("c")),
              "[Files]\nA=1\nDatabasepath=c\n\n\n[Audio]\nB=2\n");
    EXPECT_EQ(afterSetting("[Files]\n[Audio]\n", QStringLiteral("c")), "[Files]\nDatabasepath=c\n[Audio]\n");
    EXPECT_EQ(afterSetting("[Audio]\nB=2\n", QStringLiteral("c")), "[Audio]\nB=2\n\n[Files]\nDatabasepath=c\n");
    EXPECT_EQ(afterSetting("[Audio]\nB=2", QStringLiteral("c")), "[Audio]\nB=2\n\n[Files]\nDatabasepath=c\n");
    EXPECT_EQ(afterSetting("[Files]\nB=2", QStringLiteral("c")), "[Files]\nB=2\nDatabasepath=c\n");
}

TEST_F(Ini, LineEndsStayAsTheyAre) {
    // Files with both kinds lost every key behind a line end of the rarer kind.
    EXPECT_EQ(valueIn("[Audio]\r\nMute=1\n[Files]\nDatabasepath=a\r\n"), QStringLiteral("a"));
    EXPECT_EQ(afterSetting("[Audio]\r\nMute=1\n[Files]\nDatabasepath=a\r\nX=1", QStringLiteral("b")),
              "[Audio]\r\nMute=1\n[Files]\nDatabasepath=b\r\nX=1");
    EXPECT_EQ(afterSetting("[Files]\r\nX=1\r\n", QStringLiteral("b")), "[Files]\r\nX=1\r\nDatabasepath=b\r\n");
}

TEST_F(Ini, EncodingsStayAsTheyAre) {
    const QString value = QStringLiteral("m\u00fcsic \u20ac");
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=m\xC3\xBCsic \xE2\x82\xAC\n"), value);
    EXPECT_EQ(valueIn("\xEF\xBB\xBF[Files]\nDatabasepath=m\xC3\xBCsic \xE2\x82\xAC\n"), value);
    EXPECT_EQ(valueIn("[Files]\nDatabasepath=m\xFCsic \x80\n"), value);
    EXPECT_EQ(afterSetting("\xEF\xBB\xBF[Files]\nDatabasepath=a\n", value),
              "\xEF\xBB\xBF[Files]\nDatabasepath=m\xC3\xBCsic \xE2\x82\xAC\n");
    EXPECT_EQ(afterSetting("; \xFC\x81\n[Files]\nDatabasepath=a\n", value),
              "; \xFC\x81\n[Files]\nDatabasepath=m\xFCsic \x80\n");
    // The code page has no room for this one.
    EXPECT_EQ(afterSetting("; \xFC\n[Files]\nDatabasepath=a\n", QStringLiteral("\u0142")),
              "; \xC3\xBC\n[Files]\nDatabasepath=\xC5\x82\n");
}

TEST_F(Ini, AFileInUtf16IsReadAndStaysSo) {
    const auto utf16 = [](const QString &text) {
        QByteArray bytes = "\xFF\xFE";
        for (const QChar character : text) {
            bytes.append(static_cast<char>(character.unicode() & 0xFFU));
            bytes.append(static_cast<char>(character.unicode() >> 8U));
        }
        return bytes;
    };
    const QByteArray before = utf16(QStringLiteral("[Files]\r\nDatabasepath=\u00e9\r\n"));
    EXPECT_EQ(valueIn(before), QStringLiteral("\u00e9"));
    EXPECT_EQ(afterSetting(before, QStringLiteral("b")), utf16(QStringLiteral("[Files]\r\nDatabasepath=b\r\n")));
}

TEST_F(Ini, AnyValueIsReadAsItWasWritten) {
    for (const char *value : {"", "a", " a ", "\"a\"", "'a'", "\"", "\"\"", "a\"b", "C:\\", ";a", "[a]", "a=b", "  "}) {
        const QString text = QString::fromUtf8(value);
        afterSetting("[Files]\nDatabasepath=x\nNext=1\n", text);
        EXPECT_EQ(file().value(section, key), text) << value;
        EXPECT_EQ(file().value(section, QStringLiteral("Next")), QStringLiteral("1")) << value;
    }
}

TEST_F(Ini, AValueCannotBringLinesOfItsOwn) {
    EXPECT_EQ(afterSetting("[Files]\nDatabasepath=x\n", QStringLiteral("a\r\n[Program]\nServer=1")),
              "[Files]\nDatabasepath=a [Program] Server=1\n");
}

TEST_F(Ini, NothingIsWrittenWhenNothingChanged) {
    FaultyFileSystem readOnly(disk);
    readOnly.fail(FaultyFileSystem::Operation::Write, path, ErrorNumber::PermissionDenied);
    writeContent(path, "[Files]\nDatabasepath = a\n");
    IniFile ini(readOnly, path);
    ini.setValue(section, key, QStringLiteral("a"));
    EXPECT_NO_THROW(ini.save());
    ini.setValue(section, key, QStringLiteral("b"));
    EXPECT_EQ(errorOf([&] { ini.save(); }), 70);
    EXPECT_EQ(contentOf(path), "[Files]\nDatabasepath = a\n");
}

TEST_F(Ini, AFileThatCouldNotBeReadIsNotReplaced) {
    FaultyFileSystem broken(disk);
    broken.fail(FaultyFileSystem::Operation::Read, path, ErrorNumber::DeviceError);
    writeContent(path, "[Files]\nDatabasepath=a\n");
    IniFile ini(broken, path);
    EXPECT_EQ(ini.value(section, key), QString());
    ini.setValue(section, key, QStringLiteral("b"));
    EXPECT_EQ(errorOf([&] { ini.save(); }), 75);
    EXPECT_EQ(contentOf(path), "[Files]\nDatabasepath=a\n");
}

TEST_F(Ini, KeysAreListedInTheFilesOrder) {
    writeContent(path, "[Drives]\nM=muziek\n;N=x\n\nj = jingles\n[Other]\nX=1\n[drives]\nZ=z\n");
    EXPECT_EQ(file().keys(QStringLiteral("Drives")), QStringList({"M", "j", "Z"}));
}

TEST_F(Ini, AnyBytesAreReadAndWrittenBack) {
    QByteArray bytes;
    for (int i = 0; i < 2048; ++i) {
        bytes.append(static_cast<char>(i * 31 % 256));
    }
    EXPECT_EQ(valueIn(bytes), QString());
    const QByteArray after = afterSetting(bytes, QStringLiteral("a"));
    EXPECT_TRUE(after.startsWith(bytes.left(2000)));
    EXPECT_EQ(file().value(section, key), QStringLiteral("a"));
}

TEST_F(Ini, ALongFileIsReadInLittleTime) {
    // Each line of a section was looked at once for every other one: 10,000 lines of comment kept the program half a
    // minute from starting.
    QByteArray content = "[Files]\r\n";
    for (int i = 0; i < 100'000; ++i) {
        content += "; opmerking " + QByteArray::number(i) + "\r\n";
    }
    writeContent(path, content + "Databasepath=a\r\n[Audio]\r\nMute=1\r\n");
    QElapsedTimer timer;
    timer.start();
    const IniFile ini = file();
    EXPECT_EQ(ini.value(section, key), QStringLiteral("a"));
    EXPECT_EQ(ini.keys(section), QStringList(key));
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(ini.value(QStringLiteral("Audio"), QStringLiteral("Mute")), QStringLiteral("1"));
        EXPECT_EQ(ini.value(section, QString::number(i)), QString());
    }
    EXPECT_LT(timer.elapsed(), 10'000);
}

TEST_F(Ini, ALongFileIsChangedInLittleTime) {
    constexpr int keys = 10'000;
    QByteArray before = "; begin\r\n[Files]\r\n";
    QByteArray after = before;
    QByteArray added;
    for (int i = 0; i < keys; ++i) {
        const QByteArray name = "Key" + QByteArray::number(i);
        before += "; bij " + name + "\r\n" + name.toLower() + " = oud\r\n";
        after += "; bij " + name + "\r\n" + name + "=nieuw\r\n";
        added += "Meer" + QByteArray::number(i) + "=x\r\n";
    }
    const QByteArray rest = QByteArray("\r\n").repeated(keys) + "[Audio]\r\nMute=1\r\n";
    writeContent(path, before + rest);
    QElapsedTimer timer;
    timer.start();
    IniFile ini = file();
    for (int i = 0; i < keys; ++i) {
        ini.setValue(section, QStringLiteral("Key%1").arg(i), QStringLiteral("nieuw"));
        ini.setValue(section, QStringLiteral("Meer%1").arg(i), QStringLiteral("x"));
    }
    ini.save();
    EXPECT_LT(timer.elapsed(), 10'000);
    EXPECT_TRUE(contentOf(path) == after + added + rest);
}

TEST_F(Ini, ManySectionsAreMadeInLittleTime) {
    constexpr int sections = 20'000;
    QByteArray expected;
    QElapsedTimer timer;
    timer.start();
    IniFile ini = file();
    for (int i = 0; i < sections; ++i) {
        ini.setValue(QStringLiteral("Deel%1").arg(i), key, QStringLiteral("a"));
        expected += (i == 0 ? "[Deel" : "\r\n[Deel") + QByteArray::number(i) + "]\r\nDatabasepath=a\r\n";
    }
    ini.save();
    EXPECT_LT(timer.elapsed(), 10'000);
    EXPECT_TRUE(contentOf(path) == expected);
}

TEST_F(Ini, NewKeysGoToTheFirstOfSectionsThatStandTwice) {
    EXPECT_EQ(afterSetting("[Files]\nA=1\n\n[Audio]\nB=2\n[files]\nC=3\n", QStringLiteral("d")),
              "[Files]\nA=1\nDatabasepath=d\n\n[Audio]\nB=2\n[files]\nC=3\n");
}

TEST_F(Ini, WhatWasSetIsFoundAgainBeforeItIsSaved) {
    writeContent(path, "[Files]\nA=1\n  ");
    IniFile ini = file();
    ini.setValue(section, key, QStringLiteral("a"));
    ini.setValue(section, key, QStringLiteral("b"));
    ini.setValue(QStringLiteral("Audio"), QStringLiteral("Mute"), QStringLiteral("0"));
    ini.setValue(QStringLiteral("AUDIO"), QStringLiteral("MUTE"), QStringLiteral("1"));
    EXPECT_EQ(ini.value(section, key), QStringLiteral("b"));
    EXPECT_EQ(ini.keys(section), QStringList({"A", "Databasepath"}));
    EXPECT_EQ(ini.value(QStringLiteral("Audio"), QStringLiteral("mute")), QStringLiteral("1"));
    ini.save();
    EXPECT_EQ(contentOf(path), "[Files]\nA=1\nDatabasepath=b\n  \n[Audio]\nMUTE=1\n");
}

} // namespace orvel
