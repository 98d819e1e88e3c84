// Factorisations on virtual cores, with times that are given: nothing is done twice or left out, no run is shorter than
// its work or its longest chain allows, and a lock lets one core through at a time.
#include "bench/scaling/rates.hpp"
#include "include/nxl.h"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "tests/support/sparse_problems.hpp"
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace nxl;
using namespace nxl::bench;

constexpr int teams[] = {1, 2, 3, 8, 32, 128};

/// Locks that take so long, and waits without a task that begin with such a pause.
PlayedMachine machine_with(double lock, double pause) {
    return {.sync = {.lock = lock, .contended_lock = lock, .pause = pause, .yield = 0.0, .fork = 0.0},
            .decide = [](const std::function<void()>& decide) { return decide(), 0.0; }};
}

/// Operations as seconds: of LU and Cholesky of order n they are known.
LuCosts lu_operations(double nb) {
    return {.panel = [](i64 r, i64 c) { return double(c * c) * (double(r) - double(c) / 3.0); },
            .apply = [nb](i64 r, i64 c) { return nb * double(c) * (2.0 * double(r) - nb); },
            .interchange = 0.0};
}
CholeskyCosts cholesky_operations(double nb) {
    const double cube = nb * nb * nb;
    return {.factor = cube / 3.0, .solve = cube, .update = [=](i64 levels, bool diagonal) {
                return (diagonal ? 1.0 : 2.0) * double(levels) * cube;
            }};
}

void expect_possible(const PlayedRun& run, double work, double chain) {
    SCOPED_TRACE(run.cores);
    EXPECT_NEAR(run.work, work, 1e-9 * work);
    EXPECT_GE(run.seconds * run.cores, (1.0 - 1e-9) * (run.work + run.locked));
    EXPECT_GE(run.seconds, (1.0 - 1e-9) * chain);
    if (run.cores == 1) EXPECT_NEAR(run.seconds, work, 1e-3 * work);
}

TEST(Scaling, DenseFactorisationsDoTheirOperationsOnAnyTeam) {
    const double n = 9600;                             // a multiple of LU's blocks
    const PlayedMachine free = machine_with(0.0, 1e5); // of 6e11 operations
    for (const int cores : teams) {
        const auto nb = double(lu_block_of(9600, cores)), tile = double(cholesky_block_of(9600, cores));
        double panels = 0.0; // each after the one before, which has been applied to it
        for (double rows = n; rows > 0.0; rows -= nb) panels += nb * nb * (rows - nb / 3.0);
        expect_possible(play_lu(9600, cores, lu_operations(nb), free), 2.0 / 3.0 * n * n * n, panels);
        const double tiles = std::ceil(n / tile), padded = tiles * tile;
        expect_possible(play_cholesky(9600, cores, cholesky_operations(tile), free), padded * padded * padded / 3.0,
                        tiles * (tile * tile * tile) * (1.0 / 3.0 + 1.0 + 1.0) - 2.0 * tile * tile * tile);
    }
}

TEST(Scaling, SparseFactorisationFinishesEverySupernodeOnAnyTeam) {
    nxl_test::SparseProblem problem = nxl_test::poisson3d(12);
    std::array<std::int64_t, 64> handle{};
    std::array<int, 64> iparam{1, 2, 1};
    const auto call = [&](int ido) {
        const int one = 1, silent = 0;
        int error = 0;
        double none = 0.0;
        PARDISO(handle.data(), &one, &one, &problem.mtype, &ido, &problem.n, problem.a.data(), problem.ia.data(),
                problem.ja.data(), nullptr, &one, iparam.data(), &silent, &none, &none, &error);
        EXPECT_EQ(error, 0);
    };
    call(11);
    const pardiso::Supernodes supernodes = pardiso::supernodes_of(pardiso::Handle(handle.data()));
    i64 assembled = 0, updates = 0, expected = 0;
    const SparseCosts costs{.assemble = [&](i64, i64) { return ++assembled, 0.0; },
                            .factor = [](i64, i64 width) { return double(width); },
                            .update = [&](i64, i64, i64) { return ++updates, 1.0; }};
    for (int s = 1; s <= supernodes.count; ++s) supernodes.groups(s, [&](auto, auto, auto) { ++expected; });
    for (const int cores : teams) {
        assembled = updates = 0;
        expect_possible(play_sparse(supernodes, cores, costs, machine_with(0.0, 0.01)), double(expected + problem.n),
                        supernodes.widest());
        EXPECT_EQ(assembled, supernodes.count);
        EXPECT_EQ(updates, expected);
    }
    call(-1);
}

TEST(Scaling, LockLetsOneCoreThroughAtATime) {
    VirtualTeam team(8, machine_with(0.5, 0.0).sync);
    int inside = 0, passed = 0;
    for (int core = 0; core < 8; ++core) team.wait(core, 0.0, 0);
    const PlayedRun run = team.run([&](int core, int stage) {
        if (stage == 0) return team.ask_for_lock(core, 1);
        if (stage == 2) return --inside, ++passed, void();
        EXPECT_EQ(++inside, 1);
        team.give_lock_back(core, 0.5, 2);
    });
    EXPECT_EQ(passed, 8);
    EXPECT_DOUBLE_EQ(run.seconds, 8.0);
    EXPECT_DOUBLE_EQ(run.locked, 36.0); // 1 + 2 + ... + 8
    EXPECT_DOUBLE_EQ(run.idle(), 1.0 - 36.0 / 64.0);
    // So more cores than a lock can serve are of no use.
    const PlayedMachine slow = machine_with(1e9, 1e5);
    const auto seconds = [&](int cores) { return play_lu(9600, cores, lu_operations(200.0), slow).seconds; };
    EXPECT_GE(seconds(128), 0.9 * seconds(16));
}

TEST(Scaling, RatesBetweenPointsFollowPowersAndStayBeyondThem) {
    const auto power = [](const std::vector<double>& s) { return 3.0 * std::pow(s[0], -0.5) * std::pow(s[1], 0.25); };
    const RateGrid grid(
        {{1, 10, 100}, {2, 32}}, [](const auto&) { return 2.0; },
        [&](const std::vector<double>& s) { return 2.0 * power(s); });
    for (const double x : {1.0, 5.0, 10.0, 70.0, 100.0})
        for (const double y : {2.0, 7.0, 32.0}) EXPECT_NEAR(grid.per_operation({x, y}), power({x, y}), 1e-12);
    EXPECT_NEAR(grid.per_operation({0.1, 900.0}), power({1.0, 32.0}), 1e-12);
}

} // namespace
