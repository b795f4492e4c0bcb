#include "station/paths.h"

#include "platform/runtime_error.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

namespace orvel {

QString joined(const QString &folder, const QString &literal) {
    QString tail = literal;
    if (QDir::separator() != u'\\') {
        tail.replace(u'\\', QDir::separator());
    }
    return folder + tail;
}

QString inFolder(const QString &folder, const QString &name) {
    return folder + QDir::separator() + name;
}

namespace {

/// Names that Windows keeps for devices, whatever extension follows.
bool isDeviceName(const QString &name) {
    static const QRegularExpression devices(QStringLiteral("^(con|prn|aux|nul|com[1-9]|lpt[1-9]) *(\\..*)?$"),
                                            QRegularExpression::CaseInsensitiveOption);
    return devices.match(name).hasMatch();
}

/// Whether the file names of the system at hand may hold it. What travels to other disks is refused there.
bool isAllowedHere(const QString &name) {
    if (QDir::separator() != u'\\') {
        return !name.contains(u'/') && !name.contains(QChar(0));
    }
    static const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    const bool hasForbidden = std::any_of(name.begin(), name.end(), [](QChar character) {
        return character.unicode() < 0x20 || forbidden.contains(character);
    });
    return !hasForbidden && !isDeviceName(name);
}

bool isPlainName(const QString &name) {
    constexpr qsizetype longest = 200; // bytes; leaves room for an extension and the time in the recovery folder
    return isAllowedHere(name) && name != QStringLiteral(".") && name != QStringLiteral("..") && name.isValidUtf16() &&
           name.toUtf8().size() <= longest;
}

} // namespace

QString takeFile(const QString &folder, const QString &literalFolder, const QString &name, const QString &extension) {
    if (!isPlainName(name)) {
        throw RuntimeError(ErrorNumber::BadFileName, name + extension);
    }
    return joined(folder, literalFolder) + name + extension;
}

} // namespace orvel
