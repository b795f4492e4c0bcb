// Speed of opening a playlist as the presenter sees it, from the click to the filled and painted grid, beside a whole
// run of mdb-export on the same file. Prints one line, with and without the painting; needs no display.
//   bench_open [playlist]
#include "app/orvel_application.h"
#include "platform/ebur128/ebur128_meter.h"
#include "platform/fake/fake_joystick.h"
#include "platform/fake/fake_prompts.h"
#include "platform/fake/fake_report_viewer.h"
#include "platform/fake/fake_sound_card.h"
#include "platform/fake/manual_timers.h"
#include "platform/jet/jet_engine.h"
#include "platform/lame/system_audio_files.h"
#include "platform/qt/disk_file_system.h"
#include "widgets/theme.h"
#include "windows/file_panel.h"
#include "windows/frm_main.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using namespace orvel;

/// Of the work alone; what comes between two runs is not counted.
double medianMs(
    int runs, const std::function<void()> &work, const std::function<void()> &between = [] {}) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        between();
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
}

void runTool(const QString &playlist) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QStringLiteral("mdb-export"), {playlist, QStringLiteral("Steps")});
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qFatal("mdb-export failed");
    }
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    OrvelApplication application(argc, argv);
    applyTheme(application);
    const QString source = argc > 1 ? QString::fromLocal8Bit(argv[1])
                                    : QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/steps-150.mdb");
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir(QStringLiteral("new"));
    const QString playlist = folder.filePath(QStringLiteral("new/steps.mdb"));
    QFile::copy(source, playlist);

    DiskFileSystem files;
    FakePrompts prompts;
    ManualTimers timers;
    FakeSoundCard sound;
    FakeJoystick joystick;
    FakeReportViewer report;
    JetEngine databases;
    SystemAudioFiles audioFiles;
    Ebur128Meter loudness;
    Platform platform{sound, audioFiles, databases, files, prompts, timers, joystick, report, loudness};
    frmMain window(platform, folder.path(), {});
    window.show();
    window.Form_Load();
    QListWidget &list = *window.panels().filePanel->filNew;
    const QPoint place = list.visualItemRect(list.item(0)).center();
    const auto click = [&] { QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place); };
    const auto paint = [] { QCoreApplication::processEvents(); };
    click();
    paint();
    constexpr int runs = 21;
    const double filled = medianMs(runs, click, paint);
    const double painted = medianMs(runs, [&] {
        click();
        paint();
    });
    const double theirs = medianMs(runs, [&] { runTool(playlist); });
    std::printf("click to filled grid, %d steps: %.2f ms, painted %.2f ms; mdb-export %.2f ms; ratio %.2f, %.2f\n",
                window.workplace().datList.stepCount(), filled, painted, theirs, filled / theirs, painted / theirs);
    return 0;
}
