// Every take of a step: none is lost to the one after it.
#include "recording/flac_packer.h"
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

class Shelving : public Desk {
  protected:
    /// Another take of the selected step, all of whose samples are this one.
    void recordLevel(std::int16_t sample, int milliseconds = 1000) {
        startTake();
        const std::vector<std::int16_t> samples(static_cast<std::size_t>(milliseconds) * 441 / 10, sample);
        sound.deliver(samples);
        timers.advance(milliseconds);
        session.cmdRec_Click();
    }
    /// The middle sample of a sound file; 0 when it is not there.
    int levelOf(const QString &file) {
        const auto reader = realAudioFiles.reader();
        reader->open(file);
        if (reader->errorState() < 0) {
            return 0;
        }
        const QByteArray block = reader->readBlock();
        std::int16_t sample = 0;
        std::memcpy(&sample, block.constData() + block.size() / 4 * 2, sizeof sample);
        return sample;
    }
    [[nodiscard]] int onDesk() { return levelOf(path(wavOf1)); }
    [[nodiscard]] std::vector<int> numbers() const {
        std::vector<int> found;
        for (const ShelvedTake &take : session.takes()) {
            found.push_back(take.number);
        }
        return found;
    }
    [[nodiscard]] int current() const {
        int found = 0;
        for (const ShelvedTake &take : session.takes()) {
            found = take.isCurrent ? take.number : found;
        }
        return found;
    }
    [[nodiscard]] int filed() const {
        int found = 0;
        for (const ShelvedTake &take : session.takes()) {
            found = take.isFiled ? take.number : found;
        }
        return found;
    }
};

} // namespace

TEST_F(Shelving, ANewTakeStandsBesideTheOnesBefore) {
    select(link1);
    EXPECT_TRUE(session.takes().empty());
    recordLevel(1000);
    recordLevel(2000, 2000);
    recordLevel(3000);
    EXPECT_EQ(numbers(), (std::vector{1, 2, 3}));
    EXPECT_EQ(current(), 3);
    EXPECT_EQ(session.takes().at(1).lengthMs, 2000);
    EXPECT_EQ(session.takes().at(1).begun.size(), 5) << session.takes().at(1).begun.toStdString();
    EXPECT_EQ(onDesk(), 3000);
    select(link2);
    EXPECT_TRUE(session.takes().empty()) << "of this step alone";
}

TEST_F(Shelving, AnEarlierTakeIsChosenAndFiled) {
    select(link1);
    recordLevel(1000);
    recordLevel(2000);
    recordLevel(3000);
    session.choose(2);
    EXPECT_EQ(onDesk(), 2000);
    EXPECT_EQ(current(), 2);
    EXPECT_TRUE(may().cmdSave);
    session.chooseNext();
    EXPECT_EQ(onDesk(), 3000) << "what was put aside came back";
    session.chooseNext();
    EXPECT_EQ(onDesk(), 1000) << "behind the last one comes the first";
    session.choose(2);
    saving.cmdSave_Click();
    ASSERT_TRUE(exists(mp3Of1));
    EXPECT_FALSE(exists(wavOf1));
    EXPECT_NEAR(levelOf(path(mp3Of1)), 2000, 100);
    select(link1);
    EXPECT_EQ(numbers(), (std::vector{1, 2, 3}));
    EXPECT_EQ(filed(), 2);
    EXPECT_EQ(current(), 2);
}

TEST_F(Shelving, AnotherTakeOfAFiledStepIsListenedToAndFiledInItsPlace) {
    select(link1);
    recordLevel(1000);
    recordLevel(2000);
    saving.cmdSave_Click();
    select(link1);
    ASSERT_EQ(filed(), 2);
    EXPECT_FALSE(may().cmdSave);
    session.choose(1);
    EXPECT_TRUE(may().cmdSave);
    EXPECT_TRUE(isMarked(link1)) << "its voice track is still there";
    listening.cmdPlay_Click();
    EXPECT_EQ(sound.player(0).file(), path(wavOf1));
    listening.cmdPlay_Click();
    session.choose(2);
    EXPECT_FALSE(may().cmdSave) << "that one is filed";
    EXPECT_FALSE(exists(wavOf1));
    EXPECT_FALSE(journal.entry(QStringLiteral("LINK1"))) << "nothing waits";
    session.choose(1);
    saving.cmdSave_Click();
    EXPECT_NEAR(levelOf(path(mp3Of1)), 1000, 100);
    select(link1);
    EXPECT_EQ(filed(), 1);
}

TEST_F(Shelving, EachTakeIsThereAsItWasRecorded) {
    settings.UseProcessor = true;
    process = [this](const QString &wav) {
        const auto writer = realAudioFiles.wavWriter();
        disk.remove(wav);
        writer->create(wav, 44100);
        writer->write(std::vector<std::int16_t>(44100, 9000));
        writer->close();
    };
    select(link1);
    recordLevel(1000);
    EXPECT_EQ(onDesk(), 9000);
    EXPECT_EQ(levelOf(takes.shelf().dry(session.currentTake())), 1000);
}

TEST_F(Shelving, WhatNeverBeganIsNoTake) {
    select(link1);
    recordLevel(1000);
    startTake();
    session.cmdRec_Click(); // not a sample came
    EXPECT_EQ(numbers(), (std::vector{1}));
    EXPECT_EQ(onDesk(), 1000);
}

/// A full disk must not cost the take for the sake of its second name.
TEST_F(Shelving, ATakeIsWholeWithoutAShelf) {
    select(link1);
    recordLevel(1000);
    files.fail(Operation::Link, QStringLiteral("takes"), ErrorNumber::DiskFull);
    recordLevel(2000);
    EXPECT_EQ(onDesk(), 2000);
    EXPECT_TRUE(may().cmdSave);
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(mp3Of1));
}

TEST_F(Shelving, WhatCannotBeChosenLeavesTheTakeOnTheDesk) {
    select(link1);
    recordLevel(1000);
    recordLevel(2000);
    EXPECT_THROW(session.choose(7), RuntimeError);
    EXPECT_EQ(onDesk(), 2000);
    QFile::remove(path(QStringLiteral("takes/LINK1.1.wav")));
    EXPECT_THROW(session.choose(1), RuntimeError);
    EXPECT_EQ(onDesk(), 2000);
    EXPECT_EQ(current(), 2);
}

TEST_F(Shelving, NothingIsChosenWhileATakeRuns) {
    select(link1);
    recordLevel(1000);
    recordLevel(2000);
    startTake();
    session.choose(1);
    session.chooseNext();
    EXPECT_EQ(session.state(), SessionState::Recording);
}

TEST_F(Shelving, AnotherPlaylistsTakesOfThatNameGoToRecovery) {
    select(link1);
    recordLevel(1000);
    Take other = session.currentTake();
    other.step.playlist = QStringLiteral("morgen.mdb");
    takes.recorded(other);
    EXPECT_EQ(takes.shelf().takes(other).size(), 1U);
    EXPECT_TRUE(session.takes().empty());
    EXPECT_EQ(filesIn(QStringLiteral("herstel")).filter(QStringLiteral("LINK1.")).size(), 1);
}

TEST_F(Shelving, AFinishedPlaylistLeavesTheOriginalsToRecovery) {
    select(link1);
    recordLevel(1000);
    recordLevel(2000);
    disk.write(path(QStringLiteral("new/avond.mdb")), "er is er een");
    takes.shelf().clearFinished(settings.NewPath);
    EXPECT_EQ(numbers(), (std::vector{1, 2})) << "it is not finished yet";
    disk.remove(path(QStringLiteral("new/avond.mdb")));
    takes.shelf().clearFinished(settings.NewPath);
    EXPECT_TRUE(filesIn(QStringLiteral("takes")).isEmpty());
    int dry = 0;
    for (const KeptFile &kept : recovery.kept()) {
        EXPECT_EQ(kept.name, QStringLiteral("LINK1.wav"));
        dry += levelOf(kept.path) > 0 ? 1 : 0;
    }
    EXPECT_GE(dry, 2);
}

/// With the share that holds the playlists away, every one of them looked finished.
TEST_F(Shelving, AFolderThatIsNotThereFinishesNoPlaylist) {
    select(link1);
    recordLevel(1000);
    recordLevel(2000);
    takes.shelf().clearFinished(path(QStringLiteral("weg")));
    EXPECT_EQ(numbers(), (std::vector{1, 2}));
}

/// A list that another program, or a broken disk, left behind.
TEST_F(Shelving, AListThatIsNoneIsAnEmptyShelf) {
    select(link1);
    recordLevel(1000);
    for (const char *text : {"", "[]", "{", "{\"takes\": 5}", "{\"takes\": [1, null, {}]}"}) {
        disk.write(path(QStringLiteral("takes/LINK1.takes")), text);
        EXPECT_TRUE(session.takes().empty()) << text;
    }
    recordLevel(2000);
    EXPECT_EQ(onDesk(), 2000);
}

TEST_F(Shelving, OriginalsArePackedWithoutLoss) {
    select(link1);
    startTake();
    std::vector<std::int16_t> voice(441'000);
    for (std::size_t i = 0; i < voice.size(); ++i) {
        voice[i] = static_cast<std::int16_t>(8000 * std::sin(static_cast<double>(i * i % 99991) * 1e-3));
    }
    sound.deliver(voice);
    timers.advance(10'000);
    session.cmdRec_Click();
    FlacPacker packer(platform);
    ASSERT_EQ(takes.shelf().unpacked().size(), 1U);
    const QString wav = takes.shelf().unpacked().front();
    packer.pack(wav, TakeShelf::packed(wav));
    for (int i = 0; i < 1000 && packer.isBusy(); ++i) {
        timers.advance(20);
    }
    EXPECT_TRUE(takes.shelf().unpacked().empty());
    EXPECT_FALSE(QFile::exists(wav));
    const QString flac = takes.shelf().dry(session.currentTake());
    EXPECT_TRUE(flac.endsWith(QStringLiteral(".flac")));
    EXPECT_EQ(disk.read(flac).left(4), "fLaC");
    EXPECT_LT(disk.fileSize(flac), 2 * 441'000);
    const auto reader = realAudioFiles.reader();
    reader->open(flac);
    QByteArray back;
    for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
        back += block;
    }
    ASSERT_EQ(back.size(), static_cast<qsizetype>(voice.size() * 2));
    EXPECT_EQ(std::memcmp(back.constData(), voice.data(), voice.size() * 2), 0);
}

TEST_F(Shelving, AnOriginalThatCannotBePackedStaysAsItIs) {
    select(link1);
    recordLevel(1000);
    const QString wav = takes.shelf().unpacked().front();
    FlacPacker packer(platform);
    const auto packAll = [&] {
        packer.pack(wav, TakeShelf::packed(wav));
        timers.advance(2000);
    };
    audioFiles.faults.write = 1;
    packAll();
    audioFiles.faults.write = -1;
    audioFiles.faults.end = 1; // a reader that stops too soon
    packAll();
    audioFiles.faults.end = -1;
    audioFiles.faults.closeFull = true;
    packAll();
    audioFiles.faults.closeFull = false;
    EXPECT_FALSE(packer.isBusy());
    EXPECT_TRUE(QFile::exists(wav));
    EXPECT_EQ(levelOf(wav), 1000);
    EXPECT_TRUE(filesIn(QStringLiteral("takes")).filter(QStringLiteral("flac")).isEmpty());
    packAll();
    EXPECT_FALSE(QFile::exists(wav)) << "later it can be";
}

} // namespace orvel
