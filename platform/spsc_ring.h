#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace orvel {

/// A lock-free queue of samples between exactly one writing and one reading thread. Neither side ever waits, allocates
/// or throws; all memory is taken by the constructor.
///
/// Two counters run up for ever (they may wrap around; only their difference counts) and each is stored by one side
/// only. A side publishes its counter with release after it has touched the slots, the other side loads it with
/// acquire before it touches them: slots between readCount_ and writeCount_ belong to the reader, the others to the
/// writer.
template <typename T>
class SpscRing {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    /// Holds at least `capacity` elements (the next power of two, so that counters map to slots by a mask).
    explicit SpscRing(std::size_t capacity)
        : slots_(std::bit_ceil(std::max<std::size_t>(capacity, 1))), mask_(slots_.size() - 1) {}

    [[nodiscard]] std::size_t capacity() const noexcept { return slots_.size(); }

    /// Writing thread: how many elements write() would take now. The reader can only make it more.
    [[nodiscard]] std::size_t space() const noexcept {
        return slots_.size() -
               (writeCount_.load(std::memory_order_relaxed) - readCount_.load(std::memory_order_acquire));
    }

    /// Reading thread: how many elements read() would give now. The writer can only make it more.
    [[nodiscard]] std::size_t filled() const noexcept {
        return writeCount_.load(std::memory_order_acquire) - readCount_.load(std::memory_order_relaxed);
    }

    /// Writing thread: takes as many elements from the front of `from` as there is space for; returns how many.
    std::size_t write(std::span<const T> from) noexcept {
        const std::size_t count = std::min(from.size(), space());
        const std::size_t start = writeCount_.load(std::memory_order_relaxed);
        const std::size_t first = std::min(count, slots_.size() - (start & mask_));
        copy(slots_.data() + (start & mask_), from.data(), first);
        copy(slots_.data(), from.data() + first, count - first);
        writeCount_.store(start + count, std::memory_order_release);
        return count;
    }

    /// Reading thread: gives as many elements as there are, at most `to.size()`; returns how many.
    std::size_t read(std::span<T> to) noexcept {
        const std::size_t count = std::min(to.size(), filled());
        const std::size_t start = readCount_.load(std::memory_order_relaxed);
        const std::size_t first = std::min(count, slots_.size() - (start & mask_));
        copy(to.data(), slots_.data() + (start & mask_), first);
        copy(to.data() + first, slots_.data(), count - first);
        readCount_.store(start + count, std::memory_order_release);
        return count;
    }

  private:
    static void copy(T *to, const T *from, std::size_t count) noexcept {
        if (count > 0) { // memcpy must not see the null pointer of an empty span
            std::memcpy(to, from, count * sizeof(T));
        }
    }

    std::vector<T> slots_;
    std::size_t mask_;
    // Each counter on a cache line of its own: the two threads do not slow each other down.
    alignas(64) std::atomic<std::size_t> writeCount_{0};
    alignas(64) std::atomic<std::size_t> readCount_{0};
    static_assert(std::atomic<std::size_t>::is_always_lock_free);
};

} // namespace orvel
