#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace orvel {

/// Fills a Mustache template (UTF-8). values: texts, truth values (sections), and lists of maps (repeated sections).
/// Texts are escaped for HTML unless the template asks for them as they are. Throws InvalidProperty, with the number of
/// the line, for a tag that is not closed, a section that is not ended or an end without a section. path: of the
/// template, for the report. Format: mustache(5).
QString fillTemplate(const QByteArray &reportTemplate, const QVariantMap &values, const QString &path);

} // namespace orvel
