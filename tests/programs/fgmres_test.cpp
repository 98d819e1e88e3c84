// FGMRES and the preconditioners of nxl-solve against dense LU, and what they refuse.
#include "dense.hpp"
#include "program.hpp"

#include "generators.hpp"
#include "method.hpp"
#include "report.hpp"
#include "transversal.hpp"

#include <algorithm>
#include <numeric>
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

/// Rows of a grid in a strong wind, in the order `row` and times `scale`, where the diagonal of every `step`-th is
/// tiny.
Matrix troubled_grid(bool shuffled, double decades, int step) {
    const Matrix a = solve::generate("convection2d:25").matrix;
    std::mt19937 random(3);
    std::uniform_real_distribution<double> exponent(-decades, decades);
    std::vector<int> row(static_cast<std::size_t>(a.n));
    std::iota(row.begin(), row.end(), 0);
    if (shuffled) std::shuffle(row.begin(), row.end(), random);
    Triplets list;
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        const double scale = std::pow(10.0, exponent(random));
        for (std::size_t k = 0; k < columns.size(); ++k) {
            const bool tiny = step > 0 && i % step == 0 && columns[k] == i;
            list.push_back({row.data()[i], columns[k], scale * (tiny ? 1e-6 : values[k])});
        }
    }
    return general(a.n, list);
}

/// Two fields on a line: one diffuses fast, the other has no diagonal of its own worth the name.
Matrix coupled_fields(int n) {
    const double stiff = 1.0 * n * n;
    Triplets list;
    for (int i = 0; i < n; ++i) {
        const int u = 2 * i, v = u + 1;
        list.insert(list.end(), {{u, u, -2.0 * stiff}, {u, v, 0.1 * stiff}, {v, u, 1.0}, {v, v, -1e-3}});
        for (const int there : {i - 1, i + 1}) {
            if (there < 0 || there == n) continue;
            list.push_back({u, 2 * there, stiff});
            list.push_back({v, 2 * there + 1, 4.7 * stiff});
        }
    }
    return general(2 * n, list);
}

TEST(Fgmres, TreatsMatricesThatIncompleteFactorsCannotTakeAsTheyAre) {
    const auto cancels = general(4, {{0, 0, 1e6},
                                     {0, 1, 1e6},
                                     {1, 0, 1.0},
                                     {1, 1, 1.0},
                                     {1, 2, 1.0},
                                     {2, 1, 1.0},
                                     {2, 2, 3.0},
                                     {2, 3, 1.0},
                                     {3, 2, 1.0},
                                     {3, 3, 2.0}});
    struct Case {
        Matrix a;
        const char *preconditioner, *note;
    };
    const Case cases[] = {
        {troubled_grid(false, 8.0, 0), "ilu0", "ilu0,"},
        {troubled_grid(true, 8.0, 0), "ilu0", "ilu0 (rows permuted)"},
        {troubled_grid(true, 0.0, 0), "ilut", "drop 0.001, rows permuted)"},
        {troubled_grid(false, 8.0, 23), "ilut", "drop 0.001, small pivots replaced)"},
        {coupled_fields(500), "ilut", "drop 0.001, rows scaled, small pivots replaced)"},
        {cancels, "ilu0", "ilu0 (rows scaled, small pivots replaced)"},
    };
    for (const auto& [a, preconditioner, note] : cases) {
        Block<double> b(a.n, 2);
        const std::vector<double> ones(static_cast<std::size_t>(a.n), 1.0);
        solve::multiply(a, ones.data(), b.column(0));
        solve::multiply(a, random_block(a.n, 1).column(0), b.column(1));
        const auto method = solve::make_fgmres(fgmres(preconditioner, 30, 1e-8));
        const auto found = solve_by(method, a, b);
        EXPECT_TRUE(found.outcome.converged) << note << found.outcome.trouble;
        EXPECT_NE(method->description().find(note), std::string::npos) << method->description();
        for (int j = 0; j < b.count; ++j) EXPECT_LE(reduction(a, b.column(j), found.x.column(j)), 1.1e-8) << note;
    }
}

TEST(Transversal, ExistsWhenAPermutationDoesAndLeavesWhatItCan) { // against all permutations
    std::mt19937 random(9);
    int singular = 0;
    for (int trial = 0; trial < 400; ++trial) {
        constexpr int n = 5;
        Triplets list;
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) // two in five, some of them zeros
                if (random() % 5 < 2) list.push_back({i, j, static_cast<double>(random() % 4)});
        }
        const Matrix a = general(n, list);
        const auto d = solve_test::dense(a);
        const auto fills = [&d](const std::vector<int>& p) {
            for (std::size_t i = 0; i < n; ++i)
                if (d[static_cast<std::size_t>(p[i])][i] == 0.0) return false;
            return true;
        };
        std::vector<int> p{0, 1, 2, 3, 4};
        const bool in_order = fills(p), possible = [&] {
            do
                if (fills(p)) return true;
            while (std::ranges::next_permutation(p).found);
            return false;
        }();
        const auto found = solve::transversal(a);
        singular += !possible;
        ASSERT_EQ(!found.empty(), possible) << trial;
        if (!possible) continue;
        EXPECT_TRUE(fills(found)) << trial;
        EXPECT_TRUE(std::ranges::is_permutation(found, std::vector<int>{0, 1, 2, 3, 4})) << trial;
        if (in_order) EXPECT_TRUE(std::ranges::is_sorted(found)) << trial;
    }
    EXPECT_GT(singular, 50);
    EXPECT_LT(singular, 350);
}

// The residual of a recurrence falls for ever; what is reported has to be that of the solution which is handed over.
TEST(Residual, IsTheComputedOneAndEndsTheRunWhereItStopsFalling) {
    const auto grid = solve::generate("heat3d:9").matrix;
    Triplets chain; // without an end that holds it: singular, and a random b is not in its range
    for (int i = 0; i < 300; ++i) {
        chain.push_back({i, i, i == 0 || i == 299 ? 1.0 : 2.0});
        if (i > 0) chain.insert(chain.end(), {{i, i - 1, -1.0}, {i - 1, i, -1.0}});
    }
    const auto loose = general(300, chain);
    const std::string rounding = "rounding leaves no more to gain",
                      standstill = "the computed residual no longer falls";
    using Make = std::unique_ptr<solve::Method<double>> (*)(const Settings&);
    struct Case {
        Make make;
        const Matrix* a;
        std::string trouble;
        double least, most; // of the residual
    };
    const Case cases[] = {{solve::make_fgmres, &grid, rounding, 1e-17, 1e-14},
                          {solve::make_conjugate_gradients, &grid, rounding, 1e-17, 1e-14},
                          {solve::make_fgmres, &loose, standstill, 1e-3, 1.0}};
    for (const auto& [make, a, trouble, least, most] : cases) {
        for (const int count : {1, 3}) {
            const auto b = random_block(a->n, count);
            const auto found = solve_by(make(fgmres("none", 10, 1e-20)), *a, b);
            EXPECT_FALSE(found.outcome.converged);
            EXPECT_EQ(found.outcome.trouble, trouble);
            EXPECT_LT(found.outcome.iterations, 2500L * count);
            EXPECT_GT(found.outcome.residual, least);
            EXPECT_LT(found.outcome.residual, most);
            double worst = 0.0;
            for (int j = 0; j < count; ++j) worst = std::max(worst, reduction(*a, b.column(j), found.x.column(j)));
            EXPECT_NEAR(found.outcome.residual / worst, 1.0, 1e-6) << trouble;
        }
    }
}

TEST(ConjugateGradients, SeedsThatEndARunLeaveNoneUnsolved) { // columns 0 and 2 are met exactly, in one step each
    Triplets list;
    for (int i = 0; i < 60; ++i) {
        list.push_back({i, i, i < 2 ? 2.0 : 2.1});
        if (i > 2) list.insert(list.end(), {{i, i - 1, -1.0}, {i - 1, i, -1.0}});
    }
    const auto a = general(60, list);
    auto b = random_block(60, 4);
    for (const int j : {0, 2}) {
        std::fill_n(b.column(j), 60, 0.0);
        b.column(j)[j / 2] = 4.0;
    }
    for (const std::string preconditioner : {"none", "jacobi"}) {
        const auto found = solve_by(solve::make_conjugate_gradients(fgmres(preconditioner)), a, b);
        EXPECT_TRUE(found.outcome.converged) << found.outcome.trouble;
        for (int j = 0; j < b.count; ++j) EXPECT_LE(reduction(a, b.column(j), found.x.column(j)), 1e-11) << j;
    }
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

TEST_F(Program, IterativeMethodsRefuseInOneLine) {
    const std::string header = "%%MatrixMarket matrix coordinate real general\n";
    write("thin.mtx", header + "3 3 5\n1 1 1\n2 1 1\n3 1 1\n3 2 1\n3 3 1\n");
    write("zero.mtx", header + "2 2 4\n1 1 0\n1 2 1\n2 1 1\n2 2 1\n");
    write("empty.mtx", header + "2 2 2\n1 1 1\n1 2 1\n");
    write("indefinite.mtx", header + "2 2 4\n1 1 1\n1 2 2\n2 1 2\n2 2 1\n");
    write("complex.mtx", "%%MatrixMarket matrix coordinate complex general\n1 1 1\n1 1 1 0\n");
    expect_refused({
        {"complex.mtx --method fgmres", 1, "complex.mtx: method fgmres needs a real matrix, this one is complex"},
        {"thin.mtx --precond ilu0", 1,
         "thin.mtx: the matrix is singular: no order of its rows leaves the diagonal without zeros"},
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
        {"--generate convection2d:30 --method fgmres --max-iterations 1 --tolerance 1e-300 --quiet", 3, "..."},
    });
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
