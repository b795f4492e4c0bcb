#include "windows/steps_model.h"

#include "playlist/field_values.h"
#include "windows/mix_type.h"
#include "windows/stored_colour.h"

#include <QBrush>
#include <QDateTime>
#include <QLocale>

#include <array>

namespace orvel {

namespace {

constexpr std::array<const char *, StepColumnCount> captions = {
    "OK",     "Stap",    "Tijd",     "Uitvoerder", "Titel", "Jaar",   "Min", "Sec",     "Intro",
    "Outtro", "Mixtype", "CueStart", "Cue",        "Mix",   "Atrack", "id",  "trackid", "type"};

bool isNumberColumn(int column) {
    return column == StapColumn || (column >= 5 && column <= 9) || (column >= 11 && column <= 13);
}

} // namespace

void StepsModel::setStyles(StepStyles styles) {
    beginResetModel();
    styles_ = std::move(styles);
    endResetModel();
}

void StepsModel::rebuild(const std::function<void()> &change) {
    struct Reset {
        StepsModel &model;
        explicit Reset(StepsModel &m) : model(m) { model.beginResetModel(); }
        Reset(const Reset &) = delete;
        Reset &operator=(const Reset &) = delete;
        Reset(Reset &&) = delete;
        Reset &operator=(Reset &&) = delete;
        ~Reset() { model.endResetModel(); }
    };
    const Reset reset(*this);
    change();
}

void StepsModel::showChanged(int row) {
    Q_EMIT dataChanged(index(row, 0), index(row, StepColumnCount - 1));
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

QVariant StepsModel::shown(int row, int column) const {
    const QVariant value = playlist_.value(row, column);
    if (column == ImportedColumn) {
        return {};
    }
    if (column == MixtypeColumn) {
        return mixTypeName(value);
    }
    if (value.typeId() == QMetaType::QDateTime) {
        // A time of day is stored as a moment on the database's day zero.
        return QLocale().toString(value.toDateTime().time(), QStringLiteral("HH:mm"));
    }
    return value.toString();
}

QVariant StepsModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return shown(index.row(), index.column());
    case Qt::EditRole:
        return playlist_.value(index.row(), index.column());
    case Qt::CheckStateRole:
        if (index.column() == ImportedColumn) {
            return playlist_.value(index.row(), ImportedColumn).toBool() ? Qt::Checked : Qt::Unchecked;
        }
        return {};
    case Qt::TextAlignmentRole:
        return isNumberColumn(index.column()) ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::BackgroundRole:
        return style(index.row()) ? QVariant(QBrush(fromStoredColour(style(index.row())->back))) : QVariant();
    case Qt::ForegroundRole:
        return style(index.row()) ? QVariant(QBrush(fromStoredColour(style(index.row())->text))) : QVariant();
    default:
        return {};
    }
}

bool StepsModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (role != Qt::EditRole || !index.isValid() || index.column() != MixtypeColumn) {
        return false;
    }
    playlist_.setValue(index.row(), MixtypeColumn, value.toInt());
    Q_EMIT dataChanged(index, index);
    return true;
}

QVariant StepsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= StepColumnCount) {
        return {};
    }
    return QString::fromLatin1(captions.at(static_cast<std::size_t>(section)));
}

Qt::ItemFlags StepsModel::flags(const QModelIndex &index) const {
    const Qt::ItemFlags plain = QAbstractTableModel::flags(index);
    return index.column() == MixtypeColumn ? plain | Qt::ItemIsEditable : plain;
}

} // namespace orvel
