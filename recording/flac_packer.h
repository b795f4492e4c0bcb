#pragma once

#include "platform/audio_file.h"
#include "platform/timers.h"

#include <QString>

#include <deque>
#include <memory>

namespace orvel {

struct Platform;

/// Packs WAV files without loss (FLAC), a little at a time, so that nobody waits for it. A file that was not packed to
/// its end stays as it was, and may be asked for again.
class FlacPacker {
  public:
    explicit FlacPacker(Platform &platform);

    /// source: a mono WAV file, gone when the target is whole. One that is gone already is passed over.
    void pack(const QString &source, const QString &target);
    [[nodiscard]] bool isBusy() const { return !jobs_.empty(); }

  private:
    struct Job {
        QString source;
        QString target;
    };

    void workOn();
    void begin();
    void packBlock();
    void end();
    void giveUp();
    [[nodiscard]] QString partOf(const Job &job) const;

    Platform &platform_;
    std::unique_ptr<Timer> timer_;
    std::deque<Job> jobs_;
    std::unique_ptr<AudioFileReader> reader_; ///< of the first job, when it is begun
    std::unique_ptr<WavFileWriter> writer_;
    std::int64_t packed_ = 0; ///< samples
};

} // namespace orvel
