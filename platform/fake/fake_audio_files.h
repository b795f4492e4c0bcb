#pragma once

#include "platform/audio_file.h"

#include <QStringList>

#include <atomic>
#include <mutex>

namespace orvel {

/// Readers and writers that work on real files through lent ones and fail where a test says. A failure is armed until
/// it is disarmed; -1 is disarmed. Must outlive its readers and writers.
class FakeAudioFiles : public AudioFiles {
  public:
    /// What goes wrong, for every reader and writer.
    struct Faults {
        bool open = false; ///< open() leaves errorState() -1
        bool create =
            false; ///< create() leaves errorState() -1 (of a WAV file: throws DiskFull); no file comes into being
        int readBlock = -1;     ///< the block, from 0 in each file, at which readBlock() throws DeviceError
        int end = -1;           ///< the block, from 0 in each file, at which a reader says that the file ends
        int write = -1;         ///< the block, from 0 in each file, at which write() throws DiskFull
        bool closeFull = false; ///< a writer's close() closes the file, then throws DiskFull
    };

    explicit FakeAudioFiles(AudioFiles &real) : real_(real) {}

    [[nodiscard]] std::unique_ptr<AudioFileReader> reader() override;
    [[nodiscard]] std::unique_ptr<AudioFileWriter> mp3Writer() override;
    [[nodiscard]] std::unique_ptr<WavFileWriter> wavWriter() override;
    [[nodiscard]] std::unique_ptr<WavFileWriter> flacWriter() override;
    bool repairWav(const QString &path) override { return real_.repairWav(path); }

    Faults faults;
    /// Paths in the order of the calls, failed ones included.
    QStringList opened;
    QStringList created;
    std::atomic<int> closedReaders{0};
    std::atomic<int> closedWriters{0};
    /// Of the writer that was created last.
    Mp3Format lastFormat;

    // For its readers and writers, which may be on threads of their own.

    void note(QStringList &list, const QString &path) {
        const std::lock_guard lock(mutex_);
        list << path;
    }
    void noteFormat(const Mp3Format &format) {
        const std::lock_guard lock(mutex_);
        lastFormat = format;
    }

  private:
    AudioFiles &real_;
    std::mutex mutex_;
};

} // namespace orvel
