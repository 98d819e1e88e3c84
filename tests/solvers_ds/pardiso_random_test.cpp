// PARDISO with random arguments, its checks on: nothing crashes, hangs or stays behind. NXL_FUZZ_SECONDS,
// NXL_FUZZ_SEED: for how long, from where.
#include "tests/solvers_ds/pardiso_calls.hpp"
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include <chrono>
#include <climits>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace nxl_test;

class Dice {
    std::mt19937 random_;

  public:
    explicit Dice(unsigned seed) : random_(seed) {}
    int between(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
    bool one_in(int n) { return between(1, n) == 1; }
    template <class T> T pick(std::initializer_list<T> values) {
        return values.begin()[between(0, static_cast<int>(values.size()) - 1)];
    }
    int any_integer() { return one_in(3) ? pick({INT_MIN, INT_MAX, -1000, 1000, 333}) : between(-3, 4); }
};

/// A pattern that is right, but for a few places now and then.
Solver random_system(Dice& dice) {
    const int mtype = dice.pick({1, 2, -2, 3, 4, -4, 6, 11, 13}),
              n = dice.one_in(8) ? dice.between(13, 70) : dice.between(1, 12);
    const Pattern pattern = random_pattern(n, dice.between(0, 3 * n), static_cast<unsigned>(dice.between(1, INT_MAX)));
    const bool sparse_diagonal = dice.one_in(4);
    Solver solver(mtype, rows_of(pattern, [&](int i, int j) {
                      if (i == j) return !sparse_diagonal || dice.one_in(2);
                      return (mtype % 2 != 0 || i < j) && (mtype < 11 || !dice.one_in(3));
                  }));
    for (double& value : solver.a)
        value = dice.one_in(20) ? dice.pick({0.0, 1e300, 1e-300, -1e-300, std::numeric_limits<double>::infinity(),
                                             std::numeric_limits<double>::quiet_NaN()})
                                : dice.between(-5, 5);
    if (solver.ja.empty()) return solver;
    if (dice.one_in(4))
        solver.ja[static_cast<std::size_t>(dice.between(0, static_cast<int>(solver.ja.size()) - 1))] =
            dice.any_integer();
    if (dice.one_in(4)) solver.ia[static_cast<std::size_t>(dice.between(0, n - 1))] = dice.any_integer();
    return solver;
}

void spoil_arguments(Solver& solver, Dice& dice) {
    for (int k = dice.between(0, 6); k > 0; --k)
        solver.iparam[static_cast<std::size_t>(dice.between(0, 63))] = dice.any_integer();
    if (dice.one_in(3)) solver.parameter(1) = 1;
    if (dice.one_in(2)) solver.parameter(2) = dice.between(0, 2);
    if (dice.one_in(2)) solver.parameter(13) = dice.between(0, 1);
    if (dice.one_in(2)) std::shuffle(solver.perm.begin(), solver.perm.end(), std::mt19937(7));
    if (dice.one_in(9)) solver.perm[0] = dice.any_integer();
    if (dice.one_in(9)) solver.max_fac_store = dice.between(-2, 3);
    if (dice.one_in(9)) solver.matrix_number = dice.between(-2, 4);
    if (dice.one_in(9)) solver.mtype = dice.any_integer();
    if (dice.one_in(9)) solver.msglvl = 1;
    solver.nb = dice.between(-1, 2);
    solver.parameter(60) = 0;
    solver.parameter(27) = 1;
    if (solver.parameter(12) == -1) solver.parameter(12) = 0;
}

void run_random_handle(unsigned seed) {
    Dice dice(seed);
    Solver solver = random_system(dice);
    if (solver.ja.empty()) return;
    const std::vector<int> ia = solver.ia, ja = solver.ja;
    NXL_Set_Num_Threads(dice.between(1, 3));
    for (int call = dice.between(1, 5); call > 0; --call) {
        spoil_arguments(solver, dice);
        const int rows = solver.n, ido = dice.one_in(3) ? dice.pick({0, 22, 23, 33, 331, -1, -7, dice.any_integer()})
                                                        : dice.pick({11, 12, 13});
        if (dice.one_in(20)) solver.n = dice.between(-1, 0);
        const int error = solver.run(ido);
        solver.n = rows;
        EXPECT_TRUE((error <= 0 && error >= -11) || error == 16 || error == 300000) << error;
        EXPECT_EQ(solver.ia, ia);
        EXPECT_EQ(solver.ja, ja);
    }
    solver.parameter(12) = 0;
    EXPECT_EQ(solver.run(-1), 0);
    EXPECT_EQ(solver.pt, (std::array<long long, 64>{}));
}

TEST(PardisoRandomCalls, LeaveNothingBehind) {
    const char *seconds = std::getenv("NXL_FUZZ_SECONDS"), *first = std::getenv("NXL_FUZZ_SEED");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds ? std::atoi(seconds) : 0);
    unsigned seed = first ? static_cast<unsigned>(std::atoi(first)) : 1;
    const unsigned least = seed + 1500;
    const long live = live_blocks();
    for (; seed < least || std::chrono::steady_clock::now() < end; ++seed) {
        printed_by([&] { run_random_handle(seed); });
        ASSERT_EQ(live_blocks(), live) << "seed " << seed;
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    RecordProperty("seeds", static_cast<int>(seed));
}

} // namespace
