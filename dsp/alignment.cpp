#include "dsp/alignment.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvel {

namespace {

// Times in milliseconds.
constexpr std::size_t smoothing = 10;
constexpr std::size_t coarseStep = 10;
constexpr std::size_t nearby = 60; ///< of the shift before
constexpr std::size_t jitter = 10; ///< what two measurements of one shift may differ
constexpr std::size_t aside = 100; ///< of the silence beside a stretch tells where it begins and ends
constexpr std::size_t shortestPiece = 1000;
constexpr std::size_t longestPiece = 2000;
constexpr std::size_t crossFade = 5;
constexpr double alike = 0.9; ///< correlation
constexpr double notAlike = 0.5;
constexpr double softestPower = 1e-7; ///< -70 dB below full scale

/// Decibels of the power around every millisecond.
std::vector<float> levelsOf(std::span<const double> sums) {
    std::vector<float> levels;
    for (std::size_t i = 0; i + smoothing < sums.size(); ++i) {
        const double power = std::max(sums[i + smoothing] - sums[i], 0.0) / smoothing;
        levels.push_back(static_cast<float>(10 * std::log10(power + softestPower)));
    }
    return levels;
}

/// A stretch of the take, in milliseconds.
struct Piece {
    std::size_t begin = 0;
    std::size_t end = 0;
};

class Search {
  public:
    Search(std::vector<float> take, std::vector<float> original)
        : take_(std::move(take)), original_(std::move(original)) {}

    /// The shift at which this piece stands in the original, from the one before on.
    [[nodiscard]] std::size_t shiftOf(const Piece &piece, std::size_t before) const {
        const std::size_t most = original_.size() > take_.size() ? original_.size() - take_.size() : 0;
        const std::size_t lowest = before > nearby ? before - nearby : 0;
        const Found beside = bestOf(piece, lowest, std::min(before + nearby, most), 1);
        const bool isPeak = beside.shift + 1 < before + nearby || most <= before + nearby;
        if (beside.correlation >= alike && isPeak) {
            const bool isSame = std::max(beside.shift, before) - std::min(beside.shift, before) <= jitter;
            return isSame && at(piece, before) >= alike ? before : beside.shift;
        }
        const Found far = bestOf(piece, before, most, coarseStep);
        const std::size_t from = far.shift > coarseStep ? far.shift - coarseStep : 0;
        const Found found = bestOf(piece, from, std::min(far.shift + coarseStep, most), 1);
        const Found &better = found.correlation > beside.correlation ? found : beside;
        return better.correlation >= notAlike ? better.shift : before;
    }

    /// Where the take is quietest between two moments.
    [[nodiscard]] std::size_t quietest(std::size_t from, std::size_t to) const {
        const auto first = take_.begin() + static_cast<std::ptrdiff_t>(std::min(from, take_.size()));
        const auto last = take_.begin() + static_cast<std::ptrdiff_t>(std::min(to, take_.size()));
        return static_cast<std::size_t>(std::min_element(first, last) - take_.begin()) + smoothing / 2;
    }

  private:
    struct Found {
        std::size_t shift = 0;
        double correlation = -1;
    };

    [[nodiscard]] Found bestOf(const Piece &piece, std::size_t from, std::size_t to, std::size_t step) const {
        Found best;
        for (std::size_t shift = from; shift <= to; shift += step) {
            if (const double correlation = at(piece, shift); correlation > best.correlation) {
                best = {shift, correlation};
            }
        }
        return best;
    }

    /// Pearson's correlation of the levels, every 10 ms.
    [[nodiscard]] double at(const Piece &piece, std::size_t shift) const {
        const std::size_t begin = piece.begin > aside ? piece.begin - aside : 0;
        const std::size_t end =
            std::min({piece.end + aside, take_.size(), original_.size() - std::min(shift, original_.size())});
        double count = 0;
        double sumA = 0;
        double sumB = 0;
        double sumAa = 0;
        double sumBb = 0;
        double sumAb = 0;
        for (std::size_t i = begin; i < end; i += coarseStep) {
            const double a = take_[i];
            const double b = original_[i + shift];
            ++count;
            sumA += a;
            sumB += b;
            sumAa += a * a;
            sumBb += b * b;
            sumAb += a * b;
        }
        const double varianceA = count * sumAa - sumA * sumA;
        const double varianceB = count * sumBb - sumB * sumB;
        return varianceA > 0 && varianceB > 0 ? (count * sumAb - sumA * sumB) / std::sqrt(varianceA * varianceB) : -1;
    }

    std::vector<float> take_;
    std::vector<float> original_;
};

/// What is said without a pause, in pieces that are long enough to be known again.
std::vector<Piece> piecesOf(const SpeechSearch &take, const Search &search) {
    std::vector<Piece> pieces;
    for (const SpeechSegment &stretch : take.found()) {
        Piece piece{stretch.begin / take.blockLength(), stretch.end / take.blockLength()};
        while (piece.end > piece.begin + longestPiece) {
            const std::size_t cut = search.quietest(piece.begin + shortestPiece, piece.begin + longestPiece);
            pieces.push_back({piece.begin, cut});
            piece.begin = cut;
        }
        pieces.push_back(piece);
    }
    return pieces;
}

void fadeOver(std::span<std::int16_t> old, std::span<const std::int16_t> fresh) {
    for (std::size_t i = 0; i < old.size(); ++i) {
        const double angle = (static_cast<double>(i) + 0.5) / static_cast<double>(old.size()) * std::numbers::pi / 2;
        const double sum = std::cos(angle) * old[i] + std::sin(angle) * fresh[i];
        old[i] = static_cast<std::int16_t>(std::lrint(std::clamp(sum, -32768.0, 32767.0)));
    }
}

} // namespace

std::vector<Placement> placeInOriginal(const SpeechSearch &take, const SpeechSearch &original) {
    const Search search(levelsOf(take.sums()), levelsOf(original.sums()));
    const std::size_t length = take.blockLength();
    std::vector<Placement> placements{{0, take.samples(), 0}};
    std::size_t before = 0;
    bool isFirst = true;
    std::size_t end = 0;
    for (const Piece &piece : piecesOf(take, search)) {
        const std::size_t shift = search.shiftOf(piece, before);
        if (isFirst) {
            placements.front().shift = shift * length;
        } else if (shift != before) {
            const std::size_t change = (end + piece.begin) / 2 * length;
            placements.back().end = change;
            placements.push_back({change, take.samples(), shift * length});
        }
        isFirst = false;
        before = shift;
        end = piece.end;
    }
    return placements;
}

std::optional<std::size_t> inTake(const std::vector<Placement> &placements, std::size_t original) {
    const auto place = std::find_if(placements.begin(), placements.end(), [original](const Placement &one) {
        return original >= one.begin + one.shift && original < one.end + one.shift;
    });
    return place == placements.end() ? std::nullopt : std::optional(original - place->shift);
}

std::vector<std::int16_t> layBeside(const std::vector<Placement> &placements, std::span<const std::int16_t> original,
                                    int sampleRate) {
    std::vector<std::int16_t> laid;
    const std::size_t fade = static_cast<std::size_t>(std::max(sampleRate, 0)) * crossFade / 1000;
    const auto piece = [&](std::size_t from, std::size_t count) {
        from = std::min(from, original.size());
        return original.subspan(from, std::min(count, original.size() - from));
    };
    for (const Placement &place : placements) {
        const auto fresh = piece(place.begin + place.shift, place.end - place.begin);
        laid.insert(laid.end(), fresh.begin(), fresh.end());
        laid.resize(place.end); // where the original has come to its end, silence
        if (place.begin >= fade) {
            const std::size_t at = place.begin - fade;
            const auto lead = piece(at + place.shift, fade);
            fadeOver(std::span(laid).subspan(at, lead.size()), lead);
        }
    }
    return laid;
}

} // namespace orvel
