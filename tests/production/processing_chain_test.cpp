#include "dsp/compress.h"
#include "dsp/gain.h"
#include "dsp/normalise.h"
#include "dsp/reverb.h"
#include "dsp/trim.h"
#include "platform/jet/jet_engine.h"
#include "platform/runtime_error.h"
#include "production/processing_chain.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace orvel {

namespace {

using Samples = std::vector<std::int16_t>;

/// Half a second of silence, a tone that swells, silence.
Samples makeTake() {
    Samples samples(66150);
    for (std::size_t i = 0; i < 44100; ++i) {
        const auto t = static_cast<double>(i) / 44100;
        samples[11025 + i] = static_cast<std::int16_t>(
            std::lrint(12000 * std::sin(std::numbers::pi * t) * std::sin(2 * std::numbers::pi * 300 * t)));
    }
    return samples;
}

/// A file system that writes down what takes whose place.
class LoggedFileSystem : public FaultyFileSystem {
  public:
    using FaultyFileSystem::FaultyFileSystem;
    bool copy(const QString &source, const QString &target, const Progress &progress) override {
        log << QStringLiteral("copy ") + last(source) + u' ' + last(target);
        return FaultyFileSystem::copy(source, target, progress);
    }
    void link(const QString &source, const QString &target) override {
        log << QStringLiteral("link ") + last(source) + u' ' + last(target);
        FaultyFileSystem::link(source, target);
    }
    void move(const QString &source, const QString &target) override {
        log << QStringLiteral("move ") + last(source) + u' ' + last(target);
        FaultyFileSystem::move(source, target);
    }
    void remove(const QString &path) override {
        log << QStringLiteral("remove ") + last(path);
        FaultyFileSystem::remove(path);
    }
    QStringList log;

  private:
    static QString last(const QString &path) { return path.section(u'/', -2); }
};

class Processing : public testing::Test, protected TestPlatform<JetEngine, LoggedFileSystem> {
  protected:
    Processing() {
        for (const char *name : {"temp", "temp2"}) {
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        }
        writeTake(makeTake());
    }

    [[nodiscard]] QString path(const char *relative) const { return folder.filePath(QString::fromLatin1(relative)); }
    /// The one file that recovery was given.
    [[nodiscard]] QString kept() const {
        const QStringList all = filesIn("herstel");
        EXPECT_EQ(all.size(), 1);
        return path("herstel/") + all.value(0);
    }
    [[nodiscard]] QStringList filesIn(const char *relative) const {
        return QDir(path(relative)).entryList(QDir::Files | QDir::Hidden);
    }

    void writeTake(const Samples &samples, int sampleRate = 44100) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(takePath, sampleRate);
        writer->write(samples);
        writer->close();
    }

    Samples read(const QString &wav) {
        const auto reader = realAudioFiles.reader();
        reader->open(wav);
        EXPECT_GE(reader->errorState(), 0) << wav.toStdString();
        EXPECT_EQ(reader->channels(), 1);
        rate = reader->sampleRate();
        Samples samples;
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
            samples.insert(samples.end(), first, first + block.size() / 2);
        }
        return samples;
    }

    /// Every stage with settings that change the take.
    void switchEverythingOn() {
        for (const char *key : {"UseAmp", "UseNorm", "UseComp", "UseReverb", "UseTrim"}) {
            settings.set(key, 1);
        }
        settings.set("Amp", 3);
        settings.set("Norm", 80);
        settings.set("CompTresh", -20);
        settings.set("CompRate", 50);
        settings.set("RevDelay", 30);
        settings.set("RevDepth", 20);
        settings.set("RevDecay", 10);
        settings.set("RevRate", 20);
        settings.set("Trim", -40);
    }

    Samples processed() {
        chain.AudioProcessing(takePath);
        return read(takePath);
    }

    /// A failure that ends the program, with this number.
    void expectFatal(ErrorNumber number) {
        try {
            chain.AudioProcessing(takePath);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const FatalError &error) {
            EXPECT_EQ(error.number(), number);
        } catch (const RuntimeError &error) {
            ADD_FAILURE() << "not fatal: " << error.report().toStdString();
        }
        EXPECT_EQ(shown, (QList<bool>{true, false}));
    }

    QTemporaryDir folder;
    QString programFolder = folder.path();
    QString takePath = folder.filePath(QStringLiteral("temp/voice.wav"));
    Recovery recovery{files, programFolder};
    ProcessorSettings settings = processorKeys();
    LoudnessGoal goal;
    QList<bool> shown;
    QStringList told;
    int rate = 0;
    ProcessingChain chain{{platform, programFolder, [this] { return settings; }, recovery,
                           [this](bool visible) { shown << visible; },
                           [this](const QString &sentence) { told << sentence; }, [this] { return goal; }}};
};

} // namespace

TEST_F(Processing, WithEveryStageOffTheTakeIsOnlyOpenedAndClosed) {
    const QByteArray before = disk.read(takePath);
    chain.AudioProcessing(takePath);
    EXPECT_EQ(disk.read(takePath), before);
    EXPECT_EQ(audioFiles.opened, QStringList{takePath});
    EXPECT_EQ(audioFiles.closedReaders, 1);
    EXPECT_TRUE(audioFiles.created.isEmpty());
    EXPECT_TRUE(files.log.isEmpty());
    EXPECT_EQ(shown, (QList<bool>{true, false}));
}

TEST_F(Processing, TheStagesRunInTheirFixedOrder) {
    switchEverythingOn();
    Dither dither;
    Samples expected = makeTake();
    amplify(expected, decibelsToFactor(3), dither);
    normalise(expected, 80, dither);
    compress(expected, {-20, 50, 0}, 44100, dither);
    reverb(expected, {30, 20, 10, 20}, 44100, dither);
    std::int32_t k = 0;
    trimStart(expected, -40, 44100, dither, k);
    trimEnd(expected, -40, 44100, dither, k);
    EXPECT_EQ(processed(), expected);
    EXPECT_EQ(rate, 44100);
}

TEST_F(Processing, EveryStageGoesThroughTheDisk) {
    settings.set("UseAmp", 1);
    settings.set("Amp", 6);
    settings.set("UseNorm", 1);
    settings.set("Norm", 50);
    chain.AudioProcessing(takePath);
    const QString output = path("temp2/voice.wav");
    EXPECT_EQ(audioFiles.created, (QStringList{output, output}));
    EXPECT_EQ(audioFiles.opened.size(), 3);
    EXPECT_EQ(audioFiles.closedReaders, 3);
    // The take is never gone from its place, not even for a moment.
    const QString stage = QStringLiteral("move temp2/voice.wav temp/voice.wav");
    const QString raw = QStringLiteral("temp2/voice.ruw.wav");
    EXPECT_EQ(files.log, (QStringList{QStringLiteral("link temp/voice.wav ") + raw, stage, stage,
                                      QStringLiteral("move ") + raw + QStringLiteral(" herstel/") +
                                          QFileInfo(kept()).fileName()}));
    EXPECT_TRUE(filesIn("temp2").isEmpty());
    EXPECT_EQ(filesIn("temp"), QStringList{QStringLiteral("voice.wav")});
}

TEST_F(Processing, NormalisationWorksOnTheAmplifiedTake) {
    // 12000 and 15 dB is far past full scale: what is normalised afterwards has lost its crests.
    settings.set("UseAmp", 1);
    settings.set("Amp", 15);
    settings.set("UseNorm", 1);
    settings.set("Norm", 50);
    const Samples take = processed();
    const auto crests = std::count_if(take.begin(), take.end(), [](int sample) { return std::abs(sample) > 16380; });
    EXPECT_GT(crests, 5000);
    EXPECT_NEAR(*std::max_element(take.begin(), take.end()), 16384, 2);
}

// What a stage replaced was thrown away unless nothing was to be heard any more: a take that the compressor had spoilt
// was gone.
TEST_F(Processing, WhatAStageReplacesIsKeptRaw) {
    switchEverythingOn();
    EXPECT_NE(processed(), makeTake());
    EXPECT_TRUE(QFileInfo(kept()).fileName().startsWith(QStringLiteral("voice.ruw."))) << kept().toStdString();
    EXPECT_EQ(read(kept()), makeTake());
    EXPECT_TRUE(told.isEmpty());
    EXPECT_TRUE(filesIn("temp2").isEmpty());
}

TEST_F(Processing, WhatTheFirstStageReplacedIsKeptWhenTheSecondOneFails) {
    settings.set("UseReverb", 1);
    settings.set("RevDelay", 1000);
    settings.set("RevDepth", 50);
    settings.set("RevDecay", 50);
    settings.set("UseTrim", 1);
    audioFiles.faults.readBlock = 16; // beyond the take's fifteen; the reverb has made it longer
    chain.AudioProcessing(takePath);
    EXPECT_EQ(told.size(), 1) << "not finished";
    EXPECT_GT(read(takePath).size(), makeTake().size() + 44100);
    EXPECT_EQ(read(kept()), makeTake());
    EXPECT_TRUE(filesIn("temp2").isEmpty());
}

// A tick at "Normalisatie" with its initial 0 % made digital silence of every take, and nothing told it.
TEST_F(Processing, ATakeThatBecomesInaudibleIsTold) {
    const auto expectKept = [&](const char *name) {
        SCOPED_TRACE(name);
        processed();
        EXPECT_EQ(read(kept()), makeTake());
        EXPECT_EQ(told,
                  QStringList{QString::fromLatin1(name) +
                              QStringLiteral(" heeft de opname onhoorbaar gemaakt; de ruwe opname ligt in herstel.")});
        EXPECT_TRUE(filesIn("temp2").isEmpty());
        told.clear();
        disk.remove(kept());
        writeTake(makeTake());
    };
    settings.set("UseNorm", 1);
    settings.set("Norm", 0);
    expectKept("Normalisatie");
    // What went before and what comes after change nothing about it: the raw take is what was recorded.
    switchEverythingOn();
    settings.set("Norm", 0);
    expectKept("Normalisatie");
}

TEST_F(Processing, ATakeThatIsAudibleInTheEndIsNotTold) {
    Samples quiet = makeTake();
    for (std::int16_t &sample : quiet) {
        sample = static_cast<std::int16_t>(sample / 300); // -58 dB; less 15 dB is too soft to be heard
    }
    writeTake(quiet);
    settings.set("UseAmp", 1);
    settings.set("Amp", -15);
    settings.set("UseNorm", 1);
    settings.set("Norm", 80);
    processed();
    EXPECT_TRUE(told.isEmpty());
    writeTake(quiet);
    settings.set("UseNorm", 0);
    processed();
    EXPECT_TRUE(told.value(0).startsWith(QStringLiteral("Versterking")));
}

TEST_F(Processing, ASilentTakeIsNobodysFault) {
    writeTake(Samples(44100, 20));
    settings.set("UseNorm", 1);
    settings.set("Norm", 0);
    processed();
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(Processing, ARawTakeThatRecoveryDoesNotTakeStaysWhereItIs) {
    settings.set("UseNorm", 1);
    settings.set("Norm", 0);
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("herstel"), ErrorNumber::PermissionDenied);
    processed();
    EXPECT_EQ(read(path("temp2/voice.ruw.wav")), makeTake());
    EXPECT_TRUE(told.value(0).endsWith(QStringLiteral("de ruwe opname ligt in temp2.")));
    files.heal();
    told.clear();
    writeTake(makeTake());
    settings.set("Norm", 50);
    processed();
    EXPECT_EQ(filesIn("herstel").size(), 2) << "what an earlier run left is kept before its name is used again";
    EXPECT_TRUE(filesIn("temp2").isEmpty());
}

TEST_F(Processing, ATakeThatCannotBeKeptIsNotReplaced) {
    switchEverythingOn();
    files.fail(FaultyFileSystem::Operation::Link, QStringLiteral("temp2"), ErrorNumber::DiskFull);
    EXPECT_EQ(processed(), makeTake());
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(filesIn("temp2").isEmpty());
}

// 800 dB in the settings file made samples that are no numbers, -50 % turned the sound upside down.
TEST_F(Processing, AKnobOutsideItsLimitsWorksAsTheLimit) {
    settings.set("UseAmp", 1);
    settings.set("Amp", 800);
    settings.set("UseComp", 1);
    settings.set("CompTresh", -300);
    settings.set("CompRate", 0); // what a settings file without it gives
    Dither dither;
    Samples expected = makeTake();
    amplify(expected, decibelsToFactor(15), dither);
    compress(expected, {-96, 1, 0}, 44100, dither);
    EXPECT_EQ(processed(), expected);
}

TEST_F(Processing, TheRmsTimeMakesNoDifference) {
    settings.set("UseComp", 1);
    settings.set("CompTresh", -30);
    settings.set("CompRate", 60);
    settings.set("CompRMS", 0);
    const Samples without = processed();
    EXPECT_NE(without, makeTake());
    writeTake(makeTake());
    settings.set("CompRMS", 500);
    ProcessingChain again(
        {platform, programFolder, [this] { return settings; }, recovery, [](bool) {}, [](const QString &) {}});
    again.AudioProcessing(takePath);
    EXPECT_EQ(read(takePath), without);
}

TEST_F(Processing, TheTrimAttackMakesNoDifference) {
    settings.set("UseTrim", 1);
    settings.set("Trim", -40);
    settings.set("Attack", 0);
    const Samples without = processed();
    EXPECT_LT(without.size(), makeTake().size() - 20000);
    writeTake(makeTake());
    settings.set("Attack", 1000);
    ProcessingChain again(
        {platform, programFolder, [this] { return settings; }, recovery, [](bool) {}, [](const QString &) {}});
    again.AudioProcessing(takePath);
    EXPECT_EQ(read(takePath), without);
}

TEST_F(Processing, TheReverbLengthensTheTake) {
    settings.set("UseReverb", 1);
    settings.set("RevDelay", 100);
    settings.set("RevDepth", 30);
    settings.set("RevDecay", 10);
    settings.set("RevRate", 1);
    EXPECT_EQ(processed().size(), makeTake().size() + 4410 + 13230);
}

TEST_F(Processing, TheTakesOwnSampleRateIsKept) {
    writeTake(makeTake(), 22050);
    switchEverythingOn();
    settings.set("UseTrim", 0);
    EXPECT_EQ(processed().size(), makeTake().size() + 22050 * 33 / 100);
    EXPECT_EQ(rate, 22050);
}

TEST_F(Processing, AnEmptyTakePassesEveryStage) {
    writeTake({});
    switchEverythingOn();
    EXPECT_TRUE(processed().empty());
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(Processing, AMissingFolderEndsTheProgramAndTheTakeStays) {
    switchEverythingOn();
    QDir(path("temp2")).removeRecursively();
    expectFatal(ErrorNumber::PathNotFound);
    EXPECT_EQ(read(takePath), makeTake());
}

TEST_F(Processing, AMissingTakeEndsTheProgram) {
    switchEverythingOn();
    disk.remove(takePath);
    expectFatal(ErrorNumber::FileNotFound);
}

TEST_F(Processing, AFailingReplacementEndsTheProgramAndTheTakeStays) {
    switchEverythingOn();
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("temp/"), ErrorNumber::PermissionDenied);
    expectFatal(ErrorNumber::PermissionDenied);
    EXPECT_EQ(read(takePath), makeTake());
    EXPECT_EQ(read(path("temp2/voice.wav")).size(), makeTake().size()) << "the stage's sound is there as well";
}

TEST_F(Processing, WhatAFailedReplacementLeftOutlivesALaterFailure) {
    settings.set("UseAmp", 1);
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("temp/"), ErrorNumber::PermissionDenied);
    expectFatal(ErrorNumber::PermissionDenied);
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("herstel"), ErrorNumber::PermissionDenied);
    writeTake(Samples(1000, 77));
    chain.AudioProcessing(takePath);
    EXPECT_EQ(read(path("temp2/voice.wav")), makeTake());
}

TEST_F(Processing, WhatABrokenRunLeftIsKeptBeforeItsNameIsUsedAgain) {
    const Samples left(1000, 77);
    disk.copy(takePath, path("temp/other.wav"), {});
    writeTake(left);
    disk.move(takePath, path("temp2/voice.wav"));
    disk.move(path("temp/other.wav"), takePath);
    switchEverythingOn();
    processed();
    const QStringList all = filesIn("herstel");
    ASSERT_EQ(all.size(), 2);
    const QStringList raw = all.filter(QStringLiteral(".ruw."));
    ASSERT_EQ(raw.size(), 1);
    EXPECT_EQ(read(path("herstel/") + raw.first()), makeTake());
    EXPECT_EQ(read(path("herstel/") + all.at(1 - all.indexOf(raw.first()))), left);
}

TEST_F(Processing, WhatCannotBeKeptIsNotThrownAway) {
    disk.copy(takePath, path("temp2/voice.wav"), {});
    switchEverythingOn();
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("herstel"), ErrorNumber::PermissionDenied);
    chain.AudioProcessing(takePath);
    EXPECT_EQ(read(path("temp2/voice.wav")), makeTake());
    EXPECT_EQ(read(takePath), makeTake());
    EXPECT_EQ(told.size(), 1);
}

TEST_F(Processing, ADiskThatIsFullLeavesTheTakeAsItWasBeforeThatStage) {
    switchEverythingOn();
    const auto expectUntouched = [&](const char *fault) {
        SCOPED_TRACE(fault);
        told.clear();
        chain.AudioProcessing(takePath);
        EXPECT_EQ(read(takePath), makeTake());
        EXPECT_TRUE(filesIn("temp2").isEmpty());
        EXPECT_TRUE(filesIn("herstel").isEmpty()) << "the take is still what was recorded";
        EXPECT_EQ(told.size(), 1);
        audioFiles.faults = {};
    };
    audioFiles.faults.create = true;
    expectUntouched("create");
    audioFiles.faults.write = 0;
    expectUntouched("write");
    audioFiles.faults.closeFull = true;
    expectUntouched("close");
    audioFiles.faults.readBlock = 3;
    expectUntouched("read");
    audioFiles.faults.end = 3;
    expectUntouched("a file that ends too early");
}

TEST_F(Processing, ATakeThatCannotBeReadStaysAsItIs) {
    const QByteArray garbage("no sound at all");
    disk.write(takePath, garbage);
    switchEverythingOn();
    chain.AudioProcessing(takePath);
    EXPECT_EQ(disk.read(takePath), garbage);
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(filesIn("temp2").isEmpty());
}

TEST_F(Processing, ATakeWithTwoChannelsStaysAsItIs) {
    QByteArray stereo = disk.read(takePath);
    constexpr qsizetype channels = 22; // in a WAV file's header, and the bytes of a frame ten further
    stereo[channels] = 2;
    stereo[channels + 10] = 4;
    disk.write(takePath, stereo);
    switchEverythingOn();
    chain.AudioProcessing(takePath);
    EXPECT_EQ(disk.read(takePath), stereo);
    EXPECT_EQ(told.size(), 1);
}

TEST_F(Processing, GoesOnAfterAFailure) {
    switchEverythingOn();
    audioFiles.faults.readBlock = 3;
    chain.AudioProcessing(takePath);
    audioFiles.faults = {};
    EXPECT_NE(processed(), makeTake());
    EXPECT_EQ(told.size(), 1);
}

TEST_F(Processing, ANameWithDotsKeepsThem) {
    const QString dotted = path("temp/a.b.wav");
    disk.move(takePath, dotted);
    settings.set("UseAmp", 1);
    settings.set("Amp", 3);
    chain.AudioProcessing(dotted);
    EXPECT_EQ(audioFiles.created, QStringList{path("temp2/a.b.wav")});
    EXPECT_EQ(filesIn("temp"), QStringList{QStringLiteral("a.b.wav")});
}

TEST_F(Processing, AStationWithALoudnessGoalGetsItAfterTheOtherStages) {
    switchEverythingOn();
    goal = {-20, -1};
    const Samples after = processed();
    const std::optional<Loudness> reached = loudness.measure(after, 44100);
    ASSERT_TRUE(reached);
    EXPECT_NEAR(reached->lufs, -20, 0.2) << "whatever the stages before made of it";
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(filesIn("temp2"), QStringList());
    EXPECT_EQ(read(kept()), makeTake()) << "the raw take is kept";
}

TEST_F(Processing, ALoudnessGoalThatCannotBeIsToldAndLeavesTheTake) {
    goal = {18, -1};
    EXPECT_EQ(processed(), makeTake());
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().contains(QStringLiteral("18 LUFS")));
}

TEST_F(Processing, ATakeThatIsTooSoftForTheGoalIsTold) {
    Samples soft = makeTake();
    for (std::int16_t &sample : soft) {
        sample = static_cast<std::int16_t>(sample / 300);
    }
    writeTake(soft);
    goal = {-16, -1};
    processed();
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.first(), QStringLiteral("De opname is te zacht om op -16 LUFS te brengen."));
}

} // namespace orvel
