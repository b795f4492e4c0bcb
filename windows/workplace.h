#pragma once

#include "platform/database.h"
#include "platform/platform.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "settings/settings.h"
#include "station/drive_map.h"
#include "station/recovery.h"

namespace orvel {

/// What the windows share: the rooms' state, without any window.
struct Workplace {
    Workplace(Platform &platform, const QString &programFolder, std::function<void(const QString &)> beforeFirstWrite)
        : datList(platform.databases, std::move(beforeFirstWrite)), recovery(platform.files, programFolder),
          drives(platform.files, programFolder) {}

    Settings settings;
    CurrentStep step;
    Playlist datList;
    Recovery recovery;
    DriveMap drives;
    std::unique_ptr<RecordSet> datTracks;
    std::unique_ptr<RecordSet> datJingles;
    bool RecorderOnly = false;
};

} // namespace orvel
