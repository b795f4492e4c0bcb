#include "station/holder.h"

#include <QDateTime>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>

namespace orvel {

Holder presentHolder() {
    const QString user = qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME", QDir::home().dirName()));
    return {user, QSysInfo::machineHostName(),
            QDateTime::currentDateTime().toString(QStringLiteral("dd-MM-yyyy HH:mm"))};
}

QByteArray toText(const Holder &holder) {
    return QJsonDocument(QJsonObject{{QStringLiteral("user"), holder.user},
                                     {QStringLiteral("machine"), holder.machine},
                                     {QStringLiteral("since"), holder.since}})
        .toJson(QJsonDocument::Compact);
}

Holder holderIn(const QByteArray &text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    return {object[QStringLiteral("user")].toString(), object[QStringLiteral("machine")].toString(),
            object[QStringLiteral("since")].toString()};
}

} // namespace orvel
