#include "every_window.h"

#include "widgets/alarm_line.h"
#include "widgets/theme.h"

#include <QShortcut>
#include <QTabWidget>

namespace orvel {

EveryWindow::~EveryWindow() {
    QApplication::setFont(font_);
    applyTheme(*qApp, ThemeVariant::Dark);
}

void EveryWindow::dress(double points, ThemeVariant theme, const QSize &screen) {
    QFont font = font_;
    font.setPointSizeF(points);
    QApplication::setFont(fittingFont(font, screen));
    applyTheme(*qApp, theme);
}

void EveryWindow::openDemo() {
    QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/stations-numeric.mdb"),
                path(QStringLiteral("syncstations.mdb")));
    addPlaylist(demo);
    ASSERT_TRUE(start());
    open(demo);
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        if (window->workplace().datList.value(row, TypeColumn).toInt() == PresStep) {
            select(row);
            break;
        }
    }
}

void EveryWindow::key(const QKeySequence &keys) {
    for (QShortcut *shortcut : window->findChildren<QShortcut *>()) {
        if (shortcut->key() == keys) {
            Q_EMIT shortcut->activated();
        }
    }
}

template <class Window>
void EveryWindow::visit(const Look &look, const QString &shape) {
    if (auto *shown = shownWindow<Window>()) {
        look(*shown, shape);
        shown->close();
    }
}

void EveryWindow::visitAll(const Look &look) {
    ASSERT_TRUE(start());
    look(*window, QStringLiteral("zonder playlist"));
    openDemo();
    visitMain(look);
    visitDialogs(look);
    visitUnfiled(look);
}

void EveryWindow::visitMain(const Look &look) {
    QTabWidget &panel = *window->panels().tabRec;
    look(*window, QStringLiteral("met een playlist"));
    panel.tabBarClicked(0); // unfolds it
    for (int tab = 0; tab < panel.count(); ++tab) {
        panel.setCurrentIndex(tab);
        look(*window, panel.tabText(tab));
    }
    beginRecording();
    sound.deliver(44100);
    timers.advance(1000);
    look(*window, QStringLiteral("tijdens een opname"));
    click(window->panels().recorderPanel->cmdRec);
    record(1000);
    look(*window, QStringLiteral("met twee takes"));
    window->panels().lblGuard->tell({QStringLiteral("De microfoon zwijgt."), QStringLiteral("De schijf is vol.")});
    look(*window, QStringLiteral("met een waarschuwing"));
}

void EveryWindow::visitDialogs(const Look &look) {
    window->tlbMain_ButtonClick(4);
    if (auto *setup = shownWindow<frmSetup>()) {
        for (int tab = 0; tab < setup->tabSetup->count(); ++tab) {
            setup->tabSetup->setCurrentIndex(tab);
            look(*setup, setup->tabSetup->tabText(tab));
        }
        setup->close();
    }
    window->tlbMain_ButtonClick(2);
    visit<frmImport>(look);
    window->tlbMain_ButtonClick(3);
    visit<frmExport>(look);
    window->tlbMain_ButtonClick(5);
    visit<frmSplash>(look);
    click(window->panels().savePanel->cmdImport);
    visit<frmConvert>(look);
    Q_EMIT window->panels().gridPanel->previewWanted();
    visit<frmPreview>(look);
    Q_EMIT window->panels().filePanel->recoverWanted();
    visit<frmRecover>(look);
    Q_EMIT window->panels().cardPanel->advancedWanted();
    visit<frmAdv>(look);
    key(Qt::Key_F1);
    visit<frmKeys>(look);
    window->workplace().saving.cmdMultivoice_Click();
    record(300);
    click(window->panels().savePanel->cmdSave);
    visit<frmStation>(look);
}

void EveryWindow::visitUnfiled(const Look &look) {
    window.reset();
    ASSERT_TRUE(start());
    visit<frmUnfiled>(look);
}

} // namespace orvel
