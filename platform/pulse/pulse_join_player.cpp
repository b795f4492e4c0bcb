#include "platform/pulse/pulse_join_player.h"

#include "platform/pulse/pulse_gain.h"
#include "platform/runtime_error.h"
#include "platform/samples.h"

#include <algorithm>
#include <array>

namespace orvel {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t kRate = ClipReader::sampleRate;
/// What waits for the card: enough for a disk that hesitates, little to throw away at a stop.
constexpr std::int64_t kAheadFrames = kRate / 5;
/// Mixed at a time, 10 ms.
constexpr std::size_t kBlockFrames = kRate / 100;
/// Silence that is heard before the server's figures are steady.
constexpr auto kSettling = 500ms;

std::int64_t framesOf(std::int64_t milliseconds) {
    return milliseconds == JoinClip::wholeFile ? milliseconds : milliseconds * kRate / 1000;
}

} // namespace

PulseJoinPlayer::~PulseJoinPlayer() {
    endRun();
}

void PulseJoinPlayer::play(std::vector<JoinClip> clips, std::optional<Clock::time_point> zeroAt) {
    stop();
    brokeOff_ = false;
    {
        const std::lock_guard lock(mutex_);
        unreadable_.clear();
    }
    stream_ = std::make_unique<PulsePlayStream>(server_, outputName(), PlayFormat{kRate, 2, kAheadFrames}, gain_);
    for (JoinClip &clip : clips) {
        sources_.push_back(std::make_unique<Source>());
        sources_.back()->clip = std::move(clip);
    }
    written_ = 0;
    clock_ = {};
    thread_ = std::thread([this, run = ++run_, zeroAt] { feed(run, zeroAt); });
}

void PulseJoinPlayer::stop() {
    ++run_;
    endRun();
}

void PulseJoinPlayer::endRun() {
    if (!stream_) {
        return;
    }
    stream_->abort();
    for (const auto &source : sources_) {
        source->reader.interrupt();
    }
    thread_.join();
    stream_.reset();
    sources_.clear();
    const std::lock_guard lock(mutex_);
    zeroFrame_.reset();
    zeroHeardAt_.reset();
}

std::optional<JoinPlayer::Clock::time_point> PulseJoinPlayer::zeroHeardAt() const {
    const std::lock_guard lock(mutex_);
    return zeroHeardAt_;
}

QStringList PulseJoinPlayer::unreadable() const {
    const std::lock_guard lock(mutex_);
    return unreadable_;
}

void PulseJoinPlayer::setVolume(int volume) {
    gain_ = gainOfVolume(volume);
    if (stream_) {
        stream_->setGain(gain_);
    }
}

QByteArray PulseJoinPlayer::outputName() const {
    const std::vector<PulseSink> sinks = server_.devices().sinks;
    const bool isThere = settings_.device >= 0 && static_cast<std::size_t>(settings_.device) < sinks.size();
    return isThere ? sinks[static_cast<std::size_t>(settings_.device)].name : QByteArray();
}

void PulseJoinPlayer::feed(std::uint64_t run, std::optional<Clock::time_point> zeroAt) {
    openFiles();
    bool isWhole = false;
    if (const std::optional<std::int64_t> first = firstOnAxis(zeroAt)) {
        Mixer mixer(*first);
        addTo(mixer);
        {
            const std::lock_guard lock(mutex_);
            zeroFrame_ = written_ - *first;
        }
        std::array<float, 2 * kBlockFrames> block{};
        isWhole = true;
        while (isWhole && !mixer.isOver()) {
            mixer.mix(block);
            isWhole = write(block);
        }
    }
    isWhole = stream_->drain() && isWhole;
    if (stream_->isAborted()) {
        return; // the window's thread knows
    }
    QMetaObject::invokeMethod(
        &window_, [this, run, isWhole] { tellEnd(run, isWhole); }, Qt::QueuedConnection);
}

void PulseJoinPlayer::openFiles() {
    for (const auto &source : sources_) {
        if (stream_->isAborted()) {
            return;
        }
        source->isOpen = openFile(*source);
        if (!source->isOpen) {
            const std::lock_guard lock(mutex_);
            unreadable_ << source->clip.path;
        }
    }
}

bool PulseJoinPlayer::openFile(Source &source) {
    const JoinClip &clip = source.clip;
    try {
        source.reader.open(clip.path);
        const std::int64_t anchor = framesOf(clip.anchorMs);
        const std::int64_t length = source.reader.frames();
        source.fileStart = clip.anchor == JoinClip::Anchor::Begin ? anchor : anchor - length;
        source.from = std::max(source.fileStart, framesOf(clip.fromMs));
        source.to = std::min(source.fileStart + length, framesOf(clip.toMs));
        source.reader.seek(source.from - source.fileStart);
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

/// The frame of the axis that the next frame of the stream is; nothing when the stream broke.
std::optional<std::int64_t> PulseJoinPlayer::firstOnAxis(std::optional<Clock::time_point> zeroAt) {
    if (!zeroAt) {
        std::optional<std::int64_t> earliest;
        for (const auto &source : sources_) {
            if (source->isOpen && source->from < source->to) {
                earliest = std::min(earliest.value_or(source->from), source->from);
            }
        }
        return earliest.value_or(0);
    }
    const std::array<float, 2 * kBlockFrames> silence{};
    const Clock::time_point begin = Clock::now();
    while (!clock_.isKnown() || Clock::now() - begin < kSettling) {
        if (!write(silence)) {
            return {};
        }
    }
    return written_ - clock_.frameAt(*zeroAt);
}

void PulseJoinPlayer::addTo(Mixer &mixer) {
    for (const auto &source : sources_) {
        const std::int64_t start = std::max(source->from, mixer.at());
        if (!source->isOpen || start >= source->to) {
            continue;
        }
        if (start > source->from) {
            try {
                source->reader.seek(start - source->fileStart);
            } catch (const RuntimeError &) {
                continue;
            }
        }
        mixer.add(
            {[reader = &source->reader](std::span<float> stereo) { return reader->read(stereo); }, start, source->to});
    }
}

bool PulseJoinPlayer::write(std::span<const float> stereo) {
    outgoing_.resize(stereo.size());
    std::transform(stereo.begin(), stereo.end(), outgoing_.begin(), toInt16);
    written_ += static_cast<std::int64_t>(stereo.size() / 2);
    const bool isTaken = stream_->write(outgoing_);
    noteTime();
    return isTaken;
}

void PulseJoinPlayer::noteTime() {
    if (const auto began = stream_->beganAt()) {
        clock_.note(0, *began);
    }
    const std::lock_guard lock(mutex_);
    if (zeroFrame_ && clock_.isKnown()) {
        zeroHeardAt_ = clock_.momentOf(*zeroFrame_);
    }
}

void PulseJoinPlayer::tellEnd(std::uint64_t run, bool isWhole) {
    if (run != run_) {
        return;
    }
    endRun();
    brokeOff_ = !isWhole;
    if (const auto handler = ended_) { // a copy: the handler may set another one
        handler();
    }
}

} // namespace orvel
