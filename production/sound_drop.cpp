#include "production/sound_drop.h"

#include "platform/file_system.h"
#include "platform/guarded.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "playlist/completion.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "production/sound_lengths.h"
#include "recording/take_session.h"
#include "station/places.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QThread>

namespace orvel {

namespace {

constexpr int percents = 100;

bool hasSoundName(const QString &path) {
    const QString ending = QFileInfo(path).suffix().toUpper();
    return ending == QStringLiteral("WAV") || ending == QStringLiteral("MP3");
}

} // namespace

SoundDrop::SoundDrop(ImportDesk desk)
    : desk_(std::move(desk)),
      import_({desk_.platform, desk_.settings, desk_.places, desk_.datList, desk_.step, desk_.marks, desk_.filing,
               [this](int percent, const QString &what) {
                   sign_->advance(what, percent);
                   return !sign_->isStopped();
               },
               [](std::size_t) {}, desk_.tell}) {}

SoundDrop::~SoundDrop() = default;

QString SoundDrop::refusal(const QStringList &paths, int row) const {
    if (const QString problem = desk_.session.importProblem(); !problem.isEmpty()) {
        return problem;
    }
    if (paths.size() != 1) {
        return tr("Sleep één geluidsbestand tegelijk naar een link.");
    }
    if (!hasSoundName(paths.first())) {
        return tr("%1 is geen WAV- of MP3-bestand.").arg(QFileInfo(paths.first()).fileName());
    }
    if (!import_.hasName(row)) {
        return tr("Hier hoort geen geluidsbestand. Sleep het naar een link.");
    }
    return {};
}

QString SoundDrop::forecast(const QStringList &paths, int row) const {
    const QString problem = refusal(paths, row);
    if (!problem.isEmpty()) {
        return problem;
    }
    const SoundImport::Job job = import_.into(row, paths.first());
    return tr("Laat los om %1 te importeren voor stap %2 (%3).")
        .arg(QFileInfo(job.source).fileName())
        .arg(job.take.step.stap)
        .arg(job.take.name());
}

bool SoundDrop::mayReplace(const SoundImport::Job &job) const {
    if (!desk_.platform.files.fileExists(desk_.places.filed(job.take.name()))) {
        return true;
    }
    const QString question = tr("Stap %1 heeft al een voicetrack (%2). Wilt U die vervangen door %3 ?");
    return desk_.platform.prompts.ask(
        question.arg(job.take.step.stap).arg(job.take.name(), QFileInfo(job.source).fileName()),
        tr("Geluidsbestand importeren"), Preset::No, {tr("&Vervang"), tr("&Laat staan")});
}

void SoundDrop::drop(const QStringList &paths, int row) {
    if (const QString problem = refusal(paths, row); !problem.isEmpty()) {
        desk_.tell(problem);
        return;
    }
    const SoundImport::Job job = import_.into(row, paths.first());
    const QString name = QFileInfo(job.source).fileName();
    if (!mayReplace(job)) {
        desk_.tell(tr("%1 is niet geïmporteerd.").arg(name));
        return;
    }
    // A take may have been started, or the playlist changed, while the question stood open.
    if (const QString problem = refusal(paths, row); !problem.isEmpty() || !(import_.into(row, job.source) == job)) {
        desk_.tell(problem.isEmpty() ? tr("%1 is niet geïmporteerd.").arg(name) : problem);
        return;
    }
    import(job);
}

bool SoundDrop::isSound(const QString &path) {
    constexpr unsigned long lookMs = 4;
    SoundLengths lengths(desk_.platform.audioFiles);
    lengths.measure({path});
    while (!lengths.areKnown() && !sign_->isStopped()) {
        sign_->advance(QFileInfo(path).fileName(), 0);
        QThread::msleep(lookMs);
    }
    return lengths.of(0) >= 0;
}

void SoundDrop::import(const SoundImport::Job &job) {
    const QString name = QFileInfo(job.source).fileName();
    bool isImported = false;
    {
        desk_.session.filingBegan();
        sign_ = desk_.platform.prompts.progress(tr("Geluidsbestand importeren"), percents);
        const auto ended = qScopeGuard([this] {
            sign_.reset();
            // What is recorded next belongs to what is selected.
            guarded([this] { desk_.showRow(import_.lastRow()); });
            desk_.session.filingEnded(TakeSession::SaveOffer::ByTake);
        });
        if (!isSound(job.source)) {
            desk_.tell(tr("%1 is geen geluidsbestand dat gelezen kan worden.").arg(name));
            return;
        }
        isImported = import_.run({job});
    }
    if (isImported) {
        desk_.completion.CheckLijst();
    } else {
        desk_.tell(tr("%1 is niet geïmporteerd.").arg(name));
    }
}

} // namespace orvel
