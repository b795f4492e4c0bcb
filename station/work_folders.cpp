#include "station/work_folders.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "station/paths.h"
#include "station/places.h"

#include <QCoreApplication>

namespace orvel {

namespace {

void tryToWrite(FileSystem &files, const QString &folder) {
    const QString probe = inFolder(folder, QStringLiteral(".orvel-proef"));
    files.write(probe, QByteArrayLiteral("x")); // an empty file fits on a full disk
    files.remove(probe);
}

} // namespace

bool canWrite(FileSystem &files, const QString &folder) {
    try {
        tryToWrite(files, folder);
    } catch (const RuntimeError &) {
        return false;
    }
    return true;
}

QString makeWorkFolders(FileSystem &files, const Places &places) {
    QString problem; // the first one: the others mostly have the same cause
    for (const QString &folder : {places.newFolder(), places.okFolder(), places.tempFolder(), places.temp2Folder(),
                                  places.takesFolder(), places.journalFolder()}) {
        try {
            files.makeFolder(folder);
            tryToWrite(files, folder);
        } catch (const RuntimeError &error) {
            problem = problem.isEmpty() ? QStringLiteral("%1 (%2)").arg(folder, error.description()) : problem;
        }
    }
    if (problem.isEmpty()) {
        return {};
    }
    return QCoreApplication::translate(
               "makeWorkFolders",
               "ORVEL kan niet schrijven in de map %1.\n\nOpnemen en bewaren lukt niet zolang dat zo is.")
        .arg(problem);
}

} // namespace orvel
