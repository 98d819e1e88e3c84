// First calls of a process, from many threads at once: slots, class cache and environment step all race here.
#include "nxl.h"
#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

TEST(FirstCalls, RaceOnUnboundSlots) {
    constexpr int racers = 16;
    std::barrier start(racers);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int racer = 0; racer < racers; ++racer)
        threads.emplace_back([&] {
            const int n = 5000, one = 1;
            const double two = 2.0;
            std::vector<double> x(5000, 1.0), y(5000, 3.0);
            start.arrive_and_wait();
            const double dot = ddot(&n, x.data(), &one, y.data(), &one);
            daxpy(&n, &two, x.data(), &one, y.data(), &one);
            dscal(&n, &two, x.data(), &one);
            const double sum = dasum(&n, y.data(), &one);
            if (dot != 15000.0 || sum != 25000.0 || x[4999] != 2.0) ++wrong;
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
