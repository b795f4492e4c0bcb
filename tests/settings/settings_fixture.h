#pragma once

#include "platform/qt/disk_file_system.h"
#include "settings/settings.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <array>
#include <gtest/gtest.h>

namespace orvel::test {

inline constexpr std::array processorChecks = {"UseAmp", "UseNorm", "UseTrim", "UseComp", "UseReverb"};
inline constexpr std::array processorValues = {"Amp",     "Norm",     "Trim",     "Attack",   "CompTresh", "CompRate",
                                               "CompRMS", "RevDelay", "RevDepth", "RevDecay", "RevRate"};

/// The keys of the processor in the file's order, with the value 0.
inline ProcessorSettings processorKeys() {
    ProcessorSettings keys;
    for (const char *key : {"UseAmp", "Amp", "UseNorm", "Norm", "UseTrim", "Trim", "Attack", "UseComp", "CompTresh",
                            "CompRate", "CompRMS", "UseReverb", "RevDelay", "RevDepth", "RevDecay", "RevRate"}) {
        if (std::string_view(key).starts_with("Use")) {
            keys.addCheck(key);
        } else {
            keys.addNumber(key);
        }
    }
    return keys;
}

/// A settings file with another value for every key: 11 and up, colours 101 and up, displays 201 and up.
inline QByteArray everyKey() {
    return "[Files]\nDatabasepath=/srv/db\nImportPath=/srv/import\nExportPath=/srv/export\n"
           "VoicetrackPath=/srv/tracks\nNodelete=1\n"
           "[Audio]\nCBuffers=11\nCbuffer_size=12\nCCallBack=13\nCCard=14\nRecCard=15\nMute=1\nBitRate=4\n"
           "FreeFormat=1\n"
           "[Program]\nNetwork=1\nServer=1\nCountdown=17\n"
           "[AudioProcessor]\nUseAmp=1\nAmp=201\nUseNorm=1\nNorm=202\nUseTrim=1\nTrim=203\nAttack=204\nUseComp=1\n"
           "CompTresh=205\nCompRate=206\nCompRMS=207\nUseReverb=1\nRevDelay=208\nRevDepth=209\nRevDecay=210\n"
           "RevRate=211\n"
           "[Colors]\nMusBack=101\nJingBack=102\nRecBack=103\nEventBack=104\nTijdBack=105\nPresBack=106\nMusTxt=107\n"
           "jingTxt=108\nRecTxt=109\nEventTxt=110\nTijdTxt=111\nPresTxt=112\n";
}

/// A settings file in a program folder of its own, and what it is read into.
class SettingsFile : public testing::Test {
  protected:
    void writeFile(const QByteArray &content) { writeContent(path, content); }
    void load() { LoadSettings(disk, folder.path(), settings, processor); }
    void load(const QByteArray &content) {
        writeFile(content);
        load();
    }

    TempFolder folder;
    QString path = folder.path("orvel.ini");
    DiskFileSystem disk;
    Settings settings;
    ProcessorSettings processor = processorKeys();
};

} // namespace orvel::test
