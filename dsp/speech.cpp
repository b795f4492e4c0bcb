#include "dsp/speech.h"

#include "dsp/denormals.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvel {

namespace {

constexpr double humEnds = 80; ///< Hz; the lowest voices have more above it than below
constexpr std::size_t windowMs = 10;
constexpr std::ptrdiff_t noiseWindows = 30; ///< of the 40 ms that the noise is measured in
constexpr std::size_t voiceMs = 100;        ///< of a take are louder than what its voice is measured by
constexpr std::size_t pauseMs = 150;        ///< and more are between two stretches
constexpr std::size_t clickMs = 30;         ///< of windows at most have a click in them, and what rings after it
constexpr std::size_t clickSilence = 300;   ///< ms on both sides of a click
constexpr double softest = 1e-6;            ///< of full scale
constexpr double belowVoice = 1.6e-3;       ///< -28 dB
constexpr double aboveNoise = 10;           ///< of a voice
constexpr double standsOut = 7;             ///< of the noise, what may belong to the voice
constexpr double nothing = 1e-10;           ///< below what 16 bits can tell

/// The power that so many windows pass.
double passedBy(std::vector<double> windows, std::size_t count) {
    const auto at = windows.end() - static_cast<std::ptrdiff_t>(std::min(count, windows.size()));
    std::nth_element(windows.begin(), at, windows.end());
    return *at;
}

/// Mean power of the quietest stretch. Speech is silent for so long in every consonant like a "t"; the digital silence
/// that a sound server may begin with is none.
double noiseOf(const std::vector<double> &windows) {
    const auto begin = std::find_if(windows.begin(), windows.end(), [](double window) { return window > nothing; });
    double quietest = windows.end() - begin >= noiseWindows ? 1 : 0;
    for (auto first = begin; windows.end() - first >= noiseWindows; first += 2) {
        quietest = std::min(quietest, std::accumulate(first, first + noiseWindows, 0.0) / noiseWindows);
    }
    return quietest;
}

std::vector<SpeechSegment> stretchesAbove(const std::vector<double> &windows, double threshold) {
    std::vector<SpeechSegment> found;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (windows[i] <= threshold) {
            continue;
        }
        if (found.empty() || i > found.back().end) {
            found.push_back({i, i + 1});
        } else {
            found.back().end = i + 1;
        }
    }
    return found;
}

void dropClicks(std::vector<SpeechSegment> &found) {
    std::vector<SpeechSegment> kept;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const bool isAlone = (i == 0 || found[i].begin >= found[i - 1].end + clickSilence) &&
                             (i + 1 == found.size() || found[i + 1].begin >= found[i].end + clickSilence);
        if (found[i].end - found[i].begin > clickMs || !isAlone) {
            kept.push_back(found[i]);
        }
    }
    found = std::move(kept);
}

void joinOverPauses(std::vector<SpeechSegment> &found) {
    std::vector<SpeechSegment> joined;
    for (const SpeechSegment &one : found) {
        if (!joined.empty() && one.begin < joined.back().end + pauseMs) {
            joined.back().end = one.end;
        } else {
            joined.push_back(one);
        }
    }
    found = std::move(joined);
}

} // namespace

SpeechPowers::SpeechPowers(int sampleRate)
    : length_(static_cast<std::size_t>(std::max(sampleRate / 1000, 1))), highPass_(humEnds, std::max(sampleRate, 1)) {}

SpeechSearch::SpeechSearch(int sampleRate) : powers_(sampleRate) {}

void SpeechSearch::add(std::span<const std::int16_t> samples) {
    const NoDenormals noDenormals;
    samples_ += samples.size();
    powers_.add(samples, [this](double power) { sums_.push_back(sums_.back() + power); });
}

std::vector<SpeechSegment> SpeechSearch::found() const {
    std::vector<double> windows;
    for (std::size_t i = 0; i + windowMs < sums_.size(); ++i) {
        windows.push_back(std::max(sums_[i + windowMs] - sums_[i], 0.0) / windowMs);
    }
    if (windows.empty()) {
        return {};
    }
    const double voice = passedBy(windows, voiceMs);
    const double noise = noiseOf(windows);
    if (voice < softest || voice < aboveNoise * noise) {
        return {};
    }
    std::vector<SpeechSegment> found = stretchesAbove(windows, std::max(belowVoice * voice, standsOut * noise));
    dropClicks(found);
    joinOverPauses(found);
    const std::size_t length = powers_.blockLength();
    const std::size_t middle = length * windowMs / 2;
    for (SpeechSegment &one : found) {
        one = {one.begin * length + middle, one.end * length + middle};
    }
    return found;
}

std::vector<SpeechSegment> findSpeech(std::span<const std::int16_t> samples, int sampleRate) {
    SpeechSearch search(sampleRate);
    search.add(samples);
    return search.found();
}

SpeechWatch::SpeechWatch(int sampleRate) : powers_(sampleRate), recent_(windowMs) {
    first_.reserve(firstMs);
}

void SpeechWatch::add(std::span<const std::int16_t> samples) {
    const NoDenormals noDenormals;
    powers_.add(samples, [this](double power) { addMillisecond(power); });
}

double SpeechWatch::threshold() const {
    constexpr double quietRoom = 1e-6;
    return std::max(aboveNoise * noise_.value_or(quietRoom), softest);
}

void SpeechWatch::addMillisecond(double power) {
    double &oldest = recent_[now_ % windowMs];
    sum_ += power - oldest;
    oldest = power;
    ++now_;
    const double window = std::max(sum_, 0.0) / windowMs;
    if (first_.size() < firstMs) {
        first_.push_back(static_cast<float>(window));
    }
    if (now_ % windowMs == 0) {
        learnNoise(window);
    }
    if (begin_ && loudest_ <= threshold()) {
        begin_.reset(); // it was noise
        lastSound_.reset();
    }
    if (window > threshold()) {
        hear(window);
    }
}

void SpeechWatch::hear(double window) {
    if (!lastAbove_ || now_ - *lastAbove_ > pauseMs) {
        start_ = now_;
        above_ = 0;
    }
    lastAbove_ = now_;
    if (++above_ <= clickMs) {
        return;
    }
    if (!begin_) {
        begin_ = firstSound();
        stretch_ = *begin_;
        loudest_ = 0;
    } else if (above_ == clickMs + 1) {
        stretch_ = start_;
    }
    loudest_ = std::max(loudest_, window);
    lastSound_ = now_;
}

/// Who speaks at once is noise until the first pause: what came before is looked at again.
std::size_t SpeechWatch::firstSound() const {
    const auto limit = static_cast<float>(threshold());
    for (auto at = first_.begin(); at != first_.end(); ++at) {
        const auto end = at + std::min<std::ptrdiff_t>(pauseMs, first_.end() - at);
        if (*at > limit &&
            std::count_if(at, end, [limit](float window) { return window > limit; }) > static_cast<int>(clickMs)) {
            return std::min(static_cast<std::size_t>(at - first_.begin()) + 1, start_);
        }
    }
    return start_;
}

/// The quietest stretch so far, which grows by 3 dB in 10 s where nothing as quiet comes again.
void SpeechWatch::learnNoise(double window) {
    noiseSum_ += window;
    if (++noiseCount_ < 4) {
        return;
    }
    constexpr double growth = 1.0028;
    const double mean = noiseSum_ / static_cast<double>(noiseCount_);
    if (noise_ || mean > nothing) {
        noise_ = std::min(noise_ ? *noise_ * growth : mean, mean);
    }
    noiseSum_ = 0;
    noiseCount_ = 0;
}

bool SpeechWatch::isSpeaking() const {
    return lastSound_ && now_ - *lastSound_ < pauseMs;
}

/// Of the middle of the window that ends at this millisecond.
std::size_t SpeechWatch::sampleAt(std::size_t millisecond) const {
    constexpr std::size_t middle = windowMs / 2;
    return (millisecond > middle ? millisecond - middle : 0) * powers_.blockLength();
}

std::optional<std::size_t> SpeechWatch::begin() const {
    return begin_ ? std::optional(sampleAt(*begin_)) : std::nullopt;
}

std::optional<std::size_t> SpeechWatch::lastHeard() const {
    return lastSound_ ? std::optional(sampleAt(*lastSound_)) : std::nullopt;
}

std::optional<SpeechSegment> SpeechWatch::latest() const {
    return begin_ && lastSound_ ? std::optional(SpeechSegment{sampleAt(stretch_), sampleAt(*lastSound_)})
                                : std::nullopt;
}

} // namespace orvel
