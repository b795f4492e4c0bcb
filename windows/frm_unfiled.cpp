#include "windows/frm_unfiled.h"

#include "platform/audio.h"
#include "platform/guarded.h"
#include "platform/runtime_error.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/open_as.h"
#include "windows/whole_rows.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QScopeGuard>
#include <QVBoxLayout>

namespace orvel {

namespace {

enum TakeColumn { TakeNameColumn, PlaylistColumn, StepColumn, BegunColumn, WhyColumn, TakeColumnCount };

QString why(UnfiledTake::Why reason) {
    switch (reason) {
    case UnfiledTake::Why::NotSaved:
        return frmUnfiled::tr("niet bewaard");
    case UnfiledTake::Why::RecordingBroken:
        return frmUnfiled::tr("opname afgebroken, hersteld");
    case UnfiledTake::Why::FilingBroken:
        return frmUnfiled::tr("bewaren afgebroken");
    }
    return {};
}

QString shownTime(const QString &iso) {
    return QDateTime::fromString(iso, Qt::ISODate).toString(QStringLiteral("dd-MM-yyyy HH:mm"));
}

} // namespace

frmUnfiled::frmUnfiled(SoundCard &sound, const PlayerSettings &output, std::vector<UnfiledTake> takes,
                       std::function<bool(const UnfiledTake &take)> save, QWidget *parent)
    : QDialog(parent), lstTakes(new QTableWidget(this)),
      cmdPlay(namedButton(this, "cmdPlay", tr("Beluister"), QString())),
      cmdSave(namedButton(this, "cmdSave", tr("Bewaar voor deze stap"), QString(), ":/icons/save.svg")),
      cmdLeave(namedButton(this, "cmdLeave", tr("Laat staan"), QString())), lblResult(new QLabel(this)),
      takes_(std::move(takes)), save_(std::move(save)), player_(sound.makePlayer()) {
    setObjectName(QStringLiteral("frmUnfiled"));
    setWindowTitle(tr("Opnames die nog niet bewaard zijn"));
    player_->setOutput(output);
    player_->setEndHandler([this] { guarded([this] { player_End(); }); });
    cmdSave->setProperty("role", QStringLiteral("primary"));
    layOut();
    fill();
    player_End();
    on(cmdPlay, &QPushButton::clicked, this, &frmUnfiled::cmdPlay_Click);
    on(cmdSave, &QPushButton::clicked, this, &frmUnfiled::cmdSave_Click);
    on(cmdLeave, &QPushButton::clicked, this, &frmUnfiled::cmdLeave_Click);
    on(lstTakes, &QTableWidget::itemSelectionChanged, this, &frmUnfiled::showState);
}

void frmUnfiled::layOut() {
    const int line = fontMetrics().height();
    auto *intro = new QLabel(tr("Deze opnames werden gemaakt, maar staan nog niet waar ze uitgezonden worden."), this);
    intro->setWordWrap(true);
    lstTakes->setObjectName(QStringLiteral("lstTakes"));
    lstTakes->setAccessibleName(tr("Opnames die nog niet bewaard zijn"));
    lstTakes->setColumnCount(TakeColumnCount);
    lstTakes->setHorizontalHeaderLabels({tr("Opname"), tr("Playlist"), tr("Stap"), tr("Opgenomen"), tr("Toestand")});
    showWholeRows(*lstTakes);
    lstTakes->setMinimumSize(fontMetrics().averageCharWidth() * 60, line * 6);
    lblResult->setObjectName(QStringLiteral("lblResult"));
    lblResult->setAccessibleDescription(tr("Wat er met de opname gebeurde"));
    lblResult->setWordWrap(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblResult, 1);
    for (QPushButton *one : {cmdPlay, cmdSave, cmdLeave}) {
        buttons->addWidget(one);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(line, line, line, line);
    layout->addWidget(intro);
    layout->addWidget(lstTakes, 1);
    layout->addLayout(buttons);
    openAs(*this, {fontMetrics().averageCharWidth() * 96, line * 18});
}

void frmUnfiled::fill() {
    lstTakes->setRowCount(static_cast<int>(takes_.size()));
    for (int i = 0; i < lstTakes->rowCount(); ++i) {
        const UnfiledTake &waiting = takes_.at(static_cast<std::size_t>(i));
        const bool hasStep = waiting.take.kind == Take::Kind::Playlist;
        const QStringList cells = {waiting.take.name(), QFileInfo(waiting.take.step.playlist).completeBaseName(),
                                   hasStep ? QString::number(waiting.take.step.stap) : QString(),
                                   shownTime(waiting.begun), why(waiting.why)};
        for (int column = 0; column < TakeColumnCount; ++column) {
            lstTakes->setItem(i, column, new QTableWidgetItem(cells.at(column)));
        }
    }
    lstTakes->horizontalHeader()->setStretchLastSection(true);
    if (!takes_.empty()) {
        lstTakes->selectRow(0);
    }
}

void frmUnfiled::showState() {
    const bool hasTake = row() >= 0 && row() < static_cast<int>(takes_.size());
    cmdPlay->setEnabled(hasTake);
    cmdSave->setEnabled(hasTake && isEnabled());
}

void frmUnfiled::cmdPlay_Click() {
    if (player_->state() == WavePlayer::playing) {
        player_End();
        return;
    }
    player_->setFileName(takes_.at(static_cast<std::size_t>(row())).wav);
    player_->start();
    cmdPlay->setText(tr("Stop"));
    cmdPlay->setIcon(stopIcon_);
}

void frmUnfiled::player_End() {
    player_->stop();
    player_->close();
    cmdPlay->setText(tr("Beluister"));
    cmdPlay->setIcon(playIcon_);
    showState();
}

void frmUnfiled::cmdSave_Click() {
    player_End();
    const auto place = takes_.begin() + row();
    const QString name = place->take.name();
    // Window events run during the conversion.
    setEnabled(false);
    const auto ready = qScopeGuard([this] {
        setEnabled(true);
        showState();
    });
    if (!save_(*place)) {
        lblResult->setText(tr("%1 is niet bewaard; de opname blijft klaarstaan.").arg(name));
        return;
    }
    lblResult->setText(tr("%1 is bewaard.").arg(name));
    takes_.erase(place);
    fill();
    if (takes_.empty()) {
        close();
    }
}

void frmUnfiled::done(int result) {
    player_End();
    QDialog::done(result);
}

} // namespace orvel
