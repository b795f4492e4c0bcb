#pragma once

#include "platform/audio.h"
#include "platform/card_list.h"
#include "platform/fake/fake_join_player.h"
#include "platform/fake/fake_line_mixer.h"
#include "platform/fake/fake_wave_player.h"
#include "platform/runtime_error.h"
#include "platform/sndfile/take_writer.h"

#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orvel {

/// Records what deliver() brings. Takes are written by the same TakeWriter as real ones.
class FakeRecorder : public WaveRecorder {
  public:
    void setDevice(int device) override { device_ = device; }
    void setFileName(const QString &path) override { path_ = path; }
    void prepare() override;
    void start() override;
    void startAt(std::chrono::steady_clock::time_point moment) override {
        start();
        startedAt_ = moment;
    }
    void stop() override;
    [[nodiscard]] bool isRecording() const { return recording_; }
    RecorderStatus status() override;

  private:
    friend class FakeSoundCard;
    void push(std::span<const std::int16_t> samples);

    QString path_;
    std::optional<std::chrono::steady_clock::time_point> startedAt_;
    int device_ = -1;
    int prepared_ = 0;
    bool isOpen_ = false;  ///< ahead of a recording
    bool isHeard_ = false; ///< since the last look
    int heardPeak_ = 0;    ///< of what came in before a recording
    bool recording_ = false;
    bool unplugged_ = false;
    std::int64_t toneAt_ = 0;
    TakeLimits limits_;
    Storage *storage_ = &systemStorage();
    QStringList takes_;
    std::optional<ErrorNumber> startFailure_;
    std::unique_ptr<TakeWriter> writer_;
};

/// Keeps a log of what the output's mute was set to.
class FakePlayer : public AudioPlayer {
  public:
    void setDevice(int device) override { device_ = device; }
    void setOutputMute(bool mute) override { muteLog_.push_back(mute); }

  private:
    friend class FakeSoundCard;
    int device_ = -1;
    std::vector<bool> muteLog_;
};

/// A sound card pumped by hand, for tests. One thread.
class FakeSoundCard : public SoundCard {
  public:
    /// One card "Microfoon" that has one line "Ingang".
    FakeSoundCard();
    explicit FakeSoundCard(std::vector<Card> cards);

    [[nodiscard]] AudioRecord &audioRecord() override { return record_; }
    [[nodiscard]] FakeRecorder &recorder() override { return recorder_; }
    [[nodiscard]] AudioPlayer &audioPlayer() override { return player_; }
    [[nodiscard]] std::unique_ptr<WavePlayer> makePlayer() override;
    [[nodiscard]] std::unique_ptr<JoinPlayer> makeJoinPlayer() override;
    [[nodiscard]] QStringList outputNames() const override { return outputs_; }

    // What a test does to the card.

    /// The cards that the next AudioRecord::refresh() finds.
    void plug(std::vector<Card> cards) { plugged_ = std::move(cards); }
    /// Samples from the microphone, as many as it likes; when nothing records only their level is heard, by a recorder
    /// that was prepared. They are in the file after flush() or stop().
    void deliver(std::span<const std::int16_t> samples) { recorder_.push(samples); }
    /// So many frames of a 1 kHz tone at a quarter of full scale, which goes on where the last call left it.
    void deliver(std::int64_t frames);
    /// The sound server tells that it lost so many frames.
    void loseFrames(std::int64_t frames);
    /// The take's file is up to date with all that was delivered.
    void flush();
    /// The card of the running recording, or the one that was opened ahead, vanishes: what is delivered from now on is
    /// lost.
    void unplug() { recorder_.unplugged_ = true; }
    /// The next start() throws this, once, and touches no file.
    void failNextStart(ErrorNumber number) { recorder_.startFailure_ = number; }
    /// The next takes are written there; it outlives the card.
    void setStorage(Storage &storage) { recorder_.storage_ = &storage; }
    /// The next takes find room for so many frames, then the disk is full.
    void setDiskRoom(std::int64_t frames) { recorder_.limits_.maxFrames = frames; }

    void setOutputs(const QStringList &names) { outputs_ = names; }
    [[nodiscard]] FakeLineMixer &mixer() { return mixer_; }
    /// The players that were made, in their order; they belong to who asked for them.
    [[nodiscard]] FakeWavePlayer &player(std::size_t index) { return *players_.at(index); }
    [[nodiscard]] std::size_t playerCount() const { return players_.size(); }

    [[nodiscard]] FakeJoinPlayer &joinPlayer(std::size_t index) { return *joinPlayers_.at(index); }

    // What a test asks.

    /// The moment that the latest take was to begin at; nothing where none was asked for.
    [[nodiscard]] std::optional<std::chrono::steady_clock::time_point> takeBeganAt() const {
        return recorder_.startedAt_;
    }
    /// Every setOutputMute() in its order.
    [[nodiscard]] const std::vector<bool> &muteLog() const { return player_.muteLog_; }
    /// File names of the takes that were started, in their order.
    [[nodiscard]] const QStringList &takes() const { return recorder_.takes_; }
    /// How often a card was opened ahead.
    [[nodiscard]] int prepared() const { return recorder_.prepared_; }
    /// Whether a card is open, for a recording or ahead of one.
    [[nodiscard]] bool isOpen() const { return recorder_.isOpen_ || recorder_.recording_; }
    /// As last set, counted from 0; -1 when never set.
    [[nodiscard]] int recorderDevice() const { return recorder_.device_; }
    [[nodiscard]] int playerDevice() const { return player_.device_; }

  private:
    std::vector<Card> plugged_;
    FakeLineMixer mixer_;
    CardList record_;
    FakeRecorder recorder_;
    FakePlayer player_;
    std::vector<FakeWavePlayer *> players_;
    std::vector<FakeJoinPlayer *> joinPlayers_;
    QStringList outputs_{QStringLiteral("Luidsprekers")};
};

} // namespace orvel
