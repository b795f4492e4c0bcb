#include "app/dutch_texts.h"
#include "app/home_choice.h"
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
#include "widgets/theme.h"
#include "windows/frm_main.h"
#include "windows/frm_splash.h"

#include <QScreen>

#include <clocale>

namespace {

using namespace orvel;

QString commandLine() {
    return QCoreApplication::arguments().mid(1).join(u' ');
}

/// Works in a home until the program is over there: its exit code, and where to go on.
struct Ended {
    int code = 0;
    QString otherHome;
};

Ended workIn(const QString &home, OrvelApplication &application, QtPrompts &prompts, HomeChoice &choice) {
    AwayWork away(prompts);
    AwayFileSystem files(std::make_shared<DiskFileSystem>(), away, home);
    JetEngine databases(awayOpener(away, home));
    QtTimers timers;
    SystemAudioFiles audioFiles;
    PulseSoundCard sound(away.opener(home));
    SdlJoystick joystick;
    QtReportViewer report(prompts, files);
    Ebur128Meter loudness;
    Platform platform{sound, audioFiles, databases, files, prompts, timers, joystick, report, loudness};

    frmSplash splash;
    splash.show();
    QCoreApplication::processEvents();

    frmMain window(platform, home, commandLine());
    const QuitSignals quitSignals([&window] { window.endSession(); });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                     [&window] { guarded([&window] { window.StopAudio(); }); });
    QObject::connect(&window, &frmMain::ended, &application, &QCoreApplication::quit);
    if (!choice.isGiven()) {
        window.letSwitch([&] { return choice.ask(home, &window); });
    }
    if (!startUnderSplash(window, splash)) {
        return {1, {}};
    }
    choice.workedIn(home);
    const int code = QCoreApplication::exec();
    return {std::max(code, application.exitCode()), window.otherHome()};
}

int Main(OrvelApplication &application) {
    QtPrompts prompts;
    AwayWork away(prompts);
    application.setPrompts(prompts);
    // While the program starts, a question, the splash or a message may be the last window.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    HomeChoice choice(prompts, std::make_unique<AwayFileSystem>(std::make_shared<DiskFileSystem>(), away,
                                                                HomeChoice::configFolder()));
    Ended ended{0, choice.first()};
    while (ended.code == 0 && !ended.otherHome.isEmpty()) {
        ended = workIn(ended.otherHome, application, prompts, choice);
    }
    return ended.code;
}

} // namespace

int main(int argc, char **argv) {
    OrvelApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ORVEL"));
    // Of its entry in the menu, so that desktops know whose window it is.
    QGuiApplication::setDesktopFileName(QStringLiteral("orvel"));
    QApplication::setFont(fittingFont(QApplication::font(), QGuiApplication::primaryScreen()->availableSize()));
    applyTheme(application);
    speakDutch(application);
    return Main(application);
}
