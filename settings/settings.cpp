#include "settings/settings.h"

#include "platform/ini_file.h"
#include "station/paths.h"

#include <array>
#include <cmath>
#include <limits>

namespace orvel {

namespace {

constexpr std::int32_t white = 0xFFFFFF;

struct Colour {
    const char *key;
    std::int32_t Settings::*field;
    bool written; ///< by the setup dialog
};

/// One key of the processor's section: a check box or a display. The order is the file's.
struct ProcessorKey {
    const char *key;
    int ProcessorSettings::*check;
    std::int32_t ProcessorSettings::*value;
};

constexpr std::array processorKeys = {
    ProcessorKey{"UseAmp", &ProcessorSettings::chkAmp, nullptr},
    ProcessorKey{"Amp", nullptr, &ProcessorSettings::ledAmp},
    ProcessorKey{"UseNorm", &ProcessorSettings::chkNorm, nullptr},
    ProcessorKey{"Norm", nullptr, &ProcessorSettings::ledNorm},
    ProcessorKey{"UseTrim", &ProcessorSettings::chkTrim, nullptr},
    ProcessorKey{"Trim", nullptr, &ProcessorSettings::ledTrim},
    ProcessorKey{"Attack", nullptr, &ProcessorSettings::ledAttack},
    ProcessorKey{"UseComp", &ProcessorSettings::chkComp, nullptr},
    ProcessorKey{"CompTresh", nullptr, &ProcessorSettings::ledCompTreshold},
    ProcessorKey{"CompRate", nullptr, &ProcessorSettings::ledCompRate},
    ProcessorKey{"CompRMS", nullptr, &ProcessorSettings::ledCompRMS},
    ProcessorKey{"UseReverb", &ProcessorSettings::chkReverb, nullptr},
    ProcessorKey{"RevDelay", nullptr, &ProcessorSettings::ledRevDelay},
    ProcessorKey{"RevDepth", nullptr, &ProcessorSettings::ledRevDepth},
    ProcessorKey{"RevDecay", nullptr, &ProcessorSettings::ledRevDecay},
    ProcessorKey{"RevRate", nullptr, &ProcessorSettings::ledRevRate},
};

constexpr std::array backColours = {
    Colour{"MusBack", &Settings::MusBack, true},    Colour{"JingBack", &Settings::JingBack, true},
    Colour{"RecBack", &Settings::RecBack, true},    Colour{"EventBack", &Settings::EventBack, true},
    Colour{"TijdBack", &Settings::TijdBack, false}, Colour{"PresBack", &Settings::PresBack, true},
};

constexpr std::array textColours = {
    Colour{"MusTxt", &Settings::MusTxt, true},    Colour{"jingTxt", &Settings::jingTxt, true},
    Colour{"RecTxt", &Settings::RecTxt, true},    Colour{"EventTxt", &Settings::EventTxt, true},
    Colour{"TijdTxt", &Settings::TijdTxt, false}, Colour{"PresTxt", &Settings::PresTxt, true},
};

/// The settings file with the conversions of its values.
class Reader {
  public:
    Reader(FileSystem &files, const QString &programFolder)
        : iniCon(files, joined(programFolder, QStringLiteral("\\orvel.ini"))) {}

    void setSection(const char *section) { section_ = QString::fromLatin1(section); }
    [[nodiscard]] QString text(const char *key) const { return iniCon.value(section_, QString::fromLatin1(key)); }

    [[nodiscard]] bool isOne(const char *key) const {
        bool isNumber = false;
        return text(key).toDouble(&isNumber) == 1.0 && isNumber;
    }

    /// A whole number in the range of the field, halves rounded to the even neighbour; what is none (empty, no decimal
    /// number, too big) gives the default.
    template <class Field>
    void read(const char *key, Field &field, Field whenBad = 0) const {
        bool isNumber = false;
        const double number = std::nearbyint(text(key).toDouble(&isNumber));
        const bool fits =
            isNumber && number >= std::numeric_limits<Field>::min() && number <= std::numeric_limits<Field>::max();
        field = fits ? static_cast<Field>(number) : whenBad;
    }

  private:
    IniFile iniCon;
    QString section_;
};

void loadAudio(Reader &file, Settings &settings) {
    file.setSection("Audio");
    file.read("CBuffers", settings.CBuffers);
    file.read("Cbuffer_size", settings.Cbuffer_size);
    file.read("CCallBack", settings.CCallBack);
    file.read("CCard", settings.CCard);
    file.read("RecCard", settings.RecCard);
    settings.RecCardName = file.text("RecCardName");
    settings.Mute = file.isOne("Mute");
    file.read("BitRate", settings.BitRate, std::int16_t{2});
    settings.FreeFormat = file.isOne("FreeFormat");
}

void loadProcessor(Reader &file, ProcessorSettings &processor) {
    file.setSection("AudioProcessor");
    for (const ProcessorKey &key : processorKeys) {
        if (key.check != nullptr) {
            processor.*key.check = file.isOne(key.key) ? 1 : 0;
        } else {
            file.read(key.key, processor.*key.value);
        }
    }
}

void loadColours(Reader &file, Settings &settings) {
    file.setSection("Colors");
    for (const Colour &colour : backColours) {
        file.read(colour.key, settings.*colour.field, white);
    }
    for (const Colour &colour : textColours) {
        file.read(colour.key, settings.*colour.field);
    }
}

/// Collects keys of the settings file and writes them as one step.
class Writer {
  public:
    Writer(FileSystem &files, const QString &programFolder)
        : iniCon(files, joined(programFolder, QStringLiteral("\\orvel.ini"))) {}

    void setSection(const char *section) { section_ = QString::fromLatin1(section); }
    void write(const char *key, const QString &value) { iniCon.setValue(section_, QString::fromLatin1(key), value); }
    void write(const char *key, std::int32_t value) { write(key, QString::number(value)); }
    void writeTruth(const char *key, bool value) { write(key, value ? 1 : 0); }
    void save() { iniCon.save(); }

  private:
    IniFile iniCon;
    QString section_;
};

} // namespace

void LoadSettings(FileSystem &files, const QString &programFolder, Settings &settings, ProcessorSettings &processor) {
    Reader file(files, programFolder);
    file.setSection("Files");
    settings.Databasepath = file.text("Databasepath");
    settings.ImportPath = file.text("ImportPath");
    settings.ExportPath = file.text("ExportPath");
    settings.VoicetrackPath = file.text("VoicetrackPath");
    settings.Nodelete = file.isOne("Nodelete");
    settings.NewPath = joined(programFolder, QStringLiteral("\\new"));
    settings.OkPath = joined(programFolder, QStringLiteral("\\ok"));
    loadAudio(file, settings);
    file.setSection("Program");
    settings.Network = file.isOne("Network");
    settings.ServerMode = file.isOne("Server");
    file.read("Countdown", settings.Countdown);
    settings.UseProcessor = true;
    loadProcessor(file, processor);
    loadColours(file, settings);
}

DriveMap loadDrives(FileSystem &files, const QString &programFolder) {
    const IniFile file(files, joined(programFolder, QStringLiteral("\\orvel.ini")));
    const QString section = QStringLiteral("Drives");
    DriveMap drives(files, programFolder);
    const QStringList letters = file.keys(section);
    for (const QString &letter : letters) {
        drives.set(letter.front(), file.value(section, letter));
    }
    return drives;
}

void saveAudio(FileSystem &files, const QString &programFolder, const StoredCard &card,
               const ProcessorSettings &processor) {
    Writer file(files, programFolder);
    file.setSection("Audio");
    file.write("RecCard", card.position);
    if (!card.name.isEmpty()) {
        file.write("RecCardName", card.name);
    }
    file.setSection("AudioProcessor");
    for (const ProcessorKey &key : processorKeys) {
        file.write(key.key, key.check != nullptr ? processor.*key.check : processor.*key.value);
    }
    file.save();
}

void saveSetup(FileSystem &files, const QString &programFolder, const Settings &settings) {
    Writer file(files, programFolder);
    file.setSection("Files");
    file.write("Databasepath", settings.Databasepath);
    file.write("VoiceTrackPath", settings.VoicetrackPath);
    file.setSection("Audio");
    file.write("CBuffer_size", settings.Cbuffer_size);
    file.write("CBuffers", settings.CBuffers);
    file.write("CCard", settings.CCard);
    file.write("CCallback", settings.CCallBack);
    file.writeTruth("Mute", settings.Mute);
    file.write("BitRate", settings.BitRate);
    file.setSection("Program");
    file.write("Countdown", settings.Countdown);
    file.writeTruth("Network", settings.Network);
    file.writeTruth("Server", settings.ServerMode);
    file.setSection("Colors");
    for (const auto &colours : {backColours, textColours}) {
        for (const Colour &colour : colours) {
            if (colour.written) {
                file.write(colour.key, settings.*colour.field);
            }
        }
    }
    file.save();
}

} // namespace orvel
