// What has to be the same on PulseAudio and on PipeWire.
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/private_pipewire.h"
#include "tests/platform/audio/pulse_fixture.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using test::comesTrue;
using test::samplesOf;

enum class Server { PulseAudio, PipeWire };

std::unique_ptr<test::PrivateServer> startServer(Server server) {
    if (server == Server::PipeWire) {
        return std::make_unique<test::PrivatePipeWire>();
    }
    return std::make_unique<test::PrivatePulse>();
}

const char *nameOf(Server server) {
    return server == Server::PulseAudio ? "PulseAudio" : "PipeWire";
}

/// A microphone as a server may have one.
struct Microphone {
    Server server;
    int channels;
    int rate;
};

/// The voice: a sine that is not far from full scale, on every channel.
constexpr double kAmplitude = 0.9;
constexpr double kSeconds = 2;
constexpr double kRate = 44100;

double inDecibels(double ratio) {
    return 20 * std::log10(ratio);
}

/// What came of the voice in a take.
struct Heard {
    double seconds = 0;  ///< from its first to its last sample
    double softest = 0;  ///< level of 10 ms, dB above that of the source; the take's first and last 10 ms are left out
    double loudest = 0;  ///< the same
    int atFullScale = 0; ///< samples
};

Heard listenTo(const std::vector<std::int16_t> &take) {
    const auto isLoud = [](std::int16_t sample) { return std::abs(sample) > 0.05 * 32768; };
    const auto first = std::find_if(take.begin(), take.end(), isLoud);
    const auto last = std::find_if(take.rbegin(), take.rend(), isLoud).base();
    Heard heard;
    if (last <= first) {
        return heard;
    }
    heard.seconds = static_cast<double>(last - first) / kRate;
    heard.atFullScale = static_cast<int>(
        std::count_if(take.begin(), take.end(), [](std::int16_t sample) { return std::abs(int{sample}) >= 32767; }));
    heard.softest = 1000;
    heard.loudest = -1000;
    constexpr std::ptrdiff_t kBlock = 441;
    for (auto at = first + kBlock; at + 2 * kBlock <= last; at += kBlock) {
        double squares = 0;
        std::for_each(at, at + kBlock, [&](std::int16_t sample) { squares += std::pow(sample / 32768.0, 2); });
        const double level = inDecibels(std::sqrt(2 * squares / kBlock) / kAmplitude);
        heard.softest = std::min(heard.softest, level);
        heard.loudest = std::max(heard.loudest, level);
    }
    return heard;
}

class RecordingFrom : public testing::TestWithParam<Microphone> {
  protected:
    RecordingFrom() : server(startServer(GetParam().server)) {
        const QString format = "rate=%1 channels=%2";
        QStringList words = format.arg(GetParam().rate).arg(GetParam().channels).split(' ');
        words << (GetParam().channels == 1 ? "channel_map=mono" : "channel_map=front-left,front-right");
        server->loadMicrophone("mic", words);
    }

    /// A 1 kHz wave on every channel.
    QString voice(const char *shape = "sine", double amplitude = kAmplitude) {
        const QString rate = QString::number(GetParam().rate);
        const QString channels = QString::number(GetParam().channels);
        const QString gain = QString::number(inDecibels(amplitude), 'f', 6);
        const QStringList sox{"-D",
                              "-n",
                              "-r",
                              rate,
                              "-c",
                              channels,
                              "-b",
                              "16",
                              folder.path("voice.wav"),
                              "synth",
                              QString::number(kSeconds),
                              shape,
                              "1000",
                              "gain",
                              gain};
        EXPECT_EQ(test::runTool("sox", sox).exitCode, 0);
        return folder.path("voice.wav");
    }

    /// From the source "mic".
    void startTake() {
        card.emplace();
        AudioRecord &cards = card->audioRecord();
        EXPECT_TRUE(comesTrue([&] {
            cards.refresh();
            return cards.deviceName(1) == "mic";
        }));
        card->recorder().setDevice(0);
        card->recorder().setFileName(folder.path("take.wav"));
        card->recorder().start();
    }

    /// The take of what is played to the microphone.
    std::vector<std::int16_t> record(const QString &path) {
        startTake();
        WaveRecorder &recorder = card->recorder();
        EXPECT_TRUE(comesTrue([&] { return recorder.status().frames > 0; }));
        EXPECT_EQ(test::waitForTool(server->play(path, "mic-speaker")), 0);
        std::this_thread::sleep_for(300ms);
        recorder.stop();
        EXPECT_EQ(recorder.status().overruns, 0);
        return samplesOf(folder.path("take.wav"));
    }

    /// What is heard of what is played. On a busy machine the servers themselves stumble: then once more, twice at
    /// most.
    Heard hear(const QString &path) {
        Heard heard;
        for (int attempt = 0; attempt < 3; ++attempt) {
            heard = listenTo(record(path));
            if (heard.loudest - heard.softest < 0.1) {
                break;
            }
        }
        return heard;
    }

    test::TempFolder folder;
    std::unique_ptr<test::PrivateServer> server;
    std::optional<PulseSoundCard> card; // gone before the server
};

/// PipeWire, asked for one channel of a source that has two, added them up: a voice on both came out 3 dB too loud, and
/// what was near full scale was cut flat.
TEST_P(RecordingFrom, KeepsTheLevelAndEverySample) {
    const Heard heard = hear(voice());
    EXPECT_NEAR(heard.softest, 0, 0.1);
    EXPECT_NEAR(heard.loudest, 0, 0.1);
    EXPECT_EQ(heard.atFullScale, 0);
    EXPECT_NEAR(heard.seconds, kSeconds, 0.01);
    std::printf("%s %d ch %d Hz: level %+.3f .. %+.3f dB, %d at full scale, %.4f s of %.0f s\n",
                nameOf(GetParam().server), GetParam().channels, GetParam().rate, heard.softest, heard.loudest,
                heard.atFullScale, heard.seconds, kSeconds);
}

class RecordingFromTwo : public RecordingFrom {};

/// The first channel of a file alone, the others silent.
QString firstChannelOf(const QString &path) {
    QString alone = path + "-1.wav";
    EXPECT_EQ(test::runTool("sox", {"-D", path, alone, "remix", "1", "0"}).exitCode, 0);
    return alone;
}

TEST_P(RecordingFromTwo, AVoiceOnOneChannelOfTwoIsHalfAsLoud) {
    const Heard heard = hear(firstChannelOf(voice()));
    EXPECT_NEAR(heard.softest, inDecibels(0.5), 0.1);
    EXPECT_NEAR(heard.loudest, inDecibels(0.5), 0.1);
}

/// A change of rate makes edges overshoot. In 16 bits that is cut off at full scale, channel by channel, though the
/// mean of both has room for it.
TEST_P(RecordingFromTwo, WhatTheServerMakesLouderThanFullScaleIsNotCutBeforeTheMix) {
    const std::vector<std::int16_t> take = record(firstChannelOf(voice("square", 0.99)));
    EXPECT_GT(*std::max_element(take.begin(), take.end()), 0.52 * 32768);
}

class RecordingFromPipeWire : public RecordingFrom {};

/// What PulseAudio leaves off, PipeWire wakes up for whoever records.
TEST_P(RecordingFromPipeWire, ASuspendedSourceIsNotRefused) {
    server->pactl({"suspend-source", "mic", "1"});
    server->pactl({"suspend-sink", "mic-speaker", "1"});
    startTake();
    EXPECT_TRUE(comesTrue([&] { return card->recorder().status().frames > 0; }));
}

/// PipeWire without devices makes itself "Dummy Output", whose monitor was taken for a microphone.
TEST(PipeWireWithoutDevices, HasNoInput) {
    const test::PrivatePipeWire server;
    PulseSoundCard card;
    AudioRecord &cards = card.audioRecord();
    EXPECT_TRUE(comesTrue([&] {
        cards.refresh();
        return cards.deviceName(1) == "Monitor of Dummy Output";
    }));
    EXPECT_EQ(cards.inputCount(), 0);
    EXPECT_EQ(cards.currentDevice(), 0);
    EXPECT_EQ(test::errorOf([&] { card.recorder().start(); }), 57) << "nor is it recorded from unasked";
}

std::string titleOf(const testing::TestParamInfo<Microphone> &info) {
    const Microphone &mic = info.param;
    return nameOf(mic.server) + std::to_string(mic.channels) + "channels" + std::to_string(mic.rate);
}

INSTANTIATE_TEST_SUITE_P(
    Every, RecordingFrom,
    testing::Values(Microphone{Server::PulseAudio, 1, 44100}, Microphone{Server::PulseAudio, 1, 48000},
                    Microphone{Server::PulseAudio, 2, 44100}, Microphone{Server::PulseAudio, 2, 48000},
                    Microphone{Server::PipeWire, 1, 44100}, Microphone{Server::PipeWire, 1, 48000},
                    Microphone{Server::PipeWire, 2, 44100}, Microphone{Server::PipeWire, 2, 48000}),
    titleOf);
INSTANTIATE_TEST_SUITE_P(Every, RecordingFromTwo,
                         testing::Values(Microphone{Server::PulseAudio, 2, 48000},
                                         Microphone{Server::PipeWire, 2, 48000}),
                         titleOf);
INSTANTIATE_TEST_SUITE_P(Every, RecordingFromPipeWire, testing::Values(Microphone{Server::PipeWire, 2, 48000}),
                         titleOf);

} // namespace
} // namespace orvel
