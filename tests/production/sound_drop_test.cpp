// Sound files that are dropped on a step of the grid.
#include "production/sound_drop.h"
#include "tests/desk.h"

namespace orvel {

namespace {

const QString title = QStringLiteral("Geluidsbestand importeren");
const Verbs replaceOrNot{QStringLiteral("&Vervang"), QStringLiteral("&Laat staan")};

class Dropping : public Desk {
  protected:
    Dropping() { QDir(folder.path()).mkdir(QStringLiteral("bron")); }

    QString putWav(const QString &name, int seconds = 1) {
        const QString file = path(QStringLiteral("bron/") + name);
        const auto writer = realAudioFiles.wavWriter();
        writer->create(file, 44100);
        writer->write(std::vector<std::int16_t>(static_cast<std::size_t>(44100 * seconds), 1000));
        writer->close();
        return file;
    }
    QString put(const QString &name) {
        const QString file = path(QStringLiteral("bron/") + name);
        disk.write(file, "geen geluid");
        return file;
    }
    void expectReplace(bool answer) {
        prompts.expectAsk(
            QStringLiteral("Stap 4 heeft al een voicetrack (LINK2). Wilt U die vervangen door stem.wav ?"), title,
            answer, Preset::No, replaceOrNot);
    }
    [[nodiscard]] QByteArray track() const { return disk.read(path(QStringLiteral("ok/LINK2.mp3"))); }

    SoundDrop dropping{{platform, settings, places, step, playlist, session, marks, filing, completion,
                        [this](int row) { select(row); }, tell}};
};

} // namespace

TEST_F(Dropping, AFileGoesIntoTheStepUnderThePointerWhicheverIsSelected) {
    select(link1);
    dropping.drop({putWav(QStringLiteral("stem.wav"))}, link2);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("LINK2.mp3")});
    EXPECT_TRUE(isMarked(link2));
    EXPECT_FALSE(isMarked(link1));
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_EQ(shownRow, playlist.firstUnfinished()) << "on to the next one, as after any import";
    EXPECT_EQ(step.row, shownRow);
    EXPECT_TRUE(exists(QStringLiteral("bron/stem.wav"))) << "the presenter's file stays";
    EXPECT_EQ(prompts.progressTitles, QStringList{title});
}

TEST_F(Dropping, WhatDoesNotBelongThereIsRefusedInWordsAndChangesNothing) {
    const QString voice = putWav(QStringLiteral("stem.wav"));
    const struct {
        QStringList paths;
        int row;
        const char *sentence;
    } refused[] = {
        {{put(QStringLiteral("tekst.txt"))}, link1, "tekst.txt is geen WAV- of MP3-bestand."},
        {{put(QStringLiteral("geluid.ogg"))}, link1, "geluid.ogg is geen WAV- of MP3-bestand."},
        {{path(QStringLiteral("bron"))}, link1, "bron is geen WAV- of MP3-bestand."},
        {{voice, voice}, link1, "Sleep één geluidsbestand tegelijk naar een link."},
        {{}, link1, "Sleep één geluidsbestand tegelijk naar een link."},
        {{voice}, 0, "Hier hoort geen geluidsbestand. Sleep het naar een link."},
        {{voice}, -1, "Hier hoort geen geluidsbestand. Sleep het naar een link."},
        {{voice}, 4, "Hier hoort geen geluidsbestand. Sleep het naar een link."},
        {{voice}, 99, "Hier hoort geen geluidsbestand. Sleep het naar een link."},
    };
    for (const auto &[paths, row, sentence] : refused) {
        told.clear();
        dropping.drop(paths, row);
        EXPECT_EQ(told, QStringList{QString::fromUtf8(sentence)});
        EXPECT_EQ(dropping.forecast(paths, row), QString::fromUtf8(sentence));
    }
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_FALSE(isMarked(link1));
    EXPECT_EQ(dropping.forecast({voice}, link2),
              QStringLiteral("Laat los om stem.wav te importeren voor stap 4 (LINK2)."));
}

TEST_F(Dropping, NothingIsImportedWhileATakeRuns) {
    const QString voice = putWav(QStringLiteral("stem.wav"));
    select(link1);
    startTake();
    dropping.drop({voice}, link2);
    EXPECT_EQ(told.last(), QStringLiteral("Er loopt een opname. Importeer als die gestopt is."));
    EXPECT_FALSE(isMarked(link2));
    session.cmdRec_Click();
}

TEST_F(Dropping, AVoiceTrackIsReplacedOnlyWhenThePresenterSaysSo) {
    const QString voice = putWav(QStringLiteral("stem.wav"));
    disk.write(path(QStringLiteral("ok/LINK2.mp3")), "van gisteren");
    expectReplace(false);
    dropping.drop({voice}, link2);
    EXPECT_EQ(track(), "van gisteren");
    EXPECT_FALSE(isMarked(link2));
    EXPECT_EQ(told.last(), QStringLiteral("stem.wav is niet geïmporteerd."));
    expectReplace(true);
    dropping.drop({voice}, link2);
    EXPECT_NE(track(), "van gisteren");
    ASSERT_EQ(recovery.kept().size(), 1U) << "what stood there is kept";
    EXPECT_EQ(recovery.kept().front().name, QStringLiteral("LINK2.mp3"));
}

// A take that was started while the question stood open would have lost its step.
TEST_F(Dropping, ATakeThatBeginsWhileTheQuestionStandsOpenGoesFirst) {
    const QString voice = putWav(QStringLiteral("stem.wav"));
    disk.write(path(QStringLiteral("ok/LINK2.mp3")), "van gisteren");
    select(link1);
    prompts.whileOpen([this] { startTake(); });
    expectReplace(true);
    dropping.drop({voice}, link2);
    EXPECT_EQ(track(), "van gisteren");
    EXPECT_EQ(told.last(), QStringLiteral("Er loopt een opname. Importeer als die gestopt is."));
    session.cmdRec_Click();
}

// The import window marks such a step all the same; nobody looks at a list of failures after a drop.
TEST_F(Dropping, AFileThatHoldsNoSoundMarksNothing) {
    dropping.drop({put(QStringLiteral("stuk.wav"))}, link1);
    EXPECT_EQ(told.last(), QStringLiteral("stuk.wav is geen geluidsbestand dat gelezen kan worden."));
    dropping.drop({put(QStringLiteral("stuk.mp3"))}, link1);
    EXPECT_EQ(told.last(), QStringLiteral("stuk.mp3 is geen geluidsbestand dat gelezen kan worden."));
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_EQ(session.state(), SessionState::Idle);
}

TEST_F(Dropping, AnImportThatIsStoppedChangesNothing) {
    const QString voice = putWav(QStringLiteral("stem.wav"), 60);
    prompts.stopAt = QStringLiteral("bestand 1 van 1");
    dropping.drop({voice}, link2);
    EXPECT_FALSE(isMarked(link2));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_EQ(told.last(), QStringLiteral("stem.wav is niet geïmporteerd."));
    EXPECT_EQ(session.state(), SessionState::Idle);
}

} // namespace orvel
