// Voice tracks from sound files that were recorded elsewhere, without a window.
#include "production/sound_import.h"
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

constexpr int slot1 = 0;
constexpr int slot2 = 2;
constexpr int slot3 = 3;

/// A playlist with the slots A, B and C, and a folder of sound files. The first slot is selected.
class ImportingSound : public Desk {
  protected:
    ImportingSound() {
        QDir(folder.path()).mkdir(QStringLiteral("bron"));
        fill({slot(1, QStringLiteral("A")), music(2), slot(3, QStringLiteral("B")), slot(4, QStringLiteral("C"))});
    }

    void fill(const QList<QVariantList> &rows) {
        databases.setTable(places.newFolder() + QStringLiteral("/avond.mdb"), QStringLiteral("Steps"), header(), rows);
        playlist.open(settings.NewPath, QStringLiteral("avond.mdb"));
        select(slot1);
    }
    QString source(const QString &name) const { return path(QStringLiteral("bron/") + name); }
    void putMp3(const QString &name, const QByteArray &content) { disk.write(source(name), content); }
    void putWav(const QString &name, int seconds = 1) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(source(name), 44100);
        writer->write(std::vector<std::int16_t>(static_cast<std::size_t>(44100 * seconds), 1000));
        writer->close();
    }
    QByteArray track(const QString &name) const { return disk.read(places.filed(name)); }
    /// Length of a voice track in seconds; -1 for one that is no sound.
    int secondsOf(const QString &name) {
        const auto reader = realAudioFiles.reader();
        reader->open(places.filed(name));
        return reader->errorState() < 0 ? -1 : static_cast<int>((reader->frames() + 22050) / reader->sampleRate());
    }
    bool runSingle(const QString &name) { return import.run({import.single(source(name))}); }
    bool runBatch(const QStringList &names) { return import.run(import.batch(path(QStringLiteral("bron")), names)); }
    /// Files with their name inside.
    QStringList threeMp3s() {
        QStringList names;
        for (const QString &name : {QStringLiteral("1.mp3"), QStringLiteral("2.mp3"), QStringLiteral("3.mp3")}) {
            putMp3(name, name.toUtf8());
            names << name;
        }
        return names;
    }

    QStringList failures;
    QList<std::size_t> begun;
    std::function<bool(int, const QString &)> progress = [](int, const QString &) { return true; };
    SoundImport import{{platform, settings, places, playlist, step, marks, filing,
                        [this](int percent, const QString &what) { return progress(percent, what); },
                        [this](std::size_t number) { begun << number; },
                        [this](const QString &sentence) { failures << sentence; }}};
};

} // namespace

TEST_F(ImportingSound, AStepWithoutANameCannotHaveOne) {
    EXPECT_EQ(import.singleProblem(), QString());
    select(1);
    EXPECT_EQ(import.singleProblem(), QStringLiteral("Geen Presentatie gekozen in playlist"));
}

TEST_F(ImportingSound, ABatchNeedsAsManyFilesAsThereAreSlots) {
    EXPECT_EQ(import.batchProblem(3), QString());
    for (const int count : {0, 2, 4}) {
        EXPECT_EQ(import.batchProblem(count),
                  QStringLiteral("Aantal bestanden stemt niet overeen met aantal bestanden !"));
    }
}

TEST_F(ImportingSound, AnMp3IsFiledByteForByte) {
    putMp3(QStringLiteral("stem.mp3"), "precies dit");
    EXPECT_TRUE(runSingle(QStringLiteral("stem.mp3")));
    EXPECT_EQ(track(QStringLiteral("A")), "precies dit");
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("A.mp3")});
    EXPECT_TRUE(isMarked(slot1));
    EXPECT_FALSE(isMarked(slot2));
    EXPECT_EQ(disk.read(source(QStringLiteral("stem.mp3"))), "precies dit") << "the presenter's file stays";
}

TEST_F(ImportingSound, AWavIsConvertedHoweverItsExtensionIsWritten) {
    settings.BitRate = 0;
    for (const QString &name : {QStringLiteral("een.wav"), QStringLiteral("twee.WAV"), QStringLiteral("drie.Wav")}) {
        putWav(name, 2);
        EXPECT_TRUE(runSingle(name));
        EXPECT_EQ(secondsOf(QStringLiteral("A")), 2) << name.toStdString();
        EXPECT_NE(track(QStringLiteral("A")).left(4), "RIFF");
        EXPECT_NEAR(static_cast<double>(disk.fileSize(places.filed(QStringLiteral("A")))), 2 * 128000 / 8, 2000)
            << "in the settings' bit rate";
    }
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(ImportingSound, ItNeverGoesToTheServer) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    settings.ServerMode = true;
    settings.VoicetrackPath = path(QStringLiteral("server"));
    putMp3(QStringLiteral("stem.mp3"), "klank");
    EXPECT_TRUE(runSingle(QStringLiteral("stem.mp3")));
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    EXPECT_EQ(track(QStringLiteral("A")), "klank");
}

TEST_F(ImportingSound, AStepWithAnEmptyNameHasAFileAllTheSame) {
    fill({slot(1, QString(QStringLiteral("")))});
    putMp3(QStringLiteral("stem.mp3"), "klank");
    EXPECT_EQ(import.singleProblem(), QString());
    EXPECT_TRUE(runSingle(QStringLiteral("stem.mp3")));
    EXPECT_EQ(disk.read(path(QStringLiteral("ok/.mp3"))), "klank");
    EXPECT_TRUE(isMarked(slot1));
}

TEST_F(ImportingSound, WhatIsReplacedGoesToRecovery) {
    disk.write(places.filed(QStringLiteral("A")), "van gisteren");
    putMp3(QStringLiteral("stem.mp3"), "van vandaag");
    EXPECT_TRUE(runSingle(QStringLiteral("stem.mp3")));
    EXPECT_EQ(track(QStringLiteral("A")), "van vandaag");
    const auto kept = recovery.kept();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept.front().name, QStringLiteral("A.mp3"));
    EXPECT_EQ(disk.read(kept.front().path), "van gisteren");
}

TEST_F(ImportingSound, ABatchGivesEverySlotItsFileInTheOrderOfTheList) {
    putWav(QStringLiteral("b.wav"), 3);
    putMp3(QStringLiteral("a.mp3"), "eerste");
    putWav(QStringLiteral("c.wav"), 1);
    EXPECT_TRUE(runBatch({QStringLiteral("a.mp3"), QStringLiteral("b.wav"), QStringLiteral("c.wav")}));
    EXPECT_EQ(track(QStringLiteral("A")), "eerste");
    EXPECT_EQ(secondsOf(QStringLiteral("B")), 3);
    EXPECT_EQ(secondsOf(QStringLiteral("C")), 1);
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 3) << "no slot but these, and no parts";
    for (const int row : {slot1, slot2, slot3}) {
        EXPECT_TRUE(isMarked(row));
    }
    EXPECT_EQ(databases.updates().size(), 3) << "steps of other types are passed over";
    EXPECT_EQ(begun, (QList<std::size_t>{0, 1, 2}));
    EXPECT_EQ(import.lastRow(), slot3);
    EXPECT_EQ(step.VoiceTrackName, QStringLiteral("C")) << "the name of the last one stays";
}

TEST_F(ImportingSound, TheLastFileServesTheSlotsThatAreLeft) {
    threeMp3s();
    EXPECT_TRUE(runBatch({QStringLiteral("1.mp3"), QStringLiteral("2.mp3")}));
    EXPECT_EQ(track(QStringLiteral("A")), "1.mp3");
    EXPECT_EQ(track(QStringLiteral("B")), "2.mp3");
    EXPECT_EQ(track(QStringLiteral("C")), "2.mp3");
}

TEST_F(ImportingSound, ASlotThatHasNoNameStopsABatchBeforeItBegins) {
    fill({slot(1, QStringLiteral("A")), slot(2, QVariant())});
    try {
        static_cast<void>(import.batch(path(QStringLiteral("bron")), {QStringLiteral("1"), QStringLiteral("2")}));
        ADD_FAILURE() << "nobody knows where the second file would go";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::TypeMismatch);
    }
}

TEST_F(ImportingSound, ANameThatLeavesTheFolderStopsABatchBeforeItBegins) {
    fill({slot(1, QStringLiteral("A")), slot(2, QStringLiteral("../B"))});
    threeMp3s();
    try {
        runBatch({QStringLiteral("1.mp3"), QStringLiteral("2.mp3")});
        ADD_FAILURE() << "a voice track outside its folder";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::BadFileName);
    }
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_FALSE(isMarked(slot1));
    EXPECT_TRUE(begun.isEmpty());
    EXPECT_EQ(import.lastRow(), -1);
}

TEST_F(ImportingSound, AConversionThatFailsIsToldMarksTheStepAndLeavesTheVoiceTrackThatWasThere) {
    disk.write(places.filed(QStringLiteral("B")), "van gisteren");
    putMp3(QStringLiteral("a.mp3"), "eerste");
    disk.write(source(QStringLiteral("b.wav")), "geen klank");
    putWav(QStringLiteral("c.wav"));
    EXPECT_TRUE(runBatch({QStringLiteral("a.mp3"), QStringLiteral("b.wav"), QStringLiteral("c.wav")}));
    EXPECT_EQ(track(QStringLiteral("B")), "van gisteren");
    EXPECT_TRUE(isMarked(slot2));
    EXPECT_EQ(secondsOf(QStringLiteral("C")), 1) << "the others are not held up";
    EXPECT_EQ(failures, QStringList{QStringLiteral("b.wav kon niet worden omgezet voor stap 3 (B).")});
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 3);
}

// A file that could not be converted was told of by its place in the list, beside the grid's other numbers.
TEST_F(ImportingSound, AFileThatFailsIsToldOfByTheNumberOfItsStep) {
    fill({slot(7, QStringLiteral("A"))});
    disk.write(source(QStringLiteral("stuk.wav")), "geen klank");
    EXPECT_TRUE(runSingle(QStringLiteral("stuk.wav")));
    EXPECT_EQ(failures, QStringList{QStringLiteral("stuk.wav kon niet worden omgezet voor stap 7 (A).")});
}

TEST_F(ImportingSound, ABitRateOutsideTheTableConvertsNothingAndMarks) {
    settings.BitRate = 7;
    putWav(QStringLiteral("stem.wav"));
    EXPECT_TRUE(runSingle(QStringLiteral("stem.wav")));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_TRUE(isMarked(slot1));
    EXPECT_EQ(failures.size(), 1);
}

TEST_F(ImportingSound, ADiskThatFillsUpWhileConvertingLeavesNoHalfVoiceTrack) {
    disk.write(places.filed(QStringLiteral("A")), "van gisteren");
    audioFiles.faults.write = 1;
    putWav(QStringLiteral("stem.wav"), 5);
    EXPECT_TRUE(runSingle(QStringLiteral("stem.wav")));
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("A.mp3")});
    EXPECT_EQ(track(QStringLiteral("A")), "van gisteren");
    EXPECT_EQ(failures.size(), 1);
}

TEST_F(ImportingSound, ACopyThatFailsEndsItWithTheStepAsItWas) {
    const QStringList names = threeMp3s();
    disk.write(places.filed(QStringLiteral("B")), "van gisteren");
    files.fail(Operation::Copy, QStringLiteral("B.mp3"), ErrorNumber::DiskFull);
    try {
        runBatch(names);
        ADD_FAILURE() << "the disk's error is the presenter's to see";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::DiskFull);
    }
    EXPECT_EQ(track(QStringLiteral("A")), "1.mp3") << "what was filed until then stays";
    EXPECT_TRUE(isMarked(slot1));
    EXPECT_EQ(track(QStringLiteral("B")), "van gisteren");
    EXPECT_FALSE(isMarked(slot2));
    EXPECT_FALSE(isMarked(slot3));
    EXPECT_EQ(import.lastRow(), slot2);
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 2);
}

TEST_F(ImportingSound, AVoiceTrackThatCannotBePutInItsPlaceIsNotMarked) {
    disk.write(places.filed(QStringLiteral("A")), "van gisteren");
    putWav(QStringLiteral("stem.wav"));
    files.fail(Operation::Move, QStringLiteral("ok/A.mp3"), ErrorNumber::PermissionDenied);
    EXPECT_THROW(runSingle(QStringLiteral("stem.wav")), RuntimeError);
    EXPECT_EQ(track(QStringLiteral("A")), "van gisteren");
    EXPECT_FALSE(isMarked(slot1));
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 1) << "no part stays behind";
}

TEST_F(ImportingSound, APlaylistThatCannotBeWrittenIsReportedAndLeavesNoParts) {
    putWav(QStringLiteral("a.wav"));
    putWav(QStringLiteral("b.wav"));
    putWav(QStringLiteral("c.wav"));
    databases.fail(FakeDatabaseEngine::Call::Update, ErrorNumber::PermissionDenied);
    EXPECT_THROW(runBatch({QStringLiteral("a.wav"), QStringLiteral("b.wav"), QStringLiteral("c.wav")}), RuntimeError);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("A.mp3")});
}

TEST_F(ImportingSound, StoppedWhileConvertingNothingIsFiledOrMarked) {
    putMp3(QStringLiteral("a.mp3"), "eerste");
    putWav(QStringLiteral("b.wav"), 60);
    putWav(QStringLiteral("c.wav"), 60);
    QStringList shown;
    progress = [&](int, const QString &what) {
        shown << what;
        return false;
    };
    EXPECT_FALSE(runBatch({QStringLiteral("a.mp3"), QStringLiteral("b.wav"), QStringLiteral("c.wav")}));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_TRUE(databases.updates().isEmpty());
    EXPECT_EQ(shown.value(0), QStringLiteral("bestand 1 van 2")) << "only what is converted is counted";
    EXPECT_EQ(import.lastRow(), -1);
}

// A stop counted only when the last call said it too: the import went on and marked what it had not converted.
TEST_F(ImportingSound, AStopThatWasSaidOnceIsAStop) {
    putWav(QStringLiteral("stem.wav"), 60);
    progress = [calls = 0](int, const QString &) mutable { return ++calls != 1; };
    EXPECT_FALSE(runSingle(QStringLiteral("stem.wav")));
    EXPECT_FALSE(isMarked(slot1));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(ImportingSound, StoppedWhileCopyingWhatWasFiledStays) {
    const QStringList names = threeMp3s();
    disk.write(places.filed(QStringLiteral("B")), "van gisteren");
    progress = [](int, const QString &what) { return what != QStringLiteral("2.mp3"); };
    EXPECT_FALSE(runBatch(names));
    EXPECT_EQ(track(QStringLiteral("A")), "1.mp3");
    EXPECT_TRUE(isMarked(slot1));
    EXPECT_EQ(track(QStringLiteral("B")), "van gisteren");
    EXPECT_FALSE(isMarked(slot2));
    EXPECT_FALSE(exists(QStringLiteral("ok/C.mp3")));
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 2);
}

TEST_F(ImportingSound, ProgressComesToAHundred) {
    putMp3(QStringLiteral("a.mp3"), QByteArray(3'000'000, 'x'));
    int last = -1;
    progress = [&](int percent, const QString &) {
        EXPECT_GE(percent, last);
        EXPECT_LE(percent, 100);
        last = percent;
        return true;
    };
    EXPECT_TRUE(runSingle(QStringLiteral("a.mp3")));
    EXPECT_EQ(last, 100);
}

TEST_F(ImportingSound, StandsOnTheRowOfTheSelectedStep) {
    select(slot2);
    const SoundImport::Job job = import.single(source(QStringLiteral("stem.mp3")));
    EXPECT_EQ(job.row, slot2);
    EXPECT_EQ(job.take.step, (StepId{QStringLiteral("avond.mdb"), 3, QStringLiteral("B")}));
    putMp3(QStringLiteral("stem.mp3"), "klank");
    // What is selected meanwhile has nothing to do with it.
    select(slot1);
    EXPECT_TRUE(import.run({job}));
    EXPECT_TRUE(isMarked(slot2));
    EXPECT_FALSE(isMarked(slot1));
    EXPECT_EQ(import.lastRow(), slot2);
}

// Another program put a slot into a playlist that had none: the import took a file from an empty list.
TEST_F(ImportingSound, WithoutFilesThereIsNothingToImport) {
    fill({slot(1, QStringLiteral("A"))});
    EXPECT_TRUE(import.batch(path(QStringLiteral("bron")), {}).empty());
}

} // namespace orvel
