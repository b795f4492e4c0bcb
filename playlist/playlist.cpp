#include "playlist/playlist.h"

#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "station/checked.h"
#include "station/paths.h"

#include <QCoreApplication>

namespace orvel {

Playlist::Playlist(DatabaseEngine &databases, std::function<void(const QString &)> beforeFirstWrite)
    : databases_(databases), beforeFirstWrite_(std::move(beforeFirstWrite)) {}

void Playlist::open(const QString &newPath, const QString &name) {
    close();
    fileName_ = name;
    fullPath_ = inFolder(newPath, name);
    const auto database = databases_.open(fullPath_);
    countPresentations(*database);
    steps_ = database->query(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]"));
    try {
        findFields();
        fillTimeTables();
    } catch (const RuntimeError &) {
        close();
        throw;
    }
}

void Playlist::close() {
    steps_.reset();
    written_ = false;
}

void Playlist::countPresentations(Database &database) {
    const auto slots = database.query(QStringLiteral("SELECT * FROM Steps WHERE [Type] = 2"));
    if (slots->recordCount() >= 1) {
        slots->moveLast();
        presCount_ = checkedInt16(slots->recordCount());
    }
}

void Playlist::findFields() {
    for (int column = 0; column < StepColumnCount; ++column) {
        fields_.at(static_cast<std::size_t>(column)) = steps_->fieldIndex(QString::fromLatin1(stepField(column).name));
    }
}

void Playlist::fillTimeTables() {
    intro_.fill(0);
    outtro_.fill(0);
    for (int row = 0; row < steps_->recordCount(); ++row) {
        const int step = row + 1;
        if (step > lastTableIndex) {
            throw RuntimeError(ErrorNumber::SubscriptOutOfRange, fullPath_);
        }
        intro_.at(static_cast<std::size_t>(step)) = toWholeNumber(value(row, IntroColumn));
        outtro_.at(static_cast<std::size_t>(step)) = toWholeNumber(value(row, OuttroColumn));
    }
}

std::int32_t Playlist::tableEntry(const TimeTable &table, int stap) const {
    if (stap < 0 || stap > lastTableIndex) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, fullPath_);
    }
    return table.at(static_cast<std::size_t>(stap));
}

QVariant Playlist::value(int row, int column) const {
    if (!steps_) {
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
    }
    return steps_->value(row, fields_.at(static_cast<std::size_t>(column)));
}

void Playlist::setValue(int row, int column, const QVariant &value) {
    if (!steps_) {
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
    }
    if (!written_) {
        beforeFirstWrite_(fullPath_);
        written_ = true;
    }
    try {
        store(row, column, value);
    } catch (const RuntimeError &error) {
        if (error.number() != ErrorNumber::DatabaseLocked) {
            throw;
        }
        storeAfterChange(row, column, value);
    }
}

/// Another program changed something near the step since it was read: the playlist is read again. Only where it changed
/// this very value the presenter must look first.
void Playlist::storeAfterChange(int row, int column, const QVariant &value) {
    const QVariant before = this->value(row, column);
    const QVariant stap = this->value(row, StapColumn);
    const QVariant name = this->value(row, AtrackColumn);
    refresh();
    for (int now = 0; now < stepCount(); ++now) {
        if (this->value(now, StapColumn) == stap && this->value(now, AtrackColumn) == name) {
            if (this->value(now, column) != before) {
                throw RuntimeError(ErrorNumber::DatabaseLocked, fullPath_,
                                   QCoreApplication::translate("Playlist",
                                                               "een ander programma heeft stap %1 intussen gewijzigd; "
                                                               "de nieuwe waarde staat nu in de lijst")
                                       .arg(stap.toInt()));
            }
            store(now, column, value);
            return;
        }
    }
    throw RuntimeError(
        ErrorNumber::DatabaseLocked, fullPath_,
        QCoreApplication::translate("Playlist", "een ander programma heeft stap %1 weggehaald").arg(stap.toInt()));
}

void Playlist::store(int row, int column, const QVariant &value) {
    steps_->moveTo(row);
    steps_->edit();
    steps_->setField(fields_.at(static_cast<std::size_t>(column)), value);
    steps_->update();
}

void Playlist::refresh() {
    if (steps_) {
        steps_->refresh();
        findFields(); // the file may be another one
    }
}

int Playlist::firstUnfinished() const {
    for (int row = 0; row < stepCount(); ++row) {
        if (!value(row, ImportedColumn).toBool()) {
            return row;
        }
    }
    return -1;
}

} // namespace orvel
