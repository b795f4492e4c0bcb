#include "windows/workplace.h"

#include "platform/audio.h"
#include "station/holder.h"
#include "station/ignore_errors.h"

namespace orvel {

Workplace::Workplace(Platform &thePlatform, const QString &programFolder, View theView)
    : platform(thePlatform), view(std::move(theView)), places(programFolder), recovery(platform.files, programFolder),
      journal(platform.files, places), datList(platform.databases, [this](const QString &path) { keepCopy(path); }),
      marks(datList, platform.databases, settings.NewPath, view.rowChanged), tracks(platform.files, settings),
      drives(platform.files, programFolder), catalogues(platform, settings),
      takes(platform.files, places, journal, recovery, toText(presentHolder())),
      chain(ProcessingContext{platform, places.programFolder(), view.processor, recovery, view.showProcess, view.tell,
                              [this] {
                                  return LoudnessGoal{settings.LoudnessTarget, settings.TruePeak};
                              }}),
      loudness(platform), session({platform, settings, datList, step, marks, takes, places,
                                   [this](const QString &take) {
                                       chain.AudioProcessing(take);
                                       // Of an hour: five seconds.
                                       view.showProcess(true);
                                       loudness.measure(take);
                                       view.showProcess(false);
                                   },
                                   view.tell,
                                   [this] {
                                       watch.sessionChanged();
                                       view.changed();
                                   },
                                   view.ticked, view.levels, view.showRow,
                                   [this](const RecorderStatus &status) { watch.recorded(status); }}),
      watch({platform, settings, places, session, view.chosenCard, view.levels, view.watched}),
      listening({platform, settings, datList, step, places, session, view.ticked, view.levels}),
      completion({platform, settings, datList, step, recovery, view.refreshPlaylist, view.showRow, view.changed,
                  view.closePlaylist, view.refreshLists, view.tell}),
      filing({platform, settings, places, recovery, journal, takes, marks, view.tell, view.progress}),
      saving({platform, settings, places, session, listening, filing, completion, view.tell, view.showStations,
              view.changed}),
      unfinished({platform, settings, places, recovery, journal, takes, marks, view.tell}),
      lock(platform.files, places) {}

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

QString Workplace::takeLoudness() const {
    QString text;
    ignoringErrors([&] {
        const std::optional<Loudness> known =
            session.facts().canSave ? loudness.of(places.take(session.currentTake().name())) : std::nullopt;
        text = known ? toText(*known) : QString();
    });
    return text;
}

void Workplace::keepCopy(const QString &playlist) {
    const QString problem = recovery.keepCopy(playlist);
    if (!problem.isEmpty()) {
        view.tell(problem);
    }
}

} // namespace orvel
