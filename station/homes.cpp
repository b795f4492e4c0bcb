#include "station/homes.h"

#include "platform/file_system.h"
#include "platform/ini_file.h"
#include "platform/prompts.h"
#include "station/paths.h"
#include "station/places.h"
#include "station/work_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace orvel {

namespace {

const QString homesSection = QStringLiteral("Werkmappen");
const QString settingsName = QStringLiteral("orvel.ini");

/// A home's place in the list, from 0.
QString keyAt(qsizetype index) {
    return QStringLiteral("Map%1").arg(index + 1);
}

QString withoutSeparator(const QString &folder) {
    return QDir::cleanPath(QDir(folder).absolutePath());
}

} // namespace

bool isHome(const FileSystem &files, const QString &folder) {
    const Places places(folder);
    return files.fileExists(places.settingsFile()) || files.folderExists(places.newFolder());
}

QString givenHome(FileSystem &files, const QString &wanted, const QString &programFolder) {
    if (!wanted.isEmpty()) {
        return withoutSeparator(wanted);
    }
    return isHome(files, programFolder) && canWrite(files, programFolder) ? programFolder : QString();
}

QStringList Homes::all() const {
    const IniFile file(files_, places_.list);
    QStringList homes;
    for (const QString &key : file.keys(homesSection)) {
        if (const QString home = file.value(homesSection, key); !home.isEmpty() && !homes.contains(home)) {
            homes << home;
        }
    }
    return homes;
}

bool Homes::hasSample() const {
    return !places_.sample.isEmpty() && files_.folderExists(places_.sample);
}

void Homes::use(const QString &home) {
    QStringList homes = all();
    homes.removeAll(withoutSeparator(home));
    homes.prepend(withoutSeparator(home));
    remember(homes);
}

void Homes::forget(const QString &home) {
    QStringList homes = all();
    homes.removeAll(home);
    remember(homes);
}

void Homes::remember(const QStringList &homes) {
    files_.makeFolder(QFileInfo(places_.list).path());
    IniFile file(files_, places_.list);
    // A key cannot go: those behind the last one are empty.
    const qsizetype count = std::max(homes.size(), file.keys(homesSection).size());
    for (qsizetype i = 0; i < count; ++i) {
        file.setValue(homesSection, keyAt(i), homes.value(i));
    }
    file.save();
}

void Homes::prepare(const QString &home) {
    const Places places(withoutSeparator(home));
    files_.makeFolder(places.newFolder());
    files_.makeFolder(places.okFolder());
    copyMissing(QStringLiteral("rep/play0.rpt"), places.programFolder());
    if (!files_.fileExists(places.settingsFile())) {
        copyMissing(settingsName, places.programFolder());
        IniFile settings(files_, places.settingsFile());
        // The catalogues and the server's folder are told in the setup dialog.
        settings.setValue(QStringLiteral("Files"), QStringLiteral("Databasepath"), {});
        settings.setValue(QStringLiteral("Files"), QStringLiteral("VoiceTrackPath"), {});
        settings.setValue(QStringLiteral("Program"), QStringLiteral("Network"), QStringLiteral("0"));
        settings.save();
    }
}

bool Homes::adopt(Prompts &prompts, const QString &folder) {
    if (isThere(folder)) {
        return true;
    }
    const bool wanted = prompts.ask(
        QCoreApplication::translate("Homes", "In de map %1 heeft ORVEL nog niet gewerkt.\n\nEr een werkmap van maken?")
            .arg(folder),
        QCoreApplication::translate("Homes", "Werkmap kiezen"), Preset::Yes,
        {QCoreApplication::translate("Homes", "&Maak een werkmap"), QCoreApplication::translate("Homes", "&Annuleer")});
    if (wanted) {
        prepare(folder);
    }
    return wanted;
}

QString Homes::make(const QString &name) {
    const QString home = takeFile(places_.folder, QStringLiteral("\\"), name.trimmed(), {});
    prepare(home);
    return home;
}

QString Homes::makeSample() {
    const QString name = inFolder(places_.folder, QStringLiteral("Voorbeeld"));
    QString home = name;
    for (int number = 2; files_.folderExists(home); ++number) {
        home = QStringLiteral("%1 %2").arg(name).arg(number);
    }
    copyAll(places_.sample, home);
    for (const char *folder : {"import", "export", "voicetracks"}) {
        files_.makeFolder(inFolder(home, QString::fromLatin1(folder)));
    }
    const QString settings = Places(home).settingsFile();
    files_.write(settings, files_.read(settings).replace("@STATION@", home.toUtf8()));
    return home;
}

void Homes::copyAll(const QString &from, const QString &target) {
    QStringList folders{QString()}; // below both, with those in them behind them
    for (qsizetype i = 0; i < folders.size(); ++i) {
        const QString below = folders.at(i);
        files_.makeFolder(inFolder(target, below));
        for (const QString &name : files_.list(inFolder(from, below), QStringLiteral("*"))) {
            files_.copy(inFolder(inFolder(from, below), name), inFolder(inFolder(target, below), name));
        }
        for (const QString &name : files_.folders(inFolder(from, below))) {
            folders << (below.isEmpty() ? name : inFolder(below, name));
        }
    }
}

void Homes::copyMissing(const QString &name, const QString &home) {
    const QString source = inFolder(places_.sample, name);
    const QString target = inFolder(home, name);
    if (hasSample() && files_.fileExists(source) && !files_.fileExists(target)) {
        files_.makeFolder(QFileInfo(target).path());
        files_.copy(source, target);
    }
}

} // namespace orvel
