// Calls after the end of a run, over all solvers: never outside the caller's arrays; the same answer and nothing
// changed where a solver's end is a state of its own.
#include "nxl.h"
#include "tests/support/captured.hpp"
#include "tests/support/guarded_vector.hpp"
#include <functional>

namespace {

using namespace nxl_test;

/// Zeros that end at an unreadable page.
template <class T> struct Guarded {
    std::size_t count;
    GuardedMemory memory{count * sizeof(T)};
    T* data = reinterpret_cast<T*>(memory.at_end(count * sizeof(T)));

    explicit Guarded(int size) : count(static_cast<std::size_t>(size)) {}
    std::vector<T> values() const { return {data, data + count}; }
};

enum Solver { dcg, dcgmrhs, dfgmres };
enum Promise { stays_inside, same_answer, same_arrays };
constexpr int n = 4, systems = 3;

/// scale diag(1, 2, 3, 4) x = b, all systems at once or the first one; entries count from 1.
struct SolverRun {
    Solver solver;
    double scale = 1.0;
    int request = 0;
    Guarded<double> x{n * systems}, b{n * systems}, dpar{128 + 2 * systems};
    Guarded<double> tmp{solver == dfgmres ? (2 * n + 1) * n + n * (n + 9) / 2 + 1 : n * (systems + 3)};
    Guarded<int> ipar{128 + 2 * systems};

    explicit SolverRun(Solver which) : solver(which) {
        for (int k = 0; k < n * systems; ++k) b.data[k] = 1.0 + k % 5;
        if (solver == dcg) DCG_INIT(&n, x.data, b.data, &request, ipar.data, dpar.data, tmp.data);
        if (solver == dcgmrhs)
            DCGMRHS_INIT(&n, x.data, &systems, b.data, nullptr, &request, ipar.data, dpar.data, tmp.data);
        if (solver == dfgmres) DFGMRES_INIT(&n, x.data, b.data, &request, ipar.data, dpar.data, tmp.data);
        ip(9) = 1; // the residual test alone, and the limit
        ip(10) = 0;
        ip(12) = 1;
        dpar.data[0] = 1e-3;
    }
    int& ip(int entry) const { return ipar.data[entry - 1]; }

    void step() {
        if (solver == dcg) DCG(&n, x.data, b.data, &request, ipar.data, dpar.data, tmp.data);
        if (solver == dcgmrhs) DCGMRHS(&n, x.data, &systems, b.data, &request, ipar.data, dpar.data, tmp.data);
        if (solver == dfgmres) DFGMRES(&n, x.data, b.data, &request, ipar.data, dpar.data, tmp.data);
    }
    void operate() const {
        if (request != 1 && request != 3) return;
        const bool many = solver == dcgmrhs, product = request == 1;
        const int in = solver == dfgmres ? ip(22) - 1 : product ? 0 : many ? (2 + ip(3)) * n : 2 * n;
        const int out = solver == dfgmres ? ip(23) - 1 : product ? n : many ? 2 * n : 3 * n;
        for (int i = 0; i < n; ++i) tmp.data[out + i] = tmp.data[in + i] * (product ? scale * (i + 1) : 0.5);
    }
    int to_the_end() {
        for (step(); request > 0; step()) operate();
        return request;
    }
    void get() {
        int count = 0;
        DFGMRES_GET(&n, x.data, b.data, &request, ipar.data, dpar.data, tmp.data, &count);
    }
    auto arrays() const { return std::tuple(x.values(), b.values(), ipar.values(), dpar.values(), tmp.values()); }
    /// The largest |b - A x| of a system.
    double defect(int system) const {
        double largest = 0.0;
        for (int i = 0; i < n; ++i) {
            const int k = (system - 1) * n + i;
            largest = std::max(largest, std::fabs(b.data[k] - scale * (i + 1) * x.data[k]));
        }
        return largest;
    }
};

struct End {
    const char* name;
    Solver solver;
    std::function<void(SolverRun&)> change;
    int answer;
    Promise promise;
};

void PrintTo(const End& end, std::ostream* out) { *out << end.name; }

class AfterEnd : public testing::TestWithParam<End> {};

TEST_P(AfterEnd, FurtherCalls) {
    const End& end = GetParam();
    SolverRun run(end.solver);
    if (end.solver == dfgmres) DFGMRES_CHECK(&n, nullptr, nullptr, &run.request, run.ipar.data, run.dpar.data, nullptr);
    end.change(run);
    printed_by([&] {
        EXPECT_EQ(run.to_the_end(), end.answer);
        const auto before = run.arrays();
        for (int again = 0; again < 6; ++again) {
            run.step();
            if (end.promise >= same_answer) EXPECT_EQ(run.request, end.answer);
            if (end.promise == same_arrays) EXPECT_TRUE(run.arrays() == before);
        }
    });
    if (end.solver != dfgmres || end.answer != 0) return;
    run.get(); // the solution is still there
    EXPECT_LE(run.defect(1), 1.01 * run.dpar.data[3]);
}

const auto nothing = [](SolverRun&) {};
const auto preconditioned = [](SolverRun& run) { run.ip(11) = 1; };
const auto coarse = [](SolverRun& run) { run.dpar.data[0] = 0.2; };
const auto limited = [](SolverRun& run) { run.ip(5) = 2; };
const auto no_test = [](SolverRun& run) { run.ip(8) = run.ip(9) = 0; };
const auto no_matrix = [](SolverRun& run) { run.scale = 0.0; };
const auto no_right_side = [](SolverRun& run) { std::fill_n(run.b.data, run.b.count, 0.0); };

INSTANTIATE_TEST_SUITE_P(
    , AfterEnd,
    testing::Values(
        End{"dcg", dcg, nothing, 0, stays_inside}, End{"dcg_preconditioned", dcg, preconditioned, 0, stays_inside},
        End{"dcg_limit", dcg, limited, -1, stays_inside}, End{"dcg_no_test", dcg, no_test, -11, same_answer},
        End{"dcg_no_matrix", dcg, no_matrix, -2, same_arrays}, End{"dcgmrhs", dcgmrhs, nothing, 0, same_arrays},
        End{"dcgmrhs_preconditioned", dcgmrhs, preconditioned, 0, same_arrays},
        End{"dcgmrhs_limit", dcgmrhs, limited, 0, same_arrays},
        End{"dcgmrhs_solved_from_the_start", dcgmrhs, no_right_side, 0, same_arrays},
        End{"dcgmrhs_no_matrix", dcgmrhs, no_matrix, 0, same_arrays},
        End{"dcgmrhs_no_test", dcgmrhs, no_test, 0, same_answer}, End{"dfgmres", dfgmres, coarse, 0, same_arrays},
        End{"dfgmres_preconditioned", dfgmres, [](SolverRun& run) { coarse(run), preconditioned(run); }, 0,
            same_arrays},
        End{"dfgmres_no_further_vector", dfgmres, nothing, 0, stays_inside},
        End{"dfgmres_limit", dfgmres, limited, -1, same_arrays},
        End{"dfgmres_limit_of_no_iterations", dfgmres, [](SolverRun& run) { run.ip(5) = 0; }, -1, same_arrays},
        End{"dfgmres_no_test", dfgmres, no_test, -11, same_arrays},
        End{"dfgmres_solved_from_the_start", dfgmres, no_right_side, 0, same_arrays},
        End{"dfgmres_no_matrix", dfgmres, [](SolverRun& run) { run.ip(12) = 0, run.scale = 0.0; }, -10, same_arrays},
        End{"dfgmres_no_check", dfgmres, [](SolverRun& run) { run.ip(19) = 0; }, -12, same_arrays}),
    [](const auto& info) { return info.param.name; });

TEST(AfterStop, FgmresGoesOnWhereTheLimitIsRaised) { // also at a full cycle
    for (const int limit : {1, 2, 3}) {
        SolverRun run(dfgmres);
        run.ip(15) = 2;
        DFGMRES_CHECK(&n, nullptr, nullptr, &run.request, run.ipar.data, run.dpar.data, nullptr);
        run.ip(5) = limit;
        EXPECT_EQ(run.to_the_end(), -1);
        run.ip(5) = 100;
        EXPECT_EQ(run.to_the_end(), 0);
        run.get();
        EXPECT_LE(run.defect(1), 1.01 * run.dpar.data[3]);
    }
}

TEST(AfterStop, FgmresDoesNotMakeTheLastVectorTwice) {
    SolverRun run(dfgmres);
    DFGMRES_CHECK(&n, nullptr, nullptr, &run.request, run.ipar.data, run.dpar.data, nullptr);
    std::fill_n(run.b.data + 1, n - 1, 0.0); // an eigenvector: the second vector is 0
    EXPECT_EQ(run.to_the_end(), 0);
    EXPECT_NE(printed_by([&] { run.step(); }), "");
    EXPECT_EQ(run.request, -10);
    EXPECT_EQ(run.ip(14), 1);
}

TEST(AfterStop, SystemsBehindASeedSolvedExactlyAreTakenUpAgain) {
    SolverRun run(dcgmrhs);
    std::fill_n(run.b.data, n, 0.0);
    run.b.data[0] = 2.0; // an eigenvector: one iteration
    EXPECT_NE(printed_by([&] { EXPECT_EQ(run.to_the_end(), 0); }), "");
    EXPECT_EQ(std::vector(run.ipar.data + 128, run.ipar.data + 131), (std::vector{1, 0, 0}));
    EXPECT_EQ(run.ip(30), 1); // where it broke off
    run.ip(39) = 0;
    EXPECT_EQ(run.to_the_end(), 0);
    EXPECT_EQ(run.ip(30), systems + 1);
    for (int system = 1; system <= systems; ++system) {
        EXPECT_EQ(run.ip(128 + system), 1);
        EXPECT_LE(run.defect(system), 0.1);
    }
}

} // namespace
