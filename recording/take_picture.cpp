#include "recording/take_picture.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QElapsedTimer>

#include <span>
#include <utility>
#include <vector>

namespace orvel {

namespace {

constexpr int pieceMs = 8; ///< half of what a window may take between two pictures

/// The first channel of interleaved samples: a take has the same on all of them.
std::vector<std::int16_t> firstChannel(std::span<const std::int16_t> all, int channels) {
    const auto step = static_cast<std::size_t>(channels);
    std::vector<std::int16_t> one(all.size() / step);
    for (std::size_t frame = 0; frame < one.size(); ++frame) {
        one[frame] = all[frame * step];
    }
    return one;
}

} // namespace

TakePicture::TakePicture(Platform &platform, const Places &places, std::function<void()> changed)
    : platform_(platform), places_(places), changed_(std::move(changed)),
      more_(platform.timers.create(1, MissedTicks::Drop, [this] { readOn(); })) {}

void TakePicture::follow(SessionState state, const QString &path) {
    const SessionState before = std::exchange(state_, state);
    if (before == SessionState::Processing) {
        shown_.clear(); // it was worked on
    }
    switch (state) {
    case SessionState::Recording:
        if (before != state) {
            begin();
        }
        break;
    case SessionState::CountingDown:
        if (before != state) {
            clear();
        }
        break;
    case SessionState::Idle: {
        const QString version = versionOf(path);
        if (version.isEmpty()) {
            clear();
        } else if (version != shown_) {
            read(path);
            shown_ = version;
        }
        break;
    }
    case SessionState::Processing:
    case SessionState::Listening:
    case SessionState::Joining:
    case SessionState::Measuring:
    case SessionState::Filing:
        break; // what is seen stays
    }
}

QString TakePicture::versionOf(const QString &path) const {
    QString version;
    if (path.startsWith(places_.programFolder())) {
        ignoringErrors([&] { version = path + u'|' + QString::number(platform_.files.fileSize(path)); });
    }
    return version;
}

void TakePicture::begin() {
    clear();
    sampleRate_ = 44100;
}

void TakePicture::grow(std::int64_t samples, float peak) {
    if (samples > peaks_.samples()) {
        peaks_.append(samples - peaks_.samples(), peak);
        changed_();
    }
}

void TakePicture::hear(std::int64_t from, std::int64_t to) {
    if (from < 0) {
        speech_.clear(); // what seemed to be speech was noise
        return;
    }
    const SpeechSegment latest{static_cast<std::size_t>(from), static_cast<std::size_t>(to)};
    const SpeechTimes times = speechTimes({latest}, sampleRate_).front();
    if (speech_.empty() || speech_.back().begin != times.begin) {
        speech_.push_back(times);
    } else {
        speech_.back() = times;
    }
}

void TakePicture::read(const QString &path) {
    clear();
    auto reader = platform_.audioFiles.reader();
    reader->open(path);
    if (reader->errorState() < 0 || reader->sampleRate() <= 0 || reader->channels() <= 0) {
        return;
    }
    sampleRate_ = reader->sampleRate();
    reader_ = std::move(reader);
    readOn();
    more_->setEnabled(reader_ != nullptr);
}

void TakePicture::clear() {
    more_->setEnabled(false);
    reader_.reset();
    peaks_.clear();
    speech_.clear();
    shown_.clear();
    changed_();
}

double TakePicture::lengthMs() const {
    return static_cast<double>(peaks_.samples()) * 1000 / sampleRate_;
}

void TakePicture::readOn() {
    QElapsedTimer watch;
    watch.start();
    while (reader_ != nullptr && watch.elapsed() < pieceMs) {
        readBlock();
    }
    if (reader_ == nullptr) {
        more_->setEnabled(false);
    }
    changed_();
}

void TakePicture::readBlock() {
    QByteArray block;
    try {
        block = reader_->readBlock();
    } catch (const RuntimeError &) {
        // What could be read is what there is to see; whoever needs the sound is told by what reads it.
        block.clear();
    }
    if (block.isEmpty()) {
        reader_->close();
        reader_.reset();
        return;
    }
    const std::span samples(reinterpret_cast<const std::int16_t *>(block.constData()),
                            static_cast<std::size_t>(block.size()) / sizeof(std::int16_t));
    if (reader_->channels() == 1) {
        peaks_.append(samples);
    } else {
        peaks_.append(firstChannel(samples, reader_->channels()));
    }
}

} // namespace orvel
