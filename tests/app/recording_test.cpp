// The recording session: prompt, count-down, take, talk-over bar, stop.
#include "station.h"
#include "tests/platform/audio/full_disk.h"

#include <QElapsedTimer>

#include <unistd.h>

namespace orvel {

namespace {

const QString prompt = QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)");
const QString promptTitle = QStringLiteral("Bestandsnaam");

class Recording : public Station {
  protected:
    /// Opens the demo playlist on its first presentation step.
    void openDemo(const QString &settings = QStringLiteral("[Program]\nCountdown=2")) {
        configure(settings);
        addPlaylist(demo);
        ASSERT_TRUE(start());
        open(demo);
        row = 0;
        while (window->workplace().datList.value(row, TypeColumn).toInt() != PresStep) {
            ++row;
        }
        select(row);
        rec = window->panels().recorderPanel;
    }

    void startAsRecorder(const QString &settings = QStringLiteral("[Program]\nCountdown=0")) {
        configure(settings);
        ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
        rec = window->panels().recorderPanel;
    }

    [[nodiscard]] QColor barColour() const { return window->panels().stepPanel->barRec->barColour(); }
    [[nodiscard]] QString takeFileName() const {
        return QStringLiteral("temp/") + window->workplace().step.VoiceTrackName + QStringLiteral(".wav");
    }

    int row = 0;
    RecorderPanel *rec = nullptr;
};

/// The superuser may write everything: while it lives, the test is somebody else who may only read.
class OrdinaryUser {
  public:
    explicit OrdinaryUser(const QString &folder) {
        if (geteuid() == 0) {
            QFile::setPermissions(folder, QFile::ReadOther | QFile::ExeOther | QFile::ReadOwner | QFile::ExeOwner);
            EXPECT_EQ(seteuid(nobody), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;
    OrdinaryUser(OrdinaryUser &&) = delete;
    OrdinaryUser &operator=(OrdinaryUser &&) = delete;
    ~OrdinaryUser() {
        if (getuid() == 0) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }

  private:
    static constexpr uid_t nobody = 65534;
};

const QString start_ = QStringLiteral("START OPNAME");
const QString stop_ = QStringLiteral("STOP OPNAME");

} // namespace

TEST_F(Recording, TheCountDownShowsEverySecondAndThenTheRecorderStarts) {
    openDemo();
    EXPECT_EQ(rec->cmdRec->text(), start_);
    click(rec->cmdRec);
    EXPECT_FALSE(window->panels().playbackPanel->cmdPlay->isEnabled());
    EXPECT_FALSE(window->panels().savePanel->cmdSave->isEnabled());
    for (const int shown : {2, 1}) {
        timers.advance(1000);
        EXPECT_EQ(rec->ledCount->seconds(), shown);
        EXPECT_EQ(rec->cmdRec->text(), start_);
        EXPECT_FALSE(sound.recorder().isRecording());
    }
    timers.advance(1000);
    EXPECT_EQ(rec->ledCount->seconds(), 0);
    EXPECT_EQ(rec->cmdRec->text(), stop_);
    EXPECT_TRUE(rec->lblOpname->isVisible());
    EXPECT_TRUE(sound.recorder().isRecording());
    EXPECT_EQ(sound.prepared(), 1);
}

TEST_F(Recording, ACountDownOfZeroStartsAfterOneSecond) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    click(rec->cmdRec);
    timers.advance(999);
    EXPECT_FALSE(sound.recorder().isRecording());
    timers.advance(1);
    EXPECT_EQ(rec->ledCount->seconds(), 0);
    EXPECT_TRUE(sound.recorder().isRecording());
}

TEST_F(Recording, ACountDownThatOverflowsSixteenBitsIsReported) {
    openDemo(QStringLiteral("[Program]\nCountdown=32767"));
    prompts.expectReport(QStringLiteral("Fout 6 tijdens de uitvoering:"));
    click(rec->cmdRec);
    EXPECT_FALSE(window->workplace().session.countsDown());
}

TEST_F(Recording, TheTakeIsMonoSixteenBitAndTheTimeCountsInTens) {
    openDemo();
    record(12340);
    EXPECT_EQ(rec->ledTijd->seconds(), 12);
    EXPECT_EQ(rec->ledTijd->millis(), 340);
    const QString wav = path(takeFileName());
    EXPECT_EQ(output(QStringLiteral("soxi"), {QStringLiteral("-r"), wav}).trimmed(), QStringLiteral("44100"));
    EXPECT_EQ(output(QStringLiteral("soxi"), {QStringLiteral("-c"), wav}).trimmed(), QStringLiteral("1"));
    EXPECT_EQ(output(QStringLiteral("soxi"), {QStringLiteral("-b"), wav}).trimmed(), QStringLiteral("16"));
    EXPECT_EQ(output(QStringLiteral("soxi"), {QStringLiteral("-s"), wav}).trimmed(), QString::number(544194));
    EXPECT_EQ(rec->cmdRec->text(), start_);
    EXPECT_FALSE(rec->lblOpname->isVisible());
    EXPECT_TRUE(window->panels().playbackPanel->cmdPlay->isEnabled());
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_FALSE(window->workplace().step.PlaylistTakeRunning);
}

TEST_F(Recording, AStalledWindowDoesNotMakeTheTimeDrift) {
    openDemo();
    beginRecording();
    timers.stall(5000);
    EXPECT_EQ(rec->ledTijd->seconds(), 5);
}

TEST_F(Recording, TheBarIsBlueOverTheOutroYellowOverTheIntroAndThenRedForGood) {
    openDemo();
    const int outro = window->workplace().step.PrevOutroMs;
    const int total = window->workplace().step.TalkTotalMs;
    ASSERT_GT(outro, 20);
    ASSERT_GT(total - outro, 20);
    beginRecording();
    timers.advance(outro - 20);
    EXPECT_EQ(barColour(), QColor(0, 0, 255));
    timers.advance(30);
    EXPECT_EQ(barColour(), QColor(255, 255, 0));
    timers.advance(total - outro - 20);
    EXPECT_EQ(barColour(), QColor(255, 255, 0));
    timers.advance(30);
    EXPECT_EQ(barColour(), QColor(255, 0, 0));
    EXPECT_EQ(window->panels().stepPanel->barRec->maximum(), 100);
    EXPECT_EQ(window->panels().stepPanel->barRec->value(), 100);
    timers.advance(60000);
    EXPECT_EQ(barColour(), QColor(255, 0, 0));
    click(rec->cmdRec);
    click(rec->cmdRec);
    EXPECT_EQ(barColour(), QColor(0, 0, 255));
    EXPECT_EQ(window->panels().stepPanel->barRec->maximum(), total);
}

TEST_F(Recording, StartingClearsTheStepsMarkAndKeepsACopyOfThePlaylist) {
    openDemo();
    mark(window->panels().gridPanel->currentRow(), true);
    const QStringList copies = filesIn(QStringLiteral("herstel"));
    ASSERT_EQ(copies.size(), 1);
    EXPECT_EQ(content(QStringLiteral("herstel/") + copies.first()), [] {
        QFile file(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/access-2003.mdb"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }());
    click(rec->cmdRec);
    EXPECT_FALSE(imported(row));
    EXPECT_EQ(filesIn(QStringLiteral("herstel")).size(), 1);
}

// The copy had no bound: a playlist of 100 GiB, most of it holes, filled the disk at the first click.
TEST_F(Recording, APlaylistTooLargeToCopyIsMarkedAndTheStatusLineTellsIt) {
    openDemo();
    QFile list(path(QStringLiteral("new/") + demo));
    ASSERT_TRUE(list.resize(qint64{64} * 1024 * 1024));
    mark(window->panels().gridPanel->currentRow(), true);
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(filesIn(QStringLiteral("herstel")).isEmpty());
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("te groot")))
        << window->panels().lblStatus->text().toStdString();
    EXPECT_TRUE(window->panels().lblStatus->text().contains(demo));
}

TEST_F(Recording, ACopyOfThePlaylistThatFailsIsToldAndTheMarkIsWritten) {
    openDemo();
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("herstel"), ErrorNumber::DiskFull);
    mark(window->panels().gridPanel->currentRow(), true);
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("De schijf is vol")))
        << window->panels().lblStatus->text().toStdString();
}

TEST_F(Recording, ASecondClickStartsTheCountDownOver) {
    openDemo();
    click(rec->cmdRec);
    timers.advance(2500);
    click(rec->cmdRec);
    timers.advance(2999);
    EXPECT_FALSE(sound.recorder().isRecording());
    timers.advance(1);
    EXPECT_TRUE(sound.recorder().isRecording());
}

TEST_F(Recording, TheTakeStaysBoundToItsStep) {
    openDemo();
    const CurrentStep before = window->workplace().step;
    click(rec->cmdRec);
    select(row + 2);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, before.VoiceTrackName);
    EXPECT_TRUE(window->workplace().step.StepSelected);
    timers.advance(3000);
    select(row + 1);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, before.VoiceTrackName);
    EXPECT_EQ(window->workplace().step.TalkTotalMs, before.TalkTotalMs);
    EXPECT_EQ(window->workplace().step.PrevOutroMs, before.PrevOutroMs);
    open(demo);
    click(window->panels().filePanel->cmdWisNew);
    sound.deliver(4410);
    click(rec->cmdRec);
    EXPECT_TRUE(exists(QStringLiteral("temp/") + before.VoiceTrackName + QStringLiteral(".wav")));
}

TEST_F(Recording, WithoutAStepAClickDoesNothing) {
    openDemo();
    window->workplace().step.StepSelected = false;
    click(rec->cmdRec);
    EXPECT_FALSE(window->workplace().session.countsDown());
}

TEST_F(Recording, MuteClosesTheOutputWhileRecording) {
    openDemo(QStringLiteral("[Audio]\nMute=1\n[Program]\nCountdown=0"));
    click(rec->cmdRec);
    EXPECT_EQ(sound.muteLog(), std::vector<bool>({true}));
    timers.advance(1000);
    click(rec->cmdRec);
    EXPECT_EQ(sound.muteLog(), std::vector<bool>({true, false}));
}

TEST_F(Recording, WithoutMuteTheOutputIsNeverTouched) {
    openDemo();
    record(100);
    EXPECT_TRUE(sound.muteLog().empty());
}

TEST_F(Recording, TheRecorderAsksForANameAndTrimsIt) {
    startAsRecorder();
    prompts.expectInput(prompt, promptTitle, QStringLiteral("  mijn opname é  "));
    record(500);
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("mijn opname é.wav")});
    EXPECT_EQ(window->panels().stepPanel->lblBestand->text(), QStringLiteral("mijn opname é"));
    EXPECT_FALSE(window->workplace().step.PlaylistTakeRunning);
}

TEST_F(Recording, AnEmptyNameChangesNothing) {
    startAsRecorder();
    prompts.expectInput(prompt, promptTitle, QStringLiteral("   "));
    click(rec->cmdRec);
    EXPECT_FALSE(window->workplace().session.countsDown());
    EXPECT_TRUE(window->workplace().step.VoiceTrackName.isEmpty());
}

TEST_F(Recording, DuringTheCountDownTheRecorderAsksAgain) {
    startAsRecorder(QStringLiteral("[Program]\nCountdown=3"));
    prompts.expectInput(prompt, promptTitle, QStringLiteral("een"));
    click(rec->cmdRec);
    timers.advance(2000);
    prompts.expectInput(prompt, promptTitle, QString());
    click(rec->cmdRec);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, QStringLiteral("een"));
    prompts.expectInput(prompt, promptTitle, QStringLiteral("twee"));
    click(rec->cmdRec);
    timers.advance(3999);
    EXPECT_FALSE(sound.recorder().isRecording());
    timers.advance(1);
    EXPECT_EQ(sound.takes().last(), path(QStringLiteral("temp/twee.wav")));
}

TEST_F(Recording, ANameThatLeavesTheFolderIsRefused) {
    startAsRecorder();
    for (const char *name : {"../weg", "a/b", ".."}) {
        prompts.expectInput(prompt, promptTitle, QString::fromLatin1(name));
        prompts.expectReport(QStringLiteral("Fout 52 tijdens de uitvoering:"));
        click(rec->cmdRec);
        EXPECT_FALSE(window->workplace().session.countsDown()) << name;
    }
}

TEST_F(Recording, ACardThatCannotStartLeavesTheWindowIdle) {
    openDemo();
    sound.failNextStart(ErrorNumber::DeviceError);
    click(rec->cmdRec);
    prompts.expectReport(QStringLiteral("Fout 57 "));
    timers.advance(3000);
    EXPECT_EQ(rec->cmdRec->text(), start_);
    EXPECT_FALSE(rec->lblOpname->isVisible());
    EXPECT_FALSE(window->workplace().step.PlaylistTakeRunning);
}

TEST_F(Recording, ACardThatVanishesIsToldAndTheTakeIsKept) {
    openDemo();
    beginRecording();
    sound.deliver(44100);
    timers.advance(1000);
    sound.unplug();
    prompts.expectReport(
        QStringLiteral("De geluidskaart is verdwenen tijdens de opname.\nWat al was opgenomen, is bewaard."));
    timers.advance(200);
    EXPECT_EQ(rec->cmdRec->text(), start_);
    EXPECT_EQ(output(QStringLiteral("soxi"), {QStringLiteral("-s"), path(takeFileName())}).trimmed(),
              QStringLiteral("44100"));
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
}

TEST_F(Recording, AFullDiskIsToldAndTheTakeIsKept) {
    openDemo();
    sound.setDiskRoom(44100);
    beginRecording();
    sound.deliver(88200);
    sound.flush();
    prompts.expectReport(QStringLiteral("De schijf is vol"));
    timers.advance(200);
    EXPECT_EQ(rec->cmdRec->text(), start_);
    EXPECT_TRUE(exists(takeFileName()));
}

// Whatever the disk had was told as a full disk; the presenter deleted files, and lost the next take as well.
TEST_F(Recording, ADiskThatFailsIsNotToldAsAFullOne) {
    openDemo();
    beginRecording();
    sound.deliver(44100);
    sound.flush();
    ASSERT_TRUE(test::breakDiskUnder(path(takeFileName())));
    sound.deliver(44100);
    sound.flush();
    prompts.expectReport(QStringLiteral("De schijf gaf een fout: de opname kon niet verder worden weggeschreven.\n"));
    timers.advance(200);
    EXPECT_EQ(rec->cmdRec->text(), start_);
    EXPECT_EQ(output(QStringLiteral("soxi"), {QStringLiteral("-s"), path(takeFileName())}).trimmed(),
              QStringLiteral("44100"));
}

TEST_F(Recording, AHoleInATakeIsTold) {
    openDemo();
    beginRecording();
    sound.deliver(44100);
    sound.loseFrames(100);
    sound.deliver(4410);
    timers.advance(100);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("gat")));
}

TEST_F(Recording, AMissingWorkFolderIsReported) {
    openDemo();
    ASSERT_TRUE(QDir(folder.path()).rmdir(QStringLiteral("temp")));
    click(rec->cmdRec);
    prompts.expectReport(QStringLiteral("Fout 76 "));
    timers.advance(3000);
    EXPECT_EQ(rec->cmdRec->text(), start_);
}

TEST_F(Recording, ATakeThatWasNotSavedMovesAsideForTheNextOne) {
    openDemo();
    record(500);
    const QByteArray first = content(takeFileName());
    record(700);
    QStringList kept = filesIn(QStringLiteral("herstel")).filter(QStringLiteral(".wav"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(content(QStringLiteral("herstel/") + kept.first()), first);
}

TEST_F(Recording, APlaylistThatBecameReadOnlyIsReported) {
    openDemo();
    QFile::setPermissions(path(QStringLiteral("new/") + demo), QFile::ReadOwner | QFile::ReadOther);
    const OrdinaryUser user(folder.path());
    prompts.expectReport(QStringLiteral("Fout 70"));
    click(rec->cmdRec);
    EXPECT_FALSE(window->workplace().session.countsDown());
}

TEST_F(Recording, ATickCostsLittle) {
    openDemo();
    beginRecording();
    QElapsedTimer clock;
    clock.start();
    timers.advance(10000);
    // A thousand ticks with their repaints pending; half a millisecond each is the promise, sanitizers take their part.
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST_F(Recording, NothingRecordsBehindTheNameQuestion) {
    startAsRecorder(QStringLiteral("[Program]\nCountdown=3"));
    prompts.expectInput(prompt, promptTitle, QStringLiteral("een"));
    click(rec->cmdRec);
    timers.advance(2000);
    prompts.whileOpen([this] {
        timers.advance(60000);
        EXPECT_FALSE(sound.recorder().isRecording());
    });
    prompts.expectInput(prompt, promptTitle, QString());
    click(rec->cmdRec);
    EXPECT_TRUE(window->workplace().session.countsDown()) << "without an answer the count-down goes on";
    prompts.expectInput(prompt, promptTitle, QStringLiteral("twee"));
    click(rec->cmdRec);
    timers.advance(4000);
    EXPECT_EQ(sound.takes().last(), path(QStringLiteral("temp/twee.wav")));
}

TEST_F(Recording, AfterTheStopTheGridStandsOnTheTakesStep) {
    openDemo();
    const QString name = window->workplace().step.VoiceTrackName;
    beginRecording();
    select(row + 1);
    sound.deliver(4410);
    click(rec->cmdRec);
    EXPECT_EQ(window->panels().gridPanel->currentRow(), row);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, name);
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(exists(QStringLiteral("ok/") + name + QStringLiteral(".mp3")));
}

TEST_F(Recording, AStartOverBelongsToTheStepThatCountsDown) {
    openDemo();
    mark(row + 1, true);
    click(rec->cmdRec);
    select(row + 1);
    click(rec->cmdRec);
    EXPECT_TRUE(imported(row + 1));
    EXPECT_FALSE(imported(row));
    EXPECT_EQ(window->panels().gridPanel->currentRow(), row);
}

TEST_F(Recording, AStartThatFailsLeavesTheTakeBeforeInItsPlace) {
    openDemo();
    record(500);
    const QByteArray take = content(takeFileName());
    sound.failNextStart(ErrorNumber::DeviceError);
    click(rec->cmdRec);
    prompts.expectReport(QStringLiteral("Fout 57 "));
    timers.advance(3000);
    EXPECT_EQ(content(takeFileName()), take);
}

TEST_F(Recording, AMissingWorkFolderEndsTheProgramAlsoWhenTheCardVanishes) {
    openDemo();
    window->panels().processorPanel->findChild<QCheckBox *>(QStringLiteral("chkAmp"))->setChecked(true);
    beginRecording();
    sound.deliver(44100);
    QDir(path(QStringLiteral("temp2"))).removeRecursively();
    sound.unplug();
    prompts.expectReport(
        QStringLiteral("De geluidskaart is verdwenen tijdens de opname.\nWat al was opgenomen, is bewaard."));
    prompts.expectReport(QStringLiteral("Fout 76 "));
    timers.advance(200);
    EXPECT_EQ(static_cast<OrvelApplication *>(QCoreApplication::instance())->exitCode(), 1);
    EXPECT_EQ(rec->cmdRec->text(), start_);
    EXPECT_TRUE(exists(takeFileName()));
}

TEST_F(Recording, TheNoticeIsThereWhileATakeRuns) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    EXPECT_FALSE(rec->lblOpname->isVisible());
    beginRecording();
    EXPECT_TRUE(rec->lblOpname->isVisible());
    EXPECT_EQ(rec->lblOpname->text(), QStringLiteral("OPNAME LOOPT"));
    click(rec->cmdRec);
    EXPECT_FALSE(rec->lblOpname->isVisible());
}

} // namespace orvel
