#include "app/home_choice.h"

#include "platform/file_system.h"
#include "platform/guarded.h"
#include "station/paths.h"
#include "windows/frm_homes.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace orvel {

HomePlaces homePlaces(const FileSystem &files, const QString &programFolder) {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString beside = inFolder(programFolder, QStringLiteral("voorbeeld"));
    const QString shared = QDir::cleanPath(inFolder(programFolder, QStringLiteral("../share/orvel/voorbeeld")));
    return {inFolder(HomeChoice::configFolder(), QStringLiteral("werkmappen.ini")),
            inFolder(documents, QStringLiteral("ORVEL")), files.folderExists(beside) ? beside : shared};
}

HomeChoice::HomeChoice(Prompts &prompts, std::unique_ptr<FileSystem> files)
    : prompts_(prompts), files_(std::move(files)),
      given_(givenHome(*files_, qEnvironmentVariable("ORVEL_HOME"), QCoreApplication::applicationDirPath())),
      homes_(*files_, homePlaces(*files_, QCoreApplication::applicationDirPath())) {}

HomeChoice::~HomeChoice() = default;

QString HomeChoice::configFolder() {
    return inFolder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), QStringLiteral("orvel"));
}

QString HomeChoice::first() {
    if (isGiven()) {
        return given_;
    }
    const QString last = homes_.all().value(0);
    return !last.isEmpty() && homes_.isThere(last) ? last : ask({}, nullptr);
}

QString HomeChoice::ask(const QString &current, QWidget *parent) {
    frmHomes window(homes_, prompts_, current, parent);
    return window.exec() == QDialog::Accepted ? window.home() : QString();
}

void HomeChoice::workedIn(const QString &home) {
    if (!isGiven()) {
        guarded([&] { homes_.use(home); });
    }
}

} // namespace orvel
