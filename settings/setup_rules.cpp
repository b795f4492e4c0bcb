#include "settings/setup_rules.h"

#include "platform/file_system.h"
#include "platform/ini_file.h"
#include "platform/runtime_error.h"
#include "station/places.h"

#include <QObject>

namespace orvel {

bool hasSettings(FileSystem &files, const QString &programFolder) {
    return !IniFile(files, Places(programFolder).settingsFile()).isEmpty();
}

QString databaseFolderProblem(const FileSystem &files, const QString &folder, bool used) {
    if (!folder.isEmpty() && !files.folderExists(folder)) {
        return QObject::tr("Deze map bestaat niet.");
    }
    const bool lacksTracks = used && !files.fileExists(Places::tracks(folder));
    return lacksTracks ? QObject::tr("In deze map staat geen digital.mdb.") : QString();
}

QString voiceFolderProblem(const FileSystem &files, const QString &folder, bool used) {
    const bool wanted = used || !folder.isEmpty();
    return wanted && !files.folderExists(folder) ? QObject::tr("Deze map bestaat niet.") : QString();
}

QString missingDatabaseFolder(const QString &folder) {
    return folder.isEmpty() ? QObject::tr("Nog niet ingevuld: nodig om nummers te kunnen voorbeluisteren.") : QString();
}

QString missingVoiceFolder(const QString &folder) {
    return folder.isEmpty() ? QObject::tr("Nog niet ingevuld: nodig om op de server weg te schrijven.") : QString();
}

QString chooserStart(const FileSystem &files, const QString &text, const QString &programFolder) {
    if (text.isEmpty()) {
        return programFolder;
    }
    try {
        static_cast<void>(files.fileSize(text));
    } catch (const RuntimeError &error) {
        // The chooser would wait for it, and the whole program with it. Others tell the presenter what is wrong.
        if (error.number() == ErrorNumber::DiskNotReady) {
            return programFolder;
        }
    }
    return text;
}

QString callbackName(int mode) {
    static const QStringList names = {QStringLiteral("Windows"), QStringLiteral("Callback"), QStringLiteral("Thread")};
    return names.value(mode);
}

QString outputName(const QStringList &outputs, int number) {
    return number == -1 ? QObject::tr("Standaarduitgang")
                        : outputs.value(number, QObject::tr("Kaart %1 ontbreekt").arg(number));
}

std::int16_t chosenBitRate(int selected, std::int16_t stored) {
    return selected < 0 ? stored : static_cast<std::int16_t>(selected);
}

void applySetup(const Settings &saved, Settings &inForce) {
    inForce.Databasepath = saved.Databasepath;
    inForce.VoicetrackPath = saved.VoicetrackPath;
    inForce.Countdown = saved.Countdown;
    inForce.ServerMode = saved.ServerMode;
}

} // namespace orvel
