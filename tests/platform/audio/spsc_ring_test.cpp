#include "platform/spsc_ring.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <numeric>
#include <thread>
#include <vector>

namespace orvel {
namespace {

TEST(SpscRing, RoundsItsCapacityUp) {
    EXPECT_EQ(SpscRing<int>(0).capacity(), 1U);
    EXPECT_EQ(SpscRing<int>(5).capacity(), 8U);
    EXPECT_EQ(SpscRing<int>(8).capacity(), 8U);
}

TEST(SpscRing, GivesBackWhatItTookInOrderAcrossItsEnd) {
    SpscRing<int> ring(8);
    int next = 0;
    int expected = 0;
    for (int round = 0; round < 100; ++round) {
        std::vector<int> in(static_cast<std::size_t>(round % 8) + 1);
        std::iota(in.begin(), in.end(), next);
        ASSERT_EQ(ring.write(in), in.size());
        next += static_cast<int>(in.size());
        std::vector<int> out(in.size());
        ASSERT_EQ(ring.filled(), in.size());
        ASSERT_EQ(ring.read(out), out.size());
        for (const int value : out) {
            ASSERT_EQ(value, expected++);
        }
    }
}

TEST(SpscRing, TakesWhatFitsAndTellsHowMuch) {
    SpscRing<int> ring(4);
    const std::vector<int> six{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(ring.write(six), 4U);
    EXPECT_EQ(ring.space(), 0U);
    EXPECT_EQ(ring.write(six), 0U);
    std::vector<int> out(6);
    EXPECT_EQ(ring.read(std::span(out).first(1)), 1U);
    EXPECT_EQ(ring.write(std::span(six).subspan(4)), 1U);
    EXPECT_EQ(ring.read(out), 4U);
    EXPECT_EQ((std::vector<int>(out.begin(), out.begin() + 4)), (std::vector<int>{2, 3, 4, 5}));
}

TEST(SpscRing, DoesNothingWithEmptySpans) {
    SpscRing<int> ring(4);
    EXPECT_EQ(ring.write({}), 0U);
    EXPECT_EQ(ring.read({}), 0U);
    std::vector<int> out(4);
    EXPECT_EQ(ring.read(out), 0U);
}

/// Two threads, blocks of odd sizes that never divide the ring, full and empty again and again. The sizes come from a
/// small generator so that both sides differ. Every value must arrive once and in order.
void runTwoThreads(std::size_t capacity, std::size_t largestWrite, std::size_t largestRead) {
    constexpr std::uint32_t kCount = 400'000;
    SpscRing<std::uint32_t> ring(capacity);
    std::thread writer([&] {
        std::vector<std::uint32_t> block(largestWrite);
        std::size_t size = 1;
        for (std::uint32_t next = 0; next < kCount;) {
            size = size * 31 % largestWrite + 1;
            const auto count = std::min<std::size_t>(size, kCount - next);
            std::iota(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count), next);
            const std::size_t taken = ring.write(std::span(block).first(count));
            next += static_cast<std::uint32_t>(taken);
            if (taken == 0) {
                std::this_thread::yield();
            }
        }
    });
    std::vector<std::uint32_t> block(largestRead);
    std::size_t size = 1;
    std::uint32_t wrong = 0;
    for (std::uint32_t expected = 0; expected < kCount;) {
        size = size * 17 % largestRead + 1;
        const std::size_t count = ring.read(std::span(block).first(size));
        for (std::size_t i = 0; i < count; ++i) {
            wrong += block[i] == expected++ ? 0U : 1U;
        }
        if (count == 0) {
            std::this_thread::yield();
        }
    }
    writer.join();
    EXPECT_EQ(wrong, 0U);
    EXPECT_EQ(ring.filled(), 0U);
}

TEST(SpscRing, CarriesBlocksOfOddSizesBetweenTwoThreads) {
    runTwoThreads(1024, 441, 333);
}

TEST(SpscRing, CarriesBlocksLargerThanItselfBetweenTwoThreads) {
    runTwoThreads(64, 1001, 97);
}

TEST(SpscRing, CarriesSingleElementsBetweenTwoThreads) {
    runTwoThreads(1, 3, 2);
}

} // namespace
} // namespace orvel
