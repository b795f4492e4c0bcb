#pragma once

#include "platform/audio_file.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel {

/// Converts several sound files to MP3 at once, on as many threads as the machine has cores. The window's thread waits
/// in run() and keeps its events going.
class Conversions {
  public:
    Conversions(AudioFiles &files, const Mp3Format &format);
    ~Conversions();
    Conversions(const Conversions &) = delete;
    Conversions &operator=(const Conversions &) = delete;
    Conversions(Conversions &&) = delete;
    Conversions &operator=(Conversions &&) = delete;

    /// One more file to convert; numbered from 0 in the order of the calls. target is overwritten.
    void add(const QString &source, const QString &target);
    /// Returns when every file was converted or failed. pump: called every few milliseconds with the number of files
    /// done and how much of everything is done, 0..100; false stops as soon as possible, and does not wait for a file
    /// on a share that gives no answer: its thread ends by itself, and its target counts as not converted.
    void run(const std::function<bool(int done, int percent)> &pump);
    /// Whether a file was converted. What is left of one that was not is the caller's to remove.
    [[nodiscard]] bool isConverted(std::size_t number) const;
    [[nodiscard]] std::size_t count() const;

  private:
    struct Job;
    struct Work;

    AudioFiles &files_;
    Mp3Format format_;
    std::shared_ptr<Work> work_; ///< with the threads, which may outlive this
};

} // namespace orvel
