#include "windows/frm_convert.h"

#include "platform/audio.h"
#include "platform/guarded.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/completion.h"
#include "playlist/current_step.h"
#include "production/import_plan.h"
#include "recording/take_session.h"
#include "station/paths.h"
#include "widgets/theme.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScopeGuard>

#include <algorithm>

namespace orvel {

namespace {

constexpr qint64 pumpIntervalMs = 16;
/// No playlist has as many steps: what comes behind them fits nowhere.
constexpr qsizetype mostPlanned = 200;

} // namespace

void frmConvert::Form_Load() {
    progressconvert->setValue(0);
    progressconvert->setCaption({});
    lstFailed->clear();
    browser->refresh();
    showState();
    plan();
}

QStringList frmConvert::planned() const {
    return browser->files().mid(0, mostPlanned);
}

void frmConvert::plan() {
    QStringList paths;
    const QStringList names = planned();
    for (const QString &name : names) {
        paths << inFolder(browser->folder(), name);
    }
    lengths_.measure(paths);
    tmrLengths_->setEnabled(!lengths_.areKnown());
    showPlan();
}

void frmConvert::showPlan() {
    tmrLengths_->setEnabled(!lengths_.areKnown());
    lblStep->setText(singleTarget(context_.datList, context_.step.row));
    const std::vector<PlannedImport> lines =
        planBatch(context_.datList, planned(), [this](std::size_t number) { return lengths_.of(number); });
    lstPlan->setRowCount(static_cast<int>(lines.size()));
    for (int row = 0; row < lstPlan->rowCount(); ++row) {
        const PlannedImport &line = lines.at(static_cast<std::size_t>(row));
        int column = 0;
        for (const QString &text : {line.file, line.length, line.slot, line.talk, line.problem}) {
            auto *item = new QTableWidgetItem(text);
            item->setToolTip(text);
            lstPlan->setItem(row, column, item);
            ++column;
        }
        lstPlan->item(row, column - 1)->setForeground(themeColour(ThemeRole::Attention));
    }
}

void frmConvert::showState() {
    const bool hasFiles = browser->File1->count() > 0;
    const bool hasFile = !browser->selectedFile().isEmpty();
    cmdBatch->setEnabled(hasFiles && !running_);
    cmdSingle->setEnabled(hasFile && !running_);
    cmdPlay->setEnabled((hasFile || player_->state() == WavePlayer::playing) && !running_);
    browser->setEnabled(!running_);
    cmdQuit->setText(running_ ? tr("Stoppen") : tr("Sluiten"));
}

bool frmConvert::isRefused(const QString &problem) {
    if (!problem.isEmpty()) {
        context_.platform.prompts.message(problem, errorTitle, MessageIcon::Exclamation);
    }
    return !problem.isEmpty();
}

void frmConvert::cmdSingle_Click() {
    if (!isRefused(import_.singleProblem()) &&
        import({import_.single(inFolder(browser->folder(), browser->selectedFile()))})) {
        context_.completion.CheckLijst();
    }
}

void frmConvert::cmdBatch_Click() {
    if (isRefused(import_.batchProblem(browser->File1->count()))) {
        return;
    }
    browser->selectFile(0);
    isBatch_ = true;
    const auto ended = qScopeGuard([this] { isBatch_ = false; });
    if (import(import_.batch(browser->folder(), browser->files()))) {
        context_.completion.CheckLijst();
    }
}

bool frmConvert::import(const std::vector<SoundImport::Job> &jobs) {
    if (const QString problem = context_.session.importProblem(); !problem.isEmpty()) {
        lstFailed->addItem(problem);
        return false;
    }
    player_End();
    running_ = true;
    tmrLengths_->setEnabled(false);
    stopWanted_ = false;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    showState();
    sincePump_.start();
    context_.session.filingBegan();
    const auto ended = qScopeGuard([this] {
        running_ = false;
        QGuiApplication::restoreOverrideCursor();
        showState();
        // What is recorded next belongs to what is selected.
        guarded([this] { context_.showRow(import_.lastRow()); });
        context_.session.filingEnded(TakeSession::SaveOffer::ByTake);
        showPlan();
    });
    return import_.run(jobs);
}

bool frmConvert::showProgress(int percent, const QString &what) {
    progressconvert->setValue(percent);
    progressconvert->setCaption(what);
    if (sincePump_.elapsed() >= pumpIntervalMs) {
        QCoreApplication::processEvents();
        sincePump_.restart();
    }
    return !stopWanted_;
}

void frmConvert::showFile(std::size_t number) {
    if (isBatch_) {
        browser->selectFile(std::min(static_cast<int>(number), browser->File1->count() - 1));
    }
}

void frmConvert::noteFailure(const QString &sentence) {
    lstFailed->addItem(sentence);
    context_.tell(sentence);
}

void frmConvert::cmdPlay_Click() {
    if (player_->state() == WavePlayer::playing) {
        player_End();
        return;
    }
    try {
        player_->setFileName(inFolder(browser->folder(), browser->selectedFile()));
        player_->start();
    } catch (const RuntimeError &error) {
        lstFailed->addItem(tr("%1 kan niet worden beluisterd: %2.").arg(browser->selectedFile(), error.description()));
        return;
    }
    cmdPlay->setText(tr("Stop"));
    cmdPlay->setIcon(stopIcon_);
}

void frmConvert::player_End() {
    player_->stop();
    player_->close();
    cmdPlay->setText(tr("Beluister"));
    cmdPlay->setIcon(playIcon_);
    showState();
}

void frmConvert::reject() {
    if (running_) {
        stopWanted_ = true;
        return;
    }
    player_End();
    tmrLengths_->setEnabled(false);
    QDialog::reject();
}

} // namespace orvel
