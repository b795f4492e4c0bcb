#include "production/sound_import.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "playlist/current_step.h"
#include "playlist/field_values.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "production/conversions.h"
#include "production/transcode.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/places.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>

namespace orvel {

namespace {

bool isWav(const QString &file) {
    return file.right(3).toUpper() == QStringLiteral("WAV");
}

} // namespace

QString SoundImport::singleProblem() const {
    return context_.step.StepSelected ? QString() : QStringLiteral("Geen Presentatie gekozen in playlist");
}

QString SoundImport::batchProblem(qsizetype files) const {
    return context_.playlist.presCount() == files
               ? QString()
               : QStringLiteral("Aantal bestanden stemt niet overeen met aantal bestanden !");
}

bool SoundImport::hasName(int row) const {
    const Playlist &playlist = context_.playlist;
    bool named = false;
    // A name that cannot be read is none.
    ignoringErrors([&] {
        const bool isStep = playlist.isOpen() && row >= 0 && row < playlist.stepCount();
        const QString name = isStep ? toText(playlist.value(row, AtrackColumn)) : QString();
        named = !name.isEmpty() && name != QStringLiteral("NONE");
    });
    return named;
}

SoundImport::Job SoundImport::into(int row, const QString &source) const {
    const Playlist &playlist = context_.playlist;
    const StepId step{playlist.fileName(), toWholeNumber(playlist.value(row, StapColumn)),
                      toText(playlist.value(row, AtrackColumn))};
    return {source, {Take::Kind::Playlist, step, {}}, row};
}

SoundImport::Job SoundImport::single(const QString &source) const {
    const CurrentStep &step = context_.step;
    return {
        source, {Take::Kind::Playlist, {context_.playlist.fileName(), step.stap, step.VoiceTrackName}, {}}, step.row};
}

std::vector<SoundImport::Job> SoundImport::batch(const QString &folder, const QStringList &files) const {
    const Playlist &playlist = context_.playlist;
    std::vector<Job> jobs;
    qsizetype next = 0;
    // Another program may have put a slot into a playlist that had none.
    for (int row = 0; row < playlist.stepCount() && !files.isEmpty(); ++row) {
        if (toWholeNumber(playlist.value(row, TypeColumn)) == PresStep) {
            jobs.push_back(into(row, inFolder(folder, files.at(next))));
            next = std::min(next + 1, files.size() - 1);
        }
    }
    return jobs;
}

QString SoundImport::partPath(const Job &job) const {
    return context_.places.filed(job.take.name()) + QStringLiteral(".part%1").arg(job.row);
}

bool SoundImport::run(const std::vector<Job> &jobs) {
    lastRow_ = -1;
    // A name that cannot be a file's stops everything before anything is done.
    for (const Job &job : jobs) {
        static_cast<void>(partPath(job));
    }
    // However this ends, no part of a voice track stays behind.
    const auto cleared = qScopeGuard([&] {
        for (const Job &job : jobs) {
            ignoringErrors([&] {
                if (context_.platform.files.fileExists(partPath(job))) {
                    context_.platform.files.remove(partPath(job));
                }
            });
        }
    });
    std::vector<bool> converted(jobs.size(), true);
    if (!ConvertFiles(jobs, converted)) {
        return false;
    }
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        lastRow_ = jobs[i].row;
        context_.begins(i);
        if (!fileOne(jobs[i], converted[i])) {
            return false;
        }
    }
    return true;
}

bool SoundImport::ConvertFiles(const std::vector<Job> &jobs, std::vector<bool> &converted) {
    Conversions conversions(context_.platform.audioFiles,
                            mp3Format(context_.settings.BitRate, context_.settings.FreeFormat));
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        if (isWav(jobs[i].source)) {
            conversions.add(jobs[i].source, partPath(jobs[i]));
            places.push_back(i);
        }
    }
    const int total = static_cast<int>(conversions.count());
    if (total == 0) {
        return true;
    }
    bool goesOn = true;
    conversions.run([&](int done, int percent) {
        const QString what = tr("bestand %1 van %2").arg(std::min(done + 1, total)).arg(total);
        goesOn = context_.progress(percent, what) && goesOn; // a stop cannot be taken back by a later call
        return goesOn;
    });
    for (std::size_t number = 0; number < places.size(); ++number) {
        converted[places[number]] = conversions.isConverted(number);
    }
    return goesOn;
}

bool SoundImport::fileOne(const Job &job, bool converted) {
    context_.step.VoiceTrackName = job.take.name();
    if (!isWav(job.source) && !copyMp3(job)) {
        return false; // the step keeps the mark and the voice track that it had
    }
    if (converted) {
        context_.filing.place(partPath(job), job.take);
    } else {
        // A voice track that stands there already is better than none.
        context_.failed(tr("%1 kon niet worden omgezet voor stap %2 (%3).")
                            .arg(QFileInfo(job.source).fileName())
                            .arg(job.take.step.stap)
                            .arg(job.take.name()));
    }
    context_.marks.mark(job.take.step, true);
    return true;
}

/// With progress, as a file on a slow stick may be large.
bool SoundImport::copyMp3(const Job &job) {
    return context_.platform.files.copy(job.source, partPath(job), [&](qint64 done, qint64 total) {
        return context_.progress(static_cast<int>(done * 100 / std::max<qint64>(total, 1)),
                                 QFileInfo(job.source).fileName());
    });
}

} // namespace orvel
