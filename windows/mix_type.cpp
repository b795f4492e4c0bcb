#include "windows/mix_type.h"

#include "platform/guarded.h"
#include "windows/on.h"

#include <QComboBox>

namespace orvel {

namespace {

QString nameOf(const QString &row) {
    return row.section(u'\t', 0, 0);
}

QString codeOf(const QString &row) {
    return row.section(u'\t', 1, 1);
}

} // namespace

QStringList mixTypeRows() {
    const auto row = [](const char *name, const char *code) {
        return QString::fromLatin1(name) + u'\t' + QString::fromLatin1(code);
    };
    return {row("Geen Mix", "0"), row("Normale Mix", "1"), row("Intro", "2"), row("Outtro", "3")};
}

QString mixTypeName(const QVariant &code) {
    const QString text = code.toString();
    const QStringList rows = mixTypeRows();
    for (const QString &row : rows) {
        if (codeOf(row) == text) {
            return nameOf(row);
        }
    }
    return text;
}

QWidget *MixTypeDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                       const QModelIndex & /*index*/) const {
    auto *cobMixType = new QComboBox(parent);
    cobMixType->setObjectName(QStringLiteral("cobMixType"));
    cobMixType->setAccessibleName(tr("Mixtype"));
    for (const QString &row : rows_) {
        cobMixType->addItem(nameOf(row), codeOf(row).toInt());
    }
    // Choosing is storing: the editor hands its code over and closes.
    on(cobMixType, &QComboBox::activated, this, [this, cobMixType] {
        auto *self = const_cast<MixTypeDelegate *>(this); // the base class declares its signals on non-const editors
        Q_EMIT self->commitData(cobMixType);
        Q_EMIT self->closeEditor(cobMixType);
    });
    return cobMixType;
}

void MixTypeDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const {
    if (auto *cobMixType = qobject_cast<QComboBox *>(editor)) {
        cobMixType->setCurrentIndex(cobMixType->findData(index.data(Qt::EditRole).toInt()));
    }
}

void MixTypeDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const {
    const auto *cobMixType = qobject_cast<QComboBox *>(editor);
    if (cobMixType && cobMixType->currentIndex() >= 0 && cobMixType->currentData() != index.data(Qt::EditRole)) {
        // The view may have been called by a key or by a loss of the focus: by code that no error may pass through.
        guarded([&] { model->setData(index, cobMixType->currentData(), Qt::EditRole); });
    }
}

} // namespace orvel
