// The small services as a host sees them: progress callback, timer, machine constants.
#include "nxl.h"
#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>

namespace {

TEST(MachineConstants, BitForBit) {
    constexpr std::uint64_t doubles[7] = {
        0, 0x0010000000000011, 0x7FEFFFFFFFFFFFE2, 0x3C9FFFB3D9E5D12E, 0x3CAFFFB3DE72BCBC, 0x3FD3441360000000, 0};
    constexpr std::uint32_t singles[7] = {0, 0x00800000, 0x7F7FFFFF, 0x337FFCB8, 0x33FFFCB8, 0x3E9A209B, 0};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(D1MACH(&i)), doubles[i]) << i;
        EXPECT_EQ(std::bit_cast<std::uint32_t>(R1MACH(&i)), singles[i]) << i;
    }
    for (const int i : {-1, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ(D1MACH(&i), 0.0);
        EXPECT_EQ(R1MACH(&i), 0.0F);
    }
    EXPECT_EQ(D1MACH(std::array{1}.data()), 2.22507385850721e-308);
    EXPECT_EQ(D1MACH(std::array{3}.data()), 1.1101827117665e-16);
}

int digits_of(const int* thread, const int* step, const char* stage, int length) {
    int third = 0;
    std::memcpy(&third, stage, sizeof third);
    return 1000 * *thread + 100 * *step + 10 * third + length;
}

TEST(Progress, TrialCallReachesTheCallback) {
    EXPECT_EQ(test_NXL_Progress_Callback(), 0);
    set_NXL_Progress_Callback(digits_of);
    EXPECT_EQ(test_NXL_Progress_Callback(), 1234);
    EXPECT_EQ(NXL_PROGRESS(nullptr, nullptr, nullptr, -1), 0); // whatever it is given, and without the callback
    set_NXL_Progress_Callback(nullptr);
    EXPECT_EQ(test_NXL_Progress_Callback(), 0);
}

TEST(Timer, RunsAtThePaceOfTheClock) {
    using Clock = std::chrono::steady_clock;
    DSECND(); // measures its rate
    const auto clock_start = Clock::now();
    const double start = DSECND();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const double elapsed = DSECND() - start;
    const double longest = std::chrono::duration<double>(Clock::now() - clock_start).count();
    EXPECT_GE(elapsed, 0.049); // the sleep, to within the rate's error
    EXPECT_LE(elapsed, 1.01 * longest);
}

} // namespace
