#include "production/sound_lengths.h"

#include "platform/audio_file.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>
#include <vector>

namespace orvel {

/// What the thread shares with the window's.
struct SoundLengths::Work {
    explicit Work(const QStringList &paths) : files(paths), lengths(static_cast<std::size_t>(paths.size())) {
        for (auto &length : lengths) {
            length = notYet;
        }
    }

    QStringList files;
    std::vector<std::unique_ptr<AudioFileReader>> readers; ///< complete before the thread starts
    std::vector<std::atomic<std::int32_t>> lengths;
    std::atomic<bool> stopped{false};

    void run();
};

namespace {

std::int32_t lengthOf(AudioFileReader &reader, const QString &path) {
    reader.open(path);
    if (reader.errorState() < 0 || reader.sampleRate() <= 0) {
        return SoundLengths::unreadable;
    }
    constexpr std::int64_t longest = std::numeric_limits<std::int32_t>::max();
    const std::int64_t milliseconds = reader.frames() * 1000 / reader.sampleRate();
    reader.close();
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(milliseconds, 0, longest));
}

} // namespace

void SoundLengths::Work::run() {
    for (std::size_t number = 0; number < lengths.size() && !stopped; ++number) {
        std::int32_t length = unreadable;
        try {
            length = lengthOf(*readers[number], files.at(static_cast<qsizetype>(number)));
        } catch (const std::exception &) { // NOLINT(bugprone-empty-catch)
            // Whatever keeps it from being read: it is unreadable.
        }
        readers[number].reset();
        lengths[number] = length;
    }
}

SoundLengths::SoundLengths(AudioFiles &files) : files_(files) {}

SoundLengths::~SoundLengths() {
    forget();
}

void SoundLengths::forget() {
    if (work_) {
        work_->stopped = true;
    }
    work_.reset();
}

void SoundLengths::measure(const QStringList &paths) {
    forget();
    if (paths.isEmpty()) {
        return;
    }
    work_ = std::make_shared<Work>(paths);
    for (qsizetype number = 0; number < paths.size(); ++number) {
        work_->readers.push_back(files_.reader());
    }
    std::thread([work = work_] { work->run(); }).detach();
}

std::int32_t SoundLengths::of(std::size_t number) const {
    return work_ && number < work_->lengths.size() ? work_->lengths[number].load() : notYet;
}

bool SoundLengths::areKnown() const {
    return !work_ || std::none_of(work_->lengths.begin(), work_->lengths.end(),
                                  [](const auto &length) { return length == notYet; });
}

} // namespace orvel
