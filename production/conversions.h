#pragma once

#include "platform/audio_file.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

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
    /// done and how much of everything is done, 0..100; false stops as soon as possible.
    void run(const std::function<bool(int done, int percent)> &pump);
    /// Whether a file was converted. What is left of one that was not is the caller's to remove.
    [[nodiscard]] bool isConverted(std::size_t number) const;
    [[nodiscard]] std::size_t count() const { return jobs_.size(); }

  private:
    struct Job;
    void work();
    void ConvertFile(Job &job) const;
    [[nodiscard]] int percent() const;

    AudioFiles &files_;
    Mp3Format format_;
    std::vector<std::unique_ptr<Job>> jobs_;
    std::atomic<std::size_t> next_{0};
    std::atomic<int> done_{0};
    std::atomic<bool> stopped_{false};
};

} // namespace orvel
