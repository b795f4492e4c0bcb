#pragma once

#include "platform/qt/disk_file_system.h"
#include "settings/settings.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <array>
#include <gtest/gtest.h>

namespace orvel::test {

template <class Field>
struct ProcessorField {
    const char *name;
    Field ProcessorSettings::*field;
};

inline constexpr std::array processorChecks = {
    ProcessorField<int>{"UseAmp", &ProcessorSettings::chkAmp},
    ProcessorField<int>{"UseNorm", &ProcessorSettings::chkNorm},
    ProcessorField<int>{"UseTrim", &ProcessorSettings::chkTrim},
    ProcessorField<int>{"UseComp", &ProcessorSettings::chkComp},
    ProcessorField<int>{"UseReverb", &ProcessorSettings::chkReverb},
};

inline constexpr std::array processorValues = {
    ProcessorField<std::int32_t>{"Amp", &ProcessorSettings::ledAmp},
    ProcessorField<std::int32_t>{"Norm", &ProcessorSettings::ledNorm},
    ProcessorField<std::int32_t>{"Trim", &ProcessorSettings::ledTrim},
    ProcessorField<std::int32_t>{"Attack", &ProcessorSettings::ledAttack},
    ProcessorField<std::int32_t>{"CompTresh", &ProcessorSettings::ledCompTreshold},
    ProcessorField<std::int32_t>{"CompRate", &ProcessorSettings::ledCompRate},
    ProcessorField<std::int32_t>{"CompRMS", &ProcessorSettings::ledCompRMS},
    ProcessorField<std::int32_t>{"RevDelay", &ProcessorSettings::ledRevDelay},
    ProcessorField<std::int32_t>{"RevDepth", &ProcessorSettings::ledRevDepth},
    ProcessorField<std::int32_t>{"RevDecay", &ProcessorSettings::ledRevDecay},
    ProcessorField<std::int32_t>{"RevRate", &ProcessorSettings::ledRevRate},
};

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
    ProcessorSettings processor;
};

} // namespace orvel::test
