// First calls of a process: from many threads at once, and from a thread with little stack. CTest starts a process for
// all of this file, GoogleTest runs it in order: the race comes first.
#include "nxl.h"
#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <pthread.h>
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

/// What needs most stack: the count of cores, a forked call with more blocks than fit on the stack, reports.
void* call_with_little_stack(void* right) {
    NXL_Set_Dynamic(0);
    NXL_Set_Num_Threads(200);
    const int n = 40000, one = 1, three = 3;
    std::vector<double> x(40000, 1.0);
    const double dot = ddot(&n, x.data(), &one, x.data(), &one);
    XERBLA("DGEMM ", &three, 6);
    int request = 0, ipar[128] = {}, rows = 4;
    double dpar[128] = {}, solution[4] = {}, b[4] = {1, 1, 1, 1}, tmp[16];
    DCG_INIT(&rows, solution, b, &request, ipar, dpar, tmp);
    ipar[7] = ipar[8] = ipar[9] = 0;
    DCG_CHECK(&rows, solution, b, &request, ipar, dpar, tmp);
    *static_cast<bool*>(right) = dot == 40000.0 && request == -1010;
    return nullptr;
}

TEST(FirstCalls, FitOnAStackOf256KiB) {
    bool right = false;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, call_with_little_stack, &right), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_TRUE(right);
}

} // namespace
