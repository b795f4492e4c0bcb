#pragma once

#include "settings/settings.h"

#include <span>
#include <variant>

namespace orvel {

/// Who writes a key. What nobody writes is set by hand in the file.
enum class WrittenBy { Nobody, Setup, EndOfProgram };

/// The kind of the field is the kind of the value: a text as it stands, a truth value that is on for exactly 1, or a
/// whole number that fits.
using SettingsField =
    std::variant<QString Settings::*, Truth Settings::*, std::int16_t Settings::*, std::int32_t Settings::*>;

/// A value of the settings file.
struct SettingsKey {
    const char *section;
    const char *key; ///< as it is read; names match without regard to case
    SettingsField field;
    WrittenBy writer = WrittenBy::Nobody;
    const char *written = nullptr; ///< as it is written, where that is spelled otherwise
    std::int32_t whenBad = 0;      ///< of a number that is missing or cannot be used
    bool neverEmpty = false;       ///< an empty text is not written: what the file has stays
};

/// The keys in the order in which they are written: the one list of them. Another setting is a field of Settings and a
/// row here. The section [AudioProcessor] is not among them, see ProcessorSettings.
std::span<const SettingsKey> settingsKeys();

} // namespace orvel
