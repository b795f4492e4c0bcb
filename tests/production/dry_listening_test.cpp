// The switch between a take and what was recorded, while it is listened to.
#include "production/dry_listening.h"
#include "tests/desk.h"
#include "tests/dsp/sound.h"
#include "tests/dsp/speech.h"

#include <QThread>

namespace orvel {

namespace {

constexpr int fullKnob = 65535;

class DryOrNot : public Desk {
  protected:
    DryOrNot() {
        edits = [this](const QString &) {
            return EditFacts{false, false, false, !takes.shelf().dry(session.currentTake()).isEmpty()};
        };
        onChanged = [this] { dry.sessionChanged(); };
        process = [this](const QString &wav) { makeLouder(wav); };
    }
    void makeLouder(const QString &wav) {
        const auto reader = realAudioFiles.reader();
        reader->open(wav);
        Samples all;
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
            all.insert(all.end(), first, first + block.size() / 2);
        }
        reader->close();
        disk.remove(wav);
        const auto writer = realAudioFiles.wavWriter();
        writer->create(wav, testRate);
        writer->write(atPeak(all, -1));
        writer->close();
    }
    void speakOn(int row) {
        select(row);
        startTake();
        Samples said = atPeak(speak(spokenSentences.at(3)), -20);
        said.resize(std::max(said.size(), std::size_t{3} * testRate));
        sound.deliver(said);
        timers.advance(static_cast<std::int64_t>(said.size()) * 1000 / testRate);
        session.cmdRec_Click();
    }
    void listen() {
        speakOn(link1);
        listening.cmdPlay_Click();
        heardOf().play(500);
    }
    [[nodiscard]] FakeWavePlayer &heardOf() { return sound.player(0); }
    [[nodiscard]] FakeWavePlayer &other() { return sound.player(1); }
    /// Time in which both players play on.
    void playOn(int milliseconds) {
        for (int at = 0; at < milliseconds; at += 10) {
            for (std::size_t i = 0; i < sound.playerCount(); ++i) {
                sound.player(i).play(10);
            }
            timers.advance(10);
        }
    }
    void waitForDry() {
        for (int i = 0; i < 3000 && sound.playerCount() < 2; ++i) {
            QThread::msleep(2);
            timers.advance(10);
        }
        ASSERT_EQ(sound.playerCount(), 2U);
    }

    int changes = 0;
    DryListening dry{{platform, places, step, session, takes, listening, tell, [this] { ++changes; }}};
};

} // namespace

TEST_F(DryOrNot, TheDryTakeIsHeardInThePlaceOfTheTakeAtTheSameMomentWithoutAGap) {
    speakOn(link1);
    EXPECT_FALSE(may().cmdDroog) << "nothing is listened to";
    listening.cmdPlay_Click();
    ASSERT_TRUE(may().cmdDroog);
    heardOf().play(500);
    dry.cmdDroog_Click();
    EXPECT_TRUE(dry.isOn());
    EXPECT_EQ(heardOf().volume(), fullKnob) << "the take is heard until the other is ready";
    waitForDry();
    EXPECT_EQ(heardOf().volume(), fullKnob);
    EXPECT_EQ(other().volume(), 0);
    EXPECT_EQ(other().state(), WavePlayer::playing);
    playOn(200);
    EXPECT_EQ(other().volume(), fullKnob);
    EXPECT_EQ(heardOf().volume(), 0);
    EXPECT_NEAR(other().position(), heardOf().position(), 20);
    EXPECT_EQ(session.state(), SessionState::Listening);
    const int starts = heardOf().starts();
    dry.cmdDroog_Click();
    EXPECT_FALSE(dry.isOn());
    EXPECT_EQ(heardOf().volume(), fullKnob) << "both play: at once";
    EXPECT_EQ(other().volume(), 0);
    EXPECT_EQ(heardOf().starts(), starts);
    dry.cmdDroog_Click();
    EXPECT_EQ(other().volume(), fullKnob);
    EXPECT_EQ(other().starts(), 1);
}

TEST_F(DryOrNot, WhatIsComparedIsAsLoudAndAsLong) {
    listen();
    dry.cmdDroog_Click();
    waitForDry();
    const auto measured = [this](const QString &path) {
        const auto reader = realAudioFiles.reader();
        reader->open(path);
        EXPECT_GE(reader->errorState(), 0);
        loudness.start(testRate);
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
            loudness.add({first, static_cast<std::size_t>(block.size()) / 2});
        }
        return std::pair(loudness.result()->lufs, reader->frames());
    };
    const auto [takeLufs, takeFrames] = measured(path(wavOf1));
    const auto [dryLufs, dryFrames] = measured(other().file());
    EXPECT_NEAR(dryLufs, takeLufs, 0.5);
    EXPECT_EQ(dryFrames, takeFrames);
    EXPECT_LT(measured(takes.shelf().dry(session.currentTake())).first, takeLufs - 10) << "which it was not by itself";
}

TEST_F(DryOrNot, APlayerThatComesLateIsSentAheadUntilTheyPlayTheSameMoment) {
    listen();
    dry.cmdDroog_Click();
    waitForDry();
    // It begins 300 ms after it was asked for.
    heardOf().play(300);
    other().play(10);
    timers.advance(10);
    EXPECT_EQ(heardOf().volume(), fullKnob) << "other words";
    EXPECT_EQ(other().volume(), 0);
    EXPECT_GT(other().position(), heardOf().position());
    heardOf().play(300);
    other().play(10);
    timers.advance(10);
    EXPECT_EQ(other().volume(), fullKnob);
    EXPECT_NEAR(other().position(), heardOf().position(), 20);
}

TEST_F(DryOrNot, ASeekMovesBoth) {
    listen();
    dry.cmdDroog_Click();
    waitForDry();
    playOn(200);
    ASSERT_EQ(other().volume(), fullKnob);
    listening.listenFrom(1500);
    EXPECT_EQ(heardOf().position(), 1500);
    EXPECT_EQ(other().position(), 1500);
    EXPECT_EQ(other().volume(), fullKnob);
    EXPECT_TRUE(dry.isOn());
}

TEST_F(DryOrNot, ItIsOffWhenListeningEndsAndNothingStays) {
    listen();
    dry.cmdDroog_Click();
    waitForDry();
    playOn(200);
    const QString file = other().file();
    ASSERT_TRUE(QFileInfo::exists(file));
    heardOf().play(60'000);
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_FALSE(dry.isOn());
    EXPECT_NE(other().state(), WavePlayer::playing);
    EXPECT_FALSE(QFileInfo::exists(file));
    listening.cmdPlay_Click();
    EXPECT_EQ(heardOf().volume(), fullKnob) << "the take itself is heard again";
    EXPECT_FALSE(dry.isOn());
}

TEST_F(DryOrNot, ANewTakeIsListenedToAsItIs) {
    listen();
    dry.cmdDroog_Click();
    waitForDry();
    playOn(200);
    listening.cmdPlay_Click();
    speakOn(link1);
    listening.cmdPlay_Click();
    EXPECT_FALSE(dry.isOn());
    EXPECT_EQ(heardOf().volume(), fullKnob);
}

TEST_F(DryOrNot, WhoStopsBeforeItIsReadyHearsNothingOfIt) {
    listen();
    dry.cmdDroog_Click();
    listening.cmdPlay_Click();
    for (int i = 0; i < 100; ++i) {
        QThread::msleep(5);
        timers.advance(10);
    }
    EXPECT_EQ(sound.playerCount(), 1U);
    EXPECT_FALSE(dry.isOn());
}

TEST_F(DryOrNot, AFullDiskIsToldAndTheTakeGoesOn) {
    listen();
    audioFiles.faults.write = 0;
    dry.cmdDroog_Click();
    for (int i = 0; i < 3000 && dry.isOn(); ++i) {
        QThread::msleep(2);
        timers.advance(10);
    }
    audioFiles.faults = {};
    EXPECT_FALSE(dry.isOn());
    EXPECT_EQ(told.last(), QStringLiteral("De droge opname kan niet worden beluisterd."));
    EXPECT_EQ(session.state(), SessionState::Listening);
    EXPECT_EQ(heardOf().volume(), fullKnob);
    EXPECT_EQ(changes, 2);
}

TEST_F(DryOrNot, AnOutputThatGoesAwayLeavesTheTake) {
    listen();
    dry.cmdDroog_Click();
    waitForDry();
    playOn(200);
    other().breakOff();
    timers.advance(10);
    EXPECT_EQ(heardOf().volume(), fullKnob);
    EXPECT_FALSE(dry.isOn());
}

TEST_F(DryOrNot, WithoutAnOriginalThereIsNoSwitch) {
    speakOn(link1);
    disk.remove(takes.shelf().dry(session.currentTake()));
    listening.cmdPlay_Click();
    EXPECT_FALSE(may().cmdDroog);
    dry.cmdDroog_Click();
    EXPECT_FALSE(dry.isOn());
}

} // namespace orvel
