// The incomplete factorisations against plain eliminations over std::map, their pivot rules, and what odd input does.
#include "tests/solvers_rci/ilu_support.hpp"
#include "tests/support/host_allocator.hpp"
#include <algorithm>
#include <functional>

namespace {

using namespace nxl_test;

Rows tridiagonal(int n) {
    Rows rows(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        for (int j = std::max(i - 1, 0); j <= std::min(i + 1, n - 1); ++j)
            rows[static_cast<std::size_t>(i)][j] = i == j ? 2.0 + 0.1 * i : -1.0 + 0.01 * (i - 2 * j);
    return rows;
}

Rows product_of_factors(const Rows& lu) {
    Rows product(lu.size());
    for (int i = 0; i < static_cast<int>(lu.size()); ++i)
        for (const auto& [k, l] : lu[static_cast<std::size_t>(i)])
            if (k <= i)
                for (auto u = lu[static_cast<std::size_t>(k)].lower_bound(k);
                     u != lu[static_cast<std::size_t>(k)].end(); ++u)
                    product[static_cast<std::size_t>(i)][u->first] += (k == i ? 1.0 : l) * u->second;
    return product;
}

// ---- ILU(0)

TEST(Ilu0, IsTheEliminationOnThePattern) {
    for (const auto& [n, degree] : {std::pair{1, 0}, {2, 2}, {17, 4}, {60, 60}, {300, 9}}) {
        const Rows rows = random_rows(n, degree, 5.0, static_cast<unsigned>(n));
        IluCase run(rows);
        EXPECT_EQ(run.ilu0(), 0);
        Rows expected;
        for (const Row& row : rows)
            expected.push_back(
                eliminated(row, static_cast<int>(expected.size()), expected, 0.0, [](int, double) { return false; }));
        expect_same(run.factors(), expected);
        EXPECT_EQ(run.lu[run.a.size()], untouched);
    }
}

TEST(Ilu0, IsExactWithoutFillAlsoInPlace) {
    const Rows rows = tridiagonal(50);
    IluCase run(rows);
    EXPECT_EQ(run.ilu0(), 0);
    const Rows product = product_of_factors(run.factors());
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (const auto& [j, value] : product[i]) EXPECT_NEAR(value, at(rows[i], j), 1e-14);
    std::vector<double> factors(run.lu.begin(), run.lu.end() - IluCase::margin);
    DCSRILU0(&run.n, run.a.data(), run.ia.data(), run.ja.data(), run.a.data(), run.ipar.data(), run.dpar.data(),
             &run.ierr);
    EXPECT_EQ(run.a, factors);
}

/// The diagonal matrix 2 2 2 2 2 with another pivot in one row, under threshold -1e-3 and replacement 7.
struct Pivot {
    int row;
    double value;
    int error;     // with ipar(31) = 0
    double stored; // with ipar(31) = 1
};

TEST(Ilu0, SmallPivotsAreReplacedInTheFirstRowOnly) {
    for (const Pivot& pivot : {Pivot{0, 0.0, -102, 7.0}, Pivot{4, 0.0, -102, 7.0}, Pivot{0, -1e-30, -103, 7.0},
                               Pivot{4, -1e-30, -103, -1e-30}, Pivot{0, 1e-3, 0, 1e-3}, Pivot{4, 1e-3, 0, 1e-3},
                               Pivot{0, NAN, -103, 7.0}, Pivot{4, NAN, 0, NAN}}) {
        Rows rows(5);
        for (int i = 0; i < 5; ++i) rows[static_cast<std::size_t>(i)][i] = i == pivot.row ? pivot.value : 2.0;
        IluCase run(rows);
        run.ip(6) = 0;
        run.dp(31) = -1e-3, run.dp(32) = 7.0;
        EXPECT_EQ(run.ilu0(), pivot.error) << pivot.row << ' ' << pivot.value;
        run.ip(31) = 1;
        EXPECT_EQ(run.ilu0(), 0);
        const double stored = run.lu[static_cast<std::size_t>(pivot.row)];
        EXPECT_TRUE(stored == pivot.stored || (std::isnan(stored) && std::isnan(pivot.stored))) << stored;
    }
}

TEST(Ilu0, ReplacedPivotsDivideLaterRows) {
    IluCase run({{{0, 0.0}, {1, 3.0}}, {{0, 8.0}, {1, 1.0}}});
    run.ip(31) = 1, run.dp(32) = 4.0;
    EXPECT_EQ(run.ilu0(), 0);
    expect_same(run.factors(), {{{0, 4.0}, {1, 3.0}}, {{0, 2.0}, {1, -5.0}}});
}

TEST(Ilu0, AnUnsoundRowStopsBeforeElimination) {
    IluCase run(tridiagonal(6));
    run.ip(6) = 0;
    run.ja[15] = 5; // last row: 5 5
    EXPECT_EQ(run.ilu0(), -106);
    EXPECT_EQ(run.lu[2], run.a[2]); // the multiplier of row 2 was not computed
    run.ja[15] = 7;                 // its diagonal is gone
    EXPECT_EQ(run.ilu0(), -101);
    EXPECT_EQ(run.lu[2], run.a[2]);
    run.ja[15] = 6, run.ja[14] = 7; // descending
    EXPECT_EQ(run.ilu0(), -106);
    run.ja[14] = 0; // would be the number of a row
    EXPECT_EQ(run.ilu0(), -106);
    run.ja[14] = 5, run.ia[6] = run.ia[5];
    EXPECT_EQ(run.ilu0(), -101);
    run.ia[0] = 0; // counted from 0
    EXPECT_EQ(run.ilu0(), -101);
}

// ---- ILUT

TEST(Ilut, WithoutDroppingIsTheWholeFactorisation) {
    for (const int n : {2, 9, 80}) {
        const Rows rows = random_rows(n, 4, 6.0, 5);
        IluCase run(rows);
        EXPECT_EQ(run.ilut(0.0, n - 1), 0);
        const Rows product = product_of_factors(run.factors());
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (int j = 0; j < n; ++j) EXPECT_NEAR(at(product[i], j), at(rows[i], j), 1e-13);
        EXPECT_TRUE(std::all_of(run.lu.begin(), run.lu.begin() + run.ilu[static_cast<std::size_t>(n)] - 1,
                                [](double value) { return value != 0.0; }));
    }
}

/// One row by the book: eliminate, thin out, keep the largest, replace a small diagonal.
Row thinned(const Row& input, int i, const Rows& factors, double tol, int maxfil, double factor) {
    double squares = 0.0;
    for (const auto& entry : input) squares += entry.second * entry.second;
    const double mean = std::sqrt(squares / static_cast<double>(input.size())), drop = tol * mean;
    const Row row = eliminated(input, i, factors, drop,
                               [&](int column, double change) { return column == i || drop < std::fabs(change); });
    Row kept;
    std::vector<std::pair<double, int>> lower, upper;
    for (const auto& [column, value] : row) {
        if (column < i) lower.emplace_back(-std::fabs(value), column);
        if (column > i && std::fabs(value) > drop) upper.emplace_back(-std::fabs(value), column);
    }
    for (auto* part : {&lower, &upper}) {
        std::sort(part->begin(), part->end());
        for (int k = 0; k < std::min(maxfil, static_cast<int>(part->size())); ++k) {
            const int column = (*part)[static_cast<std::size_t>(k)].second;
            if (row.at(column) != 0.0) kept[column] = row.at(column);
        }
    }
    kept[i] = std::fabs(at(row, i)) <= drop ? factor * mean : row.at(i);
    return kept;
}

struct Thinning {
    int n, degree, maxfil;
    double tol, dominance;
};

TEST(Ilut, DropsSelectsAndReplacesByTheBook) {
    const int whole = 1000;
    for (const Thinning& t :
         {Thinning{40, 5, whole, 0.02, 3.0}, Thinning{120, 6, 4, 0.0, 4.0}, Thinning{120, 6, 1, 1e-3, 4.0},
          Thinning{200, 12, 7, 0.05, 5.0}, Thinning{60, 60, 9, 1e-4, 12.0}, Thinning{90, 5, 6, 0.5, 0.4},
          Thinning{90, 5, 0, 0.01, 3.0}}) {
        Rows rows = random_rows(t.n, t.degree, t.dominance, static_cast<unsigned>(t.n + t.maxfil));
        for (std::size_t i = 4; i < rows.size(); i += 9) // diagonals that only fill brings
            if (rows[i].size() > 1) rows[i].erase(static_cast<int>(i));
        IluCase run(rows);
        run.ip(31) = 2, run.dp(31) = 0.75;
        EXPECT_EQ(run.ilut(t.tol, std::min(t.maxfil, t.n - 1)), 0);
        Rows expected;
        for (const Row& row : rows)
            expected.push_back(thinned(row, static_cast<int>(expected.size()), expected, t.tol, t.maxfil, 0.75));
        expect_same(run.factors(), expected);
        for (int i = 0; i < t.n; ++i) // L, diagonal, U in this order
            EXPECT_TRUE(std::is_sorted(run.jlu.begin() + run.ilu[static_cast<std::size_t>(i)] - 1,
                                       run.jlu.begin() + run.ilu[static_cast<std::size_t>(i) + 1] - 1,
                                       [i](int x, int y) { return (x > i) + (x > i + 1) < (y > i) + (y > i + 1); }));
    }
}

TEST(Ilut, SelectionTakesTheLargestFromAnyOrder) {
    const int n = 102, keep = 7;
    const std::vector<std::function<double(int)>> shapes{
        [](int k) { return 1.0 + k; }, [](int k) { return k - 200.0; },
        [](int k) { return (k % 2 ? -1.0 : 1.0) * (k * 37 % 101 + 1); }, [](int) { return -4.0; },
        [](int k) { return k % 3 + 1.0; }};
    for (const auto& shape : shapes) {
        Rows rows(n);
        std::vector<double> largest;
        for (int k = 0; k < n - 1; ++k) {
            rows[0][k + 1] = rows[n - 1][k] = shape(k);
            rows[static_cast<std::size_t>(k)][k] = 1.0;
            largest.push_back(std::fabs(shape(k)));
        }
        rows[0].erase(0), rows[n - 1].erase(0); // a row without its diagonal, and no fill in the last one
        rows[n - 1][n - 1] = 1.0;
        IluCase run(rows);
        run.ip(31) = 1, run.dp(31) = 1.0;
        EXPECT_EQ(run.ilut(0.0, keep), 0);
        const Rows factors = run.factors();
        std::sort(largest.rbegin(), largest.rend());
        const auto magnitudes = [](const Row& row, int diagonal) {
            std::vector<double> values;
            for (const auto& [column, value] : row)
                if (column != diagonal) values.push_back(std::fabs(value));
            std::sort(values.rbegin(), values.rend());
            return values;
        };
        EXPECT_EQ(magnitudes(factors[0], 0), std::vector<double>(largest.begin(), largest.begin() + keep));
        std::vector<double> last;
        for (int k = 1; k < n - 1; ++k) last.push_back(std::fabs(shape(k)));
        std::sort(last.rbegin(), last.rend());
        EXPECT_EQ(magnitudes(factors[n - 1], n - 1), std::vector<double>(last.begin(), last.begin() + keep));
    }
}

TEST(Ilut, SmallDiagonalsBecomeAMultipleOfTheRowsMean) {
    IluCase run({{{0, 0.3}, {1, 4.0}}, {{1, 1.0}}});
    run.ip(6) = 0, run.dp(31) = 0.25, run.dp(32) = 99.0;
    const double mean = std::sqrt((0.3 * 0.3 + 16.0) / 2.0);
    EXPECT_EQ(run.ilut(0.2, 1), -102);
    run.ip(31) = -1;
    EXPECT_EQ(run.ilut(0.2, 1), 0);
    expect_same(run.factors(), {{{0, 0.25 * mean}, {1, 4.0}}, {{1, 1.0}}});
    EXPECT_EQ(run.ilut(0.1, 1), 0); // 0.3 is above the tolerance
    EXPECT_EQ(run.lu[0], 0.3);
    IluCase equal({{{0, 7.0}, {1, 1.0}}, {{0, 7.0}, {1, 1.0}}}); // means 5; at the tolerance a multiplier alone stays
    equal.ip(31) = 1, equal.dp(31) = 0.25;
    EXPECT_EQ(equal.ilut(0.2, 1), 0);
    expect_same(equal.factors(), {{{0, 7.0}}, {{0, 1.0}, {1, 1.25}}});
}

TEST(Ilut, OddRowsStayInsideTheArrays) {
    IluCase run({{{0, 2.0}, {3, 1.0}}, {{1, 2.0}}, {{2, 4.0}}, {{3, 8.0}}});
    run.a = {0.5, 1.5, 2.0, 2.0, 1.0, 1.0, 1.0, 4.0, 6.0, 8.0, 2.0};
    run.ja = {1, 1, 4, 2, 2, 2, 2, 3, 3, 4, 1}; // columns given many times, and in the last row backwards
    run.ia = {1, 4, 8, 9, 12};
    EXPECT_EQ(run.ilut(0.0, 3), 0);
    expect_same(run.factors(), {{{0, 2.0}, {3, 2.0}}, {{1, 5.0}}, {{2, 4.0}}, {{0, 1.0}, {2, 1.5}, {3, 6.0}}});
    const Rows rows = random_rows(50, 20, 3.0, 8);
    IluCase mixed(rows);
    for (std::size_t i = 0; i < rows.size(); ++i)
        std::reverse(mixed.ja.begin() + mixed.ia[i] - 1, mixed.ja.begin() + mixed.ia[i + 1] - 1);
    EXPECT_EQ(mixed.ilut(0.0, 6), 0);
    for (const Row& row : mixed.factors()) EXPECT_LE(row.size(), 13U);
    std::fill(mixed.a.begin(), mixed.a.end(), NAN);
    EXPECT_EQ(mixed.ilut(0.0, 6), 0);
    int stored = 0; // NaN is neither dropped nor above the tolerance as fill
    for (int i = 0; i < mixed.n; ++i) {
        const Row& row = rows[static_cast<std::size_t>(i)];
        const int lower = static_cast<int>(std::distance(row.begin(), row.find(i)));
        stored += std::min(lower, 6) + 1 + std::min(static_cast<int>(row.size()) - lower - 1, 6);
    }
    EXPECT_EQ(mixed.ilu[rows.size()], stored + 1);
}

TEST(Ilut, WithoutRowsThereIsNothingToDo) {
    IluCase run({{{0, 4.0}}});
    EXPECT_EQ(run.ilut(0.0, 0), 0); // one row, no warning
    EXPECT_EQ(run.lu[0], 4.0);
    run.n = 0, run.ip(7) = 1;
    EXPECT_EQ(printed_by([&] { run.ilut(0.0, 0); }).substr(80, 25), "NXL DCSRILUT WARNING: \nMa");
    EXPECT_EQ(run.ierr, 101); // maxfil 0 is n
    EXPECT_EQ(run.ilu[0], 1);
}

TEST(Ilut, OutputsLaidOverInputsAreNoticed) {
    IluCase run({{{1, 1.0}}, {{1, 1.0}}, {{2, 1.0}}}); // row 1 is stored longer than it is given
    run.ip(6) = 0, run.ip(31) = 1, run.dp(31) = 1.0;
    std::vector<double> lu(9);
    std::vector<int> jlu(9);
    const int maxfil = 1;
    const double tol = 0.0;
    DCSRILUT(&run.n, run.a.data(), run.ia.data(), run.ja.data(), lu.data(), run.ia.data(), jlu.data(), &tol, &maxfil,
             run.ipar.data(), run.dpar.data(), &run.ierr);
    EXPECT_EQ(run.ierr, -101);
}

// ---- Memory

/// Fails each allocation of the call in turn; counts the calls that report it.
int failures_of(IluCase run, const std::function<int(IluCase&)>& call) {
    NXL_FreeBuffers();
    run.ip(6) = 0;
    const long before = allocations(), held = live_blocks();
    EXPECT_EQ(call(run), 0);
    const std::vector<double> factors = run.lu;
    const long taken = allocations() - before;
    int failures = 0;
    for (long k = 1; k <= taken; ++k) {
        NXL_FreeBuffers();
        fail_allocation(k);
        const int ierr = call(run);
        fail_allocation(0);
        if (ierr == -104) ++failures;
        else EXPECT_EQ(run.lu, factors) << k; // the thread's record of buffers can be done without
        NXL_FreeBuffers();
        EXPECT_EQ(live_blocks(), held);
    }
    return failures;
}

TEST(IluMemory, EachFailureIsReportedAndNothingIsKept) {
    const IluCase run(tridiagonal(1000));
    EXPECT_EQ(failures_of(run, [](IluCase& it) { return it.ilu0(); }), 1);
    EXPECT_EQ(failures_of(run, [](IluCase& it) { return it.ilut(0.0, 3); }), 4);
}

} // namespace
