#include "settings/desk_memory.h"

#include "platform/ini_file.h"
#include "station/places.h"

namespace orvel {

namespace {

const QString deskSection = QStringLiteral("Desk");
const QString windowKey = QStringLiteral("Window");
const QString listsKey = QStringLiteral("Lists");
const QString columnsKey = QStringLiteral("Columns");
const QString foldedKey = QStringLiteral("Folded");
const QString playlistKey = QStringLiteral("Playlist");
const QString cueVolumeKey = QStringLiteral("CueVolume");

/// What is no volume is as good as none.
int volumeOf(const QString &text) {
    constexpr int loudest = 65535;
    bool isNumber = false;
    const int volume = text.toInt(&isNumber);
    return isNumber && volume >= 0 && volume <= loudest ? volume : DeskMemory().cueVolume;
}

} // namespace

DeskMemory loadDesk(FileSystem &files, const QString &programFolder) {
    const IniFile file(files, Places(programFolder).deskFile());
    const auto bytes = [&file](const QString &key) {
        return QByteArray::fromBase64(file.value(deskSection, key).toLatin1());
    };
    const QString folded = file.value(deskSection, foldedKey);
    return {bytes(windowKey),
            bytes(listsKey),
            bytes(columnsKey),
            folded.isEmpty() ? std::nullopt : std::optional(folded == QStringLiteral("1")),
            file.value(deskSection, playlistKey),
            volumeOf(file.value(deskSection, cueVolumeKey))};
}

void saveDesk(FileSystem &files, const QString &programFolder, const DeskMemory &desk) {
    IniFile file(files, Places(programFolder).deskFile());
    const auto set = [&file](const QString &key, const QByteArray &bytes) {
        file.setValue(deskSection, key, QString::fromLatin1(bytes.toBase64()));
    };
    set(windowKey, desk.window);
    set(listsKey, desk.lists);
    set(columnsKey, desk.columns);
    file.setValue(deskSection, foldedKey, desk.folded.value_or(false) ? QStringLiteral("1") : QStringLiteral("0"));
    file.setValue(deskSection, playlistKey, desk.playlist);
    file.setValue(deskSection, cueVolumeKey, QString::number(desk.cueVolume));
    file.save();
}

} // namespace orvel
