#include "tests/platform/jet/jet_test_support.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>

namespace orvel::test {

QString fixture(const QString &name) {
    return QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/") + name;
}

QString access97() {
    return QStringLiteral(ORVEL_SOURCE_DIR "/../shared/fixtures/access-97.mdb");
}

QByteArray readAll(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void writeAll(const QString &path, const QByteArray &content) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

WorkCopy::WorkCopy(const QString &original, const QString &name)
    : path_(folder_.filePath(name.isEmpty() ? QFileInfo(original).fileName() : name)) {
    writeAll(path_, readAll(original));
}

QStringList describedRows(const QString &tsv) {
    QStringList lines = QString::fromUtf8(readAll(tsv)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString &line : lines) {
        line.remove(QLatin1Char('\r'));
    }
    if (!lines.isEmpty()) {
        std::sort(lines.begin() + 1, lines.end());
    }
    return lines;
}

namespace {

QString describedText(const QVariant &value) {
    if (value.isNull()) {
        return QStringLiteral("\\N");
    }
    if (value.metaType().id() == QMetaType::QDateTime) {
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm"));
    }
    return value.toString();
}

/// mdb-export shows an empty text like a null.
QString exportText(const QVariant &value) {
    if (value.isNull() || value.toString().isEmpty()) {
        return {};
    }
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QMetaType::QString:
        return QLatin1Char('"') + value.toString().replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
    case QMetaType::QDateTime:
        return value.toDateTime().toString(QStringLiteral("\"yyyy-MM-dd HH:mm:ss\""));
    default:
        return value.toString();
    }
}

QStringList lines(RecordSet &rows, QLatin1Char separator, QString (*text)(const QVariant &)) {
    QStringList result;
    for (int row = 0; row < rows.recordCount(); ++row) {
        QStringList fields;
        for (int column = 0; column < rows.fieldCount(); ++column) {
            fields += text(rows.value(row, column));
        }
        result += fields.join(separator);
    }
    return result;
}

} // namespace

QStringList rowLines(RecordSet &rows) {
    QStringList result = lines(rows, QLatin1Char('\t'), describedText);
    result.sort();
    return result;
}

QStringList exported(const QString &path, const QString &table) {
    QProcess process;
    process.start(QStringLiteral("mdb-export"),
                  {QStringLiteral("-D"), QStringLiteral("%Y-%m-%d %H:%M:%S"), QStringLiteral("-T"),
                   QStringLiteral("%Y-%m-%d %H:%M:%S"), path, table});
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList exportLines(RecordSet &rows) {
    QStringList names;
    for (int column = 0; column < rows.fieldCount(); ++column) {
        names += rows.fieldName(column);
    }
    return QStringList(names.join(QLatin1Char(','))) + lines(rows, QLatin1Char(','), exportText);
}

} // namespace orvel::test
