#pragma once

#include "dsp/peaks.h"
#include "platform/audio_file.h"
#include "platform/timers.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel {

struct Platform;

/// The outline of the take on the desk: it grows while the take is recorded, and is read from its file afterwards,
/// piece by piece between other events, so that an hour does not make the window wait.
class TakePicture {
  public:
    /// changed: there is more of it, or another one.
    TakePicture(Platform &platform, std::function<void()> changed);

    /// A recording begins.
    void begin();
    /// So much is recorded now, in samples, and how loud the latest of it was, 0..1.
    void grow(std::int64_t samples, float peak);
    /// Reads a WAV or MP3 file. What is shown of another one goes first; a file that cannot be read has no outline.
    void read(const QString &path);
    void clear();

    [[nodiscard]] const Peaks &peaks() const { return peaks_; }
    /// Of the peaks' samples, Hz.
    [[nodiscard]] int sampleRate() const { return sampleRate_; }
    [[nodiscard]] double lengthMs() const;
    /// The whole of the file is there.
    [[nodiscard]] bool isComplete() const { return reader_ == nullptr; }

  private:
    void readOn();
    void readBlock();

    Platform &platform_;
    std::function<void()> changed_;
    std::unique_ptr<Timer> more_;
    std::unique_ptr<AudioFileReader> reader_; ///< of a file that is not read to its end
    Peaks peaks_;
    int sampleRate_ = 44100;
};

} // namespace orvel
