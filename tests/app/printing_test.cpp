// The printed running order.
#include "platform/qt/qt_report_viewer.h"
#include "platform/runtime_error.h"
#include "station.h"

namespace orvel {

namespace {

class Print : public Station {
  protected:
    void openPlaylist(const QString &fixture, const QString &name = QStringLiteral("lijst.mdb")) {
        addPlaylist(fixture, name);
        ASSERT_TRUE(start());
        open(name);
    }
    void copyTemplate() {
        putTemplate([] {
            QFile sample(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/rep/play0.rpt"));
            EXPECT_TRUE(sample.open(QIODevice::ReadOnly));
            return sample.readAll();
        }());
    }
    void putTemplate(const QByteArray &text) {
        QDir(folder.path()).mkdir(QStringLiteral("rep"));
        disk.write(path(QStringLiteral("rep/play0.rpt")), text);
    }
    void print() { window->tlbMain_ButtonClick(1); }
    [[nodiscard]] QString pdfText() {
        const QString pdf = path(QStringLiteral("draaiorde.pdf"));
        disk.write(pdf, renderPdf(report.titles.constLast(), report.reports.constLast()));
        return output(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    }
};

} // namespace

TEST_F(Print, WithoutASelectedStepNothingHappens) {
    ASSERT_TRUE(start());
    print();
    EXPECT_TRUE(report.reports.isEmpty());
}

TEST_F(Print, AMissingTemplateIsReportedWithItsPath) {
    openPlaylist(QStringLiteral("access-2003.mdb"));
    try {
        print();
        FAIL() << "nothing was reported";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::PathNotFound);
        EXPECT_EQ(error.file(), path(QStringLiteral("rep/play0.rpt")));
    }
    QDir(folder.path()).mkdir(QStringLiteral("rep"));
    try {
        print();
        FAIL() << "nothing was reported";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::FileNotFound);
    }
}

TEST_F(Print, ABrokenTemplateIsReportedWithItsLine) {
    openPlaylist(QStringLiteral("access-2003.mdb"));
    for (const char *broken : {"<p>\n{{#steps}}\n{{title}}", "<p>\n{{playlist}\n", "<p>\n{{/steps}}",
                               "{{#a}}\n{{/b}}\n{{/a}}", "{{! uitleg }}\n{{=<% %>=}}"}) {
        putTemplate(broken);
        try {
            print();
            ADD_FAILURE() << broken;
        } catch (const RuntimeError &error) {
            EXPECT_TRUE(error.description().contains(QStringLiteral("regel 2"))) << error.description().toStdString();
            EXPECT_EQ(error.file(), path(QStringLiteral("rep/play0.rpt")));
        }
    }
    EXPECT_TRUE(report.reports.isEmpty());
}

TEST_F(Print, EveryStepIsThereInItsOrderWithItsVoiceTrack) {
    openPlaylist(QStringLiteral("access-2003.mdb"));
    copyTemplate();
    print();
    ASSERT_EQ(report.reports.size(), 1);
    EXPECT_EQ(report.titles.constLast(), QStringLiteral("Playlist lijst.mdb"));
    const QString text = pdfText();
    qsizetype at = 0;
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        const QString title = window->workplace().datList.value(row, 4).toString();
        at = text.indexOf(title, at);
        ASSERT_GE(at, 0) << title.toStdString() << "\n" << text.toStdString();
        const QString track = window->workplace().datList.value(row, AtrackColumn).toString();
        EXPECT_EQ(text.contains(track), track != QStringLiteral("NONE")) << track.toStdString();
    }
    EXPECT_TRUE(text.contains(QStringLiteral("lijst")));
    EXPECT_TRUE(text.contains(QStringLiteral("pagina 1 van 1")));
}

TEST_F(Print, TheStationsOwnTemplateDecides) {
    openPlaylist(QStringLiteral("access-2003.mdb"));
    putTemplate("{{#steps}}{{stap}}={{mixtype}};{{/steps}}{{count}}");
    print();
    const int count = window->workplace().datList.stepCount();
    QString expected;
    for (int row = 0; row < count; ++row) {
        expected +=
            QStringLiteral("%1=%2;").arg(row + 1).arg(window->workplace().datList.value(row, MixtypeColumn).toInt());
    }
    EXPECT_EQ(report.reports.constLast(), expected + QString::number(count));
}

TEST_F(Print, SpecialCharactersSurviveAndEmptyFieldsAreBlank) {
    openPlaylist(QStringLiteral("unicode.mdb"));
    putTemplate("{{#steps}}[{{titel}}|{{jaartal}}]{{/steps}}");
    print();
    const QString html = report.reports.constLast();
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        const QString title = window->workplace().datList.value(row, 4).toString().toHtmlEscaped();
        const QVariant year = window->workplace().datList.value(row, 5);
        QString expected = QStringLiteral("[%1|%2]").arg(title, year.isNull() ? QString() : year.toString());
        // The engine writes quotes and slashes as numbers.
        QString plain = html;
        plain.replace(QStringLiteral("&#39;"), QStringLiteral("'"))
            .replace(QStringLiteral("&#x2F;"), QStringLiteral("/"));
        EXPECT_TRUE(plain.contains(expected)) << expected.toStdString() << "\n" << plain.toStdString();
    }
}

TEST_F(Print, ALongRunningOrderRepeatsItsHeadAndNumbersItsPages) {
    openPlaylist(QStringLiteral("steps-150.mdb"));
    copyTemplate();
    print();
    const QStringList pages = pdfText().split(u'\f', Qt::SkipEmptyParts);
    ASSERT_GE(pages.size(), 3);
    for (qsizetype page = 0; page < pages.size(); ++page) {
        EXPECT_TRUE(pages.at(page).contains(QStringLiteral("pagina %1 van %2").arg(page + 1).arg(pages.size())))
            << pages.at(page).toStdString();
    }
    for (qsizetype page = 0; page + 1 < pages.size(); ++page) {
        EXPECT_TRUE(pages.at(page).contains(QStringLiteral("Uitvoerder"))) << page;
    }
}

TEST_F(Print, RemarksMayTakeSeveralLines) {
    openPlaylist(QStringLiteral("access-2003.mdb"));
    putTemplate("{{! Zo werkt\n  dit sjabloon }}{{count}}");
    print();
    EXPECT_EQ(report.reports.constLast(), QString::number(window->workplace().datList.stepCount()));
}

} // namespace orvel
