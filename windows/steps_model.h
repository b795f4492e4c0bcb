#pragma once

#include "playlist/playlist.h"
#include "playlist/step_types.h"

#include <QAbstractTableModel>

namespace orvel {

/// The steps of the open playlist as a table: one row a step in the colours of its type, `Imported` as a tick, every
/// value as stored. Only `mixtype` can be edited; what is chosen is stored at once.
class StepsModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    explicit StepsModel(Playlist &playlist, QObject *parent = nullptr)
        : QAbstractTableModel(parent), playlist_(playlist) {}

    void setStyles(StepStyles styles);
    /// Runs change (opening, refreshing or closing the playlist) with the views told of it, also when it throws.
    void rebuild(const std::function<void()> &change);
    /// A step was changed in the playlist.
    void showChanged(int row);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

  private:
    [[nodiscard]] const StepStyle *style(int row) const;
    [[nodiscard]] QVariant shown(int row, int column) const;

    Playlist &playlist_;
    StepStyles styles_;
};

} // namespace orvel
