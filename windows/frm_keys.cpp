#include "windows/frm_keys.h"

#include "windows/named.h"
#include "windows/on.h"
#include "windows/open_as.h"
#include "windows/whole_rows.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace orvel {

frmKeys::frmKeys(const std::vector<DeskKeyStroke> &keys, QWidget *parent)
    : QDialog(parent), lstKeys(named(new QTableWidget(this), "lstKeys", tr("Toetsen"))) {
    setObjectName(QStringLiteral("frmKeys"));
    setWindowTitle(tr("Toetsen"));
    const int line = fontMetrics().height();
    lstKeys->setColumnCount(2);
    lstKeys->setHorizontalHeaderLabels({tr("Toets"), tr("Wat ze doet")});
    showWholeRows(*lstKeys);
    lstKeys->horizontalHeader()->setStretchLastSection(true);
    lstKeys->setRowCount(static_cast<int>(keys.size()));
    for (int row = 0; row < lstKeys->rowCount(); ++row) {
        const DeskKeyStroke &stroke = keys.at(static_cast<std::size_t>(row));
        lstKeys->setItem(row, 0, new QTableWidgetItem(stroke.key.toString(QKeySequence::NativeText)));
        lstKeys->setItem(row, 1, new QTableWidgetItem(stroke.what));
    }
    lstKeys->setMinimumSize(fontMetrics().averageCharWidth() * 60, line * 8);
    auto *hint =
        new QLabel(tr("Een link inspreken: opname starten, stoppen, bewaren. De volgende link staat dan klaar."), this);
    hint->setWordWrap(true);
    auto *close = namedButton(this, "cmdQuit", tr("Sluiten"), tr("Verlaat dit scherm"));
    close->setDefault(true);
    on(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *manual = namedButton(this, "cmdManual", tr("Handleiding"), tr("Lees hoe alles werkt"));
    on(manual, &QPushButton::clicked, this, [this] {
        accept();
        Q_EMIT manualWanted();
    });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(manual);
    buttons->addStretch();
    buttons->addWidget(close);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(line, line, line, line);
    layout->addWidget(hint);
    layout->addWidget(lstKeys, 1);
    layout->addLayout(buttons);
    const int rows = lstKeys->verticalHeader()->defaultSectionSize() * (lstKeys->rowCount() + 1);
    openAs(*this, {fontMetrics().averageCharWidth() * 80, rows + line * 9});
}

} // namespace orvel
