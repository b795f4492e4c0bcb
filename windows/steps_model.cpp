#include "windows/steps_model.h"

#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "playlist/step_types.h"
#include "station/ignore_errors.h"
#include "windows/mix_type.h"
#include "windows/stored_colour.h"

#include <QBrush>
#include <QDir>
#include <QScopeGuard>

#include <utility>

namespace orvel {

void StepsModel::setStyles(StepStyles styles) {
    styles_ = std::move(styles);
    if (rowCount() > 0) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1),
                           {Qt::BackgroundRole, Qt::ForegroundRole});
    }
}

void StepsModel::rebuild(const std::function<void()> &change) {
    beginResetModel();
    const auto end = qScopeGuard([this] {
        told_ = told_ && playlist_.isOpen();
        endResetModel();
    });
    change();
}

void StepsModel::showChanged(int row) {
    Q_EMIT dataChanged(index(row, 0), index(row, StepColumnCount - 1));
}

void StepsModel::setMissing(QSet<int> rows, const QString &folder) {
    const QSet<int> changed = (missing_ - rows) + (rows - missing_);
    missing_ = std::move(rows);
    folder_ = folder;
    for (const int row : changed) {
        if (row < rowCount()) {
            showChanged(row);
        }
    }
}

void StepsModel::setStations(QHash<int, StationCount> stations) {
    const QHash<int, StationCount> before = std::exchange(stations_, std::move(stations));
    for (int row = 0; row < rowCount(); ++row) {
        if (before.value(row) != stations_.value(row)) {
            showChanged(row);
        }
    }
}

int StepsModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : playlist_.stepCount();
}

int StepsModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : StepColumnCount;
}

const StepStyle *StepsModel::style(int row) const {
    const QVariant type = playlist_.value(row, TypeColumn);
    bool isNumber = false;
    const auto found = styles_.find(styleName(type.toInt(&isNumber)));
    return isNumber && found != styles_.end() ? &found->second : nullptr;
}

QVariant StepsModel::stationsOf(int row) const {
    const StationCount count = stations_.value(row);
    return count.all == 0 ? QVariant() : tr("%1 van %2").arg(count.there).arg(count.all);
}

QVariant StepsModel::shown(int row, int column) const {
    const QVariant value = playlist_.value(row, column);
    switch (stepField(column).look) {
    case StepLook::Tick:
        return stationsOf(row);
    case StepLook::MixType:
        return mixTypeName(value);
    case StepLook::Seconds:
        return secondsAsRead(value);
    default:
        return asStored(value);
    }
}

QVariant StepsModel::cell(int row, int column, int role) const {
    const StepLook look = stepField(column).look;
    switch (role) {
    case Qt::DisplayRole:
        return shown(row, column);
    case Qt::EditRole:
        return playlist_.value(row, column);
    case Qt::CheckStateRole:
        return look == StepLook::Tick ? QVariant(playlist_.value(row, column).toBool() ? Qt::Checked : Qt::Unchecked)
                                      : QVariant();
    case Qt::TextAlignmentRole:
        return look == StepLook::Number || look == StepLook::Seconds ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                                                     : QVariant();
    case Qt::BackgroundRole:
        return style(row) ? QVariant(QBrush(fromStoredColour(style(row)->back))) : QVariant();
    case Qt::ForegroundRole:
        return style(row) ? QVariant(QBrush(fromStoredColour(style(row)->text))) : QVariant();
    case Qt::DecorationRole:
        return look == StepLook::Tick && missing_.contains(row) ? QVariant(missingIcon_) : QVariant();
    case Qt::ToolTipRole:
        return toolTip(row, column);
    default:
        return {};
    }
}

QVariant StepsModel::toolTip(int row, int column) const {
    static_cast<void>(playlist_.value(row, column)); // one that cannot be read says why
    if (const QStringList lacking = stations_.value(row).lacking; !lacking.isEmpty()) {
        return tr("Nog geen versie voor: %1.").arg(lacking.join(QStringLiteral(", ")));
    }
    if (!missing_.contains(row)) {
        return {};
    }
    return tr("De voicetrack %1.mp3 staat niet in %2.")
        .arg(playlist_.value(row, AtrackColumn).toString(), QDir::toNativeSeparators(folder_));
}

QVariant StepsModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    try {
        return cell(index.row(), index.column(), role);
    } catch (const RuntimeError &error) {
        const bool isColour = role == Qt::BackgroundRole || role == Qt::ForegroundRole;
        tellOnce(index.row(), isColour ? TypeColumn : index.column(), error.description());
        return role == Qt::ToolTipRole ? QVariant(error.description()) : QVariant();
    }
}

void StepsModel::tellOnce(int row, int column, const QString &reason) const {
    if (!std::exchange(told_, true)) {
        Q_EMIT unreadable(tr("Niet alles in deze playlist is leesbaar, zoals %1 in rij %2: %3")
                              .arg(QString::fromLatin1(stepField(column).caption))
                              .arg(row + 1)
                              .arg(reason));
    }
}

bool StepsModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (role != Qt::EditRole || !index.isValid() || !flags(index).testFlag(Qt::ItemIsEditable)) {
        return false;
    }
    playlist_.setValue(index.row(), index.column(), value.toInt());
    Q_EMIT dataChanged(index, index);
    return true;
}

/// What a row is, in a symbol and a word: its colour alone says nothing to many.
QVariant StepsModel::kind(int row, int role) const {
    if (role == Qt::TextAlignmentRole) {
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    }
    QString label;
    if (role == Qt::DisplayRole && row >= 0 && row < rowCount()) {
        ignoringErrors([&] { label = kindLabel(playlist_.value(row, TypeColumn).toInt()); }); // its cells tell why
    }
    return role == Qt::DisplayRole ? QVariant(label) : QVariant();
}

QVariant StepsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        return kind(section, role);
    }
    if (section < 0 || section >= StepColumnCount) {
        return {};
    }
    const StepField &field = stepField(section);
    if (role == Qt::ToolTipRole && field.toolTip != nullptr) {
        return QString::fromLatin1(field.toolTip);
    }
    return role == Qt::DisplayRole ? QVariant(QString::fromLatin1(field.caption)) : QVariant();
}

Qt::ItemFlags StepsModel::flags(const QModelIndex &index) const {
    const Qt::ItemFlags plain = QAbstractTableModel::flags(index);
    const bool isEditable = index.isValid() && stepField(index.column()).look == StepLook::MixType;
    return isEditable ? plain | Qt::ItemIsEditable : plain;
}

} // namespace orvel
