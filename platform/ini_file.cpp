#include "platform/ini_file.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace orvel {

namespace {

const QByteArray bom = QByteArrayLiteral("\xEF\xBB\xBF");

/// Code page 1252 between 0x80 and 0x9F; the rest of it is Latin-1. Source: the code page's public table.
constexpr std::array<char16_t, 32> codePage1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString from1252(const QByteArray &bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar &character : text) {
        if (character.unicode() >= 0x80 && character.unicode() < 0xA0) {
            character = QChar(codePage1252.at(character.unicode() - 0x80U));
        }
    }
    return text;
}

QByteArray to1252(const QString &text) {
    QByteArray bytes;
    for (const QChar character : text) {
        const auto *const place = std::find(codePage1252.begin(), codePage1252.end(), character.unicode());
        if (place != codePage1252.end()) {
            bytes.append(static_cast<char>(0x80 + (place - codePage1252.begin())));
        } else {
            bytes.append(character.unicode() < 0x100 ? static_cast<char>(character.unicode()) : '?');
        }
    }
    return bytes;
}

bool fits1252(const QString &text) {
    return from1252(to1252(text)) == text;
}

bool isHeader(const QString &line) {
    const QString trimmed = line.trimmed();
    return trimmed.startsWith(u'[') && trimmed.contains(u']');
}

QString headerName(const QString &line) {
    const QString trimmed = line.trimmed();
    return trimmed.mid(1, trimmed.indexOf(u']') - 1).trimmed();
}

bool isComment(const QString &line) {
    const QString trimmed = line.trimmed();
    return trimmed.startsWith(u';') || trimmed.startsWith(u'#');
}

/// Empty for lines that hold no key.
QString keyName(const QString &line) {
    const qsizetype equals = line.indexOf(u'=');
    return equals < 0 || isComment(line) || isHeader(line) ? QString() : line.left(equals).trimmed();
}

bool same(const QString &a, const QString &b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString unquoted(const QString &value) {
    const bool quoted =
        value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') && value.front() == value.back();
    return quoted ? value.mid(1, value.size() - 2) : value;
}

} // namespace

IniFile::IniFile(FileSystem &files, QString path)
    : files_(files), path_(std::move(path)), lineEnd_(QStringLiteral("\r\n")) {
    QByteArray content;
    try {
        content = files_.read(path_);
    } catch (const RuntimeError &) {
        unreadable_ = files_.fileExists(path_);
        return;
    }
    hasBom_ = content.startsWith(bom);
    if (hasBom_) {
        content.remove(0, bom.size());
    }
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decode(content);
    isUtf8_ = !decode.hasError();
    if (!isUtf8_) {
        text = from1252(content);
    }
    if (text.isEmpty()) {
        return;
    }
    lineEnd_ = text.contains(QStringLiteral("\r\n")) ? QStringLiteral("\r\n") : QStringLiteral("\n");
    endsWithLineEnd_ = text.endsWith(lineEnd_);
    if (endsWithLineEnd_) {
        text.chop(lineEnd_.size());
    }
    lines_ = text.split(lineEnd_);
}

qsizetype IniFile::findSection(const QString &section, qsizetype from) const {
    for (qsizetype i = from; i < lines_.size(); ++i) {
        if (isHeader(lines_.at(i)) && same(headerName(lines_.at(i)), section)) {
            return i;
        }
    }
    return -1;
}

qsizetype IniFile::sectionEnd(qsizetype header) const {
    qsizetype end = header + 1;
    while (end < lines_.size() && !isHeader(lines_.at(end))) {
        ++end;
    }
    return end;
}

qsizetype IniFile::findKey(const QString &section, const QString &key) const {
    for (qsizetype header = findSection(section); header >= 0; header = findSection(section, header + 1)) {
        for (qsizetype i = header + 1; i < sectionEnd(header); ++i) {
            if (same(keyName(lines_.at(i)), key)) {
                return i;
            }
        }
    }
    return -1;
}

QString IniFile::value(const QString &section, const QString &key) const {
    const qsizetype line = findKey(section, key);
    if (line < 0) {
        return {};
    }
    const QString &text = lines_.at(line);
    return unquoted(text.mid(text.indexOf(u'=') + 1).trimmed());
}

QStringList IniFile::keys(const QString &section) const {
    QStringList names;
    for (qsizetype header = findSection(section); header >= 0; header = findSection(section, header + 1)) {
        for (qsizetype i = header + 1; i < sectionEnd(header); ++i) {
            if (!keyName(lines_.at(i)).isEmpty()) {
                names.append(keyName(lines_.at(i)));
            }
        }
    }
    return names;
}

void IniFile::setValue(const QString &section, const QString &key, const QString &value) {
    const QString line = key + u'=' + value;
    const qsizetype present = findKey(section, key);
    if (present >= 0) {
        lines_[present] = line;
        return;
    }
    const qsizetype header = findSection(section);
    if (header < 0) {
        if (!lines_.isEmpty() && !lines_.last().isEmpty()) {
            lines_.append(QString());
        }
        lines_.append(u'[' + section + u']');
        lines_.append(line);
        return;
    }
    // Behind the section's last line, before the blank lines that set it off from the next one.
    qsizetype place = sectionEnd(header);
    while (place > header + 1 && lines_.at(place - 1).trimmed().isEmpty()) {
        --place;
    }
    lines_.insert(place, line);
}

void IniFile::save() {
    if (unreadable_) {
        // Writing now would replace settings that were never seen.
        throw RuntimeError(ErrorNumber::PathAccess, path_);
    }
    QString text = lines_.join(lineEnd_);
    if (endsWithLineEnd_) {
        text += lineEnd_;
    }
    const bool utf8 = isUtf8_ || !fits1252(text);
    files_.write(path_, (hasBom_ ? bom : QByteArray()) + (utf8 ? text.toUtf8() : to1252(text)));
}

} // namespace orvel
