#pragma once

#include "dsp/delay_line.h"

#include <array>
#include <complex>
#include <vector>

namespace orvel {

/// The sound of a room: sixteen delay lines that feed each other through a Hadamard matrix (J.-M. Jot, "Digital delay
/// networks for designing artificial reverberators", AES Convention 90, 1991), behind three all-pass diffusers
/// (M. R. Schroeder, "Natural sounding artificial reverberation", J. Audio Eng. Soc. 10, 1962).
///
/// - The lines have sixteen prime lengths, 52 to 150 ms in a room of 1 s, together so long that no partial stands out
///   of the others; smaller rooms are shorter in proportion and a little more, larger ones longer with the square
///   root of their time. Each loses 60 dB in the reverberation time, at 1 kHz.
/// - The lengths of every other line swing slowly, each at its own speed, by at most 0.14 ms: as everything passes them
///   sooner or later, no tone of the room stays in place. All are read with a cubic B-spline, whose loss in the treble
///   (0.5 dB at 4 kHz, 1.9 dB at 8 kHz of 44.1 kHz) is the damping of walls and air.
/// - What enters has no rumble (below 100 Hz) and loses treble (3 dB at a sixth of the sample rate).
/// - As much energy comes out as goes in; three tenths of it at once, out of the diffusers: the first reflection.
class Room {
  public:
    /// seconds: reverberation time; hertz: speed of the swing.
    Room(float seconds, float hertz, int sampleRate);

    /// What goes in comes out as the sound of the room.
    void process(RoomBlock &block);

  private:
    static constexpr std::size_t lineCount = 16;
    static constexpr std::size_t diffuserCount = 3;

    struct Line {
        DelayLine memory;
        double length;              ///< samples
        double swing;               ///< samples to either side
        std::complex<double> phase; ///< of the swing
        std::complex<double> turn;  ///< of the phase, each block
        float gain;                 ///< of one pass, with the mix behind it
    };
    struct Diffuser {
        DelayLine memory;
        std::size_t length;
    };

    void makeLines(double scale, float seconds, float hertz);
    void makeDiffusers(double scale);
    void balance();
    void enter(RoomBlock &block);
    static void diffuse(Diffuser &diffuser, RoomBlock &block);
    static void read(Line &line, RoomBlock &to);
    void circulate(RoomBlock &block);

    double sampleRate_;
    std::vector<Line> lines_;
    std::vector<Diffuser> diffusers_;
    std::array<RoomBlock, lineCount> heard_{};
    float firstGain_ = 0;
    float lateGain_ = 0;
    float lowCut_;
    float low_ = 0;
    std::array<float, 2> last_{};
};

} // namespace orvel
