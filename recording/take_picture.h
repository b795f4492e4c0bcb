#pragma once

#include "dsp/peaks.h"
#include "platform/audio_file.h"
#include "platform/timers.h"
#include "recording/allowed.h"
#include "recording/speech_words.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

class Places;
struct Platform;

/// The outline of the take on the desk: it grows while the take is recorded, and is read from its file afterwards,
/// piece by piece between other events, so that an hour does not make the window wait.
class TakePicture {
  public:
    /// changed: there is more of it, or another one. Both live longer.
    TakePicture(Platform &platform, const Places &places, std::function<void()> changed);

    /// What there is to see of the desk: what is recorded grows, a take that is ready is read. path: of the take that
    /// can be listened to, empty without one; a file outside the station has no outline.
    void follow(SessionState state, const QString &path);
    /// A recording begins.
    void begin();
    /// So much is recorded now, in samples, and how loud the latest of it was, 0..1.
    void grow(std::int64_t samples, float peak);
    /// Somebody spoke last, or still does, between these samples of what is recorded; -1 as long as nobody did.
    void hear(std::int64_t from, std::int64_t to);
    /// Reads a WAV or MP3 file. What is shown of another one goes first; a file that cannot be read has no outline.
    void read(const QString &path);
    void clear();

    [[nodiscard]] const Peaks &peaks() const { return peaks_; }
    /// Of the peaks' samples, Hz.
    [[nodiscard]] int sampleRate() const { return sampleRate_; }
    [[nodiscard]] double lengthMs() const;
    /// Where somebody spoke so far in what is being recorded, in order.
    [[nodiscard]] const std::vector<SpeechTimes> &speech() const { return speech_; }
    /// The whole of the file is there.
    [[nodiscard]] bool isComplete() const { return reader_ == nullptr; }

  private:
    [[nodiscard]] QString versionOf(const QString &path) const;
    void readOn();
    void readBlock();

    Platform &platform_;
    const Places &places_;
    std::function<void()> changed_;
    std::unique_ptr<Timer> more_;
    std::unique_ptr<AudioFileReader> reader_; ///< of a file that is not read to its end
    Peaks peaks_;
    std::vector<SpeechTimes> speech_;
    QString shown_; ///< what follow() had read last: a path with its size
    SessionState state_ = SessionState::Idle;
    int sampleRate_ = 44100;
};

} // namespace orvel
