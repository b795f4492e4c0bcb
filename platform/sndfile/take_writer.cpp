#include "platform/sndfile/take_writer.h"

#include "dsp/speech.h"
#include "platform/runtime_error.h"
#include "platform/samples.h"
#include "platform/sndfile/background_sync.h"
#include "platform/sndfile/wav_output.h"
#include "platform/spsc_ring.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// How long samples wait at most before they go to disk.
constexpr auto kWriteInterval = 50ms;
constexpr auto kHeaderInterval = 1s;
/// At full scale, of either sign.
constexpr int kClipped = 32767;

} // namespace

class TakeWriter::Impl {
  public:
    Impl(const QString &path, TakeLimits limits, Storage &storage)
        : maxFrames_(limits.maxFrames), longestSync_(limits.longestSync), ring_(limits.ringSamples),
          file_(std::in_place, storage, path), sync_(std::in_place, file_->file(), path), thread_([this] { run(); }) {}
    ~Impl() { join(); }
    Impl(const Impl &) = delete;
    Impl(Impl &&) = delete;
    Impl &operator=(const Impl &) = delete;
    Impl &operator=(Impl &&) = delete;

    // The sound card's thread.

    void push(std::span<const std::int16_t> samples) noexcept {
        raisePeak(samples);
        pushed_ += static_cast<std::int64_t>(samples.size());
        fillHole();
        const std::size_t taken = missing_ == 0 ? ring_.write(samples) : 0;
        if (taken < samples.size()) {
            missing_ += static_cast<std::int64_t>(samples.size() - taken);
            countOverrun();
        }
    }

    void pushHole(std::int64_t frames) noexcept {
        missing_ += frames;
        pushed_ += frames;
        countOverrun();
        fillHole();
    }

    void countOverrun() noexcept { overruns_.fetch_add(1, std::memory_order_relaxed); }

    [[nodiscard]] std::size_t space() const noexcept {
        const auto missing = static_cast<std::size_t>(missing_);
        return ring_.space() > missing ? ring_.space() - missing : 0;
    }

    // The owner's thread.

    void flush() {
        std::unique_lock lock(mutex_);
        if (finished_) {
            return;
        }
        const int mine = ++flushesWanted_;
        wake_.notify_one();
        flushed_.wait(lock, [&] { return flushesDone_ >= mine; });
    }

    void finish() {
        if (finished_) {
            return;
        }
        finished_ = true;
        join();
        if (failure_) {
            throw RuntimeError(*failure_);
        }
    }

    RecorderStatus status() noexcept {
        RecorderStatus status;
        status.frames = frames_.load(std::memory_order_relaxed);
        status.overruns = overruns_.load(std::memory_order_relaxed);
        status.diskFull = full_.load(std::memory_order_relaxed);
        status.diskFailed = failed_.load(std::memory_order_relaxed);
        status.clippedAt = clippedAt_.exchange(-1, std::memory_order_relaxed);
        tellSpeech(status);
        status.peak = static_cast<float>(peak_.exchange(0, std::memory_order_relaxed)) / 32768.0F;
        return status;
    }

  private:
    void tellSpeech(RecorderStatus &status) noexcept {
        const std::lock_guard lock(mutex_);
        status.speechFrom = spoken_ ? static_cast<std::int64_t>(spoken_->begin) : -1;
        status.speechTo = spoken_ ? static_cast<std::int64_t>(spoken_->end) : -1;
    }

    /// Silence for what was lost, as far as there is room for it.
    void fillHole() noexcept {
        static constexpr std::array<std::int16_t, 1024> kSilence{};
        while (missing_ > 0) {
            const auto count = static_cast<std::size_t>(std::min<std::int64_t>(missing_, kSilence.size()));
            const std::size_t taken = ring_.write(std::span(kSilence).first(count));
            missing_ -= static_cast<std::int64_t>(taken);
            if (taken < count) {
                return;
            }
        }
    }

    void raisePeak(std::span<const std::int16_t> samples) noexcept {
        const int highest = highestOf(samples);
        if (highest >= kClipped) {
            tellClipped(samples);
        }
        int known = peak_.load(std::memory_order_relaxed);
        while (highest > known && !peak_.compare_exchange_weak(known, highest, std::memory_order_relaxed)) {
        }
    }

    /// Only the first one since the last look is told: that is a matter of hundredths of a second.
    void tellClipped(std::span<const std::int16_t> samples) noexcept {
        const auto first = std::find_if(samples.begin(), samples.end(),
                                        [](std::int16_t sample) { return std::abs(int{sample}) >= kClipped; });
        std::int64_t none = -1;
        clippedAt_.compare_exchange_strong(none, pushed_ + (first - samples.begin()), std::memory_order_relaxed);
    }

    void join() {
        {
            const std::lock_guard lock(mutex_);
            stop_ = true;
        }
        wake_.notify_one();
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    // The writer's thread.

    void run() {
        Clock::time_point headerDue = Clock::now() + kHeaderInterval;
        bool stop = false;
        while (!stop) {
            int wanted = 0;
            {
                std::unique_lock lock(mutex_);
                wake_.wait_for(lock, kWriteInterval, [&] { return stop_ || flushesWanted_ > flushesDone_; });
                stop = stop_;
                wanted = flushesWanted_;
            }
            guarded([&] { drain(); });
            if (Clock::now() >= headerDue) {
                guarded([&] {
                    file_->updateHeader();
                    sync_->begin();
                });
                headerDue = Clock::now() + kHeaderInterval;
            }
            answerFlushes(wanted);
        }
        guarded([&] { close(); });
        sync_.reset();
        file_.reset();
    }

    void watchSpeech(std::span<const std::int16_t> samples) {
        speech_.add(samples);
        const std::optional<SpeechSegment> latest = speech_.latest();
        const std::lock_guard lock(mutex_);
        spoken_ = latest;
    }

    void close() {
        file_->finish();
        sync_->finish(longestSync_);
        file_->file()->close();
    }

    void answerFlushes(int wanted) {
        if (wanted == flushesDone_) {
            return;
        }
        guarded([&] { file_->updateHeader(); });
        {
            const std::lock_guard lock(mutex_);
            flushesDone_ = wanted;
        }
        flushed_.notify_all();
    }

    void drain() {
        for (std::size_t count = ring_.read(block_); count > 0; count = ring_.read(block_)) {
            if (failure_) {
                continue; // emptied all the same: the sound card's thread must not count overruns for it
            }
            const auto room = static_cast<std::size_t>(maxFrames_ - frames_.load(std::memory_order_relaxed));
            const auto samples = std::span<const std::int16_t>(block_).first(std::min(count, room));
            file_->write(samples);
            frames_.store(file_->frames(), std::memory_order_relaxed);
            watchSpeech(samples);
            if (count > room) {
                throw RuntimeError(ErrorNumber::DiskFull, file_->path());
            }
        }
    }

    /// The first failure ends the writing; what is in the file by then stays a valid take.
    template <typename Action>
    void guarded(Action action) {
        try {
            action();
        } catch (const RuntimeError &error) {
            if (!failure_) {
                failure_ = error;
                frames_.store(file_->cutToWholeFrames(), std::memory_order_relaxed);
                (error.number() == ErrorNumber::DiskFull ? full_ : failed_).store(true, std::memory_order_relaxed);
                drainRest();
            }
        }
    }

    void drainRest() {
        while (ring_.read(block_) > 0) {
        }
    }

    std::int64_t maxFrames_;
    std::chrono::milliseconds longestSync_;
    SpscRing<std::int16_t> ring_;
    std::atomic<int> overruns_{0};
    std::atomic<int> peak_{0};
    std::atomic<std::int64_t> clippedAt_{-1};
    std::atomic<bool> full_{false};
    std::atomic<bool> failed_{false}; ///< for another reason
    std::atomic<std::int64_t> frames_{0};
    std::int64_t pushed_ = 0;  ///< sound card's thread only: frames of the take so far, with the holes
    std::int64_t missing_ = 0; ///< sound card's thread only: frames lost that silence must still come for

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable flushed_;
    bool stop_ = false;
    int flushesWanted_ = 0;
    int flushesDone_ = 0;                 ///< written by the writer's thread only
    std::optional<SpeechSegment> spoken_; ///< the latest stretch

    bool finished_ = false;               ///< owner's thread only
    std::optional<RuntimeError> failure_; ///< writer's thread, then the owner's after the join
    // The writer's thread, which also closes them.
    std::optional<WavOutput> file_;
    std::optional<BackgroundSync> sync_;
    std::array<std::int16_t, 16384> block_{};
    SpeechWatch speech_{kTakeRate};
    std::thread thread_; ///< last: everything else is there when it starts
};

TakeWriter::TakeWriter(const QString &path, TakeLimits limits, Storage &storage)
    : impl_(std::make_unique<Impl>(path, limits, storage)) {}
TakeWriter::~TakeWriter() = default;

void TakeWriter::push(std::span<const std::int16_t> samples) noexcept {
    impl_->push(samples);
}
void TakeWriter::pushHole(std::int64_t frames) noexcept {
    impl_->pushHole(frames);
}
void TakeWriter::countOverrun() noexcept {
    impl_->countOverrun();
}
std::size_t TakeWriter::space() const noexcept {
    return impl_->space();
}
void TakeWriter::flush() {
    impl_->flush();
}
void TakeWriter::finish() {
    impl_->finish();
}
RecorderStatus TakeWriter::status() noexcept {
    return impl_->status();
}

} // namespace orvel
