#pragma once

#include "platform/platform.h"
#include "playlist/completion.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "playlist/step_marks.h"
#include "playlist/voice_tracks.h"
#include "production/dry_listening.h"
#include "production/filing.h"
#include "production/import_desk.h"
#include "production/processing_chain.h"
#include "production/retouching.h"
#include "production/saving.h"
#include "production/take_findings.h"
#include "production/unfinished.h"
#include "recording/catalogues.h"
#include "recording/delay_measurement.h"
#include "recording/flac_packer.h"
#include "recording/join_listening.h"
#include "recording/listening.h"
#include "recording/take_picture.h"
#include "recording/take_session.h"
#include "recording/take_store.h"
#include "recording/talk_along.h"
#include "recording/watch.h"
#include "settings/card_delays.h"
#include "settings/settings.h"
#include "station/drive_map.h"
#include "station/journal.h"
#include "station/places.h"
#include "station/recovery.h"
#include "station/station_lock.h"

namespace orvel {

/// What the rooms ask of the windows.
struct View {
    std::function<void(const QString &sentence)> tell;
    std::function<void()> changed;
    std::function<void()> ticked;
    std::function<void(float left, float right)> levels;
    std::function<void(int row)> showRow;
    std::function<void(int row)> rowChanged;
    std::function<void()> refreshPlaylist;
    std::function<void()> closePlaylist;
    std::function<void()> refreshLists;
    std::function<ProcessorSettings()> processor;
    std::function<void()> showStations;
    std::function<void(std::optional<int> percent)> progress;
    std::function<void(bool visible)> showProcess;
    std::function<void()> pictureChanged;
    std::function<QString()> chosenCard;
    std::function<void()> watched;
};

/// The rooms of one station, put together: everything that the windows show and ask. Knows no window.
struct Workplace {
    Workplace(Platform &thePlatform, const QString &programFolder, View theView);

    Platform &platform;
    View view;
    Places places;
    Settings settings;
    CardDelays delays;
    CurrentStep step;
    Recovery recovery;
    Journal journal;
    Playlist datList;
    StepMarks marks;
    std::vector<NetworkStation> stations; ///< of the network; empty where there is no list
    VoiceTracks tracks;
    DriveMap drives;
    Catalogues catalogues;
    TakeStore takes;
    FlacPacker packer;
    ProcessingChain chain;
    TakeFindings findings;
    TakePicture picture;
    TakeEditing editing;
    TakeSession session;
    Watch watch;
    Retouching retouching;
    JoinFiles joinFiles;
    TalkAlong talkAlong;
    JoinListening joins;
    DelayMeasurement delay;
    Listening listening;
    DryListening dryListening;
    Completion completion;
    Filing filing;
    Saving saving;
    Unfinished unfinished;
    StationLock lock;

    /// What follows from another state of the desk: the take that is seen, and the takes that are put in order.
    void follow();
    /// Clears the shelves of finished playlists, and packs what was recorded, as time allows.
    void tidyTakes();
    /// Only what lies between these moments of the selected step's take stays, milliseconds.
    void cutTake(double from, double to);
    [[nodiscard]] ImportDesk importDesk();
    /// Reads the station list anew; one that cannot be read leaves none.
    void readStations();
    /// A take came back from recovery: its step is selected where the open playlist has it, and it can be saved.
    void showTake(const QString &name);
    /// What is marked in the outline that is seen.
    [[nodiscard]] TakeMarks marksInSight() const;
    /// How loud the selected step's take is, where that is known; else empty.
    [[nodiscard]] QString takeLoudness() const;

  private:
    /// Of a playlist that is about to be changed for the first time.
    void keepCopy(const QString &playlist);
    void deskChanged();
    /// In the selected step's take; nothing where there is none, or nothing is known.
    [[nodiscard]] const Findings *found() const;
    void takeGrew(const RecorderStatus &status);

    SessionState followed_ = SessionState::Idle;
};

} // namespace orvel
