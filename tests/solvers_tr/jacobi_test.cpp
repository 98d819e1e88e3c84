// The numeric Jacobian in both forms: points of evaluation, columns, restoration of x, statuses, threads, memory.
#include "nxl.h"
#include "tests/support/host_allocator.hpp"
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <vector>

namespace {

using Vector = std::vector<double>;
using nxl_test::fail_allocation, nxl_test::live_blocks;

constexpr int success = 1501, invalid = 1502, no_memory = 1503;
constexpr int rows = 5, columns = 6;
constexpr double eps = 0x1p-17;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// Components above eps of both signs, zero, and both sides of the border.
const Vector mixed{3.7, -2.3, 0.0, eps, -eps, -1.0001 * eps};

/// f(i) = sum over j of sin((i + j) x(j)), counted from 0.
void waves(const int* m, const int* n, const double* x, double* f) {
    for (int i = 0; i < *m; ++i) {
        f[i] = 0.0;
        for (int j = 0; j < *n; ++j) f[i] += std::sin((i + j) * x[j]);
    }
}

bool same_bits(const Vector& a, const Vector& b) { // also tells 0 from -0
    return std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

/// Runs the reverse-communication form and looks at every point on the way.
Vector by_requests(Vector x) {
    const Vector start = x;
    Vector fjac(rows * columns, nan), f1(rows), f2(rows);
    void* handle = nullptr;
    EXPECT_EQ(djacobi_init(&handle, &columns, &rows, x.data(), fjac.data(), &eps), success);
    int request = 0;
    for (std::size_t j = 0; j < columns; ++j) {
        const double v = start[j];
        const bool relative = eps < std::fabs(v);
        Vector expected = start;
        EXPECT_EQ(djacobi_solve(&handle, f1.data(), f2.data(), &request), success);
        EXPECT_EQ(request, 1);
        expected[j] = relative ? (eps + 1.0) * v : v + eps;
        EXPECT_TRUE(same_bits(x, expected)) << "forward, column " << j;
        waves(&rows, &columns, x.data(), f1.data());
        EXPECT_EQ(djacobi_solve(&handle, f1.data(), f2.data(), &request), success);
        EXPECT_EQ(request, 2);
        expected[j] = relative ? (1.0 - eps) * v : v - eps;
        EXPECT_TRUE(same_bits(x, expected)) << "backward, column " << j;
        waves(&rows, &columns, x.data(), f2.data());
    }
    for (int again = 0; again < 3; ++again) { // the last answer, then calls after the end
        EXPECT_EQ(djacobi_solve(&handle, f1.data(), f2.data(), &request), success);
        EXPECT_EQ(request, 0);
        request = again == 0 ? 1 : 0;
    }
    EXPECT_TRUE(same_bits(x, start));
    EXPECT_EQ(djacobi_delete(&handle), success);
    return fjac;
}

Vector direct(int threads, const Vector& start) {
    NXL_Set_Num_Threads(threads);
    Vector x = start, fjac(rows * columns, nan);
    EXPECT_EQ(djacobi(waves, &columns, &rows, fjac.data(), x.data(), &eps), success);
    EXPECT_TRUE(same_bits(x, start));
    return fjac;
}

class Jacobi : public ::testing::Test {
  protected:
    void SetUp() override {
        NXL_Set_Dynamic(0);
        NXL_Set_Num_Threads(1);
    }
    void TearDown() override {
        fail_allocation(0);
        EXPECT_EQ(live_blocks(), 0);
    }
};

TEST_F(Jacobi, ColumnsAreDerivativesInEitherForm) {
    const Vector fjac = by_requests(mixed);
    for (int j = 0; j < columns; ++j)
        for (int i = 0; i < rows; ++i) {
            const double exact = (i + j) * std::cos((i + j) * mixed[static_cast<std::size_t>(j)]);
            EXPECT_NEAR(
                fjac[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(rows)], exact,
                1e-5)
                << i << ' ' << j;
        }
    EXPECT_TRUE(same_bits(direct(1, mixed), fjac));
}

TEST_F(Jacobi,
       ThreadsDoNotChangeABit) { // catches slices that overlap and columns left out; also more threads than columns
    const Vector fjac = direct(1, mixed);
    for (int threads = 2; threads <= 8; ++threads) EXPECT_TRUE(same_bits(direct(threads, mixed), fjac)) << threads;
}

TEST_F(Jacobi, ValuesThatAreNotFiniteStayInTheirRows) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const auto odd = [](const int* m, const int* n, const double* x, double* f) { // no value in the last row
        for (int i = 0; i < *m; ++i) f[i] = i + 1 == *m ? nan : 2.0 * x[i % *n];
    };
    const Vector start{3.0, nan, inf, -inf, 0.5, 0.5};
    for (const int threads : {1, 3}) {
        NXL_Set_Num_Threads(threads);
        Vector x = start, fjac(rows * columns);
        EXPECT_EQ(djacobi(odd, &columns, &rows, fjac.data(), x.data(), &eps), success);
        EXPECT_TRUE(same_bits(x, start));
        for (int j = 0; j < columns; ++j)
            for (int i = 0; i < rows; ++i) {
                const double element =
                    fjac[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(rows)];
                if (i + 1 == rows || !std::isfinite(start[static_cast<std::size_t>(i)]))
                    EXPECT_TRUE(std::isnan(element)) << i << ' ' << j;
                else EXPECT_NEAR(element, i == j ? 2.0 : 0.0, 1e-10) << i << ' ' << j;
            }
    }
    EXPECT_EQ(by_requests(start).size(), start.size() * rows);
}

std::atomic<const double*> callers_x{nullptr};
std::atomic<int> calls{0}, calls_at_callers_x{0}, disturbed{0};

TEST_F(Jacobi, ConcurrentCallsHaveTheirOwnArrays) {
    const auto spy = [](const int* m, const int* n, const double* x, double* f) {
        ++calls;
        if (x == callers_x) ++calls_at_callers_x;
        waves(m, n, x, f);
        const Vector point(x, x + *n), value(f, f + *m);
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // the others are at work meanwhile
        if (point != Vector(x, x + *n) || value != Vector(f, f + *m)) ++disturbed;
    };
    Vector x = mixed, fjac(rows * columns);
    callers_x = x.data();
    NXL_Set_Num_Threads(3);
    ASSERT_EQ(djacobi(spy, &columns, &rows, fjac.data(), x.data(), &eps), success);
    EXPECT_EQ(calls, 2 * columns);
    EXPECT_EQ(calls_at_callers_x, 0);
    EXPECT_EQ(disturbed, 0);
}

TEST_F(Jacobi, CallersOnSeveralThreadsDoNotMeet) {
    const Vector expected = direct(2, mixed);
    std::vector<Vector> found(8, Vector(rows * columns));
    std::vector<std::thread> callers;
    for (Vector& fjac : found)
        callers.emplace_back([&fjac] {
            Vector x = mixed;
            djacobi(waves, &columns, &rows, fjac.data(), x.data(), &eps);
        });
    for (std::thread& caller : callers) caller.join();
    for (const Vector& fjac : found) EXPECT_TRUE(same_bits(fjac, expected));
}

TEST_F(Jacobi, BadArgumentsAreRefused) {
    struct Bad {
        int n, m;
        double eps;
    };
    Vector x = mixed, fjac(rows * columns);
    void* handle = nullptr;
    for (const Bad& bad : {Bad{0, 5, eps}, Bad{6, 0, eps}, Bad{6, 5, 0.0}, Bad{6, 5, -eps}, Bad{6, 5, nan}}) {
        EXPECT_EQ(djacobi_init(&handle, &bad.n, &bad.m, x.data(), fjac.data(), &bad.eps), invalid);
        if (bad.m > 0) EXPECT_EQ(djacobi(waves, &bad.n, &bad.m, fjac.data(), x.data(), &bad.eps), invalid);
    }
    int request = 0;
    EXPECT_EQ(djacobi_solve(&handle, x.data(), x.data(), &request), invalid);
    EXPECT_EQ(djacobi_solve(nullptr, x.data(), x.data(), &request), invalid);
    EXPECT_EQ(djacobi_delete(&handle), invalid);
    EXPECT_EQ(djacobi_delete(nullptr), invalid);
    const int none = 0; // passes the test of arguments, but there is no memory of 0 bytes
    EXPECT_EQ(djacobi(waves, &columns, &none, fjac.data(), x.data(), &eps), no_memory);
    NXL_Set_Num_Threads(2);
    EXPECT_EQ(djacobi(waves, &columns, &none, fjac.data(), x.data(), &eps), success);
}

TEST_F(Jacobi, FailedAllocations) {
    Vector x = mixed, fjac(rows * columns, 7.0);
    const Vector untouched = fjac;
    void* handle = nullptr;
    fail_allocation(1);
    EXPECT_EQ(djacobi_init(&handle, &columns, &rows, x.data(), fjac.data(), &eps), no_memory);
    EXPECT_EQ(handle, nullptr);
    for (int threads : {1, 3})
        for (int k = 1; k <= (threads == 1 ? 2 : 3); ++k) {
            NXL_Set_Num_Threads(threads);
            fail_allocation(k);
            EXPECT_EQ(djacobi(waves, &columns, &rows, fjac.data(), x.data(), &eps), threads == 1 ? no_memory : success);
            EXPECT_EQ(fjac, untouched) << threads << ' ' << k;
            EXPECT_EQ(live_blocks(), 0);
        }
}

} // namespace
