#include "windows/station_versions.h"

#include "platform/audio.h"
#include "platform/guarded.h"
#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/whole_rows.h"

#include <QVBoxLayout>

#include <utility>

namespace orvel {

namespace {

enum Column { StationColumn, VersionColumn, LengthColumn, Columns };

constexpr int lengthsMs = 100;

QString shown(std::int32_t length) {
    switch (length) {
    case SoundLengths::notYet:
        return QStringLiteral("...");
    case SoundLengths::unreadable:
        return QObject::tr("niet leesbaar");
    default:
        return QObject::tr("%1 s").arg(secondsOneDecimal(length));
    }
}

} // namespace

StationVersions::StationVersions(Platform &platform, const PlayerSettings &output, QWidget *parent)
    : QWidget(parent), lstVersions(new QTableWidget(this)),
      cmdPlay(namedButton(this, "cmdPlay", tr("Beluister"), tr("Beluister de versie van het gekozen station"))),
      lengths_(platform.audioFiles),
      tmrLengths_(platform.timers.create(lengthsMs, MissedTicks::Drop, [this] { showLengths(); })),
      player_(platform.sound.makePlayer()) {
    player_->setOutput(output);
    player_->setEndHandler([this] { guarded([this] { stop(); }); });
    layOut();
    stop();
    on(lstVersions, &QTableWidget::itemSelectionChanged, this, &StationVersions::row_Click);
    on(cmdPlay, &QPushButton::clicked, this, &StationVersions::cmdPlay_Click);
}

void StationVersions::layOut() {
    lstVersions->setObjectName(QStringLiteral("lstVersions"));
    lstVersions->setAccessibleName(tr("Versies per station"));
    lstVersions->setColumnCount(Columns);
    lstVersions->setHorizontalHeaderLabels({tr("Station"), tr("Versie van deze stap"), tr("Lengte")});
    showWholeRows(*lstVersions);
    lstVersions->horizontalHeader()->setSectionResizeMode(StationColumn, QHeaderView::Stretch);
    const int line = fontMetrics().height();
    lstVersions->setMinimumSize(line * 26, line * 6);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lstVersions, 1);
    layout->addWidget(cmdPlay, 0, Qt::AlignLeft);
}

void StationVersions::show(std::vector<StationVersion> versions) {
    stop();
    versions_ = std::move(versions);
    const QSignalBlocker quiet(lstVersions);
    lstVersions->clearSelection();
    lstVersions->setRowCount(static_cast<int>(versions_.size()));
    QStringList files;
    for (int row = 0; row < lstVersions->rowCount(); ++row) {
        const StationVersion &version = versions_.at(static_cast<std::size_t>(row));
        files << (version.isThere ? version.file : QString());
        lstVersions->setItem(row, StationColumn, new QTableWidgetItem(version.station.name));
        lstVersions->setItem(row, VersionColumn,
                             new QTableWidgetItem(version.isThere ? tr("\u2713 ingesproken") : tr("\u2013 nog niet")));
        lstVersions->setItem(row, LengthColumn, new QTableWidgetItem());
    }
    setVisible(!versions_.empty());
    lengths_.measure(files);
    tmrLengths_->setEnabled(true);
    showLengths();
    showState();
}

void StationVersions::showLengths() {
    for (int row = 0; row < lstVersions->rowCount(); ++row) {
        const auto number = static_cast<std::size_t>(row);
        lstVersions->item(row, LengthColumn)
            ->setText(versions_.at(number).isThere ? shown(lengths_.of(number)) : QString());
    }
    tmrLengths_->setEnabled(!lengths_.areKnown());
}

const StationVersion *StationVersions::selected() const {
    const QList<QTableWidgetItem *> items = lstVersions->selectedItems();
    return items.isEmpty() ? nullptr : &versions_.at(static_cast<std::size_t>(items.first()->row()));
}

void StationVersions::row_Click() {
    stop();
    if (const StationVersion *version = selected()) {
        Q_EMIT chosen(version->station.code);
    }
}

void StationVersions::showState() {
    const StationVersion *version = selected();
    const bool plays = player_->state() == WavePlayer::playing;
    cmdPlay->setEnabled(plays || (version != nullptr && version->isThere));
    cmdPlay->setText(plays ? tr("Stop") : tr("Beluister"));
    cmdPlay->setIcon(plays ? stopIcon_ : playIcon_);
}

void StationVersions::stop() {
    player_->stop();
    player_->close();
    showState();
}

void StationVersions::cmdPlay_Click() {
    const StationVersion *version = selected();
    if (player_->state() == WavePlayer::playing || version == nullptr) {
        stop();
        return;
    }
    try {
        player_->setFileName(version->file);
        player_->start();
        cmdPlay->setToolTip(tr("Beluister de versie van het gekozen station"));
    } catch (const RuntimeError &error) {
        cmdPlay->setToolTip(error.report());
        lstVersions->item(lstVersions->currentRow(), LengthColumn)->setText(tr("niet te beluisteren"));
    }
    showState();
}

} // namespace orvel
