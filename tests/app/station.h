#pragma once

#include "app/orvel_application.h"
#include "platform/jet/jet_engine.h"
#include "playlist/printing.h"
#include "tests/test_platform.h"
#include "windows/card_panel.h"
#include "windows/file_panel.h"
#include "windows/frm_adv.h"
#include "windows/frm_convert.h"
#include "windows/frm_export.h"
#include "windows/frm_import.h"
#include "windows/frm_main.h"
#include "windows/frm_preview.h"
#include "windows/frm_recover.h"
#include "windows/frm_setup.h"
#include "windows/frm_splash.h"
#include "windows/frm_station.h"
#include "windows/frm_unfiled.h"
#include "windows/grid_panel.h"
#include "windows/playback_panel.h"
#include "windows/processor_panel.h"
#include "windows/recorder_panel.h"
#include "windows/save_panel.h"
#include "windows/step_panel.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace orvel {

/// The playlist that most tests open.
inline const QString demo = QStringLiteral("access-2003.mdb");

/// A whole station in a temporary folder with the real disk, database and encoder, and a sound card, a clock and
/// questions worked by hand.
class Station : public testing::Test, protected TestPlatform<JetEngine> {
  protected:
    Station();
    ~Station() override;

    /// Puts lines under a section of the settings file; before start().
    void configure(const QString &lines);
    /// Copies a test database into the to-do folder.
    void addPlaylist(const QString &fixture, const QString &name = {});
    /// Loads the main window.
    bool start(const QString &commandLine = {});
    /// Clicks a playlist of the to-do list.
    void open(const QString &name);
    /// Selects the step with this number by its row.
    void select(int row) { window->panels().gridPanel->selectRow(row); }
    /// Marks a step of the open playlist as done, or not.
    void mark(int row, bool done);
    void click(QAbstractButton *button) { QTest::mouseClick(button, Qt::LeftButton); }
    /// Clicks the record button and lets the count-down pass.
    void beginRecording();
    /// Records so many milliseconds of a tone from click to click.
    void record(int milliseconds);

    [[nodiscard]] QString path(const QString &relative) const { return folder.filePath(relative); }
    [[nodiscard]] bool exists(const QString &relative) const { return QFileInfo::exists(path(relative)); }
    [[nodiscard]] QStringList filesIn(const QString &relative) const {
        return QDir(path(relative)).entryList(QDir::Files);
    }
    [[nodiscard]] QByteArray content(const QString &relative) const;
    /// What a program prints; empty when it is not there.
    static QString output(const QString &program, const QStringList &arguments);
    [[nodiscard]] bool imported(int row) const {
        return window->workplace().datList.value(row, ImportedColumn).toBool();
    }

    QTemporaryDir folder;
    std::unique_ptr<frmMain> window;
};

} // namespace orvel
