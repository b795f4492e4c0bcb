#pragma once

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <gtest/gtest.h>

namespace orvel {

inline const QString sourceFolder = QStringLiteral(ORVEL_SOURCE_DIR);

inline QString readText(const QString &path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// What a pattern's first group finds, in order.
inline QStringList allMatches(const QString &text, const QString &pattern) {
    QStringList found;
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    for (QRegularExpressionMatchIterator match = expression.globalMatch(text); match.hasNext();) {
        found << match.next().captured(1);
    }
    return found;
}

/// A text as a presenter reads it: without marks for keys, in one line, its signs as they are shown.
inline QString asShown(QString literal) {
    static const QRegularExpression code(QStringLiteral(R"(\\u([0-9A-Fa-f]{4}))"));
    for (QRegularExpressionMatch match = code.match(literal); match.hasMatch(); match = code.match(literal)) {
        literal.replace(match.capturedStart(), match.capturedLength(), QChar(match.captured(1).toUShort(nullptr, 16)));
    }
    return literal.replace(QStringLiteral("\\n"), QStringLiteral(" ")).remove(u'&').trimmed();
}

/// Every text in quotes of the program's sources.
inline QSet<QString> textsOfTheProgram() {
    QSet<QString> texts;
    for (const char *room :
         {"app", "windows", "widgets", "production", "recording", "playlist", "settings", "station", "platform"}) {
        QDirIterator files(sourceFolder + u'/' + QString::fromLatin1(room),
                           {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QString text = readText(files.next());
            // Texts over several lines are one.
            static const QRegularExpression parts(QStringLiteral("\"\\s*\\n\\s*\""));
            for (const QString &literal :
                 allMatches(text.remove(parts), QStringLiteral("\"((?:[^\"\\\\\\n]|\\\\.)*)\""))) {
                texts << asShown(literal);
            }
        }
    }
    return texts;
}

} // namespace orvel
