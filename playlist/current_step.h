#pragma once

#include <QString>

#include <cstdint>

namespace orvel {

/// The step that recording, playback and saving act on. Written by the grid's handlers, kept by the main window.
struct CurrentStep {
    QString VoiceTrackName;           ///< the take's name, without folder and extension; "NONE" when the step has none
    bool StepSelected = false;        ///< the selected step has a take name
    std::int32_t TalkTotalMs = 0;     ///< outro of the previous step plus intro of the next one, milliseconds
    std::int32_t NextIntroMs = 0;     ///< milliseconds
    std::int32_t PrevOutroMs = 0;     ///< milliseconds
    std::int32_t PreviewTrackId = 0;  ///< catalogue number for the preview
    std::int16_t PreviewKind = 0;     ///< 1 music track, 3 jingle
    bool previewAllowed = false;      ///< a step without a take name was selected at least once
    bool PlaylistTakeRunning = false; ///< from the start of a count-down to the stop: the grid's handlers do nothing
};

} // namespace orvel
