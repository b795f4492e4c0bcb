#pragma once

#include "recording/allowed.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

/// What may cost a take, the most urgent first.
enum class Danger { MicrophoneSilent, OtherCard, Clipping, DiskNearlyFull, ServerNotWritable };

/// What there is to tell about a danger, in one sentence.
struct Warning {
    Danger danger = Danger::MicrophoneSilent;
    QString words;

    bool operator==(const Warning &) const = default;
};

/// What the guard sees at one look.
struct GuardLook {
    std::int64_t now = 0; ///< milliseconds of any clock that only goes forward
    SessionState state = SessionState::Idle;
    bool isFirst = false;        ///< of a card that has just been opened
    int countdownLeft = 0;       ///< seconds, while it counts down
    float peak = 0;              ///< highest sample since the last look, 0..1; 0 where nothing came in
    std::int64_t clippedAt = -1; ///< milliseconds from the take's start of a sample at full scale; -1: none
};

/// The voice-track folder on the server.
enum class ServerState { NotUsed, Writable, NotWritable, Silent };

/// Notices what may cost a take, and when it is over. Knows nothing but what it is fed with; the latest news of each
/// kind counts.
class Guard {
  public:
    /// Several times a second while the microphone is listened to; and once more when that ends.
    void look(const GuardLook &look);
    /// chosen: the card of the settings, used: the one that records, by their names; empty for none.
    void card(const QString &chosen, const QString &used);
    /// Bytes that are left for takes; -1 where nobody knows.
    void disk(std::int64_t freeBytes);
    void server(ServerState state, const QString &folder);

    /// What is wrong now, the most urgent first.
    [[nodiscard]] std::vector<Warning> warnings() const;
    /// Their words.
    [[nodiscard]] QStringList sentences() const;
    /// Whether the running take, or else the latest one, was too loud.
    [[nodiscard]] bool hasClipped() const { return !clips_.empty(); }
    /// Where, in milliseconds from its start, rising.
    [[nodiscard]] const std::vector<std::int32_t> &clips() const { return clips_; }

  private:
    void listen(const GuardLook &look);
    void watchSilence(const GuardLook &look);
    void watchClipping(const GuardLook &look);

    SessionState state_ = SessionState::Idle;
    std::int64_t soundAt_ = 0;                 ///< when there was last anything but a dead line
    std::int64_t voiceAt_ = 0;                 ///< when there was last anything that can be heard
    bool isDead_ = false;                      ///< since the count-down
    std::optional<std::int64_t> clippedUntil_; ///< as long as that is told
    std::vector<std::int32_t> clips_;
    std::optional<QString> silence_;
    std::optional<QString> clipping_;
    std::optional<QString> card_;
    std::optional<QString> disk_;
    std::optional<QString> server_;
};

} // namespace orvel
