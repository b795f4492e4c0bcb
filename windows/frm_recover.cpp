#include "windows/frm_recover.h"

#include "platform/audio.h"
#include "platform/runtime_error.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/open_as.h"
#include "windows/whole_rows.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

namespace {

enum Column { KindColumn, KeptNameColumn, WhenColumn, Columns };

void setUp(QTableWidget &list) {
    list.setObjectName(QStringLiteral("lstKept"));
    list.setAccessibleName(QObject::tr("Bewaarde bestanden"));
    list.setColumnCount(Columns);
    list.setHorizontalHeaderLabels({QObject::tr("Soort"), QObject::tr("Naam"), QObject::tr("Bewaard op")});
    showWholeRows(list);
    list.horizontalHeader()->setSectionResizeMode(KeptNameColumn, QHeaderView::Stretch);
}

} // namespace

frmRecover::frmRecover(RecoverContext context, QWidget *parent)
    : QDialog(parent), lstKept(new QTableWidget(this)), lblResult(new QLabel(this)),
      cmdPlay(namedButton(this, "cmdPlay", tr("Beluister"), tr("Beluister het gekozen bestand"))),
      cmdTerug(namedButton(this, "cmdTerug", tr("Zet terug"), tr("Zet het gekozen bestand terug op zijn plaats"))),
      cmdQuit(namedButton(this, "cmdQuit", tr("Sluiten"), tr("Verlaat dit scherm"))), context_(std::move(context)),
      restoring_(context_.restoring), player_(context_.sound.makePlayer()) {
    setObjectName(QStringLiteral("frmRecover"));
    setWindowTitle(QStringLiteral("Herstellen"));
    setUp(*lstKept);
    lblResult->setObjectName(QStringLiteral("lblResult"));
    lblResult->setAccessibleDescription(tr("Wat er teruggezet werd"));
    lblResult->setWordWrap(true);
    lblResult->setMinimumHeight(fontMetrics().height() * 2);
    cmdPlay->setIcon(playIcon_);
    cmdPlay->ensurePolished();
    cmdPlay->setMinimumWidth(cmdPlay->sizeHint().width()); // it has a shorter caption while it plays
    cmdTerug->setProperty("role", QStringLiteral("primary"));
    layOut();
    player_->setEndHandler([this] { guarded([this] { player_End(); }); });
    on(lstKept, &QTableWidget::itemSelectionChanged, this, &frmRecover::showState);
    on(cmdPlay, &QPushButton::clicked, this, &frmRecover::cmdPlay_Click);
    on(cmdTerug, &QPushButton::clicked, this, &frmRecover::cmdTerug_Click);
    on(cmdQuit, &QPushButton::clicked, this, &frmRecover::cmdQuit_Click);
}

void frmRecover::layOut() {
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdPlay);
    buttons->addStretch();
    buttons->addWidget(cmdTerug);
    buttons->addWidget(cmdQuit);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lstKept, 1);
    layout->addWidget(lblResult);
    layout->addLayout(buttons);
    const int line = fontMetrics().height();
    openAs(*this, {line * 44, line * 26});
}

void frmRecover::Form_Load() {
    fill();
    lblResult->setText(kept_.empty() ? tr("Er is niets bewaard om te herstellen.")
                                     : tr("Kies wat terug moet. Wat het laatst bewaard werd, staat bovenaan."));
    lstKept->setFocus();
}

void frmRecover::fill() {
    const QSignalBlocker quiet(lstKept); // the button that was pressed keeps the focus
    const int row = std::max(lstKept->currentRow(), 0);
    kept_ = context_.restoring.recovery.kept();
    lstKept->clearSelection();
    lstKept->setRowCount(0);
    for (const KeptFile &kept : kept_) {
        const int last = lstKept->rowCount();
        lstKept->insertRow(last);
        lstKept->setItem(last, KindColumn, new QTableWidgetItem(kindName(kept.kind)));
        lstKept->setItem(last, KeptNameColumn, new QTableWidgetItem(kept.name));
        lstKept->setItem(last, WhenColumn,
                         new QTableWidgetItem(kept.when.toString(QStringLiteral("dd-MM-yyyy  HH:mm:ss"))));
        lstKept->item(last, KeptNameColumn)->setToolTip(kept.name);
    }
    if (!kept_.empty()) {
        lstKept->selectRow(std::min(row, lstKept->rowCount() - 1));
    }
    showState();
}

const KeptFile *frmRecover::selected() const {
    const QList<QTableWidgetItem *> items = lstKept->selectedItems();
    return items.isEmpty() ? nullptr : &kept_.at(static_cast<std::size_t>(items.first()->row()));
}

void frmRecover::showState() {
    const KeptFile *kept = selected();
    const bool plays = player_->state() == WavePlayer::playing;
    cmdPlay->setEnabled(plays || (kept != nullptr && kept->kind != KeptKind::Playlist));
    cmdPlay->setText(plays ? tr("Stop") : tr("Beluister"));
    cmdPlay->setIcon(plays ? stopIcon_ : playIcon_);
    cmdTerug->setEnabled(kept != nullptr);
}

void frmRecover::cmdPlay_Click() {
    const KeptFile *kept = selected();
    if (player_->state() == WavePlayer::playing || kept == nullptr) {
        player_End();
        return;
    }
    try {
        player_->setFileName(kept->path);
        player_->start();
        lblResult->clear();
    } catch (const RuntimeError &error) {
        lblResult->setText(tr("%1 kan niet worden beluisterd: %2.").arg(kept->name, error.description()));
    }
    showState();
}

void frmRecover::player_End() {
    player_->stop();
    player_->close();
    showState();
}

void frmRecover::cmdTerug_Click() {
    if (selected() == nullptr) {
        return;
    }
    player_End();
    const KeptFile kept = *selected();
    const auto [isBack, replaced, sentence] = restoring_.putBack(kept);
    lblResult->setText(sentence);
    fill();
    if (isBack) {
        context_.putBack(kept, replaced);
    }
}

void frmRecover::done(int result) {
    player_End();
    QDialog::done(result);
}

} // namespace orvel
