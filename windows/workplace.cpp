#include "windows/workplace.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "station/holder.h"
#include "station/ignore_errors.h"

#include <utility>

namespace orvel {

Workplace::Workplace(Platform &thePlatform, const QString &programFolder, View theView)
    : platform(thePlatform), view(std::move(theView)), places(programFolder), delays(platform.files, programFolder),
      recovery(platform.files, programFolder), journal(platform.files, places),
      datList(platform.databases, [this](const QString &path) { keepCopy(path); }),
      marks(datList, platform.databases, settings.NewPath, view.rowChanged),
      tracks(platform.files, settings, &stations), drives(platform.files, programFolder),
      catalogues(platform, settings), takes(platform.files, places, journal, recovery, toText(presentHolder())),
      packer(platform),
      chain(ProcessingContext{platform, places.programFolder(), view.processor, recovery, view.showProcess, view.tell,
                              [this] {
                                  return LoudnessGoal{settings.LoudnessTarget, settings.TruePeak};
                              }}),
      findings(platform, places, view.changed), picture(platform, places, view.pictureChanged),
      editing(platform, places, recovery),
      session({platform, settings, datList, step, marks, takes, places,
               [this](const QString &take) { chain.AudioProcessing(take); }, view.tell, [this] { deskChanged(); },
               view.ticked, view.levels, view.showRow, [this](const RecorderStatus &status) { takeGrew(status); },
               [this](const QString &take) { retouching.recorded(take); },
               [this](const QString &take) { return retouching.facts(take); },
               [this](auto moment) { talkAlong.countDownBegan(moment); }, [this] { return talkAlong.outroBegins(); },
               [this] { talkAlong.takeOver(); }}),
      watch({platform, settings, places, session, view.chosenCard, view.levels, view.watched}),
      retouching({platform, places, step, session, editing, findings, takes, [this] { return chain.wishes(); },
                  view.showProcess, view.tell}),
      joinFiles({platform.files, settings, drives, catalogues, datList, places}),
      talkAlong({platform, settings, step, session.mode, joinFiles, view.tell, view.changed,
                 [this] { return delay.ofCard(); }}),
      joins({platform, datList, step, joinFiles, session, view.showRow, view.tell}),
      delay({platform, places, session, delays, view.changed}),
      listening({platform, settings, datList, step, places, session, view.ticked, view.levels}),
      dryListening({platform, places, step, session, takes, listening, view.tell, view.changed}),
      completion({platform, settings, datList, step, recovery, view.refreshPlaylist, view.showRow, view.changed,
                  view.closePlaylist, view.refreshLists, view.tell, &stations}),
      filing({platform, settings, places, recovery, journal, takes, marks, view.tell, view.progress}),
      saving({platform, settings, places, session, listening, filing, completion, view.tell, view.showStations,
              view.changed, &stations}),
      unfinished({platform, settings, places, recovery, journal, takes, marks, view.tell}),
      lock(platform.files, places) {
    takes.ended = [this](const QString &take) { retouching.ended(take); };
}

void Workplace::deskChanged() {
    watch.sessionChanged();
    dryListening.sessionChanged();
    view.changed();
}

void Workplace::takeGrew(const RecorderStatus &status) {
    watch.recorded(status);
    picture.hear(status.speechFrom, status.speechTo);
    picture.grow(status.frames, status.peak);
}

void Workplace::follow() {
    QString file;
    // A name that is none has no take to be seen.
    ignoringErrors([&] { file = listening.file(); });
    picture.follow(session.state(), file);
    if (std::exchange(followed_, session.state()) == SessionState::Processing) {
        tidyTakes();
    }
}

void Workplace::cutTake(double from, double to) {
    listening.interrupt(); // what a handle was dragged over is heard meanwhile
    const auto sample = [this](double ms) { return static_cast<std::size_t>(ms * picture.sampleRate() / 1000); };
    retouching.edit(trimBoth(sample(from), sample(to)));
}

void Workplace::tidyTakes() {
    takes.shelf().clearFinished(settings.NewPath);
    for (const QString &dry : takes.shelf().unpacked()) {
        packer.pack(dry, TakeShelf::packed(dry));
    }
}

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
    retouching.ended(name);
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

const Findings *Workplace::found() const {
    return session.facts().canSave ? findings.of(session.currentTake().name()) : nullptr;
}

TakeMarks Workplace::marksInSight() const {
    if (session.state() == SessionState::Recording || session.state() == SessionState::Processing) {
        return {picture.speech(), watch.guard().clips()};
    }
    return found() != nullptr ? found()->marks : TakeMarks();
}

QString Workplace::takeLoudness() const {
    return found() != nullptr && found()->loudness ? toText(*found()->loudness) : QString();
}

void Workplace::keepCopy(const QString &playlist) {
    const QString problem = recovery.keepCopy(playlist);
    if (!problem.isEmpty()) {
        view.tell(problem);
    }
}

} // namespace orvel
