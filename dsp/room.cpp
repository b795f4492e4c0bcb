#include "dsp/room.h"

#include "dsp/wide_vectors.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace orvel {

namespace {

constexpr double shortestLine = 0.052; ///< seconds, in a room of 1 s
constexpr double longestLine = 0.150;
constexpr double widestSwing = 0.00014; ///< seconds
/// At low sample rates the splines take so much that the bass would not end if 1 kHz were to keep its promise.
constexpr double longestBass = 1.25;
constexpr double rumble = 100; ///< Hz
constexpr float diffusion = 0.6F;
constexpr std::array<double, 3> diffuserLengths = {0.0047, 0.0073, 0.0113}; ///< seconds, in a room of 1 s
constexpr float firstShare = 0.3F;                                          ///< of the energy that comes out at once
constexpr float mix = 0.25F; ///< keeps the energy in the Hadamard matrix: 1 / sqrt(lines)

/// How far each sample is on the way to the next block.
constexpr RoomBlock places = [] {
    RoomBlock parts{};
    for (std::size_t n = 0; n < roomBlock; ++n) {
        parts[n] = static_cast<float>(n) / roomBlock;
    }
    return parts;
}();

bool isPrime(std::size_t number) {
    for (std::size_t divisor = 2; divisor * divisor <= number; ++divisor) {
        if (number % divisor == 0) {
            return false;
        }
    }
    return number > 1;
}

std::size_t primeFrom(std::size_t number) {
    while (!isPrime(number)) {
        ++number;
    }
    return number;
}

/// What a pass through so many samples leaves, when 60 dB go in so many seconds.
double passGain(double samples, double seconds, double sampleRate) {
    return std::pow(10.0, -3.0 * samples / (seconds * sampleRate));
}

/// What a line's B-spline leaves of 1 kHz, where the reverberation time is promised.
double lossAtOneKilohertz(double sampleRate) {
    return (2.0 + std::cos(2 * std::numbers::pi * 1000 / sampleRate)) / 3.0;
}

/// The cubic B-spline's weights for a place `fraction` (0..1) behind the second of four samples.
std::array<float, 4> spline(double fraction, double gain) {
    const double t = fraction;
    const double u = 1 - t;
    const double sixth = gain / 6;
    return {static_cast<float>(sixth * u * u * u), static_cast<float>(sixth * (4 - 3 * t * t * (2 - t))),
            static_cast<float>(sixth * (4 - 3 * u * u * (2 - u))), static_cast<float>(sixth * t * t * t)};
}

/// The Hadamard matrix, which mixes everything with everything, times the lines' blocks. Its element (i, k) is 1 or -1,
/// as the number of ones that i and k have in common is even or odd.
template <std::size_t count>
void hadamard(std::array<RoomBlock, count> &blocks) {
    static_assert(count == 16, "two steps of four");
    for (std::size_t step = 1; step < count; step *= 4) {
        for (std::size_t i = 0; i < count; ++i) {
            if ((i & (3 * step)) != 0) {
                continue;
            }
            RoomBlock &a = blocks[i];
            RoomBlock &b = blocks[i + step];
            RoomBlock &c = blocks[i + 2 * step];
            RoomBlock &d = blocks[i + 3 * step];
            for (std::size_t n = 0; n < roomBlock; ++n) {
                const float sum = a[n] + b[n];
                const float difference = a[n] - b[n];
                const float otherSum = c[n] + d[n];
                const float otherDifference = c[n] - d[n];
                a[n] = sum + otherSum;
                b[n] = difference + otherDifference;
                c[n] = sum - otherSum;
                d[n] = difference - otherDifference;
            }
        }
    }
}

} // namespace

Room::Room(float seconds, float hertz, int sampleRate)
    : sampleRate_(sampleRate), lowCut_(static_cast<float>(1 - std::exp(-2 * std::numbers::pi * rumble / sampleRate_))) {
    const double size = std::pow(seconds, seconds < 1 ? 1.3 : 0.5);
    makeLines(size, seconds, hertz);
    makeDiffusers(size);
    balance();
}

void Room::makeLines(double scale, float seconds, float hertz) {
    constexpr std::size_t least = roomBlock + 7;
    const double shortest = shortestLine * scale * sampleRate_;
    const double ratio = longestLine / shortestLine;
    std::size_t previous = 0;
    for (std::size_t i = 0; i < lineCount; ++i) {
        const double place = static_cast<double>(i) / (lineCount - 1);
        const auto wanted = static_cast<std::size_t>(shortest * std::pow(ratio, place));
        const std::size_t length = primeFrom(std::max({wanted, least, previous + 1}));
        previous = length;
        const auto samples = static_cast<double>(length);
        // Everything passes lines that swing; half of them do, as the others cost a third of the time.
        const double swing = i % 2 == 0 ? std::min(widestSwing * sampleRate_, 0.02 * samples) : 0;
        const double gain = std::min(passGain(samples, seconds, sampleRate_) / lossAtOneKilohertz(sampleRate_),
                                     passGain(samples, longestBass * seconds, sampleRate_));
        // Speeds within a third of each other, none a multiple of another; phases spread by the golden angle.
        const double speed = hertz * (0.8 + 0.025 * static_cast<double>(i * 7 % lineCount));
        lines_.push_back({DelayLine(length + static_cast<std::size_t>(swing) + 4), samples, swing,
                          std::polar(1.0, 2.39996 * static_cast<double>(i)),
                          std::polar(1.0, 2 * std::numbers::pi * speed * roomBlock / sampleRate_),
                          mix * static_cast<float>(gain)});
    }
}

void Room::makeDiffusers(double scale) {
    for (const double seconds : diffuserLengths) {
        const auto wanted = static_cast<std::size_t>(seconds * scale * sampleRate_);
        const std::size_t length = primeFrom(std::max(wanted, roomBlock + 1));
        diffusers_.push_back({DelayLine(length), length});
    }
}

/// Energies add up where sounds are unlike: each line gets a sixteenth of the input and of what all lines give, and
/// gives its g^2 of that: s = sum g^2 (1 + s) / 16.
void Room::balance() {
    double squares = 0;
    for (const Line &line : lines_) {
        squares += static_cast<double>(line.gain) * static_cast<double>(line.gain); // the mix makes it a sixteenth
    }
    const double late = squares / (1 - squares);
    firstGain_ = std::sqrt(firstShare);
    lateGain_ = static_cast<float>(std::sqrt((1 - static_cast<double>(firstShare)) / late));
}

ORVEL_WIDE_VECTORS void Room::enter(RoomBlock &block) {
    // What has no rumble, behind its last two samples of the block before.
    std::array<float, roomBlock + 2> high{last_[0], last_[1]};
    float low = low_;
    for (std::size_t n = 0; n < roomBlock; ++n) {
        low = lowCut_ * block[n] + (1 - lowCut_) * low;
        high[n + 2] = block[n] - low;
    }
    for (std::size_t n = 0; n < roomBlock; ++n) {
        block[n] = 0.25F * (high[n] + high[n + 2]) + 0.5F * high[n + 1];
    }
    low_ = low;
    last_ = {high[roomBlock], high[roomBlock + 1]};
}

void Room::diffuse(Diffuser &diffuser, RoomBlock &block) {
    const float *old = diffuser.memory.read(diffuser.length);
    RoomBlock in{};
    for (std::size_t n = 0; n < roomBlock; ++n) {
        in[n] = block[n] + diffusion * old[n];
        block[n] = old[n] - diffusion * in[n];
    }
    diffuser.memory.write(in);
}

void Room::read(Line &line, RoomBlock &to) {
    if (line.swing == 0) {
        // The spline at a whole sample.
        const float *from = line.memory.read(static_cast<std::size_t>(line.length) + 1);
        const float side = line.gain / 6;
        const float middle = line.gain * 4 / 6;
        for (std::size_t n = 0; n < roomBlock; ++n) {
            to[n] = side * (from[n] + from[n + 2]) + middle * from[n + 1];
        }
        return;
    }
    const double delay = line.length + line.swing * line.phase.imag();
    line.phase *= line.turn;
    const double next = line.length + line.swing * line.phase.imag();
    const auto whole = static_cast<std::size_t>(delay) + 1;
    // The weights go to those of the next block in a straight line: delays that leap from block to block can be heard.
    // Where they pass a whole sample on their way, the piece of the spline is used a little past its end, where it
    // differs from the next by less than 0.0001.
    const auto [a, b, c, d] = spline(static_cast<double>(whole) - delay, line.gain);
    const auto [aEnd, bEnd, cEnd, dEnd] = spline(static_cast<double>(whole) - next, line.gain);
    const float *from = line.memory.read(whole + 1);
    for (std::size_t n = 0; n < roomBlock; ++n) {
        const float place = places[n];
        to[n] = (a + place * (aEnd - a)) * from[n] + (b + place * (bEnd - b)) * from[n + 1] +
                (c + place * (cEnd - c)) * from[n + 2] + (d + place * (dEnd - d)) * from[n + 3];
    }
}

ORVEL_WIDE_VECTORS void Room::circulate(RoomBlock &block) {
    // What joins one line before the matrix goes to all lines, with that column's signs; and one row of the matrix is
    // the sum of all lines, with that row's signs: no further work for input and output.
    constexpr std::size_t entry = 0;
    constexpr std::size_t exit = 15;
    static_assert(std::popcount(entry & exit) % 2 == 0, "what has just come in leaves with a plus sign");
    for (std::size_t i = 0; i < lineCount; ++i) {
        read(lines_[i], heard_[i]);
    }
    for (std::size_t n = 0; n < roomBlock; ++n) {
        heard_[entry][n] += mix * block[n];
    }
    hadamard(heard_);
    const float late = lateGain_ / mix;
    const float first = firstGain_ - lateGain_;
    for (std::size_t n = 0; n < roomBlock; ++n) {
        block[n] = first * block[n] + late * heard_[exit][n];
    }
    for (std::size_t i = 0; i < lineCount; ++i) {
        lines_[i].memory.write(heard_[i]);
    }
}

void Room::process(RoomBlock &block) {
    enter(block);
    for (Diffuser &diffuser : diffusers_) {
        diffuse(diffuser, block);
    }
    circulate(block);
}

} // namespace orvel
