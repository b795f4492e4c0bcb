#pragma once

#include <QString>
#include <QStringList>

namespace orvel {

class FileSystem;

/// A settings file of sections and key=value lines. Names match without regard to case. Writing changes only the lines
/// that it must: comments, order, unknown keys, line ends and the character encoding stay.
/// Encoding: UTF-8 where the file is valid UTF-8, else the Windows code page 1252.
class IniFile {
  public:
    /// Reads the file; one that is missing or unreadable is empty.
    IniFile(FileSystem &files, QString path);

    /// The value as it stands, without the blanks and the one pair of quotes around it; empty when the key is absent.
    /// Of keys that stand twice the first one counts.
    [[nodiscard]] QString value(const QString &section, const QString &key) const;
    /// Names of the keys of a section, in the file's order.
    [[nodiscard]] QStringList keys(const QString &section) const;
    /// Gives an existing key its new value, on its line and in this spelling; a new key goes to the end of its section,
    /// a new section to the end of the file.
    void setValue(const QString &section, const QString &key, const QString &value);
    /// Writes the file as one step. Throws what FileSystem::write() throws, and
    /// PathAccess for a file that is there but could not be read.
    void save();

  private:
    [[nodiscard]] qsizetype findSection(const QString &section, qsizetype from = 0) const;
    [[nodiscard]] qsizetype findKey(const QString &section, const QString &key) const;
    [[nodiscard]] qsizetype sectionEnd(qsizetype header) const;

    FileSystem &files_;
    QString path_;
    QStringList lines_;
    QString lineEnd_;
    bool endsWithLineEnd_ = true;
    bool hasBom_ = false;
    bool isUtf8_ = true;
    bool unreadable_ = false;
};

} // namespace orvel
