#include "windows/workplace.h"

#include "platform/file_system.h"
#include "station/holder.h"
#include "station/ignore_errors.h"

namespace orvel {

Workplace::Workplace(Platform &thePlatform, const QString &programFolder, View theView)
    : platform(thePlatform), view(std::move(theView)), places(programFolder), recovery(platform.files, programFolder),
      journal(platform.files, places), datList(platform.databases, [this](const QString &path) { keepCopy(path); }),
      marks(datList, platform.databases, settings.NewPath, view.rowChanged),
      tracks(platform.files, settings, &stations), drives(platform.files, programFolder),
      catalogues(platform, settings), takes(platform.files, places, journal, recovery, toText(presentHolder())),
      chain(ProcessingContext{platform, places.programFolder(), view.processor, recovery, view.showProcess, view.tell}),
      session({platform, settings, datList, step, marks, takes, places,
               [this](const QString &take) { chain.AudioProcessing(take); }, view.tell, view.changed, view.ticked,
               view.levels, view.showRow}),
      listening({platform, settings, datList, step, places, session, view.ticked, view.levels}),
      completion({platform, settings, datList, step, recovery, view.refreshPlaylist, view.showRow, view.changed,
                  view.closePlaylist, view.refreshLists, view.tell, &stations}),
      filing({platform, settings, places, recovery, journal, takes, marks, view.tell, view.progress}),
      saving({platform, settings, places, session, listening, filing, completion, view.tell, view.showStations,
              view.changed, &stations}),
      unfinished({platform, settings, places, recovery, journal, takes, marks, view.tell}),
      lock(platform.files, places) {}

void Workplace::readStations() {
    stations.clear();
    if (platform.files.fileExists(places.stationList())) {
        ignoringErrors([this] { stations = stationList(platform.databases, places); });
    }
}

ImportDesk Workplace::importDesk() {
    return {platform, settings, places, step, datList, session, marks, filing, completion, view.showRow, view.tell};
}

void Workplace::showTake(const QString &name) {
    if (session.mode.RecorderOnly) {
        step.VoiceTrackName = name;
    }
    for (int row = 0; datList.isOpen() && row < datList.stepCount(); ++row) {
        if (datList.value(row, AtrackColumn).toString() == name) {
            view.showRow(row);
        }
    }
    session.stepSelected();
}

void Workplace::keepCopy(const QString &playlist) {
    const QString problem = recovery.keepCopy(playlist);
    if (!problem.isEmpty()) {
        view.tell(problem);
    }
}

} // namespace orvel
