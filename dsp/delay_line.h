#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace orvel {

/// Samples that reverberation computes together. Delays are never shorter, so that what a block reads was written
/// before.
inline constexpr std::size_t roomBlock = 32;
using RoomBlock = std::array<float, roomBlock>;

/// Remembers the latest samples. What is read always lies in one piece, so that the processor can take several at once.
class DelayLine {
  public:
    /// longest: the oldest sample that will be read, in samples before the block that is being computed.
    explicit DelayLine(std::size_t longest)
        : size_((longest / roomBlock + 2) * roomBlock), memory_(size_ + 2 * roomBlock) {}

    /// Writes the present block and goes on to the next.
    void write(const RoomBlock &block) {
        copyTo(position_, block);
        // The first two blocks stand once more behind the end.
        if (position_ < 2 * roomBlock) {
            copyTo(position_ + size_, block);
        }
        position_ = position_ + roomBlock < size_ ? position_ + roomBlock : 0;
    }

    /// The samples from `delay` before the present block on: a block and three more, as far as they are written.
    [[nodiscard]] const float *read(std::size_t delay) const {
        const std::size_t start = position_ + size_ - delay;
        return memory_.data() + (start < size_ ? start : start - size_);
    }

  private:
    void copyTo(std::size_t place, const RoomBlock &block) {
        for (std::size_t i = 0; i < roomBlock; ++i) {
            memory_[place + i] = block[i];
        }
    }

    std::size_t size_;
    std::vector<float> memory_;
    std::size_t position_ = 0;
};

} // namespace orvel
