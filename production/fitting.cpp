#include "production/fitting.h"

#include "dsp/cutting.h"
#include "dsp/speech.h"
#include "platform/tempo.h"
#include "recording/talk_words.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr std::int64_t beforePostMs = 100;
constexpr std::int64_t leadMs = 30; ///< before the first word: some begin with little more than breath
constexpr std::int64_t tailMs = 50;
constexpr std::int64_t pauseMs = 250;
constexpr double fastest = 1.04;

QString say(const char *text) {
    return QCoreApplication::translate("Fitting", text);
}

/// One take on its way to fit; times in samples.
class Fit {
  public:
    Fit(Fitted &result, int sampleRate, std::int32_t postMs)
        : result_(result), rate_(sampleRate), goal_(toSamples(postMs - beforePostMs)),
          speech_(findSpeech(result.samples, sampleRate)) {}

    void run() {
        if (speech_.empty()) {
            result_.sentence = say("Geen spraak gevonden.");
            return;
        }
        const std::int64_t excess = end() - goal_;
        if (excess <= 0) {
            beEarly(-excess);
            return;
        }
        const std::int64_t before = std::min(excess, std::max<std::int64_t>(begin() - toSamples(leadMs), 0));
        const std::int64_t pauses = std::min(excess - before, spareInPauses());
        const std::int64_t rest = excess - before - pauses;
        const double tempo = goal_ > 0 ? static_cast<double>(goal_ + rest) / static_cast<double>(goal_) : 2 * fastest;
        if (tempo > fastest) {
            const double shortest = static_cast<double>(goal_ + rest) / fastest;
            beTooLong(shortest - static_cast<double>(goal_));
            return;
        }
        cutBehind();
        shortenPauses(pauses);
        keepOnly(result_.samples, static_cast<std::size_t>(before), result_.samples.size(), rate_);
        result_.samples = atTempo(result_.samples, rate_, tempo);
        result_.outcome = Fitted::Outcome::Fits;
        result_.changed = true;
        result_.beforeMs = toMs(before);
        result_.pausesMs = toMs(pauses);
        result_.tempo = tempo;
        result_.sentence = whatWasDone();
    }

  private:
    [[nodiscard]] std::int64_t toSamples(std::int64_t milliseconds) const { return milliseconds * rate_ / 1000; }
    [[nodiscard]] std::int32_t toMs(std::int64_t samples) const {
        return static_cast<std::int32_t>((samples * 1000 + rate_ / 2) / rate_);
    }
    [[nodiscard]] std::int64_t begin() const { return static_cast<std::int64_t>(speech_.front().begin); }
    [[nodiscard]] std::int64_t end() const { return static_cast<std::int64_t>(speech_.back().end); }

    /// What the pause before a stretch has to give.
    [[nodiscard]] std::int64_t spareBefore(std::size_t stretch) const {
        const auto length = static_cast<std::int64_t>(speech_[stretch].begin - speech_[stretch - 1].end);
        return std::max<std::int64_t>(length - toSamples(pauseMs), 0);
    }
    [[nodiscard]] std::int64_t spareInPauses() const {
        std::int64_t spare = 0;
        for (std::size_t i = 1; i < speech_.size(); ++i) {
            spare += spareBefore(i);
        }
        return spare;
    }

    void cutBehind() {
        const auto end = speech_.back().end + static_cast<std::size_t>(toSamples(tailMs));
        result_.changed = result_.changed || end < result_.samples.size();
        keepOnly(result_.samples, 0, end, rate_);
    }

    /// From the last pause to the first, so that those before stay where they are. What has gone is a share of what
    /// has been looked at, which sums up without what rounding leaves.
    void shortenPauses(std::int64_t wanted) {
        const std::int64_t spare = spareInPauses();
        std::int64_t seen = 0;
        std::int64_t gone = 0;
        for (std::size_t i = speech_.size() - 1; i > 0 && wanted > 0; --i) {
            seen += spareBefore(i);
            const std::int64_t piece = wanted * seen / spare - gone;
            gone += piece;
            const auto length = static_cast<std::int64_t>(speech_[i].begin - speech_[i - 1].end);
            const auto from = static_cast<std::int64_t>(speech_[i - 1].end) + (length - piece) / 2;
            if (piece > 0) {
                cutOut(result_.samples, static_cast<std::size_t>(from), static_cast<std::size_t>(piece), rate_);
            }
        }
    }

    void beEarly(std::int64_t spare) {
        cutBehind();
        result_.outcome = Fitted::Outcome::Early;
        result_.leftMs = static_cast<std::int32_t>(toMs(spare) + beforePostMs);
        result_.sentence = say(result_.changed ? "Past al, %1 s vóór de zang; de stilte erachter is weg."
                                               : "Past al, %1 s vóór de zang.")
                               .arg(inSeconds(result_.leftMs));
    }

    void beTooLong(double samples) {
        result_.outcome = Fitted::Outcome::TooLong;
        // Never "nog 0,0 s": what is too much is rounded up.
        result_.leftMs = static_cast<std::int32_t>(std::ceil(samples * 10 / rate_) * 100);
        result_.sentence = say("Past niet: nog %1 s te lang.").arg(inSeconds(result_.leftMs));
    }

    [[nodiscard]] QString whatWasDone() const {
        QStringList parts;
        if (result_.beforeMs >= 50) {
            parts << say("%1 s stilte vooraf weg").arg(inSeconds(result_.beforeMs));
        }
        if (result_.pausesMs >= 50) {
            parts << say("pauzes %1 s korter").arg(inSeconds(result_.pausesMs));
        }
        const auto perMille = static_cast<std::int32_t>(std::lrint((result_.tempo - 1) * 1000));
        if (perMille > 0) {
            parts << say("%1 % sneller").arg(inSeconds(std::int64_t{perMille} * 100));
        }
        return parts.isEmpty() ? say("Past op de intro.")
                               : say("Past op de intro: %1.").arg(parts.join(QStringLiteral(", ")));
    }

    Fitted &result_; // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members): as long as one call
    int rate_;
    std::int64_t goal_;
    std::vector<SpeechSegment> speech_;
};

} // namespace

Fitted fitToPost(std::vector<std::int16_t> samples, int sampleRate, std::int32_t postMs) {
    Fitted result;
    result.samples = std::move(samples);
    Fit(result, sampleRate, postMs).run();
    return result;
}

} // namespace orvel
