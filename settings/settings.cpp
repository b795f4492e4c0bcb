#include "settings/settings.h"

#include "platform/ini_file.h"
#include "settings/settings_keys.h"
#include "station/places.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {

namespace {

const QString processorSection = QStringLiteral("AudioProcessor");

IniFile settingsFile(FileSystem &files, const QString &programFolder) {
    return {files, Places(programFolder).settingsFile()};
}

void convert(const QString &text, QString &field, std::int32_t /*whenBad*/) {
    field = text;
}

void convert(const QString &text, Truth &field, std::int32_t /*whenBad*/) {
    bool isNumber = false;
    field = text.toDouble(&isNumber) == 1.0 && isNumber;
}

/// A whole number in the range of the field, halves rounded to the even neighbour; what is none (empty, no decimal
/// number, too big) gives the default.
template <class Number>
void convert(const QString &text, Number &field, std::int32_t whenBad) {
    bool isNumber = false;
    const double number = std::nearbyint(text.toDouble(&isNumber));
    const bool fits =
        isNumber && number >= std::numeric_limits<Number>::min() && number <= std::numeric_limits<Number>::max();
    field = static_cast<Number>(fits ? number : whenBad);
}

QString asText(const QString &value) {
    return value;
}

QString asText(Truth value) {
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

QString asText(std::int32_t value) {
    return QString::number(value);
}

void write(IniFile &file, WrittenBy writer, const Settings &settings) {
    for (const SettingsKey &key : settingsKeys()) {
        const QString value = std::visit([&](auto field) { return asText(settings.*field); }, key.field);
        if (key.writer == writer && !(key.neverEmpty && value.isEmpty())) {
            file.setValue(QString::fromLatin1(key.section),
                          QString::fromLatin1(key.written != nullptr ? key.written : key.key), value);
        }
    }
}

} // namespace

std::int32_t ProcessorSettings::operator[](std::string_view key) const {
    const auto found = std::find_if(values_.begin(), values_.end(), [key](const Value &v) { return v.key == key; });
    return found == values_.end() ? 0 : found->value;
}

void ProcessorSettings::set(std::string_view key, std::int32_t value) {
    const auto found = std::find_if(values_.begin(), values_.end(), [key](const Value &v) { return v.key == key; });
    if (found != values_.end()) {
        found->value = value;
    }
}

void LoadSettings(FileSystem &files, const QString &programFolder, Settings &settings, ProcessorSettings &processor) {
    const IniFile iniCon = settingsFile(files, programFolder);
    for (const SettingsKey &key : settingsKeys()) {
        const QString text = iniCon.value(QString::fromLatin1(key.section), QString::fromLatin1(key.key));
        std::visit([&](auto field) { convert(text, settings.*field, key.whenBad); }, key.field);
    }
    settings.NewPath = Places(programFolder).newFolder();
    settings.OkPath = Places(programFolder).okFolder();
    settings.UseProcessor = true;
    for (ProcessorSettings::Value &value : processor.values()) {
        const QString text = iniCon.value(processorSection, QString::fromLatin1(value.key));
        Truth isOn;
        convert(text, isOn, 0);
        convert(text, value.value, 0);
        value.value = value.isCheck ? (isOn ? 1 : 0) : value.value;
    }
}

DriveMap loadDrives(FileSystem &files, const QString &programFolder) {
    const IniFile iniCon = settingsFile(files, programFolder);
    const QString section = QStringLiteral("Drives");
    DriveMap drives(files, programFolder);
    const QStringList letters = iniCon.keys(section);
    for (const QString &letter : letters) {
        drives.set(letter.front(), iniCon.value(section, letter));
    }
    return drives;
}

void saveAudio(FileSystem &files, const QString &programFolder, const StoredCard &card,
               const ProcessorSettings &processor) {
    IniFile iniCon = settingsFile(files, programFolder);
    Settings settings;
    settings.RecCard = static_cast<std::int16_t>(card.position);
    settings.RecCardName = card.name;
    write(iniCon, WrittenBy::EndOfProgram, settings);
    for (const ProcessorSettings::Value &value : processor.values()) {
        iniCon.setValue(processorSection, QString::fromLatin1(value.key), QString::number(value.value));
    }
    iniCon.save();
}

void saveSetup(FileSystem &files, const QString &programFolder, const Settings &settings) {
    IniFile iniCon = settingsFile(files, programFolder);
    write(iniCon, WrittenBy::Setup, settings);
    iniCon.save();
}

} // namespace orvel
