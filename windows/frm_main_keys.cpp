// The keys of the main window: one for each thing that a presenter does all day.
#include "playlist/progress.h"
#include "windows/edit_panel.h"
#include "windows/frm_keys.h"
#include "windows/frm_main.h"
#include "windows/frm_manual.h"
#include "windows/grid_panel.h"
#include "windows/join_panel.h"
#include "windows/manual_key.h"
#include "windows/manual_sections.h"
#include "windows/on.h"
#include "windows/playback_panel.h"
#include "windows/recorder_panel.h"
#include "windows/save_panel.h"
#include "windows/takes_panel.h"

#include <QDir>
#include <QFileInfo>
#include <QShortcut>
#include <QStatusBar>
#include <QToolButton>

namespace orvel {

namespace {

/// A key that presses a button, where that is enabled; the button's tooltip tells the key.
DeskKeyStroke keyOf(QAbstractButton *button, const QKeySequence &key, const QString &what) {
    button->setToolTip(QStringLiteral("%1 (%2)").arg(button->toolTip(), key.toString(QKeySequence::NativeText)));
    return {key, what, [button] { button->click(); }};
}

} // namespace

void frmMain::makeKeys() {
    const std::vector<DeskKeyStroke> keys{
        keyOf(panels_.recorderPanel->cmdRec, Qt::Key_F5, tr("Opname starten en stoppen")),
        keyOf(panels_.savePanel->cmdSave, Qt::Key_F4, tr("De opname bewaren")),
        keyOf(panels_.playbackPanel->cmdPlay, Qt::Key_F3, tr("De opname beluisteren, of stoppen")),
        keyOf(panels_.takesPanel->cmdNextTake, Qt::Key_F2, tr("Een andere take van deze stap kiezen")),
        keyOf(panels_.takesPanel->cmdDroog, Qt::Key_F12, tr("Bij het beluisteren: de droge of de bewerkte opname")),
        keyOf(panels_.takesPanel->cmdOpnieuw, QKeySequence(Qt::SHIFT | Qt::Key_F11),
              tr("De droge opname opnieuw bewerken")),
        keyOf(panels_.joinPanel->cmdInVerband, QKeySequence(Qt::SHIFT | Qt::Key_F3),
              tr("De opname in verband beluisteren, of stoppen")),
        keyOf(panels_.editPanel->cmdFit, Qt::Key_F11, tr("De opname op de intro laten passen")),
        keyOf(panels_.editPanel->cmdUndo, Qt::CTRL | Qt::Key_Z, tr("De laatste bewerking ongedaan maken")),
        keyOf(panels_.editPanel->cmdRedo, Qt::CTRL | Qt::Key_Y, tr("De bewerking opnieuw doen")),
        {Qt::Key_F6, tr("Naar de volgende link die nog niet klaar is"), [this] { showNextOpenSlot(); }},
        {Qt::Key_F7, tr("Het gekozen nummer voorbeluisteren"), [this] { panels_.gridPanel->dbgLijst_DblClick(); }},
        {Qt::Key_F8, tr("De playlist afdrukken"), [this] { panels_.tlbMain->actions().constFirst()->trigger(); }},
        {Qt::Key_F9, tr("Opnamekaart, mixer en processor tonen of wegklappen"), [this] { fold(!isFolded_); }},
        {Qt::Key_Escape, tr("De aftelling afbreken"), [this] { workplace_.session.cancelCountDown(); }},
        {Qt::Key_F1, tr("Deze toetsen"), [this] { showKeys(); }},
        {QKeySequence(Qt::SHIFT | Qt::Key_F1), tr("De handleiding openen"), [this] { showManual(); }},
    };
    for (const DeskKeyStroke &stroke : keys) {
        addKey(stroke);
    }
    new ManualKey(
        *this, [this](QWidget &control) { showManualAbout(control); }, this);
}

void frmMain::addKey(const DeskKeyStroke &stroke) {
    keys_.push_back(stroke);
    auto *shortcut = new QShortcut(stroke.key, this);
    shortcut->setAutoRepeat(false);
    on(shortcut, &QShortcut::activated, this, stroke.action);
    if (stroke.key == QKeySequence(Qt::Key_Escape)) {
        escape_ = shortcut;
    }
}

void frmMain::letSwitch(std::function<QString()> choose) {
    chooseHome_ = std::move(choose);
    panels_.cmdWerkmap = new QToolButton(this);
    QToolButton &button = *panels_.cmdWerkmap;
    const QString folder = workplace_.places.programFolder();
    const QString name =
        fontMetrics().elidedText(QFileInfo(folder).fileName(), Qt::ElideRight, fontMetrics().averageCharWidth() * 30);
    button.setObjectName(QStringLiteral("cmdWerkmap"));
    button.setText(tr("Werkmap: %1").arg(name));
    button.setToolTip(tr("%1\nEen andere werkmap openen").arg(QDir::toNativeSeparators(folder)));
    button.setAutoRaise(true);
    on(&button, &QToolButton::clicked, this, &frmMain::cmdWerkmap_Click);
    statusBar()->addPermanentWidget(&button);
    addKey(keyOf(&button, Qt::CTRL | Qt::Key_O, tr("Een andere werkmap openen")));
    showDesk();
}

void frmMain::cmdWerkmap_Click() {
    // While the question stands open a joystick's button may start a take: asked before and after.
    if (!workplace_.session.isIdle()) {
        return;
    }
    const QString home = chooseHome_();
    if (!home.isEmpty() && workplace_.session.isIdle()) {
        otherHome_ = home;
        endSession();
    }
}

void frmMain::showNextOpenSlot() {
    panels_.gridPanel->selectRow(nextOpenSlot(workplace_.datList, panels_.gridPanel->currentRow()));
    panels_.recorderPanel->cmdRec->setFocus();
}

void frmMain::showKeys() {
    if (!keySheet_) {
        keySheet_ = std::make_unique<frmKeys>(keys_, this);
        on(keySheet_.get(), &frmKeys::manualWanted, this, [this] { showManual(); });
    }
    keySheet_->open();
}

void frmMain::showManual() {
    showManualAbout(focusWidget() == nullptr ? *this : *focusWidget());
}

void frmMain::showManualAbout(QWidget &control) {
    QWidget *window = control.window();
    frmManual *shown = manual_.data();
    // Whose child it is can be read beside it, also while that is modal.
    if (shown == nullptr || (window != shown && shown->parentWidget() != window)) {
        delete shown;
        shown = new frmManual(window);
        shown->setAttribute(Qt::WA_DeleteOnClose);
        manual_ = shown;
    }
    shown->show();
    shown->raise();
    shown->activateWindow();
    shown->goTo(manualAnchorOf(control));
}

} // namespace orvel
