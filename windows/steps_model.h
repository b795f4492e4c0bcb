#pragma once

#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "playlist/voice_tracks.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QSet>

namespace orvel {

/// The steps of the open playlist as a table: one row a step in the colours of its type, every value as the table of
/// step fields says. Only `mixtype` can be edited; what is chosen is stored at once. A value that cannot be read is an
/// empty cell with the reason as its tooltip: what a view asks for never throws.
class StepsModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    explicit StepsModel(Playlist &playlist, QObject *parent = nullptr)
        : QAbstractTableModel(parent), playlist_(playlist) {}

    /// The rows' colours. The current row and the selection stay.
    void setStyles(StepStyles styles);
    /// Runs change (opening, refreshing or closing the playlist) with the views told of it, also when it throws.
    void rebuild(const std::function<void()> &change);
    /// A step was changed in the playlist.
    void showChanged(int row);
    /// Rows that are marked as done while their voice track is not in its folder.
    void setMissing(QSet<int> rows, const QString &folder);

    /// Rows that are voiced per station: how many of them there are.
    void setStations(QHash<int, StationCount> stations);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

  Q_SIGNALS:
    /// One sentence about the first value that could not be read since the playlist was opened.
    void unreadable(const QString &sentence) const;

  private:
    [[nodiscard]] QVariant cell(int row, int column, int role) const;
    [[nodiscard]] const StepStyle *style(int row) const;
    /// "2 van 4" for a step that is voiced per station.
    [[nodiscard]] QVariant stationsOf(int row) const;
    [[nodiscard]] QVariant shown(int row, int column) const;
    [[nodiscard]] QVariant kind(int row, int role) const;
    [[nodiscard]] QVariant toolTip(int row, int column) const;
    void tellOnce(int row, int column, const QString &reason) const;

    Playlist &playlist_;
    StepStyles styles_;
    QSet<int> missing_;
    QHash<int, StationCount> stations_;
    QIcon missingIcon_{QStringLiteral(":/icons/missing.svg")};
    QString folder_;            ///< where they should be
    mutable bool told_ = false; ///< of the open playlist
};

} // namespace orvel
