#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringConverter>
#include <QStringList>

#include <optional>
#include <utility>

namespace orvel {

class FileSystem;

/// A settings file of sections and key=value lines. Names match without regard to case. Writing changes only the lines
/// that it must: comments, order, unknown keys, line ends and the character encoding stay.
/// Encoding: what a byte order mark says (UTF-8, UTF-16); else UTF-8 where the file is valid UTF-8, else the Windows
/// code page 1252. A file in that code page becomes UTF-8 when it gets a character that the code page does not have.
class IniFile {
  public:
    /// Reads the file; one that is missing or unreadable is empty.
    IniFile(FileSystem &files, QString path);

    /// The value as it stands, without the blanks and the one pair of quotes around it; empty when the key is absent.
    /// Of keys that stand twice the first one counts.
    [[nodiscard]] QString value(const QString &section, const QString &key) const;
    /// Names of the keys of a section, in the file's order.
    [[nodiscard]] QStringList keys(const QString &section) const;
    /// Whether there is no key at all; a file that cannot be read is not known to be empty.
    [[nodiscard]] bool isEmpty() const { return keys_.isEmpty() && !unreadable_; }
    /// Gives an existing key its new value, on its line and in this spelling; a new key goes to the end of its section,
    /// a new section to the end of the file. A value that has blanks or quotes at its ends is put in quotes, so that it
    /// is read as it was given; line breaks in it become blanks.
    void setValue(const QString &section, const QString &key, const QString &value);
    /// Writes the file as one step if it changed. Throws what FileSystem::write() throws, and PathAccess for a file
    /// that is there but could not be read.
    void save();

  private:
    struct Line {
        QString text;
        QString end; ///< "\r\n" or "\n"; empty for a last line without one
    };

    /// A header and what follows it. The blank lines at its end set it off from the next one: new keys go before them.
    struct Section {
        QString name; ///< folded
        QList<Line> lines;
        QList<Line> blanks;
    };
    struct Place {
        qsizetype section = 0;
        qsizetype line = 0;
    };

    void parse(const QString &text);
    void append(const Line &line);
    void rememberLastLineOf(qsizetype section);
    void appendNew(const QString &text);
    void giveEnd(Line &line) const;
    [[nodiscard]] QByteArray content() const;
    [[nodiscard]] QString valueAt(const Place &place) const;

    FileSystem &files_;
    QString path_;
    QList<Section> sections_{Section{}};             ///< the first one is what stands before any header
    QHash<QString, QList<qsizetype>> headers_;       ///< sections by folded name
    QHash<std::pair<QString, QString>, Place> keys_; ///< the first place of each folded section and key
    QString lineEnd_;                                ///< of new lines
    /// None: code page 1252.
    std::optional<QStringConverter::Encoding> encoding_ = QStringConverter::Utf8;
    bool hasMark_ = false;
    bool unreadable_ = false;
    bool changed_ = false;
};

} // namespace orvel
