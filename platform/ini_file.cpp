#include "platform/ini_file.h"

#include "platform/code_page_1252.h"
#include "platform/file_system.h"
#include "platform/runtime_error.h"

#include <QStringDecoder>
#include <QStringEncoder>

namespace orvel {

namespace {

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

/// The text of a line's value that is read as this value.
QString written(QString value) {
    value.replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\n', u' ').replace(u'\r', u' ');
    return unquoted(value.trimmed()) == value ? value : u'"' + value + u'"';
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
    const auto marked = QStringConverter::encodingForData(content);
    hasMark_ = marked.has_value();
    encoding_ = marked.value_or(QStringConverter::Utf8);
    QStringDecoder decode(*encoding_, QStringConverter::Flag::Stateless);
    const QString text = decode(content);
    if (decode.hasError() && !hasMark_) {
        encoding_.reset();
    }
    parse(encoding_ ? text : fromCodePage1252(content));
}

void IniFile::parse(const QString &text) {
    qsizetype start = 0;
    while (start < text.size()) {
        const qsizetype newLine = text.indexOf(u'\n', start);
        const qsizetype next = newLine < 0 ? text.size() : newLine + 1;
        qsizetype end = newLine < 0 ? next : newLine;
        if (newLine > start && text.at(newLine - 1) == u'\r') {
            --end;
        }
        lines_.append({text.mid(start, end - start), text.mid(end, next - end)});
        start = next;
    }
    if (!lines_.isEmpty() && !lines_.first().end.isEmpty()) {
        lineEnd_ = lines_.first().end;
    }
}

qsizetype IniFile::findSection(const QString &section, qsizetype from) const {
    for (qsizetype i = from; i < lines_.size(); ++i) {
        if (isHeader(lines_.at(i).text) && same(headerName(lines_.at(i).text), section)) {
            return i;
        }
    }
    return -1;
}

qsizetype IniFile::sectionEnd(qsizetype header) const {
    qsizetype end = header + 1;
    while (end < lines_.size() && !isHeader(lines_.at(end).text)) {
        ++end;
    }
    return end;
}

qsizetype IniFile::findKey(const QString &section, const QString &key) const {
    for (qsizetype header = findSection(section); header >= 0; header = findSection(section, header + 1)) {
        for (qsizetype i = header + 1; i < sectionEnd(header); ++i) {
            if (same(keyName(lines_.at(i).text), key)) {
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
    const QString &text = lines_.at(line).text;
    return unquoted(text.mid(text.indexOf(u'=') + 1).trimmed());
}

QStringList IniFile::keys(const QString &section) const {
    QStringList names;
    for (qsizetype header = findSection(section); header >= 0; header = findSection(section, header + 1)) {
        for (qsizetype i = header + 1; i < sectionEnd(header); ++i) {
            if (!keyName(lines_.at(i).text).isEmpty()) {
                names.append(keyName(lines_.at(i).text));
            }
        }
    }
    return names;
}

void IniFile::setValue(const QString &section, const QString &key, const QString &value) {
    const QString text = written(value);
    const qsizetype present = findKey(section, key);
    if (present >= 0) {
        QString &line = lines_[present].text;
        if (keyName(line) != key || this->value(section, key) != unquoted(text)) {
            line = key + u'=' + text;
            changed_ = true;
        }
        return;
    }
    const qsizetype header = findSection(section);
    if (header < 0) {
        if (!lines_.isEmpty() && !lines_.last().text.trimmed().isEmpty()) {
            insert(lines_.size(), QString());
        }
        insert(lines_.size(), u'[' + section + u']');
        insert(lines_.size(), key + u'=' + text);
        return;
    }
    // Behind the section's last line, before the blank lines that set it off from the next one.
    qsizetype place = sectionEnd(header);
    while (place > header + 1 && lines_.at(place - 1).text.trimmed().isEmpty()) {
        --place;
    }
    insert(place, key + u'=' + text);
}

void IniFile::insert(qsizetype place, const QString &text) {
    if (place > 0 && lines_.at(place - 1).end.isEmpty()) {
        lines_[place - 1].end = lineEnd_;
    }
    lines_.insert(place, {text, lineEnd_});
    changed_ = true;
}

QByteArray IniFile::content() const {
    QString text;
    for (const Line &line : lines_) {
        text += line.text + line.end;
    }
    if (!encoding_) {
        const QByteArray bytes = toCodePage1252(text);
        return fromCodePage1252(bytes) == text ? bytes : text.toUtf8();
    }
    const auto mark = hasMark_ ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default;
    QStringEncoder encode(*encoding_, mark);
    return encode(text);
}

void IniFile::save() {
    if (unreadable_) {
        // Writing now would replace settings that were never seen.
        throw RuntimeError(ErrorNumber::PathAccess, path_);
    }
    if (changed_) {
        files_.write(path_, content());
        changed_ = false;
    }
}

} // namespace orvel
