// The table of settings in docs/beheer.md is made of the program's own tables; only what a key means is written there.
// With ORVEL_UPDATE_DOCS=1 in the environment the table is brought up to date instead of compared.
#include "production/stages.h"
#include "settings/settings_keys.h"

#include <QFile>
#include <QMap>
#include <QStringList>

#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString settingsDocument = QStringLiteral(ORVEL_SOURCE_DIR "/docs/beheer.md");
const QString tableBegin = QStringLiteral("<!-- sleutels: begin -->\n");
const QString tableEnd = QStringLiteral("<!-- sleutels: einde -->\n");

QString readAll() {
    QFile file(settingsDocument);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}

QString cell(const char *section, const char *key) {
    return QStringLiteral("`[%1]` | `%2`").arg(QLatin1String(section), QLatin1String(key));
}

/// What the document says of each key, by the first two cells of its row.
QMap<QString, QString> meanings(const QString &table) {
    QMap<QString, QString> told;
    for (const QString &row : table.split(u'\n')) {
        const QStringList cells = row.split(QStringLiteral(" | "));
        if (cells.size() >= 6) {
            told.insert(cells.at(0).mid(2) + QStringLiteral(" | ") + cells.at(1), cells.last().chopped(2));
        }
    }
    return told;
}

QString kindOf(const SettingsKey &key) {
    if (std::holds_alternative<QString Settings::*>(key.field)) {
        return QStringLiteral("tekst");
    }
    if (std::holds_alternative<Truth Settings::*>(key.field)) {
        return QStringLiteral("0 of 1");
    }
    return QLatin1String(key.section) == QLatin1String("Colors") ? QStringLiteral("kleur") : QStringLiteral("getal");
}

QString whenMissing(const SettingsKey &key) {
    return kindOf(key) == QStringLiteral("tekst") ? QStringLiteral("leeg") : QString::number(key.whenBad);
}

QString writerOf(const SettingsKey &key) {
    switch (key.writer) {
    case WrittenBy::Setup:
        return QStringLiteral("Instellingen");
    case WrittenBy::EndOfProgram:
        return QStringLiteral("einde van het programma");
    case WrittenBy::Nobody:
        return QStringLiteral("met de hand");
    }
    return {};
}

/// The table with the meanings that it has now.
class SettingsTable {
  public:
    explicit SettingsTable(QMap<QString, QString> told) : told_(std::move(told)) {
        text_ = QStringLiteral("| Sectie | Sleutel | Waarde | Als hij ontbreekt | Geschreven door | Betekenis |\n"
                               "|---|---|---|---|---|---|\n");
        for (const SettingsKey &key : settingsKeys()) {
            row(cell(key.section, key.written ? key.written : key.key), kindOf(key), whenMissing(key), writerOf(key));
        }
        for (const Stage &stage : stages()) {
            processor(stage.key, QStringLiteral("0 of 1"));
            for (const StageKnob &knob : stage.knobs) {
                processor(knob.key, QStringLiteral("%1 tot %2 %3")
                                        .arg(knob.minimum)
                                        .arg(knob.maximum)
                                        .arg(QString::fromUtf8(knob.unit)));
            }
        }
    }

    [[nodiscard]] const QString &text() const { return text_; }
    [[nodiscard]] const QStringList &unexplained() const { return unexplained_; }

  private:
    void processor(const char *key, const QString &kind) {
        row(cell("AudioProcessor", key), kind, QStringLiteral("0"), QStringLiteral("einde van het programma"));
    }

    void row(const QString &name, const QString &kind, const QString &missing, const QString &writer) {
        const QString meaning = told_.value(name);
        if (meaning.trimmed().isEmpty()) {
            unexplained_ << name;
        }
        text_ += QStringLiteral("| %1 |\n")
                     .arg(QStringList{name, kind, missing, writer, meaning}.join(QStringLiteral(" | ")));
    }

    QMap<QString, QString> told_;
    QString text_;
    QStringList unexplained_;
};

} // namespace

TEST(SettingsTableOfTheDocument, IsTheProgramsOwn) {
    QString text = readAll();
    const qsizetype begin = text.indexOf(tableBegin) + tableBegin.size();
    const qsizetype end = text.indexOf(tableEnd);
    ASSERT_GT(begin, tableBegin.size());
    ASSERT_GT(end, begin);
    const QString written = text.mid(begin, end - begin);
    const SettingsTable wanted(meanings(written));
    if (qEnvironmentVariableIntValue("ORVEL_UPDATE_DOCS") == 1) {
        QFile file(settingsDocument);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.replace(begin, end - begin, wanted.text()).toUtf8());
    } else {
        EXPECT_EQ(written.toStdString(), wanted.text().toStdString())
            << "run this test with ORVEL_UPDATE_DOCS=1, and write what new keys mean";
    }
    EXPECT_TRUE(wanted.unexplained().isEmpty())
        << "without a meaning: " << wanted.unexplained().join(QStringLiteral(", ")).toStdString();
}

} // namespace orvel
