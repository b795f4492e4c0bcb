#include "settings/settings_keys.h"

#include <array>

namespace orvel {

std::span<const SettingsKey> settingsKeys() {
    using enum WrittenBy;
    constexpr std::int32_t white = 0xFFFFFF;
    constexpr std::int32_t black = 0;
    static constexpr std::array keys = {
        SettingsKey{"Files", "Databasepath", &Settings::Databasepath, Setup},
        SettingsKey{"Files", "VoicetrackPath", &Settings::VoicetrackPath, Setup, "VoiceTrackPath"},
        SettingsKey{"Files", "ImportPath", &Settings::ImportPath},
        SettingsKey{"Files", "ExportPath", &Settings::ExportPath},
        SettingsKey{"Files", "Nodelete", &Settings::Nodelete},
        SettingsKey{"Audio", "Cbuffer_size", &Settings::Cbuffer_size, Setup, "CBuffer_size"},
        SettingsKey{"Audio", "CBuffers", &Settings::CBuffers, Setup},
        SettingsKey{"Audio", "CCard", &Settings::CCard, Setup},
        SettingsKey{"Audio", "CCallBack", &Settings::CCallBack, Setup, "CCallback"},
        SettingsKey{"Audio", "Mute", &Settings::Mute, Setup},
        SettingsKey{.section = "Audio", .key = "BitRate", .field = &Settings::BitRate, .writer = Setup, .whenBad = 2},
        SettingsKey{"Audio", "RecCard", &Settings::RecCard, EndOfProgram},
        SettingsKey{.section = "Audio",
                    .key = "RecCardName",
                    .field = &Settings::RecCardName,
                    .writer = EndOfProgram,
                    .neverEmpty = true},
        SettingsKey{"Audio", "FreeFormat", &Settings::FreeFormat},
        SettingsKey{"Program", "Countdown", &Settings::Countdown, Setup},
        SettingsKey{"Program", "Network", &Settings::Network, Setup},
        SettingsKey{"Program", "Server", &Settings::ServerMode, Setup},
        SettingsKey{"Colors", "MusBack", &Settings::MusBack, Setup, nullptr, white},
        SettingsKey{"Colors", "JingBack", &Settings::JingBack, Setup, nullptr, white},
        SettingsKey{"Colors", "RecBack", &Settings::RecBack, Setup, nullptr, white},
        SettingsKey{"Colors", "EventBack", &Settings::EventBack, Setup, nullptr, white},
        SettingsKey{"Colors", "TijdBack", &Settings::TijdBack, Nobody, nullptr, white},
        SettingsKey{"Colors", "PresBack", &Settings::PresBack, Setup, nullptr, white},
        SettingsKey{"Colors", "MusTxt", &Settings::MusTxt, Setup, nullptr, black},
        SettingsKey{"Colors", "jingTxt", &Settings::jingTxt, Setup, nullptr, black},
        SettingsKey{"Colors", "RecTxt", &Settings::RecTxt, Setup, nullptr, black},
        SettingsKey{"Colors", "EventTxt", &Settings::EventTxt, Setup, nullptr, black},
        SettingsKey{"Colors", "TijdTxt", &Settings::TijdTxt, Nobody, nullptr, black},
        SettingsKey{"Colors", "PresTxt", &Settings::PresTxt, Setup, nullptr, black},
        SettingsKey{"Loudness", "Target", &Settings::LoudnessTarget},
        SettingsKey{"Loudness", "TruePeak", &Settings::TruePeak, Nobody, nullptr, -1},
    };
    return keys;
}

} // namespace orvel
