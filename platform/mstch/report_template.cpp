#include "platform/report_template.h"

#include "platform/runtime_error.h"

#include <QStringList>

#include <mstch/mstch.hpp>
#include <string>
#include <utility>
#include <vector>

namespace orvel {

namespace {

[[noreturn]] void complain(const QString &path, qsizetype line, const QString &what) {
    throw RuntimeError(ErrorNumber::InvalidProperty, path, QObject::tr("regel %1: %2").arg(line).arg(what));
}

/// The engine takes broken templates without a word; a station that edits one must be told where it is broken.
void check(const QString &text, const QString &path) {
    std::vector<std::pair<QString, qsizetype>> open;
    for (qsizetype at = text.indexOf(QStringLiteral("{{")); at >= 0; at = text.indexOf(QStringLiteral("{{"), at)) {
        const qsizetype line = text.left(at).count(u'\n') + 1;
        const bool isRaw = text.mid(at, 3) == QStringLiteral("{{{");
        const qsizetype end = text.indexOf(isRaw ? QStringLiteral("}}}") : QStringLiteral("}}"), at);
        const bool isComment = text.mid(at + 2).trimmed().startsWith(u'!');
        if (end < 0 || (!isComment && text.mid(at, end - at).contains(u'\n'))) {
            complain(path, line, QObject::tr("een veld is niet afgesloten met }}"));
        }
        const QString tag = text.mid(at + 2, end - at - 2).trimmed();
        const QString name = tag.mid(1).trimmed();
        if (tag.startsWith(u'=')) {
            complain(path, line, QObject::tr("andere tekens dan {{ en }} worden niet ondersteund"));
        }
        if (tag.startsWith(u'#') || tag.startsWith(u'^')) {
            open.emplace_back(name, line);
        } else if (tag.startsWith(u'/')) {
            if (open.empty() || open.back().first != name) {
                complain(path, line, QObject::tr("{{/%1}} hoort bij geen begin").arg(name));
            }
            open.pop_back();
        }
        at = end;
    }
    if (!open.empty()) {
        complain(path, open.back().second, QObject::tr("{{#%1}} is niet afgesloten").arg(open.back().first));
    }
}

mstch::map toMap(const QVariantMap &values);

// The values are a tree that the program made itself: as deep as a report, never as deep as a file says.
// NOLINTNEXTLINE(misc-no-recursion)
mstch::node toNode(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QVariantMap:
        return toMap(value.toMap());
    case QMetaType::QVariantList: {
        mstch::array all;
        const QVariantList list = value.toList();
        for (const QVariant &item : list) {
            all.push_back(toNode(item));
        }
        return all;
    }
    default:
        return value.toString().toStdString();
    }
}

// NOLINTNEXTLINE(misc-no-recursion)
mstch::map toMap(const QVariantMap &values) {
    mstch::map map;
    for (auto value = values.begin(); value != values.end(); ++value) {
        map.emplace(value.key().toStdString(), toNode(value.value()));
    }
    return map;
}

} // namespace

QString fillTemplate(const QByteArray &reportTemplate, const QVariantMap &values, const QString &path) {
    check(QString::fromUtf8(reportTemplate), path);
    return QString::fromStdString(mstch::render(reportTemplate.toStdString(), toMap(values)));
}

} // namespace orvel
