#include "production/filing.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/step_marks.h"
#include "playlist/voice_tracks.h"
#include "production/transcode.h"
#include "recording/take_store.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"
#include "station/journal.h"
#include "station/places.h"
#include "station/recovery.h"
#include "station/shell_copy.h"

#include <QDateTime>
#include <QScopeGuard>

namespace orvel {

Filing::Filing(FilingContext context)
    : context_(std::move(context)), FileR(context_.platform.audioFiles.reader()),
      FileW(context_.platform.audioFiles.mp3Writer()) {}

void Filing::setFormat(const Mp3Format &format) {
    FileW->setFormat(format);
}

bool Filing::mark(const Take &take) {
    if (take.kind == Take::Kind::Recorder) {
        return false;
    }
    const bool before = context_.marks.isMarked(take.step);
    context_.marks.mark(take.step, true);
    return before;
}

void Filing::takeBackMark(const Take &take, bool markBefore) {
    if (take.kind == Take::Kind::Playlist) {
        context_.marks.mark(take.step, markBefore);
    }
}

Filing::Outcome Filing::file(const Take &take, bool markBefore) {
    const TakeFiles files = filesOf(take, context_.places, context_.settings);
    if (!VoiceTracks(context_.platform.files, context_.settings).isServerThere()) {
        const QString sentence =
            tr("%1 is niet bewaard: de map met voicetracks %2 is niet bereikbaar. De opname blijft klaarstaan.")
                .arg(take.version(), context_.settings.VoicetrackPath);
        const Outcome outcome = goBack(take, markBefore, sentence); // before the box says that nothing was saved
        context_.platform.prompts.message(sentence, errorTitle, MessageIcon::Exclamation);
        return outcome;
    }
    begin(take, files, markBefore);
    const bool hadTake = context_.platform.files.fileExists(files.wav);
    const bool converted = TranscodeToMp3(files.wav, files.mp3);
    bool filed = false;
    try {
        filed = copyToPlace(files);
    } catch (const RuntimeError &error) {
        removeIfThere(files.mp3);
        goBack(take, hadTake ? markBefore : true, {});
        // The report is the last that the presenter sees.
        throw FatalError(
            RuntimeError(error.number(), error.file(),
                         hadTake ? tr("De opname blijft klaarstaan voor %1.").arg(take.name()) : QString()));
    }
    if (filed) {
        finish(take, files);
        return Outcome::Filed;
    }
    removeIfThere(files.mp3);
    if (!hadTake) {
        context_.takes.forget(take.name());
        context_.tell(tr("Er is geen opname voor %1.").arg(take.name()));
        return Outcome::NoTake;
    }
    return goBack(take, markBefore,
                  (converted ? tr("%1 is niet bewaard; de opname blijft klaarstaan.")
                             : tr("%1 kon niet worden omgezet naar MP3; de opname blijft klaarstaan."))
                      .arg(take.version()));
}

/// Nothing is made: in the place of a share that is not mounted it would be a folder that nobody looks in.
void Filing::begin(const Take &take, const TakeFiles &files, bool markBefore) {
    JournalEntry entry = context_.journal.entry(take.name()).value_or(JournalEntry());
    entry.name = take.name();
    entry.playlist = take.step.playlist;
    entry.stap = take.step.stap;
    entry.phase = JournalEntry::Phase::Filing;
    entry.markBefore = markBefore;
    entry.target = files.filed;
    if (entry.begun.isEmpty()) {
        entry.begun = QDateTime::currentDateTime().toString(Qt::ISODate);
    }
    // A disk without room for these lines has none for the voice track, which tells it.
    ignoringErrors([&] { context_.journal.write(entry); });
}

bool Filing::copyToPlace(const TakeFiles &files) {
    if (context_.settings.ServerMode) {
        return shellCopy(files.mp3, files.filed);
    }
    if (context_.platform.files.fileExists(files.mp3)) {
        keepReplaced(files.filed);
    }
    context_.platform.files.copy(files.mp3, files.filed);
    return true;
}

void Filing::keepReplaced(const QString &voiceTrack) {
    if (!context_.platform.files.fileExists(voiceTrack)) {
        return;
    }
    if (const QString problem = context_.recovery.keepCopy(voiceTrack); !problem.isEmpty()) {
        context_.tell(problem);
    }
}

bool Filing::shellCopy(const QString &source, const QString &target) {
    ignoringErrors([&] {
        if (context_.platform.files.fileExists(source)) {
            keepReplaced(target);
        }
    });
    return Global::ShellCopyFile(context_.platform, source, target, false, QStringLiteral("Copying...")).copied > 0;
}

Filing::Outcome Filing::goBack(const Take &take, bool markBefore, const QString &sentence) {
    ignoringErrors([&] { takeBackMark(take, markBefore); });
    if (auto entry = context_.journal.entry(take.name())) {
        entry->phase = JournalEntry::Phase::Kept;
        ignoringErrors([&] { context_.journal.write(*entry); });
    }
    if (!sentence.isEmpty()) {
        context_.tell(sentence);
    }
    return Outcome::AsBefore;
}

void Filing::finish(const Take &take, const TakeFiles &files) {
    // From here on the voice track is where it belongs: what cannot be cleared away is no failure of the filing.
    context_.takes.filed(take);
    removeIfThere(files.mp3);
    context_.tell(tr("%1 is bewaard.").arg(take.version()));
}

void Filing::removeIfThere(const QString &path) {
    ignoringErrors([&] {
        if (context_.platform.files.fileExists(path)) {
            context_.platform.files.remove(path);
        }
    });
}

Filing::Outcome Filing::saveAs(const Take &take, const QString &target) {
    const TakeFiles files = filesOf(take, context_.places, context_.settings);
    const bool converted = TranscodeToMp3(files.wav, files.mp3);
    if (shellCopy(files.mp3, target)) {
        removeIfThere(files.wav);
        context_.takes.forget(take.name());
        context_.tell(tr("%1 is bewaard.").arg(take.name()));
        return Outcome::Filed;
    }
    context_.tell((converted ? tr("%1 is niet bewaard; de opname blijft klaarstaan.")
                             : tr("%1 kon niet worden omgezet naar MP3; de opname blijft klaarstaan."))
                      .arg(take.name()));
    return Outcome::AsBefore;
}

void Filing::fileEncoded(const Take &take) {
    const TakeFiles files = filesOf(take, context_.places, context_.settings);
    bool filed = false;
    try {
        filed = copyToPlace(files);
    } catch (const RuntimeError &error) {
        throw FatalError(error);
    }
    if (filed) {
        context_.platform.files.remove(files.mp3);
        context_.takes.forget(take.name());
    } else {
        context_.recovery.keep(files.mp3);
    }
}

void Filing::place(const QString &mp3, const Take &take) {
    const QString filed = context_.places.filed(take.version());
    keepReplaced(filed);
    context_.platform.files.move(mp3, filed);
}

bool Filing::TranscodeToMp3(const QString &wavPath, const QString &mp3Path) {
    context_.progress(0);
    const auto done = qScopeGuard([this] { context_.progress({}); });
    const bool converted =
        convert(*FileR, *FileW, wavPath, mp3Path, [this](int percent) { context_.progress(percent); });
    if (!converted) {
        removeIfThere(mp3Path);
    }
    return converted;
}

} // namespace orvel
