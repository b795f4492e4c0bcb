#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace orvel {

/// What became of a take that was to fit an intro.
struct Fitted {
    enum class Outcome {
        Fits,    ///< made to fit: the last word ends 100 ms before the post
        Early,   ///< it ended early enough already; only the silence behind it went, if there was any
        TooLong, ///< cannot be made to fit; the take is as it was
        Silent   ///< no speech; the take is as it was
    };

    Outcome outcome = Outcome::Silent;
    std::vector<std::int16_t> samples;
    bool changed = false;
    std::int32_t beforeMs = 0; ///< that went before the first word
    std::int32_t pausesMs = 0; ///< that went out of the pauses
    double tempo = 1;
    std::int32_t leftMs = 0; ///< Early: from the last word to the post; TooLong: what is too much
    /// What was done, for the presenter.
    QString sentence;
};

/// Makes a take end where the next item's vocals begin: its last word ends 100 ms before the post. What has to go is
/// taken where it is heard least, and no more than needed, so that a take that fits ends at that moment and not before:
/// the silence before the first word (30 ms of it stay), then the pauses over 250 ms, each by the same share of what is
/// more, with 125 ms on both sides of a word untouched, and only then the tempo, by at most 4 %. The silence behind the
/// last word goes in any case (50 ms stay). Nothing is ever made longer: of a take that ends earlier every word stays
/// where it was spoken, since the presenter meant it to be there.
///
/// samples: signed 16-bit mono. postMs: in the take's own time.
[[nodiscard]] Fitted fitToPost(std::vector<std::int16_t> samples, int sampleRate, std::int32_t postMs);

} // namespace orvel
