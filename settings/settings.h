#pragma once

#include "station/drive_map.h"

#include <QString>

#include <cstdint>
#include <string_view>
#include <vector>

namespace orvel {

class FileSystem;

/// A truth value of the settings: 16 bits, all of them set for true.
class Truth {
  public:
    Truth() = default;
    Truth(bool on) : bits_(on ? std::int16_t{-1} : std::int16_t{0}) {} // NOLINT(google-explicit-constructor)
    operator bool() const { return bits_ != 0; }                       // NOLINT(google-explicit-constructor)
    [[nodiscard]] std::int16_t bits() const { return bits_; }

  private:
    std::int16_t bits_ = 0;
};
static_assert(sizeof(Truth) == 2);

/// The station's settings, read once at the start. Folders are texts as stored; colours hold red in the low byte.
struct Settings {
    QString Databasepath;
    QString ImportPath;
    QString ExportPath;
    QString VoicetrackPath;
    QString NewPath;
    QString OkPath;
    Truth Nodelete;
    std::int16_t CBuffers = 0;
    std::int16_t Cbuffer_size = 0;
    std::int16_t CCard = 0;
    std::int16_t CCallBack = 0; ///< 0 "Windows", 1 "Callback", 2 "Thread"
    std::int16_t RecCard = 0;   ///< position in the list of cards
    QString RecCardName;        ///< of the card that had that position; empty where it was never stored
    Truth Mute;
    std::int16_t BitRate = 0; ///< 0 to 4: 128, 192, 256, 320, 350 kbit/s
    Truth Network;
    Truth ServerMode;
    std::int16_t Countdown = 0; ///< seconds
    Truth UseProcessor;
    std::int32_t MusBack = 0, JingBack = 0, RecBack = 0, EventBack = 0, TijdBack = 0, PresBack = 0;
    std::int32_t MusTxt = 0, jingTxt = 0, RecTxt = 0, EventTxt = 0, TijdTxt = 0, PresTxt = 0;
    Truth FreeFormat;                ///< write 350 kbit/s as true free format
    std::int16_t LoudnessTarget = 0; ///< LUFS that every take is brought to; 0: as loud as it is
    std::int16_t TruePeak = -1;      ///< dBTP that the loudness stage stays below
};

/// The processor panel: the section [AudioProcessor], with its keys in the file's order. Which keys there are, the
/// processing stages say.
class ProcessorSettings {
  public:
    struct Value {
        const char *key;
        bool isCheck; ///< a check box, as 0 or 1; else a display, as it stands
        std::int32_t value = 0;
    };

    void addCheck(const char *key) { values_.push_back({key, true}); }
    void addNumber(const char *key) { values_.push_back({key, false}); }

    /// 0 for a key that there is not.
    [[nodiscard]] std::int32_t operator[](std::string_view key) const;
    /// A key that there is not is left.
    void set(std::string_view key, std::int32_t value);
    [[nodiscard]] std::vector<Value> &values() { return values_; }
    [[nodiscard]] const std::vector<Value> &values() const { return values_; }

  private:
    std::vector<Value> values_;
};

/// Reads "\orvel.ini" of the program folder into every field and every value of the processor. Nothing in it can fail:
/// a file that is missing or unreadable is empty, and a value that cannot be used gives its field the default, as a
/// missing one does: BitRate 2, white backgrounds, a true peak of -1, 0 or off for the rest. Numbers are decimal, with
/// a point; halves round to the even neighbour, and a number outside its field's range cannot be used. A truth value is
/// on when its number is exactly 1.
void LoadSettings(FileSystem &files, const QString &programFolder, Settings &settings, ProcessorSettings &processor);

/// The section [Drives].
DriveMap loadDrives(FileSystem &files, const QString &programFolder);

/// The recording card as the settings file holds it. Positions shift when cards come and go: the name, where it is
/// known, tells which one it was.
struct StoredCard {
    int position = 0;
    QString name; ///< in one line; may be empty
};

/// Writes the recording card and the processor panel. Throws what FileSystem::write() throws.
void saveAudio(FileSystem &files, const QString &programFolder, const StoredCard &card,
               const ProcessorSettings &processor);

/// Writes what the setup dialog edits. Throws what FileSystem::write() throws.
void saveSetup(FileSystem &files, const QString &programFolder, const Settings &settings);

} // namespace orvel
