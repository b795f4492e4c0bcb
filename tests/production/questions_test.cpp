// Every question that the program asks: which buttons it has, and which one Enter presses.
#include "playlist/deletion.h"
#include "playlist/transfer.h"
#include "production/sound_drop.h"
#include "station/homes.h"
#include "station/restoring.h"
#include "station/shell_copy.h"
#include "tests/desk.h"

#include <QDirIterator>
#include <QRegularExpression>

namespace orvel {

namespace {

/// Notes the questions and says no to all of them.
class NotingPrompts : public FakePrompts {
  public:
    struct Question {
        QString text;
        Preset preset = Preset::Yes;
        Verbs verbs;
    };

    bool ask(const QString &text, const QString & /*title*/, Preset preset, const Verbs &verbs) override {
        asked.push_back({text, preset, verbs});
        return false;
    }

    std::vector<Question> asked;
};

/// Ja and Nee where the system's own texts go with them; everything else says what it does.
enum class Buttons { JaNee, Verbs };
enum class Does { Destroy, GoOn };

struct Row {
    const char *question; ///< its beginning
    Buttons buttons;
    Does does;
};

class Questions : public Desk {
  protected:
    Questions() {
        disk.write(path(QStringLiteral("new/a.mdb")), "x");
        QDir(folder.path()).mkdir(QStringLiteral("van"));
        disk.write(path(QStringLiteral("van/a.mdb")), "y");
        disk.write(path(QStringLiteral("ok/LINK1.mp3")), "x");
        disk.write(path(QStringLiteral("ok/LINK2.mp3")), "x");
        const auto writer = realAudioFiles.wavWriter();
        writer->create(path(QStringLiteral("van/stem.wav")), 44100);
        writer->close();
    }

    void askEverything() {
        Deletion deletion{{asking.files, asking.prompts, recovery, [] { return false; }, tell}};
        deletion.deleteToDo({settings.NewPath, {QStringLiteral("a.mdb")}, {}}, [] {});
        PlaylistImport import(
            {asking, settings, drives, recovery, [](const QStringList &) {}, tell, [] { return false; }});
        import.run(path(QStringLiteral("van"))); // two: overwriting, and deleting the sources
        Global::ShellCopyFile(asking, path(QStringLiteral("van/a.mdb")), path(QStringLiteral("weg/a.mdb")), false,
                              QString());
        recovery.keepCopy(path(QStringLiteral("new/a.mdb")));
        Restoring restoring{{asking.files, asking.prompts, recovery, folder.path(), [] { return false; }}};
        static_cast<void>(restoring.putBack(recovery.kept().front()));
        Completion finishing(
            {asking, settings, playlist, step, recovery, [] {}, [](int) {}, [] {}, [] {}, [] {}, tell});
        SoundDrop dropping{
            {asking, settings, places, step, playlist, session, marks, filing, finishing, [](int) {}, tell}};
        dropping.drop({path(QStringLiteral("van/stem.wav"))}, link2);
        for (int row = 0; row < playlist.stepCount(); ++row) {
            playlist.setValue(row, ImportedColumn, true);
        }
        finishing.CheckLijst();
        Saving versions({asking, settings, places, session, listening, filing, completion, tell, [] {}, [] {}});
        select(link1);
        record(300);
        versions.cmdMultivoice_Click();
        versions.ExternalSave(QStringLiteral("012"));
        Homes(files, {}).adopt(notes, path(QStringLiteral("geen werkmap")));
    }

    NotingPrompts notes;
    Platform asking{sound, audioFiles, databases, files, notes, timers, joystick, report, loudness};
};

const std::vector<Row> table{
    {"Wenst U ALLE nog te bewerken playlists te verwijderen ?", Buttons::JaNee, Does::Destroy},
    {"Het bestand a.mdb bestaat al. Wilt U het overschrijven ?", Buttons::Verbs, Does::Destroy},
    {"Mogen de import-bestanden gewist worden ?", Buttons::JaNee, Does::Destroy},
    {"De map ", Buttons::Verbs, Does::GoOn},
    {"Bij de te bewerken playlists staat al a.mdb.", Buttons::Verbs, Does::Destroy},
    {"Stap 4 heeft al een voicetrack", Buttons::Verbs, Does::Destroy},
    {"Playlist Klaar ?", Buttons::JaNee, Does::GoOn},
    {"Bent U klaar met deze inteksting ?", Buttons::JaNee, Does::GoOn},
    {"In de map ", Buttons::Verbs, Does::GoOn},
};

} // namespace

TEST_F(Questions, SayWhatTheyDoAndNeverPresetWhatDestroys) {
    askEverything();
    ASSERT_EQ(notes.asked.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto &asked = notes.asked[i];
        SCOPED_TRACE(asked.text.toStdString());
        EXPECT_TRUE(asked.text.startsWith(QString::fromUtf8(table[i].question)));
        EXPECT_EQ(asked.verbs == Verbs(), table[i].buttons == Buttons::JaNee);
        EXPECT_NE(asked.verbs.yes, asked.verbs.no);
        if (table[i].does == Does::Destroy) {
            EXPECT_EQ(asked.preset, Preset::No);
        }
    }
}

/// A question that is added belongs in the table.
TEST(TheTableOfQuestions, IsComplete) {
    std::size_t places = 0;
    for (const char *room : {"station", "settings", "playlist", "recording", "production", "windows", "app"}) {
        QDirIterator sources(QStringLiteral(ORVEL_SOURCE_DIR "/") + QString::fromLatin1(room),
                             {QStringLiteral("*.cpp")}, QDir::Files);
        while (sources.hasNext()) {
            QFile source(sources.next());
            ASSERT_TRUE(source.open(QIODevice::ReadOnly));
            places += static_cast<std::size_t>(
                QString::fromUtf8(source.readAll()).count(QRegularExpression(QStringLiteral("prompts_?\\.ask\\("))));
        }
    }
    EXPECT_EQ(places, table.size());
}

} // namespace orvel
