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

bool isBlank(const QString &line) {
    return line.trimmed().isEmpty();
}

/// Equal for names that differ only in case.
QString folded(const QString &name) {
    return name.toCaseFolded();
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
        const Line line{text.mid(start, end - start), text.mid(end, next - end)};
        if (start == 0 && !line.end.isEmpty()) {
            lineEnd_ = line.end;
        }
        append(line);
        start = next;
    }
}

void IniFile::append(const Line &line) {
    if (isHeader(line.text)) {
        const QString name = folded(headerName(line.text));
        headers_[name].append(sections_.size());
        sections_.append({name, {line}, {}});
        return;
    }
    Section &last = sections_.last();
    if (isBlank(line.text)) {
        last.blanks.append(line);
        return;
    }
    last.lines += std::exchange(last.blanks, {});
    last.lines.append(line);
    rememberLastLineOf(sections_.size() - 1);
}

void IniFile::rememberLastLineOf(qsizetype section) {
    const Section &its = sections_.at(section);
    const QString name = folded(keyName(its.lines.last().text));
    if (section == 0 || name.isEmpty() || keys_.contains({its.name, name})) {
        return;
    }
    keys_.insert({its.name, name}, {section, its.lines.size() - 1});
}

QString IniFile::valueAt(const Place &place) const {
    const QString &text = sections_.at(place.section).lines.at(place.line).text;
    return unquoted(text.mid(text.indexOf(u'=') + 1).trimmed());
}

QString IniFile::value(const QString &section, const QString &key) const {
    const auto place = keys_.constFind({folded(section), folded(key)});
    return place == keys_.constEnd() ? QString() : valueAt(*place);
}

QStringList IniFile::keys(const QString &section) const {
    QStringList names;
    for (const qsizetype number : headers_.value(folded(section))) {
        for (const Line &line : sections_.at(number).lines) {
            const QString name = keyName(line.text);
            if (!name.isEmpty()) {
                names.append(name);
            }
        }
    }
    return names;
}

void IniFile::setValue(const QString &section, const QString &key, const QString &value) {
    const QString text = written(value);
    const auto place = keys_.constFind({folded(section), folded(key)});
    if (place != keys_.constEnd()) {
        QString &line = sections_[place->section].lines[place->line].text;
        if (keyName(line) != key || valueAt(*place) != unquoted(text)) {
            line = key + u'=' + text;
            changed_ = true;
        }
        return;
    }
    const auto header = headers_.constFind(folded(section));
    if (header == headers_.constEnd()) {
        if (sections_.last().blanks.isEmpty() && !sections_.last().lines.isEmpty()) {
            appendNew(QString());
        }
        appendNew(u'[' + section + u']');
        appendNew(key + u'=' + text);
        return;
    }
    QList<Line> &lines = sections_[header->first()].lines;
    giveEnd(lines.last());
    lines.append({key + u'=' + text, lineEnd_});
    rememberLastLineOf(header->first());
    changed_ = true;
}

/// The end of the file's last line may be missing.
void IniFile::giveEnd(Line &line) const {
    if (line.end.isEmpty()) {
        line.end = lineEnd_;
    }
}

void IniFile::appendNew(const QString &text) {
    Section &last = sections_.last();
    QList<Line> &lines = last.blanks.isEmpty() ? last.lines : last.blanks;
    if (!lines.isEmpty()) {
        giveEnd(lines.last());
    }
    append({text, lineEnd_});
    changed_ = true;
}

QByteArray IniFile::content() const {
    QString text;
    for (const Section &section : sections_) {
        for (const Line &line : section.lines + section.blanks) {
            text += line.text + line.end;
        }
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
