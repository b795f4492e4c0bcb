// How the main window is put together: which panel stands where.
#include "app/frm_main.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace orvel {

namespace {

struct ToolButton {
    const char *caption;
    const char *toolTip;
};

constexpr std::array ImageList1 = {":/icons/print.svg",    ":/icons/playlist_import.svg", ":/icons/playlist_export.svg",
                                   ":/icons/settings.svg", ":/icons/information.svg",     ":/icons/exit.svg"};

constexpr std::array toolButtons = {
    ToolButton{"Afdrukken", "Aktieve playlist afdrukken"},
    ToolButton{"Importeren", "Playlists importeren vanaf disk"},
    ToolButton{"Exporteren", "Afgewerkte playlists exporteren"},
    ToolButton{"Instellingen", "Programma instellingen"},
    ToolButton{"Informatie", "Informatie over dit programma"},
    ToolButton{"Afsluiten", "Verlaat het programma"},
};

/// A panel that keeps its height and may be wider than the window.
QScrollArea *scrollable(QWidget *panel) {
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(panel);
    area->setWidgetResizable(true);
    // The tab's own background shows through.
    area->viewport()->setAutoFillBackground(false);
    panel->setAutoFillBackground(false);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setMinimumHeight(panel->sizeHint().height() + area->fontMetrics().height());
    return area;
}

} // namespace

void frmMain::makeToolbar() {
    tlbMain = addToolBar(tr("Werkbalk"));
    tlbMain->setObjectName(QStringLiteral("tlbMain"));
    tlbMain->setMovable(false);
    tlbMain->setContextMenuPolicy(Qt::PreventContextMenu);
    tlbMain->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (std::size_t i = 0; i < toolButtons.size(); ++i) {
        const ToolButton &button = toolButtons.at(i);
        QAction *action =
            tlbMain->addAction(QIcon(QString::fromLatin1(ImageList1.at(i))), QString::fromLatin1(button.caption));
        action->setToolTip(QString::fromLatin1(button.toolTip));
        const int index = static_cast<int>(i) + 1;
        connect(action, &QAction::triggered, this, [this, index] { tlbMain_ButtonClick(index); });
    }
}

QWidget *frmMain::recordingStrip() {
    auto *strip = new QWidget(this);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(fontMetrics().height());
    auto *side = new QVBoxLayout;
    auto *actions = new QHBoxLayout;
    actions->addWidget(playbackPanel);
    actions->addWidget(savePanel, 1);
    side->addLayout(actions);
    side->addWidget(meterPanel);
    buttons->addWidget(recorderPanel);
    buttons->addLayout(side, 1);
    auto *layout = new QVBoxLayout(strip);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(stepPanel);
    layout->addLayout(buttons);
    return strip;
}

void frmMain::layOut() {
    auto *lists = new QSplitter(Qt::Horizontal, this);
    lists->addWidget(filePanel);
    lists->addWidget(gridPanel);
    lists->setStretchFactor(0, 0);
    lists->setStretchFactor(1, 1);
    lists->setChildrenCollapsible(false);
    filePanel->setMinimumWidth(fontMetrics().averageCharWidth() * 30);

    tabRec = new QTabWidget(this);
    tabRec->setObjectName(QStringLiteral("tabRec"));
    tabRec->setAccessibleName(tr("Opnamepanelen"));
    tabRec->addTab(cardPanel, tr("Opname en kaart"));
    tabRec->addTab(scrollable(processorPanel), tr("Processor"));
    tabRec->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);

    auto *middle = new QWidget(this);
    auto *layout = new QVBoxLayout(middle);
    layout->setContentsMargins(fontMetrics().height() / 2, fontMetrics().height() / 2, fontMetrics().height() / 2, 0);
    layout->addWidget(lists, 1);
    layout->addWidget(recordingStrip());
    layout->addWidget(tabRec);
    setCentralWidget(middle);

    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setAccessibleDescription(tr("Statusregel"));
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(lblStatus, 1);
    statusBar()->addPermanentWidget(savePanel->barProgress);
    // Fits a screen of 1280 x 800 with its title bar and frame.
    resize(1240, 750);
}

} // namespace orvel
