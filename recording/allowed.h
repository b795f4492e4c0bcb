#pragma once

namespace orvel {

/// What the desk is doing. A take that was recorded and not filed is no state of the desk but of its step (TakeFacts).
enum class SessionState {
    Idle,
    CountingDown,
    Recording,
    Processing, ///< from the stop until the take is ready
    Listening,  ///< to a take
    Joining,    ///< listening to takes between their neighbours
    Measuring,  ///< the delay of the recording card
    Filing      ///< marking, encoding, filing, or asking for the next version
};

/// What the program was started for.
struct DeskMode {
    bool RecorderOnly = false; ///< the plain recorder
    bool hasStations = false;  ///< there is a station list
};

/// What the selected step has.
struct StepFacts {
    bool hasFile = false;     ///< a take name
    bool hasPlaylist = false; ///< a playlist is open
};

/// What can be done to a take.
struct EditFacts {
    bool canFit = false; ///< there is an intro that it could fit
    bool canUndo = false;
    bool canRedo = false;
    bool canRework = false; ///< it is there as it was recorded

    bool operator==(const EditFacts &) const = default;
};

/// What there is of the selected step's take.
struct TakeFacts {
    bool canListen = false; ///< to a take or to its voice track
    bool canSave = false;   ///< it was recorded and is not filed
    EditFacts edits;

    bool operator==(const TakeFacts &) const = default;
};

/// What of the main window is enabled.
struct Allowed {
    bool cmdRec = false;
    bool cmdPlay = false;
    bool cmdSave = false;
    bool cmdImport = false;
    bool cmdMultivoice = false;
    bool lists = false; ///< tabFiles with its delete buttons
    bool dbgLijst = false;
    bool playlistTools = false; ///< print, import and export of playlists
    bool cmdInVerband = false;
    bool cmdHeleUur = false;
    bool takes = false; ///< the list of the step's takes
    bool cut = false;   ///< the take's ends, in its outline
    bool cmdFit = false;
    bool cmdUndo = false;
    bool cmdRedo = false;
    bool cmdOpnieuw = false; ///< the stages again, on what was recorded
    bool cmdDroog = false;   ///< what was recorded, while listening
    bool cmdDelay = false;   ///< measuring the card's delay

    bool operator==(const Allowed &) const = default;
};

/// What a button of a joystick does.
enum class DeskKey { None, Record, Play, Save };

/// The whole of it: whatever the window enables follows from these four.
Allowed allowed(SessionState state, const DeskMode &mode, const StepFacts &step, const TakeFacts &take);

/// What the button with this number, from 1, does where so much is enabled.
[[nodiscard]] DeskKey pressed(int button, const Allowed &may);

} // namespace orvel
