#include "production/unfinished.h"

#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "production/take_editing.h"
#include "recording/take_store.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"
#include "station/journal.h"
#include "station/places.h"
#include "station/recovery.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace orvel {

namespace {

Take takeOf(const JournalEntry &entry) {
    const auto kind = entry.playlist.isEmpty() ? Take::Kind::Recorder : Take::Kind::Playlist;
    return {kind, {entry.playlist, entry.stap, entry.name}, {}};
}

UnfiledTake::Why reason(JournalEntry::Phase phase) {
    switch (phase) {
    case JournalEntry::Phase::Recording:
        return UnfiledTake::Why::RecordingBroken;
    case JournalEntry::Phase::Filing:
        return UnfiledTake::Why::FilingBroken;
    case JournalEntry::Phase::Kept:
        break;
    }
    return UnfiledTake::Why::NotSaved;
}

} // namespace

std::vector<UnfiledTake> Unfinished::settle(bool recorderOnly) {
    std::vector<UnfiledTake> waiting;
    for (const JournalEntry &entry : context_.journal.entries()) {
        if (entry.playlist.isEmpty() == recorderOnly) {
            ignoringErrors([&] {
                // Another program on this station is busy with it.
                if (context_.takes.reserve(entry.name)) {
                    settleOne(entry, waiting);
                }
            });
        }
    }
    return waiting;
}

void Unfinished::settleOne(const JournalEntry &entry, std::vector<UnfiledTake> &waiting) {
    JournalEntry kept = entry;
    kept.phase = JournalEntry::Phase::Kept;
    if (entry.phase == JournalEntry::Phase::Recording) {
        settleRecording(entry);
    } else if (entry.phase == JournalEntry::Phase::Filing && !settleFiling(entry)) {
        kept.phase = JournalEntry::Phase::Filing;
    }
    keepVersions(context_.platform.files, context_.places, context_.recovery, entry.name);
    const Take take = takeOf(entry);
    if (!context_.takes.isKept(take)) {
        // Filed to its end, or somebody took the file away.
        context_.takes.forget(entry.name);
        return;
    }
    waiting.push_back({take, context_.places.take(entry.name), entry.begun, reason(entry.phase)});
    context_.journal.write(kept);
}

void Unfinished::settleRecording(const JournalEntry &entry) {
    // A stage of the processing may have been under way: the take itself is whole, or lies beside it.
    for (const QString &left : {context_.places.stageOutput(entry.name), context_.places.rawTake(entry.name)}) {
        if (context_.platform.files.fileExists(left)) {
            context_.recovery.keep(left);
        }
    }
    const QString wav = context_.places.take(entry.name);
    if (context_.platform.files.fileExists(wav)) {
        context_.platform.audioFiles.repairWav(wav);
    }
}

/// The take goes only when its voice track is in place: with the take there, the filing is taken back.
bool Unfinished::settleFiling(const JournalEntry &entry) {
    removeIfThere(context_.places.encoded(QFileInfo(entry.target).completeBaseName()));
    const Take take = takeOf(entry);
    if (context_.takes.isKept(take)) {
        return take.kind == Take::Kind::Recorder || takeBackMark(take, entry.markBefore);
    }
    if (context_.platform.files.fileExists(entry.target)) {
        context_.tell(
            QCoreApplication::translate("Unfinished", "%1 is bewaard; dat was nog niet gemeld.").arg(entry.name));
    }
    return true;
}

bool Unfinished::takeBackMark(const Take &take, bool markBefore) {
    try {
        context_.marks.mark(take.step, markBefore);
    } catch (const RuntimeError &error) {
        return error.number() == ErrorNumber::FileNotFound; // no playlist, no mark
    }
    return true;
}

void Unfinished::removeIfThere(const QString &path) {
    ignoringErrors([&] {
        if (context_.platform.files.fileExists(path)) {
            context_.platform.files.remove(path);
        }
    });
}

} // namespace orvel
