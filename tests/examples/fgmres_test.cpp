// FGMRES and the preconditioners of nxl-solve against dense LU, and what they refuse.
#include "program.hpp"

#include "generators.hpp"
#include "method.hpp"
#include "report.hpp"

#include <algorithm>
#include <random>

namespace {

using solve::Block;
using solve::Settings;
using Matrix = solve::SparseMatrix<double>;
using Triplets = std::vector<solve::Triplet<double>>;
using solve_test::number_after;
using solve_test::Program;

Matrix general(int n, const Triplets& triplets) { return solve::assemble(n, solve::Symmetry::general, triplets); }

/// Six entries a row at random beside a diagonal that outweighs most of them; where `hole`, the diagonal entry of row 8
/// is a zero in the middle of couplings, so that elimination fills it.
Matrix random_unsymmetric(int n, bool hole) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    std::uniform_int_distribution<int> column(0, n - 1);
    Triplets list;
    for (int i = 0; i < n; ++i) {
        list.push_back({i, i, hole && i == 7 ? 0.0 : 3.0 + value(random)});
        for (int k = 0; k < 6; ++k) {
            const int j = column(random);
            if (j != i) list.push_back({i, j, value(random)});
        }
    }
    list.push_back({7, 6, 2.0});
    list.push_back({6, 7, -2.0});
    return general(n, list);
}

Matrix tridiagonal(int n) {
    Triplets list;
    for (int i = 0; i < n; ++i) {
        list.push_back({i, i, 3.0 + i % 3});
        if (i > 0) list.push_back({i, i - 1, -1.0 - 0.1 * (i % 4)});
        if (i + 1 < n) list.push_back({i, i + 1, 0.5 + 0.1 * (i % 5)});
    }
    return general(n, list);
}

struct Solution {
    solve::Outcome outcome;
    Block<double> x;
    std::vector<solve::Step> history;
};

Solution solve_by(const std::unique_ptr<solve::Method<double>>& method, const Matrix& a, const Block<double>& b) {
    Solution s{{}, Block<double>(b.n, b.count), {}};
    method->set_up(a);
    s.outcome = method->solve(b, s.x, [&](const solve::Step& step) { s.history.push_back(step); });
    return s;
}

Block<double> random_block(int n, int count) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    Block<double> b(n, count);
    for (double& element : b.value) element = value(random);
    return b;
}

/// 2-norm of b - A x over that of b.
double reduction(const Matrix& a, const double* b, const double* x) {
    std::vector<double> product(static_cast<std::size_t>(a.n));
    solve::multiply(a, x, product.data());
    double residual = 0.0, initial = 0.0;
    for (int i = 0; i < a.n; ++i) {
        residual = std::hypot(residual, b[i] - product.data()[i]);
        initial = std::hypot(initial, b[i]);
    }
    return residual / initial;
}

Settings fgmres(const std::string& preconditioner, int restart = 30, double tolerance = 1e-11) {
    Settings settings;
    settings.preconditioner = preconditioner;
    settings.restart = restart;
    settings.tolerance = tolerance;
    return settings;
}

TEST(Fgmres, AgreesWithLuUnderEveryPreconditioner) {
    const Matrix matrices[] = {solve::generate("convection2d:12").matrix, solve::generate("convection3d:5").matrix,
                               random_unsymmetric(80, false), random_unsymmetric(80, true)};
    for (const Matrix& a : matrices) {
        auto b = random_block(a.n, 3); // columns of very different size: each counts for itself
        std::for_each_n(b.column(1), a.n, [](double& value) { value *= 1e-150; });
        const auto exact = solve_by(solve::make_lu<double>(), a, b);
        for (const std::string preconditioner : {"none", "jacobi", "ilu0", "ilut"}) {
            const bool hole = solve::diagonal(a).data()[7] == 0.0;
            if (hole && preconditioner == "jacobi") continue;
            for (const int restart : {12, 30, 1000}) {
                const auto found = solve_by(solve::make_fgmres(fgmres(preconditioner, restart)), a, b);
                const auto where = preconditioner + " " + std::to_string(restart) + " n " + std::to_string(a.n);
                EXPECT_TRUE(found.outcome.converged) << where << found.outcome.trouble;
                EXPECT_LE(found.outcome.residual, 1e-11) << where;
                for (int j = 0; j < b.count; ++j) EXPECT_LE(reduction(a, b.column(j), found.x.column(j)), 1.1e-11);
                EXPECT_LT(solve::relative_error(found.x, exact.x), 1e-8) << where;
            }
        }
    }
}

TEST(Fgmres, ExactFactorsTakeOneIteration) { // catches a triangle that is skipped, transposed or taken in wrong order
    const auto line = tridiagonal(50);       // has no fill
    const auto plane = random_unsymmetric(60, true);
    auto all = fgmres("ilut");
    all.fill = 1000;
    all.drop = 0.0;
    for (const auto& [a, settings] : {std::pair(&line, fgmres("ilu0")), {&line, all}, {&plane, all}}) {
        const auto b = random_block(a->n, 1);
        const auto found = solve_by(solve::make_fgmres(settings), *a, b);
        EXPECT_TRUE(found.outcome.converged);
        EXPECT_EQ(found.outcome.iterations, 1) << settings.preconditioner;
    }
}

TEST(Fgmres, FillAndRestartSayHowManyIterationsItTakes) {
    const auto a = solve::generate("convection2d:25").matrix;
    const auto b = random_block(a.n, 1);
    const auto iterations = [&](const Settings& settings) {
        const auto found = solve_by(solve::make_fgmres(settings), a, b);
        EXPECT_TRUE(found.outcome.converged);
        return found.outcome.iterations;
    };
    auto little = fgmres("ilut"), much = fgmres("ilut"), coarse = fgmres("ilut");
    little.fill = 2; // fewer than its rows have: the kept ones come in no order
    much.fill = coarse.fill = 20;
    coarse.drop = 0.2;
    EXPECT_LT(iterations(much), iterations(little));
    EXPECT_LT(iterations(much), iterations(coarse));
    EXPECT_LT(iterations(little), iterations(fgmres("none")));
    EXPECT_LT(iterations(fgmres("ilu0")), iterations(fgmres("jacobi")));
    EXPECT_LT(iterations(fgmres("none", 1000)), iterations(fgmres("none", 5)));
}

TEST(Fgmres, EveryIterationIsSeenOnceAndTheLimitHolds) {
    const auto a = solve::generate("convection2d:20").matrix;
    const auto b = random_block(a.n, 2);
    for (const int limit : {0, 1, 7, 8, 20}) { // 8 is a restart's last iteration
        auto settings = fgmres("jacobi", 8);
        settings.max_iterations = limit;
        const auto found = solve_by(solve::make_fgmres(settings), a, b);
        EXPECT_EQ(found.outcome.converged, limit == 0);
        if (limit > 0) EXPECT_EQ(found.outcome.iterations, 2 * limit);
        int expected = 0, system = 0;
        for (const auto& step : found.history) {
            if (step.system != system) {
                EXPECT_EQ(step.system, ++system);
                expected = 0;
            }
            EXPECT_EQ(step.iteration, expected++);
        }
        EXPECT_EQ(system, 1);
        EXPECT_EQ(found.history.front().residual, 1.0);
        EXPECT_NEAR(reduction(a, b.column(1), found.x.column(1)), found.history.back().residual, 1e-12) << limit;
    }
}

TEST(Fgmres, ExhaustedSpacesAndHopelessTolerances) {
    Block<double> b(3, 1);
    const auto nothing = solve_by(solve::make_fgmres(fgmres("none")), tridiagonal(3), b);
    EXPECT_TRUE(nothing.outcome.converged);
    EXPECT_EQ(nothing.outcome.iterations, 0);
    EXPECT_EQ(nothing.x.value, b.value);

    b.column(0)[0] = 4.0; // an eigenvector: the space ends after one step, exactly
    const auto diagonal = general(3, {{0, 0, 2.0}, {1, 1, 1.0}, {2, 2, 5.0}});
    const auto eigen = solve_by(solve::make_fgmres(fgmres("none")), diagonal, b);
    EXPECT_TRUE(eigen.outcome.converged);
    EXPECT_EQ(eigen.outcome.iterations, 1);
    EXPECT_EQ(eigen.x.column(0)[0], 2.0);

    const auto nilpotent = general(3, {{0, 1, 1.0}, {1, 2, 1.0}, {2, 2, 0.0}});
    const auto singular = solve_by(solve::make_fgmres(fgmres("none")), nilpotent, b);
    EXPECT_FALSE(singular.outcome.converged);
    EXPECT_EQ(singular.outcome.trouble, "the matrix is singular");

    const auto a = solve::generate("convection2d:9").matrix;
    const auto hopeless = solve_by(solve::make_fgmres(fgmres("ilu0", 10, 1e-18)), a, random_block(a.n, 1));
    EXPECT_FALSE(hopeless.outcome.converged);
    EXPECT_EQ(hopeless.outcome.trouble, "rounding leaves no more to gain");
    EXPECT_LT(hopeless.outcome.residual, 1e-14);
    auto limited = fgmres("ilu0", 10, 1e-18); // the limit holds over the first run and those that check it
    limited.max_iterations = static_cast<int>(hopeless.outcome.iterations) - 1;
    EXPECT_EQ(solve_by(solve::make_fgmres(limited), a, random_block(a.n, 1)).outcome.iterations,
              limited.max_iterations);
}

TEST(ConjugateGradients, IncompleteFactorsSaveIterations) {
    for (const char* problem : {"heat3d:12", "anisotropic2d:25", "random:300"}) {
        const auto a = solve::generate(problem).matrix;
        for (const int count : {1, 3}) {
            const auto b = random_block(a.n, count);
            const auto plain = solve_by(solve::make_conjugate_gradients(fgmres("jacobi")), a, b);
            const auto ilu0 = solve_by(solve::make_conjugate_gradients(fgmres("ilu0")), a, b);
            EXPECT_TRUE(ilu0.outcome.converged) << problem;
            EXPECT_LT(ilu0.outcome.iterations, 0.7 * static_cast<double>(plain.outcome.iterations)) << problem;
            EXPECT_LT(solve::relative_error(ilu0.x, plain.x), 1e-8) << problem;
        }
    }
}

struct Fault {
    std::string arguments;
    int status;
    std::string message;
};

TEST_F(Program, IterativeMethodsRefuseInOneLine) {
    const std::string header = "%%MatrixMarket matrix coordinate real general\n";
    write("shift.mtx", header + "3 3 3\n1 2 1\n2 3 1\n3 1 1\n");
    write("zero.mtx", header + "2 2 4\n1 1 0\n1 2 1\n2 1 1\n2 2 1\n");
    write("empty.mtx", header + "2 2 2\n1 1 1\n1 2 1\n");
    write("indefinite.mtx", header + "2 2 4\n1 1 1\n1 2 2\n2 1 2\n2 2 1\n");
    write("complex.mtx", "%%MatrixMarket matrix coordinate complex general\n1 1 1\n1 1 1 0\n");
    const std::string small_pivot =
        "preconditioner ilut meets a pivot that is 0, or small against its row: a smaller --drop or a larger --fill "
        "may help";
    const Fault faults[] = {
        {"complex.mtx --method fgmres", 1, "complex.mtx: method fgmres needs a real matrix, this one is complex"},
        {"shift.mtx --precond ilu0", 1,
         "shift.mtx: preconditioner ilu0 needs every diagonal entry in the file, that of row 1 is missing"},
        {"shift.mtx --precond ilut", 1, "shift.mtx: " + small_pivot},
        {"zero.mtx --precond ilu0", 1, "zero.mtx: preconditioner ilu0 meets a pivot of 0"},
        {"zero.mtx --precond ilut", 1, "zero.mtx: " + small_pivot},
        {"zero.mtx --precond jacobi", 1,
         "zero.mtx: preconditioner jacobi needs a diagonal without zeros, entry 1 is 0"},
        {"empty.mtx --precond ilut", 1, "empty.mtx: the matrix is singular: row 2 is empty"},
        {"indefinite.mtx --method cg --precond ilu0", 1,
         "indefinite.mtx: method cg needs a positive definite preconditioner, but ilu0 has a pivot that is not "
         "positive"},
        {"--generate convection2d:500 --restart 9999", 1,
         "convection2d:500: method fgmres needs a --restart below 9999 for this matrix: 32-bit positions do not reach "
         "over its vectors"},
        {"zero.mtx --method cg --precond ilut", 2,
         "--precond ilut belongs to method fgmres: cg needs a symmetric preconditioner"},
        {"zero.mtx --method cg --restart 5", 2, "--restart belongs to method fgmres"},
        {"zero.mtx --precond ilu0 --drop 0.1", 2, "--drop belongs to --precond ilut"},
        {"zero.mtx --fill 3", 2, "--fill belongs to --precond ilut"},
        {"--generate convection2d:30 --method fgmres --max-iterations 1 --tolerance 1e-300 --quiet", 3, ""},
    };
    for (const auto& [arguments, status, message] : faults) {
        const auto run = this->run(arguments);
        EXPECT_EQ(run.status, status) << arguments << run.err;
        if (!message.empty()) EXPECT_EQ(run.err, "nxl-solve: " + message + "\n") << arguments;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}

TEST_F(Program, FgmresReportsAsConjugateGradientsDo) {
    const auto run = this->run("--generate convection2d:20 --method fgmres --precond ilut --nrhs 2 --verbose "
                               "--plot h.svg --output x.mtx");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("    2          1  "), std::string::npos) << run.out;
    EXPECT_LT(number_after(run.out, "residual reduced to"), 1e-8);
    EXPECT_LT(number_after(run.out, "error "), 1e-6);
    EXPECT_NE(read("x.mtx").find("400 2\n"), std::string::npos);
}

} // namespace
