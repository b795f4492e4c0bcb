#pragma once

#include <QString>

#include <cstdint>

namespace orvel {

class Playlist;

/// The talk-over bar: milliseconds, and the colour that tells where the take stands.
struct TalkBar {
    enum class Colour { Blue, Yellow, Red };

    std::int32_t maximum = 0;
    std::int32_t value = 0;
    Colour colour = Colour::Blue;

    bool operator==(const TalkBar &) const = default;
};

/// The talk-over times of a step as its labels show them.
struct TalkTimes {
    bool visible = false;
    QString lblOuttro;
    QString lblIntro;
    QString lblInOut;
};

/// The step that recording, playback and saving act on: what the grid's handlers made of the selected row.
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
    int row = -1;                     ///< of the selected step; -1 without one
    std::int32_t stap = 0;            ///< its number
    bool isImported = false;          ///< the last presentation step that was selected has its voice track
    TalkTimes times;
    TalkBar barRec;
};

/// What `lblBestand` shows.
QString shownFileName(const CurrentStep &step);

/// The grid's row change: talk-over times and bar of a row; another row than a presentation step has none. Nothing
/// happens while a take runs. Throws SubscriptOutOfRange for steps outside the time tables, TypeMismatch.
void showTimes(const Playlist &playlist, int row, CurrentStep &step);

/// The grid's row selection: the row's take name. Nothing happens while a take runs. Throws TypeMismatch for a name
/// or a catalogue number that is none: what is left then is a step without a file.
void selectStepFile(const Playlist &playlist, int row, CurrentStep &step);

/// Whether a row can be previewed now. Throws TypeMismatch.
bool canPreview(const Playlist &playlist, int row, const CurrentStep &step);

/// The grid's double click: whether the row can be previewed; sets what to preview. Throws TypeMismatch.
bool choosePreview(const Playlist &playlist, int row, CurrentStep &step);

/// No step is selected any more. What was previewed stays.
void deselect(CurrentStep &step);

} // namespace orvel
