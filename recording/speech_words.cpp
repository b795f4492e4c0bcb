#include "recording/speech_words.h"

#include "playlist/current_step.h"
#include "recording/allowed.h"
#include "recording/talk_words.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace orvel {

namespace {

std::int32_t millisecondsOf(std::size_t samples, int sampleRate) {
    const auto rate = static_cast<std::uint64_t>(std::max(sampleRate, 1));
    const std::uint64_t milliseconds = (std::uint64_t{samples} * 1000 + rate / 2) / rate;
    return static_cast<std::int32_t>(std::min<std::uint64_t>(milliseconds, std::numeric_limits<std::int32_t>::max()));
}

QString distance(std::int64_t late) {
    constexpr std::int64_t nothing = 50; // ms, that would round to 0,0
    if (std::abs(late) < nothing) {
        return QCoreApplication::translate("SpeechWords", "precies op de zang");
    }
    const auto apart =
        static_cast<std::int32_t>(std::min<std::int64_t>(std::abs(late), std::numeric_limits<std::int32_t>::max()));
    return late < 0 ? QCoreApplication::translate("SpeechWords", "%1 s vóór de zang").arg(inSeconds(apart))
                    : QCoreApplication::translate("SpeechWords", "%1 s over de intro").arg(inSeconds(apart));
}

} // namespace

std::optional<std::int32_t> postOf(const CurrentStep &step, const DeskMode &mode) {
    const bool hasIntro = !mode.RecorderOnly && step.StepSelected && step.NextIntroMs > 0;
    return hasIntro ? std::optional(step.TalkTotalMs) : std::nullopt;
}

std::vector<SpeechTimes> speechTimes(const std::vector<SpeechSegment> &segments, int sampleRate) {
    std::vector<SpeechTimes> times;
    times.reserve(segments.size());
    for (const SpeechSegment &one : segments) {
        times.push_back({millisecondsOf(one.begin, sampleRate), millisecondsOf(one.end, sampleRate)});
    }
    return times;
}

std::optional<SpeechTimes> wholeOf(const std::vector<SpeechTimes> &stretches) {
    return stretches.empty() ? std::nullopt : std::optional(SpeechTimes{stretches.front().begin, stretches.back().end});
}

QString speechSentence(const std::optional<SpeechTimes> &speech, std::optional<std::int32_t> post) {
    if (!speech) {
        return QCoreApplication::translate("SpeechWords", "Geen spraak gevonden");
    }
    const QString times = QCoreApplication::translate("SpeechWords", "Spraak %1 tot %2 s")
                              .arg(inSeconds(speech->begin), inSeconds(speech->end));
    return post ? times + QStringLiteral(", ") + distance(std::int64_t{speech->end} - *post) : times;
}

} // namespace orvel
