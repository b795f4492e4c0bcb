#include "app/dutch_texts.h"
#include "app/orvel_application.h"
#include "app/start.h"
#include "platform/away/away_file_system.h"
#include "platform/away/away_raw_file.h"
#include "platform/ebur128/ebur128_meter.h"
#include "platform/guarded.h"
#include "platform/jet/jet_engine.h"
#include "platform/lame/system_audio_files.h"
#include "platform/pulse/pulse_sound_card.h"
#include "platform/qt/disk_file_system.h"
#include "platform/qt/qt_prompts.h"
#include "platform/qt/qt_report_viewer.h"
#include "platform/qt/qt_timers.h"
#include "platform/qt/quit_signals.h"
#include "platform/sdl/sdl_joystick.h"
#include "station/paths.h"
#include "widgets/theme.h"
#include "windows/frm_main.h"
#include "windows/frm_splash.h"

#include <clocale>

namespace {

using namespace orvel;

QString commandLine() {
    return QCoreApplication::arguments().mid(1).join(u' ');
}

int Main(OrvelApplication &application) {
    QtPrompts prompts;
    AwayWork away(prompts);
    AwayFileSystem files(std::make_shared<DiskFileSystem>(), away, programFolder());
    JetEngine databases(awayOpener(away, programFolder()));
    QtTimers timers;
    SystemAudioFiles audioFiles;
    PulseSoundCard sound(away.opener(programFolder()));
    SdlJoystick joystick;
    QtReportViewer report(prompts, files);
    Ebur128Meter loudness;
    Platform platform{sound, audioFiles, databases, files, prompts, timers, joystick, report, loudness};
    application.setPrompts(prompts);
    // While the program starts, the splash or a message may be the last window.
    QGuiApplication::setQuitOnLastWindowClosed(false);

    frmSplash splash;
    splash.show();
    QCoreApplication::processEvents();

    frmMain window(platform, programFolder(), commandLine());
    const QuitSignals quitSignals([&window] { window.endSession(); });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                     [&window] { guarded([&window] { window.StopAudio(); }); });
    QObject::connect(&window, &frmMain::ended, &application, &QCoreApplication::quit);
    return startUnderSplash(window, splash) ? std::max(QCoreApplication::exec(), application.exitCode()) : 1;
}

} // namespace

int main(int argc, char **argv) {
    OrvelApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ORVEL"));
    applyTheme(application);
    speakDutch(application);
    return Main(application);
}
