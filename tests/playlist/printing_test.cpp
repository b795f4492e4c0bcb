// What the printed running order may use of a playlist, and when there is none.
#include "playlist/printing.h"
#include "playlist/voice_tracks.h"
#include "tests/desk.h"

#include <QLocale>

namespace orvel {

namespace {

class PrintedPlaylist : public Desk {
  protected:
    PrintedPlaylist() { QDir(folder.path()).mkdir(QStringLiteral("rep")); }

    void putTemplate(const QByteArray &text) { disk.write(places.reportTemplate(), text); }
    void open(const QList<QVariantList> &rows, const QStringList &fields = header()) {
        databases.setTable(playlist.fullPath(), QStringLiteral("Steps"), fields, rows);
        playlist.open(settings.NewPath, playlist.fileName());
    }
    /// A slot of so long, marked or not.
    static QVariantList lasting(int stap, const QVariant &minutes, const QVariant &seconds, bool done) {
        QVariantList row = slot(stap, QStringLiteral("LINK%1").arg(stap));
        row[ImportedColumn] = done;
        row[LengteMinColumn] = minutes;
        row[LengteSecColumn] = seconds;
        return row;
    }
    [[nodiscard]] QVariantMap stepAt(int row) const {
        return printing.values().value(QStringLiteral("steps")).toList().at(row).toMap();
    }
    [[nodiscard]] QString text(const char *name) const {
        return printing.values().value(QString::fromLatin1(name)).toString();
    }
    static ErrorNumber errorOf(const std::function<void()> &action) {
        try {
            action();
        } catch (const RuntimeError &error) {
            return error.number();
        }
        return ErrorNumber{};
    }

    VoiceTracks tracks{files, settings};
    Printing printing{platform, places, step, playlist, tracks};
};

} // namespace

TEST_F(PrintedPlaylist, NothingIsShownBeforeAStepWasSelected) {
    printing.Printen();
    EXPECT_TRUE(report.titles.isEmpty()) << "not even a template is looked for";
}

TEST_F(PrintedPlaylist, TheStationsTemplateIsFilledWithTheStepsInTheirOrder) {
    putTemplate("{{playlist}}:{{#steps}}{{number}}{{#presentation}}={{voicetrack}}{{/presentation}} {{/steps}}");
    open({slot(2, QStringLiteral("B&B")), music(3), slot(1, QStringLiteral("A"))});
    select(0);
    printing.Printen();
    EXPECT_EQ(report.titles, QStringList{QStringLiteral("Playlist avond.mdb")});
    EXPECT_EQ(report.reports, QStringList{QStringLiteral("avond:1=A 2=B&amp;B 3 ")});
}

TEST_F(PrintedPlaylist, AStepWithoutAFileMayBeSelectedToo) {
    putTemplate("x");
    select(0);
    printing.Printen();
    EXPECT_EQ(report.reports.size(), 1);
}

TEST_F(PrintedPlaylist, WhatCannotBeReadIsReportedAndNothingIsShown) {
    select(link1);
    try {
        printing.Printen();
        ADD_FAILURE() << "there is no template";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::FileNotFound);
        EXPECT_EQ(error.file(), path(QStringLiteral("rep/play0.rpt")));
    }
    putTemplate("{{#steps}}");
    EXPECT_EQ(errorOf([&] { printing.Printen(); }), ErrorNumber::InvalidProperty);
    putTemplate("x");
    databases.fail(FakeDatabaseEngine::Call::Query, ErrorNumber::DatabaseDamaged);
    EXPECT_EQ(errorOf([&] { printing.Printen(); }), ErrorNumber::DatabaseDamaged);
    databases.clearFailure(FakeDatabaseEngine::Call::Query);
    databases.removeFile(playlist.fullPath());
    EXPECT_EQ(errorOf([&] { printing.Printen(); }), ErrorNumber::FileNotFound);
    EXPECT_TRUE(report.reports.isEmpty());
}

TEST_F(PrintedPlaylist, ThePlaylistIsCounted) {
    open({lasting(1, 1, 30, true), lasting(2, 70, 35, false), music(3), lasting(4, QVariant(), 5, true)});
    EXPECT_EQ(text("playlist"), QStringLiteral("avond"));
    EXPECT_EQ(text("count"), QStringLiteral("4"));
    EXPECT_EQ(text("slots"), QStringLiteral("3"));
    EXPECT_EQ(text("done"), QStringLiteral("2")) << "music is no link that was done";
    EXPECT_EQ(text("length"), QStringLiteral("75:30")) << "1:30 + 70:35 + 3:20 + 0:05";
    const QDate today = QDate::currentDate();
    EXPECT_TRUE(text("date").startsWith(QString::number(today.day()) + u' '));
    EXPECT_TRUE(text("date").endsWith(QString::number(today.year())));
    EXPECT_TRUE(text("date").contains(QLocale(QLocale::Dutch).monthName(today.month())));
}

TEST_F(PrintedPlaylist, AnEmptyOneCountsNothing) {
    open({});
    EXPECT_EQ(text("count"), QStringLiteral("0"));
    EXPECT_EQ(text("length"), QStringLiteral("0:00"));
    EXPECT_TRUE(printing.values().value(QStringLiteral("steps")).toList().isEmpty());
}

TEST_F(PrintedPlaylist, AStepHasItsTimes) {
    QVariantList row = lasting(1, 3, 5, true);
    row[IntroColumn] = 12345;
    row[OuttroColumn] = 0;
    open({row});
    const QVariantMap shown = stepAt(0);
    EXPECT_EQ(shown.value(QStringLiteral("length")), QStringLiteral("3:05"));
    EXPECT_EQ(shown.value(QStringLiteral("intro")).toString(), QLocale().toString(12.3, 'f', 1));
    EXPECT_EQ(shown.value(QStringLiteral("outro")).toString(), QString()) << "none is blank";
    EXPECT_EQ(shown.value(QStringLiteral("finished")), true);
    EXPECT_EQ(shown.value(QStringLiteral("presentation")), true);
}

TEST_F(PrintedPlaylist, EveryFieldHasItsOwnNameAndSomeASecondOne) {
    QVariantList row = slot(7, QStringLiteral("LINK"));
    row[stepColumn("artiest")] = QStringLiteral("De Band");
    row[stepColumn("Titel")] = QStringLiteral("Het Lied");
    row[stepColumn("tijd")] = QStringLiteral("20:15");
    QStringList fields = header();
    fields << QStringLiteral("Opmerking");
    row << QStringLiteral("let op");
    open({row}, fields);
    const QVariantMap shown = stepAt(0);
    for (const auto &[name, value] : std::vector<std::pair<const char *, const char *>>{{"artiest", "De Band"},
                                                                                        {"performer", "De Band"},
                                                                                        {"titel", "Het Lied"},
                                                                                        {"title", "Het Lied"},
                                                                                        {"tijd", "20:15"},
                                                                                        {"time", "20:15"},
                                                                                        {"stap", "7"},
                                                                                        {"number", "7"},
                                                                                        {"atrack", "LINK"},
                                                                                        {"opmerking", "let op"}}) {
        EXPECT_EQ(shown.value(QString::fromLatin1(name)).toString(), QString::fromLatin1(value)) << name;
    }
}

TEST_F(PrintedPlaylist, WithoutAValueItIsBlank) {
    open({slot(1, QVariant()), music(2)});
    const QVariantMap shown = stepAt(0);
    for (const char *name : {"time", "performer", "title", "voicetrack", "jaartal"}) {
        EXPECT_EQ(shown.value(QString::fromLatin1(name)).toString(), QString()) << name;
    }
    EXPECT_EQ(stepAt(1).value(QStringLiteral("voicetrack")).toString(), QString()) << "NONE is no voice track";
    EXPECT_EQ(stepAt(1).value(QStringLiteral("presentation")), false);
}

TEST_F(PrintedPlaylist, AFinishedStepWithoutItsMp3IsMissing) {
    open({lasting(1, 0, 5, true), lasting(2, 0, 5, true), lasting(3, 0, 5, false)});
    disk.write(places.filed(QStringLiteral("LINK2")), "klank");
    EXPECT_EQ(stepAt(0).value(QStringLiteral("missing")), true);
    EXPECT_EQ(stepAt(1).value(QStringLiteral("missing")), false);
    EXPECT_EQ(stepAt(2).value(QStringLiteral("missing")), false) << "it was never done";
}

// What each station had its own version of was printed as missing: there is none without a station's code.
TEST_F(PrintedPlaylist, AStepOfWhichEachStationHasItsVersionIsNotMissing) {
    const std::vector<NetworkStation> network{{QStringLiteral("Algemeen"), QStringLiteral("999")},
                                              {QStringLiteral("Noord"), QStringLiteral("012")},
                                              {QStringLiteral("Zuid"), QStringLiteral("056")}};
    const VoiceTracks shared(files, settings, &network);
    const Printing ofTheNetwork(platform, places, step, playlist, shared);
    const auto shown = [&ofTheNetwork](int row, const char *field) {
        const QVariantMap steps = ofTheNetwork.values().value(QStringLiteral("steps")).toList().at(row).toMap();
        return steps.value(QString::fromLatin1(field));
    };
    open({lasting(1, 0, 5, true), lasting(2, 0, 5, true), lasting(3, 0, 5, false)});
    for (const char *file : {"ok/012LINK1.mp3", "ok/012LINK3.mp3"}) {
        disk.write(path(QString::fromLatin1(file)), "klank");
    }
    EXPECT_EQ(shown(0, "missing"), false);
    EXPECT_EQ(shown(0, "lacking"), QStringLiteral("Zuid"));
    EXPECT_EQ(shown(1, "missing"), true) << "nobody has it";
    EXPECT_EQ(shown(1, "lacking"), QString());
    EXPECT_EQ(shown(2, "lacking"), QString()) << "it is not done yet";
    disk.write(path(QStringLiteral("ok/056LINK1.mp3")), "klank");
    EXPECT_EQ(shown(0, "missing"), false);
    EXPECT_EQ(shown(0, "lacking"), QString());
}

// "Ontbreekt" stood behind another step than the one whose MP3 was missing.
TEST_F(PrintedPlaylist, WhatIsMissingIsToldOfTheStepsThatAreThereNow) {
    open({lasting(2, 0, 10, true), music(3)});
    disk.write(path(QStringLiteral("ok/anders.mp3")), "klank");
    databases.setTable(playlist.fullPath(), QStringLiteral("Steps"), header(),
                       {music(1), lasting(2, 0, 10, true), music(3)}); // by another program
    EXPECT_FALSE(stepAt(0).value(QStringLiteral("missing")).toBool());
    EXPECT_TRUE(stepAt(1).value(QStringLiteral("missing")).toBool());
    EXPECT_FALSE(stepAt(2).value(QStringLiteral("missing")).toBool());
}

} // namespace orvel
