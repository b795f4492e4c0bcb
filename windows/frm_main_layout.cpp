// How the main window is put together: which panel stands where.
#include "widgets/alarm_line.h"
#include "widgets/status_line.h"
#include "windows/card_panel.h"
#include "windows/desk_body.h"
#include "windows/edit_panel.h"
#include "windows/file_panel.h"
#include "windows/frm_main.h"
#include "windows/grid_panel.h"
#include "windows/input_panel.h"
#include "windows/join_panel.h"
#include "windows/on.h"
#include "windows/open_as.h"
#include "windows/playback_panel.h"
#include "windows/processor_panel.h"
#include "windows/recorder_panel.h"
#include "windows/reflow.h"
#include "windows/save_panel.h"
#include "windows/scrollable.h"
#include "windows/step_panel.h"
#include "windows/takes_panel.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace orvel {

namespace {

constexpr int lowWindowLines = 30; // lower windows have small icons

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

} // namespace

void frmMain::makeToolbar() {
    panels_.tlbMain = addToolBar(tr("Werkbalk"));
    panels_.tlbMain->setObjectName(QStringLiteral("tlbMain"));
    panels_.tlbMain->setMovable(false);
    panels_.tlbMain->setContextMenuPolicy(Qt::PreventContextMenu);
    panels_.tlbMain->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (std::size_t i = 0; i < toolButtons.size(); ++i) {
        const ToolButton &button = toolButtons.at(i);
        QAction *action = panels_.tlbMain->addAction(QIcon(QString::fromLatin1(ImageList1.at(i))),
                                                     QString::fromLatin1(button.caption));
        action->setToolTip(QString::fromLatin1(button.toolTip));
        const int index = static_cast<int>(i) + 1;
        on(action, &QAction::triggered, this, [this, index] { tlbMain_ButtonClick(index); });
    }
}

QWidget *frmMain::recordingStrip() {
    auto *strip = new QWidget(this);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(fontMetrics().height());
    auto *side = new QVBoxLayout;
    auto *actions = new Reflow(strip);
    auto *take = new QWidget(actions);
    auto *takeButtons = new QHBoxLayout(take);
    takeButtons->setContentsMargins(0, 0, 0, 0);
    takeButtons->addWidget(panels_.playbackPanel);
    takeButtons->addWidget(panels_.editPanel, 1);
    actions->add(take);
    actions->add(panels_.savePanel);
    side->addWidget(actions);
    auto *meters = new QHBoxLayout;
    meters->addWidget(panels_.meterPanel, 1);
    meters->addWidget(panels_.inputPanel);
    meters->addWidget(panels_.editPanel->cmdUndo);
    meters->addWidget(panels_.editPanel->cmdRedo);
    side->addLayout(meters);
    panels_.recorderPanel->addNotice(panels_.editPanel->lblSpraak);
    buttons->addWidget(panels_.recorderPanel);
    buttons->addLayout(side, 1);
    auto *layout = new QVBoxLayout(strip);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(panels_.stepPanel);
    layout->addWidget(panels_.takesPanel);
    layout->addLayout(buttons);
    return strip;
}

void frmMain::layOut() {
    panels_.lists = new QSplitter(Qt::Horizontal, this);
    panels_.lists->addWidget(panels_.filePanel);
    panels_.lists->addWidget(panels_.gridPanel);
    panels_.lists->setStretchFactor(0, 0);
    panels_.lists->setStretchFactor(1, 1);
    panels_.lists->setChildrenCollapsible(false);
    panels_.filePanel->setMinimumWidth(fontMetrics().averageCharWidth() * 30);

    panels_.tabRec = new QTabWidget(this);
    panels_.tabRec->setObjectName(QStringLiteral("tabRec"));
    panels_.tabRec->setAccessibleName(tr("Opnamepanelen"));
    panels_.tabRec->addTab(scrollable(panels_.cardPanel), tr("Opname en kaart"));
    panels_.tabRec->addTab(scrollable(panels_.processorPanel), tr("Processor"));
    panels_.tabRec->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    panels_.cmdFold = new QToolButton(this);
    panels_.cmdFold->setObjectName(QStringLiteral("cmdFold"));
    panels_.cmdFold->setAutoRaise(true);
    // Beside the tabs there is room that is in sight, folded or not.
    auto *corner = new QWidget(this);
    auto *cornerLayout = new QHBoxLayout(corner);
    cornerLayout->setContentsMargins(0, 0, 0, 0);
    cornerLayout->addWidget(panels_.joinPanel);
    cornerLayout->addWidget(panels_.cmdFold);
    panels_.tabRec->setCornerWidget(corner);
    on(panels_.cmdFold, &QToolButton::clicked, this, [this] { fold(!isFolded_); });
    // A tab that is wanted is seen.
    on(panels_.tabRec, &QTabWidget::tabBarClicked, this, [this] { fold(false); });

    auto *middle = new DeskBody([this](bool dense) { arrange(dense); }, this);
    auto *layout = new QVBoxLayout(middle);
    layout->setContentsMargins(fontMetrics().height() / 2, fontMetrics().height() / 2, fontMetrics().height() / 2, 0);
    layout->addWidget(panels_.lists, 1);
    // The lists give way to it: what is below them stays where it is.
    layout->addWidget(panels_.lblGuard);
    layout->addWidget(recordingStrip());
    layout->addWidget(panels_.tabRec);
    setCentralWidget(middle);

    panels_.lblStatus = new StatusLine(this);
    panels_.lblStatus->setObjectName(QStringLiteral("lblStatus"));
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(panels_.lblStatus, 1);
    panels_.lblLoudness = new QLabel(this);
    panels_.lblLoudness->setObjectName(QStringLiteral("lblLoudness"));
    panels_.lblLoudness->setProperty("role", QStringLiteral("muted"));
    panels_.lblLoudness->setAccessibleDescription(tr("Luidheid van de opname"));
    panels_.lblLoudness->setToolTip(tr("Hoe luid de opname klinkt, in LUFS, en haar hoogste piek, in dBTP"));
    statusBar()->addPermanentWidget(panels_.lblLoudness);
    statusBar()->addPermanentWidget(panels_.savePanel->barProgress);
    // Fits a screen of 1280 x 800 with its title bar and frame.
    openAs(*this, {1240, 750});
}

void frmMain::arrange(bool dense) {
    isDense_ = dense;
    panels_.filePanel->setDense(dense);
    panels_.gridPanel->setDense(dense);
    panels_.stepPanel->setDense(dense);
    panels_.recorderPanel->setDense(dense);
    panels_.meterPanel->setDense(dense);
    panels_.joinPanel->setDense(dense);
    centralWidget()->layout()->setSpacing(dense ? 2 : style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    showLists();
}

/// Where there is no room for both, the panel with card, mixer and processor takes the place of the lists.
void frmMain::showLists() {
    panels_.lists->setVisible(isFolded_ || !isDense_);
}

void frmMain::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    QToolBar &bar = *panels_.tlbMain;
    const int line = fontMetrics().height();
    const bool isLow = height() < line * lowWindowLines;
    const int icon = isLow ? line : style()->pixelMetric(QStyle::PM_ToolBarIconSize, nullptr, &bar);
    bar.setIconSize({icon, icon});
    bar.setToolButtonStyle(width() < captionsWidth() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
}

/// What the toolbar takes with its captions.
int frmMain::captionsWidth() const {
    const QToolBar &bar = *panels_.tlbMain;
    int width = 0;
    for (QAction *action : bar.actions()) {
        const QWidget *button = bar.widgetForAction(action);
        const int caption = button->fontMetrics().horizontalAdvance(action->text());
        width += caption + bar.iconSize().width() + button->fontMetrics().height() * 5 / 2;
    }
    return width;
}

} // namespace orvel
