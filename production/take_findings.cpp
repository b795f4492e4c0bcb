#include "production/take_findings.h"

#include "dsp/alignment.h"
#include "platform/audio_file.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>

namespace orvel {

namespace {

/// At full scale, of either sign.
constexpr int fullScale = 32767;
/// What comes sooner after a clip belongs to it.
constexpr std::int64_t clipMs = 40;

std::int32_t inMs(std::size_t samples, int sampleRate) {
    const auto rate = static_cast<std::uint64_t>(std::max(sampleRate, 1));
    return static_cast<std::int32_t>(std::min<std::uint64_t>((samples * 1000 + rate / 2) / rate, INT32_MAX));
}

std::span<const std::int16_t> samplesOf(const QByteArray &block) {
    return {reinterpret_cast<const std::int16_t *>(block.constData()),
            static_cast<std::size_t>(block.size()) / sizeof(std::int16_t)};
}

} // namespace

/// One look at one take: everything that it touches is its own.
struct TakeFindings::Look {
    std::unique_ptr<AudioFileReader> take;
    std::unique_ptr<AudioFileReader> original; ///< none where there is none
    std::unique_ptr<LoudnessMeter> meter;
    std::optional<Findings> result;

    void run(const Aside::Stopped &stopped) {
        try {
            result = find(stopped);
        } catch (const RuntimeError &) {
            result.reset(); // whoever needs the sound is told by what reads it
        }
    }

    [[nodiscard]] Findings find(const Aside::Stopped &stopped) {
        const int rate = take->sampleRate();
        Findings found;
        SpeechSearch search(rate);
        meter->start(rate);
        for (QByteArray block = take->readBlock(); !block.isEmpty() && !stopped; block = take->readBlock()) {
            search.add(samplesOf(block));
            meter->add(samplesOf(block));
        }
        if (stopped) {
            return found;
        }
        found.loudness = meter->result();
        found.marks.speech = speechTimes(search.found(), rate);
        if (original != nullptr && original->sampleRate() == rate) {
            ignoringErrors([&] { found.marks.clips = clipsIn(search, stopped); });
        }
        return found;
    }

    [[nodiscard]] std::vector<std::int32_t> clipsIn(const SpeechSearch &search, const Aside::Stopped &stopped) {
        SpeechSearch dry(original->sampleRate());
        std::vector<std::size_t> clipped;
        const auto apart = static_cast<std::size_t>(original->sampleRate() * clipMs / 1000);
        for (QByteArray block = original->readBlock(); !block.isEmpty() && !stopped; block = original->readBlock()) {
            const auto samples = samplesOf(block);
            for (std::size_t i = 0; i < samples.size(); ++i) {
                const std::size_t at = dry.samples() + i;
                if (std::abs(int{samples[i]}) >= fullScale && (clipped.empty() || at >= clipped.back() + apart)) {
                    clipped.push_back(at);
                }
            }
            dry.add(samples);
        }
        std::vector<std::int32_t> clips;
        if (clipped.empty() || stopped) {
            return clips;
        }
        const std::vector<Placement> placements = placeInOriginal(search, dry);
        for (const std::size_t at : clipped) {
            if (const auto there = inTake(placements, at)) {
                clips.push_back(inMs(*there, original->sampleRate()));
            }
        }
        return clips;
    }
};

TakeFindings::TakeFindings(Platform &platform, const Places &places, std::function<void()> changed)
    : platform_(platform), places_(places), changed_(std::move(changed)), aside_(platform.timers) {}

void TakeFindings::want(const QString &take, const QString &dry) {
    if (known_.contains(take) || (aside_.isBusy() && wanted_ == take)) {
        return;
    }
    const auto opened = [this](const QString &path) {
        std::unique_ptr<AudioFileReader> reader = platform_.audioFiles.reader();
        reader->open(path);
        return reader->errorState() >= 0 && reader->channels() == 1 ? std::move(reader) : nullptr;
    };
    const auto look = std::make_shared<Look>();
    look->take = opened(places_.take(take));
    look->original = dry.isEmpty() ? nullptr : opened(dry);
    look->meter = platform_.loudness.another();
    wanted_ = take;
    aside_.drop();
    if (look->take == nullptr) {
        known_.insert(take, std::nullopt);
    } else if (look->take->frames() <= std::int64_t{atOnce} * look->take->sampleRate()) {
        look->run(false);
        known_.insert(take, look->result);
    } else {
        aside_.begin([look](const Aside::Stopped &stopped) { look->run(stopped); },
                     [this, look, take] {
                         known_.insert(take, look->result);
                         changed_();
                     });
    }
}

void TakeFindings::forget(const QString &take) {
    known_.remove(take);
    if (wanted_ == take) {
        aside_.drop();
    }
}

const Findings *TakeFindings::of(const QString &take) const {
    const auto found = known_.constFind(take);
    return found != known_.constEnd() && *found ? &**found : nullptr;
}

QString toText(const Loudness &loudness) {
    const QLocale dutch(QLocale::Dutch);
    return QCoreApplication::translate("TakeLoudness", "%1 LUFS, piek %2 dBTP")
        .arg(dutch.toString(loudness.lufs, 'f', 1), dutch.toString(loudness.truePeak, 'f', 1));
}

} // namespace orvel
