// What is heard along with a take and around it, and that nothing of it harms the take.
#include "tests/desk.h"

#include <chrono>
#include <thread>

namespace orvel {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Anchor = JoinClip::Anchor;

/// The desk with its music: each test says which files there are. Every item has 5000 ms of intro and 4000 of outro.
class Joins : public Desk {
  protected:
    Joins() {
        const QStringList names{QStringLiteral("tracknr"), QStringLiteral("path"), QStringLiteral("titel"),
                                QStringLiteral("artiest")};
        const auto track = [](int number, const char *path) {
            return QVariantList{number, QString::fromLatin1(path), QStringLiteral("Lied"), QStringLiteral("Iemand")};
        };
        databases.setTable(folder.filePath(QStringLiteral("digital.mdb")), QStringLiteral("Audio"), names,
                           {track(1, "M:\\een.mp3"), track(3, "M:\\drie.mp3")});
        drives.set(u'm', folder.path());
        settings.Network = true;
        settings.Databasepath = folder.path();
    }
    void have(std::initializer_list<const char *> names) {
        for (const char *name : names) {
            QFile file(path(QString::fromLatin1(name)));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    void takeOf(const char *name) { have({qPrintable(QStringLiteral("temp/%1.wav").arg(QString::fromLatin1(name)))}); }
    [[nodiscard]] JoinClip byEnd(const char *name, std::int64_t end) const {
        return {path(QString::fromLatin1(name)), Anchor::End, end, -5000, end};
    }
    [[nodiscard]] JoinClip byBegin(const char *name, std::int64_t begin, std::int64_t to = JoinClip::wholeFile) const {
        return {path(QString::fromLatin1(name)), Anchor::Begin, begin, begin, to};
    }
    /// Of listening along.
    [[nodiscard]] FakeJoinPlayer &along() { return sound.joinPlayer(0); }
    /// Of listening to joins.
    [[nodiscard]] FakeJoinPlayer &player() { return sound.joinPlayer(1); }
};

} // namespace

TEST_F(Joins, AlongATakeTheItemsAreHeardSoThatTheOutroBeginsWithIt) {
    have({"een.mp3", "drie.mp3"});
    talkAlong.setOn(true);
    select(link1);
    EXPECT_EQ(talkAlong.remark(), QString());
    const Clock::time_point before = Clock::now();
    session.cmdRec_Click();
    ASSERT_TRUE(along().isPlaying());
    EXPECT_TRUE(along().clips() == (std::vector<JoinClip>{byEnd("een.mp3", 4000), byBegin("drie.mp3", 4000)}));
    ASSERT_TRUE(along().zeroAt());
    EXPECT_GE(*along().zeroAt() - before, 3s) << "the count-down of the settings and one second";
    EXPECT_LT(*along().zeroAt() - before, 4s);
    const Clock::time_point heard = Clock::now() - 45ms;
    along().hearZeroAt(heard);
    timers.advance(3000);
    EXPECT_EQ(session.state(), SessionState::Recording);
    EXPECT_EQ(sound.takeBeganAt(), heard) << "the take's first frame is what is heard then";
    EXPECT_GE(session.ElapsedMs(), 40) << "and the bar does not lag behind";
    EXPECT_LT(session.ElapsedMs(), 400);
    EXPECT_EQ(step.barRec.value, step.barRec.maximum - session.ElapsedMs());
    EXPECT_TRUE(along().isPlaying());
    session.cmdRec_Click();
    EXPECT_FALSE(along().isPlaying()) << "nothing sounds on after the stop";
}

/// What the presenter says to what is heard comes so much later, by the same figures.
TEST_F(Joins, ACardsMeasuredDelayMovesTheTakesBegin) {
    have({"een.mp3", "drie.mp3"});
    talkAlong.setOn(true);
    select(link1);
    for (const auto delay : {23400us, -200000us}) {
        cardDelay = delay;
        session.cmdRec_Click();
        const Clock::time_point heard = Clock::now();
        along().hearZeroAt(heard);
        timers.advance(3000);
        EXPECT_EQ(sound.takeBeganAt(), heard + delay);
        session.cmdRec_Click();
    }
    settings.Countdown = 0;
    session.cmdRec_Click();
    ASSERT_TRUE(along().zeroAt());
    const Clock::time_point begins = *along().zeroAt();
    std::this_thread::sleep_until(begins); // nothing is heard yet: files that come late
    timers.advance(1000);
    EXPECT_EQ(sound.takeBeganAt(), begins + cardDelay);
}

TEST_F(Joins, SwitchedOffNothingIsHeardAndTheTakeBeginsAsEver) {
    have({"een.mp3", "drie.mp3"});
    select(link1);
    startTake();
    EXPECT_EQ(along().plays(), 0);
    EXPECT_FALSE(sound.takeBeganAt());
    EXPECT_EQ(session.ElapsedMs(), 0);
}

TEST_F(Joins, CancellingTheCountDownIsSilentAtOnce) {
    have({"een.mp3"});
    talkAlong.setOn(true);
    select(link1);
    session.cmdRec_Click();
    ASSERT_TRUE(along().isPlaying());
    session.cancelCountDown();
    EXPECT_FALSE(along().isPlaying());
    session.cmdRec_Click();
    sound.failNextStart(ErrorNumber::DeviceError);
    EXPECT_THROW(timers.advance(3000), RuntimeError);
    EXPECT_FALSE(along().isPlaying()) << "nor after a card that does not record";
}

TEST_F(Joins, ACountDownThatStartsAnewIsHeardAnew) {
    have({"een.mp3"});
    talkAlong.setOn(true);
    select(link1);
    session.cmdRec_Click();
    timers.advance(2000);
    session.cmdRec_Click();
    EXPECT_EQ(along().plays(), 2);
    EXPECT_TRUE(along().isPlaying());
}

/// With the output closed nobody would hear it.
TEST_F(Joins, WithTheOutputClosedItIsOffAndSaysWhy) {
    have({"een.mp3", "drie.mp3"});
    settings.Mute = true;
    talkAlong.setOn(true);
    select(link1);
    EXPECT_FALSE(talkAlong.isPossible());
    EXPECT_EQ(talkAlong.remark(), QStringLiteral("Uit: de uitgang gaat dicht bij de opname (instellingen)."));
    startTake();
    EXPECT_EQ(along().plays(), 0);
}

TEST_F(Joins, AFileThatIsMissingIsNamedAndTheRestIsHeard) {
    have({"drie.mp3"});
    select(link1);
    EXPECT_EQ(talkAlong.remark(), QString()) << "switched off it says nothing";
    talkAlong.setOn(true);
    EXPECT_EQ(talkAlong.remark(), QStringLiteral("Geen bestand van 'stap 1' gevonden."));
    startTake();
    EXPECT_TRUE(along().clips() == (std::vector<JoinClip>{byBegin("drie.mp3", 4000)}));
    session.cmdRec_Click();
    settings.Network = false;
    select(link1);
    EXPECT_TRUE(talkAlong.remark().startsWith(
        QStringLiteral("Geen bestand van 'stap 1': de muziekdatabase staat uit in de instellingen.")));
    settings.Network = true;
    databases.removeFile(folder.filePath(QStringLiteral("digital.mdb")));
    catalogues.datTracks.reset();
    select(link1);
    EXPECT_TRUE(talkAlong.remark().startsWith(
        QStringLiteral("Geen bestand van 'stap 1': digital.mdb kon niet worden geopend.")));
}

TEST_F(Joins, AnOutputThatIsGoneIsToldAndTheTakeIsComplete) {
    have({"een.mp3", "drie.mp3"});
    talkAlong.setOn(true);
    select(link1);
    startTake();
    sound.deliver(44100);
    along().breakOff();
    EXPECT_EQ(told.last(), QStringLiteral("Meeluisteren is gestopt: de uitgang is weg. De opname gaat gewoon door."));
    EXPECT_EQ(session.state(), SessionState::Recording);
    sound.deliver(44100);
    timers.advance(2000);
    session.cmdRec_Click();
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(QFileInfo(path(wavOf1)).size(), 44 + 2 * 88200);
}

TEST_F(Joins, ThatNothingCanBePlayedIsNoReasonNotToRecord) {
    have({"een.mp3"});
    talkAlong.setOn(true);
    select(link1);
    along().failNextPlay();
    startTake();
    EXPECT_EQ(session.state(), SessionState::Recording);
    EXPECT_TRUE(told.last().startsWith(QStringLiteral("Meeluisteren lukt nu niet")));
}

/// The count-down leaves out what a busy computer missed: then the outro was heard long ago.
TEST_F(Joins, AnOutroThatWasHeardLongAgoIsNotWaitedForNorRecordedFrom) {
    have({"een.mp3"});
    talkAlong.setOn(true);
    select(link1);
    session.cmdRec_Click();
    along().hearZeroAt(Clock::now() - 2s);
    timers.advance(3000);
    EXPECT_EQ(session.state(), SessionState::Recording);
    EXPECT_FALSE(sound.takeBeganAt());
    EXPECT_FALSE(along().isPlaying());
    EXPECT_TRUE(told.last().startsWith(QStringLiteral("Meeluisteren is gestopt")));
}

TEST_F(Joins, VolumeAndOutputAreThePlayers) {
    talkAlong.setVolume(12345);
    EXPECT_EQ(along().volume(), 12345);
    EXPECT_EQ(talkAlong.volume(), 12345);
}

TEST_F(Joins, InContextTheTakeIsHeardBetweenItsNeighbours) {
    have({"een.mp3", "drie.mp3"});
    select(link1);
    EXPECT_FALSE(may().cmdInVerband) << "no take yet";
    takeOf("LINK1");
    select(link1);
    record(500);
    EXPECT_TRUE(may().cmdInVerband);
    joins.cmdInVerband_Click();
    EXPECT_EQ(session.state(), SessionState::Joining);
    EXPECT_EQ(joins.contextCaption(), QStringLiteral("Stop"));
    EXPECT_FALSE(player().zeroAt());
    EXPECT_TRUE(player().clips() == (std::vector<JoinClip>{byEnd("een.mp3", 4000), byBegin("temp/LINK1.wav", 0),
                                                           byBegin("drie.mp3", 4000, 14000)}));
    EXPECT_TRUE(may().cmdInVerband);
    EXPECT_FALSE(may().cmdRec);
    EXPECT_FALSE(may().cmdPlay);
    EXPECT_FALSE(may().cmdSave);
    joins.cmdInVerband_Click();
    EXPECT_FALSE(player().isPlaying());
    EXPECT_TRUE(session.isIdle());
    joins.cmdInVerband_Click();
    player().end();
    EXPECT_TRUE(session.isIdle());
    EXPECT_EQ(joins.contextCaption(), QStringLiteral("In verband"));
}

TEST_F(Joins, InContextAFiledTakeIsItsMp3AndWhatIsMissingIsTold) {
    have({"een.mp3", "ok/LINK1.mp3"});
    playlist.setValue(link1, ImportedColumn, true);
    select(link1);
    joins.cmdInVerband_Click();
    EXPECT_TRUE(player().clips() == (std::vector<JoinClip>{byEnd("een.mp3", 4000), byBegin("ok/LINK1.mp3", 0)}));
    EXPECT_EQ(told.last(), QStringLiteral("Geen bestand van 'stap 3' gevonden."));
    player().breakOff();
    EXPECT_EQ(told.last(), QStringLiteral("De weergave werd afgebroken: de uitgang is weg."));
    EXPECT_TRUE(session.isIdle());
}

TEST_F(Joins, APlayerThatFailsLeavesTheDeskIdle) {
    have({"ok/LINK1.mp3"});
    playlist.setValue(link1, ImportedColumn, true);
    select(link1);
    player().failNextPlay();
    EXPECT_THROW(joins.cmdInVerband_Click(), RuntimeError);
    EXPECT_TRUE(session.isIdle());
    EXPECT_TRUE(may().cmdInVerband);
}

TEST_F(Joins, TheWholeHourPlaysEveryTakeWhileTheGridFollows) {
    have({"een.mp3", "drie.mp3", "ok/LINK1.mp3", "ok/LINK2.mp3"});
    playlist.setValue(link1, ImportedColumn, true);
    playlist.setValue(link2, ImportedColumn, true);
    select(0);
    EXPECT_TRUE(may().cmdHeleUur);
    joins.cmdHeleUur_Click();
    EXPECT_EQ(joins.hourCaption(), QStringLiteral("Stop"));
    EXPECT_EQ(shownRow, link1);
    EXPECT_TRUE(player().clips().at(1) == byBegin("ok/LINK1.mp3", 0));
    player().end();
    EXPECT_EQ(session.state(), SessionState::Joining);
    EXPECT_EQ(shownRow, link2);
    EXPECT_TRUE(player().clips().at(1) == byBegin("ok/LINK2.mp3", 0));
    player().end();
    EXPECT_TRUE(session.isIdle());
    EXPECT_EQ(joins.hourCaption(), QStringLiteral("Hele uur"));
    EXPECT_EQ(told.last(), QStringLiteral("1 link zonder opname werd overgeslagen."));
}

TEST_F(Joins, AnHourWithoutTakesSaysSoAndOneIsStoppedByItsButton) {
    select(0);
    joins.cmdHeleUur_Click();
    EXPECT_TRUE(session.isIdle());
    EXPECT_EQ(told.last(), QStringLiteral("Er is nog geen opname om te horen."));
    have({"ok/LINK1.mp3", "ok/LINK2.mp3"});
    playlist.setValue(link1, ImportedColumn, true);
    playlist.setValue(link2, ImportedColumn, true);
    joins.cmdHeleUur_Click();
    joins.cmdHeleUur_Click();
    EXPECT_FALSE(player().isPlaying());
    EXPECT_TRUE(session.isIdle());
    joins.cmdHeleUur_Click();
    EXPECT_EQ(shownRow, link1) << "it begins anew";
    player().breakOff();
    EXPECT_TRUE(session.isIdle());
    EXPECT_EQ(told.last(), QStringLiteral("De weergave werd afgebroken: de uitgang is weg."));
}

TEST_F(Joins, AnHourWhosePlaylistIsClosedEnds) {
    have({"ok/LINK1.mp3", "ok/LINK2.mp3"});
    playlist.setValue(link1, ImportedColumn, true);
    playlist.setValue(link2, ImportedColumn, true);
    select(0);
    joins.cmdHeleUur_Click();
    playlist.close();
    player().end();
    EXPECT_TRUE(session.isIdle());
    EXPECT_FALSE(player().isPlaying());
    EXPECT_FALSE(may().cmdHeleUur);
}

} // namespace orvel
