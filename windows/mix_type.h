#pragma once

#include "widgets/row_frame_delegate.h"

#include <QString>
#include <QStringList>
#include <QVariant>

namespace orvel {

/// The mix types as rows of name, tab, code.
QStringList mixTypeRows();

/// Name of a mix-type code (0 to 3); other values as they are stored.
QString mixTypeName(const QVariant &code);

/// Edits the mix-type column through a drop-down list of names and codes; a choice is stored at once, as the code.
class MixTypeDelegate : public RowFrameDelegate {
    Q_OBJECT

  public:
    using RowFrameDelegate::RowFrameDelegate;

    /// The rows of `cobMixType`: name, tab, code.
    void setRows(const QStringList &rows) { rows_ = rows; }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

  private:
    QStringList rows_;
};

} // namespace orvel
