// Band and full systems, from the factorisation to the error bounds, against the reference LAPACK. Matrices of every
// storage are filled by one function; what lies outside of them is NaN and has to stay.
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/lapack.hpp"
#include <cmath>
#include <numeric>

namespace {

using namespace nxl_test;

/// What a matrix is like, beside random.
enum class Kind { dominated, random, zero_column, graded, tiny, huge, nan };
constexpr Kind kinds[] = {Kind::dominated, Kind::random, Kind::zero_column, Kind::graded,
                          Kind::tiny,      Kind::huge,   Kind::nan};

/// Which diagonals there are, and in which row of the array the main one lies.
struct Band {
    int m, n, kl, ku, above; // above: rows of the array over the main diagonal
    char uplo;               // U, L, or G for a general band

    int rows() const { return above + kl + 1; }
    bool stores(int i, int j) const {
        return i < m && j - i <= (uplo == 'L' ? 0 : ku) && i - j <= (uplo == 'U' ? 0 : kl) && i >= 0;
    }
};

/// The element of a matrix that depends on its place and kind alone; for uplo U or L it is Hermitian.
template <class T> T element(Kind kind, const Band& band, int i, int j) {
    const bool swapped = band.uplo == 'L' && i > j;
    Generator generator(static_cast<unsigned long>(std::min(i, j) * 7919 + (band.uplo == 'G' && i > j ? 3 : 0) +
                                                   std::max(i, j) * 104729 + 17));
    const int row = std::min(i, j), width = band.kl + band.ku + 1;
    T v = random_value<T>(generator);
    if (swapped) v = conjugate(v);
    if (i == j && band.uplo != 'G') v = 2.0 + std::abs(v) + width;
    const bool triangular = band.ku == 0; // whose condition would grow exponentially with the order
    if (i == j && (kind == Kind::dominated || triangular) && band.uplo == 'G') v += scalar<T>(1.0 + width, 0.0);
    if (kind == Kind::zero_column && (band.uplo == 'G' ? j : row) == band.n / 2 && (band.uplo == 'G' || i == j))
        v = T{};
    if (kind == Kind::graded) v *= std::pow(10.0, (band.uplo == 'G' ? 0.0 : -3.0) + 3.0 * std::sin(i) * std::sin(j));
    if (kind == Kind::graded && i == j && band.uplo != 'G') v *= 1e4;
    if (kind == Kind::tiny) v *= 1e-290;
    if (kind == Kind::huge) v *= 1e290;
    if (kind == Kind::nan && i == j && i == band.n / 3) v = std::nan("");
    return v;
}

template <class T> LapackMatrix<T> banded(Kind kind, const Band& band) {
    LapackMatrix<T> ab(band.rows(), band.n, 2);
    for (int j = 0; j < band.n; ++j)
        for (int i = std::max(0, j - band.ku); i < band.m; ++i)
            if (band.stores(i, j)) ab.at(band.above + i - j, j) = element<T>(kind, band, i, j);
    return ab;
}
template <class T> LapackMatrix<T> full(Kind kind, const Band& band) {
    LapackMatrix<T> a(band.m, band.n, 2);
    for (int j = 0; j < band.n; ++j)
        for (int i = 0; i < band.m; ++i)
            if (band.stores(i, j)) a.at(i, j) = element<T>(kind, band, i, j);
    return a;
}

/// The largest difference relative to the largest element; NaN on both sides agrees, on one does not.
template <class T> double difference(const std::vector<T>& x, const std::vector<T>& y) {
    double worst = 0.0, size = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const bool nan = std::isnan(std::abs(x[i]));
        if (nan != std::isnan(std::abs(y[i]))) return HUGE_VAL;
        if (nan || x[i] == y[i]) continue;
        worst = std::max(worst, std::abs(x[i] - y[i]));
        size = std::max({size, std::abs(x[i]), std::abs(y[i])});
    }
    return worst == 0.0 ? 0.0 : worst / size;
}

/// A routine of ours, of the scalar at hand, or the reference's of that name, which takes the same arguments.
template <class T, class D, class Z, class... Arguments>
void call(bool ours, const char* name, D* real, Z* complex, Arguments... arguments) {
    const auto run = [&]<class... P>(void (*routine)(P...) noexcept) {
        if (ours) routine(arguments...);
        else reference<void(P...)>((std::string(1, is_complex<T> ? 'z' : 'd') + name + '_').c_str())(arguments...);
    };
    if constexpr (is_complex<T>) run(complex);
    else run(real);
}

/// Work arrays of the largest published sizes.
template <class T> struct Work {
    std::vector<T> work;
    std::vector<double> reals;
    std::vector<int> integers;
    explicit Work(int n)
        : work(4 * static_cast<std::size_t>(n) + 4),
          reals(2 * static_cast<std::size_t>(n) + 2),
          integers(static_cast<std::size_t>(n) + 1) {}
    auto spare() {
        if constexpr (is_complex<T>) return reals.data();
        else return integers.data();
    }
};

/// A system of order n with its factors; `option` is trans, norm or uplo.
template <class T> struct General {
    Band band;
    LapackMatrix<T> a, factors;
    std::vector<int> ipiv;
    int info = -99;
    std::string solutions = "NTC", norms = "1OI"; // options

    static int diagonal(int j) { return j; }
    General(Kind kind, int n, int, int, char)
        : band{n, n, n, n, 0, 'G'},
          a(full<T>(kind, band)),
          factors(a),
          ipiv(static_cast<std::size_t>(n) + 1) {}
    void factor(bool ours) {
        call<T>(ours, "getrf", dgetrf, zgetrf, &band.n, &band.n, factors.data(), &factors.lda, ipiv.data(), &info);
    }
    void solve(bool ours, char option, int count, std::vector<T>& b, int ldb) {
        call<T>(ours, "getrs", dgetrs, zgetrs, &option, &band.n, &count, factors.data(), &factors.lda, ipiv.data(),
                b.data(), &ldb, &info, 1);
    }
    void condition(bool ours, char option, double norm, double& rcond, Work<T>& w) {
        call<T>(ours, "gecon", dgecon, zgecon, &option, &band.n, factors.data(), &factors.lda, &norm, &rcond,
                w.work.data(), w.spare(), &info, 1);
    }
    void refine(bool ours, char option, int count, const std::vector<T>& b, std::vector<T>& x, int ldb, double* ferr,
                double* berr, Work<T>& w) {
        call<T>(ours, "gerfs", dgerfs, zgerfs, &option, &band.n, &count, a.data(), &a.lda, factors.data(), &factors.lda,
                ipiv.data(), b.data(), &ldb, x.data(), &ldb, ferr, berr, w.work.data(), w.spare(), &info, 1);
    }
};

template <class T> struct PositiveDefinite {
    Band band;
    LapackMatrix<T> a, factors;
    std::vector<int> ipiv;
    int info = -99;
    std::string solutions{band.uplo}, norms = solutions; // one option

    static int diagonal(int j) { return j; }
    PositiveDefinite(Kind kind, int n, int, int, char uplo)
        : band{n, n, n, n, 0, uplo},
          a(full<T>(kind, band)),
          factors(a) {}
    void factor(bool ours) {
        call<T>(ours, "potrf", dpotrf, zpotrf, &band.uplo, &band.n, factors.data(), &factors.lda, &info, 1);
    }
    void solve(bool ours, char, int count, std::vector<T>& b, int ldb) {
        call<T>(ours, "potrs", dpotrs, zpotrs, &band.uplo, &band.n, &count, factors.data(), &factors.lda, b.data(),
                &ldb, &info, 1);
    }
    void condition(bool ours, char, double norm, double& rcond, Work<T>& w) {
        call<T>(ours, "pocon", dpocon, zpocon, &band.uplo, &band.n, factors.data(), &factors.lda, &norm, &rcond,
                w.work.data(), w.spare(), &info, 1);
    }
    void refine(bool ours, char, int count, const std::vector<T>& b, std::vector<T>& x, int ldb, double* ferr,
                double* berr, Work<T>& w) {
        call<T>(ours, "porfs", dporfs, zporfs, &band.uplo, &band.n, &count, a.data(), &a.lda, factors.data(),
                &factors.lda, b.data(), &ldb, x.data(), &ldb, ferr, berr, w.work.data(), w.spare(), &info, 1);
    }
};

template <class T> struct GeneralBand {
    Band band;
    LapackMatrix<T> a, factors;
    std::vector<int> ipiv;
    int info = -99;
    std::string solutions = "NTC", norms = "1OI"; // options

    int diagonal(int) const { return band.above; }
    GeneralBand(Kind kind, int m, int n, int kl, int ku)
        : band{m, n, kl, ku, ku, 'G'},
          a(banded<T>(kind, band)),
          factors(banded<T>(kind, {m, n, kl, ku, kl + ku, 'G'})),
          ipiv(static_cast<std::size_t>(std::max(m, n)) + 1) {}
    GeneralBand(Kind kind, int n, int kl, int ku, char) : GeneralBand(kind, n, n, kl, ku) {}
    void factor(bool ours) {
        call<T>(ours, "gbtrf", dgbtrf, zgbtrf, &band.m, &band.n, &band.kl, &band.ku, factors.data(), &factors.lda,
                ipiv.data(), &info);
    }
    void solve(bool ours, char option, int count, std::vector<T>& b, int ldb) {
        call<T>(ours, "gbtrs", dgbtrs, zgbtrs, &option, &band.n, &band.kl, &band.ku, &count, factors.data(),
                &factors.lda, ipiv.data(), b.data(), &ldb, &info, 1);
    }
    void condition(bool ours, char option, double norm, double& rcond, Work<T>& w) {
        call<T>(ours, "gbcon", dgbcon, zgbcon, &option, &band.n, &band.kl, &band.ku, factors.data(), &factors.lda,
                ipiv.data(), &norm, &rcond, w.work.data(), w.spare(), &info, 1);
    }
    void refine(bool ours, char option, int count, const std::vector<T>& b, std::vector<T>& x, int ldb, double* ferr,
                double* berr, Work<T>& w) {
        call<T>(ours, "gbrfs", dgbrfs, zgbrfs, &option, &band.n, &band.kl, &band.ku, &count, a.data(), &a.lda,
                factors.data(), &factors.lda, ipiv.data(), b.data(), &ldb, x.data(), &ldb, ferr, berr, w.work.data(),
                w.spare(), &info, 1);
    }
};

template <class T> struct PositiveDefiniteBand {
    Band band;
    LapackMatrix<T> a, factors;
    std::vector<int> ipiv;
    int info = -99;
    std::string solutions{band.uplo}, norms = solutions;

    int diagonal(int) const { return band.above; }
    PositiveDefiniteBand(Kind kind, int n, int kd, int, char uplo)
        : band{n, n, uplo == 'U' ? 0 : kd, uplo == 'U' ? kd : 0, uplo == 'U' ? kd : 0, uplo},
          a(banded<T>(kind, band)),
          factors(a) {}
    const int* kd() const { return band.uplo == 'U' ? &band.ku : &band.kl; }
    void factor(bool ours) {
        call<T>(ours, "pbtrf", dpbtrf, zpbtrf, &band.uplo, &band.n, kd(), factors.data(), &factors.lda, &info, 1);
    }
    void solve(bool ours, char, int count, std::vector<T>& b, int ldb) {
        call<T>(ours, "pbtrs", dpbtrs, zpbtrs, &band.uplo, &band.n, kd(), &count, factors.data(), &factors.lda,
                b.data(), &ldb, &info, 1);
    }
    void condition(bool ours, char, double norm, double& rcond, Work<T>& w) {
        call<T>(ours, "pbcon", dpbcon, zpbcon, &band.uplo, &band.n, kd(), factors.data(), &factors.lda, &norm, &rcond,
                w.work.data(), w.spare(), &info, 1);
    }
    void refine(bool ours, char, int count, const std::vector<T>& b, std::vector<T>& x, int ldb, double* ferr,
                double* berr, Work<T>& w) {
        call<T>(ours, "pbrfs", dpbrfs, zpbrfs, &band.uplo, &band.n, kd(), &count, a.data(), &a.lda, factors.data(),
                &factors.lda, b.data(), &ldb, x.data(), &ldb, ferr, berr, w.work.data(), w.spare(), &info, 1);
    }
};

template <class System> class LinearSystem : public ::testing::Test {};
using Systems = ::testing::Types<General<double>, General<zcomplex>, PositiveDefinite<double>,
                                 PositiveDefinite<zcomplex>, GeneralBand<double>, GeneralBand<zcomplex>,
                                 PositiveDefiniteBand<double>, PositiveDefiniteBand<zcomplex>>;
TYPED_TEST_SUITE(LinearSystem, Systems);

struct Sizes {
    int n, kl, ku;
};
/// Narrow bands and blocked ones, wider than the matrix too, and sizes around a block. Each meets both triangles.
constexpr Sizes sizes[] = {{0, 0, 0},   {1, 3, 2},    {5, 0, 0},    {7, 2, 9},    {145, 5, 4},
                           {70, 13, 0}, {97, 20, 31}, {130, 40, 3}, {64, 70, 66}, {210, 97, 50}};

template <class System> void for_each_system(const std::string& without, auto&& body) {
    for (const Kind kind : kinds) {
        if (without.find(static_cast<char>('0' + static_cast<int>(kind))) != std::string::npos) continue;
        for (const auto& [n, kl, ku] : sizes) {
            const char uplo = (static_cast<int>(kind) + kl) % 2 == 0 ? 'U' : 'L';
            SCOPED_TRACE(testing::Message()
                         << "kind " << static_cast<int>(kind) << " n " << n << " kl " << kl << " ku " << ku << uplo);
            body(System(kind, n, kl, ku, uplo));
        }
    }
}

/// Factors, pivots, info and what is not touched are the reference's, where the arithmetic decides nothing.
TYPED_TEST(LinearSystem, FactorsAreTheReferences) {
    for_each_system<TypeParam>("6", [](const TypeParam& system) {
        TypeParam ours = system, expected = system;
        ours.factor(true);
        expected.factor(false);
        EXPECT_EQ(ours.info, expected.info);
        EXPECT_EQ(ours.ipiv, expected.ipiv);
        if (expected.info == 0) EXPECT_LE(difference(ours.factors.elements, expected.factors.elements), 1e-9);
        EXPECT_TRUE(ours.factors.slack_untouched());
    });
}

TYPED_TEST(LinearSystem, SolutionsAreTheReferences) {
    for_each_system<TypeParam>("126", [](TypeParam system) {
        using T = typename std::remove_reference_t<decltype(system.a.elements)>::value_type;
        system.factor(false);
        const int ldb = system.band.n + 1;
        for (const char option : system.solutions)
            for (const int count : {0, 1, 3, 101}) {
                const Team team(count < 101 ? 1 : 3);
                SCOPED_TRACE(testing::Message() << option << " nrhs " << count);
                std::vector<T> x = random_values<T>(ldb * count, 3), expected = x;
                system.solve(true, option, count, x, ldb);
                EXPECT_EQ(system.info, 0);
                system.solve(false, option, count, expected, ldb);
                EXPECT_LE(difference(x, expected), 1e-9);
            }
    });
}

/// Both climb the same hill; ours keeps the highest point. A NaN is told, and a singular matrix.
TYPED_TEST(LinearSystem, ReciprocalConditions) {
    using T = typename decltype(TypeParam::a.elements)::value_type;
    for_each_system<TypeParam>("", [](TypeParam system) {
        const double norm = 3.5;
        const int spoilt = system.band.n / 3;
        const bool nan = system.band.n > 0 && std::isnan(abs1(system.a.at(system.diagonal(spoilt), spoilt)));
        system.factor(false);
        const bool factored = system.info == 0;
        Work<T> work(system.band.n);
        for (const char option : factored ? system.norms : "") {
            double found = -1.0, expected = -1.0;
            system.condition(true, option, norm, found, work);
            system.condition(false, option, norm, expected, work);
            EXPECT_EQ(std::isnan(found), nan);
            if (!nan) EXPECT_LE(found, expected * 1.1);
            if (!nan && expected > 1e-300) EXPECT_GE(found, expected / 4.0);
            system.condition(true, option, 0.0, found, work);
            EXPECT_EQ(found, system.band.n == 0 ? 1.0 : 0.0);
            system.condition(true, option, std::nan(""), found, work);
            EXPECT_TRUE(system.band.n == 0 || std::isnan(found));
        }
    });
}

/// A spoilt solution becomes good to the last bits, and the bounds are the reference's.
TYPED_TEST(LinearSystem, RefinementMendsWhatIsSpoilt) {
    using T = typename decltype(TypeParam::a.elements)::value_type;
    for_each_system<TypeParam>("126", [](TypeParam system) {
        system.factor(false);
        const int ldb = system.band.n + 1, count = 2;
        Work<T> work(system.band.n);
        for (const char option : system.solutions) {
            const std::vector<T> b = random_values<T>(ldb * count, 5);
            std::vector<T> x = b;
            system.solve(false, option, count, x, ldb);
            if (system.band.n > 0) x[0] *= 1.0 + 1e-6;
            std::vector<T> expected = x;
            double ferr[2] = {-1.0, -1.0}, berr[2] = {-1.0, -1.0}, wide[2], back[2];
            system.refine(true, option, count, b, x, ldb, ferr, berr, work);
            EXPECT_EQ(system.info, 0);
            system.refine(false, option, count, b, expected, ldb, wide, back, work);
            for (int k = 0; k < count; ++k) {
                EXPECT_LE(berr[k], std::max(4.0 * eps, 2.0 * back[k]));
                EXPECT_GE(ferr[k], wide[k] / 4.0);
                EXPECT_LE(ferr[k], wide[k] * 4.0);
            }
            EXPECT_LE(difference(x, expected), 4.0 * std::max({ferr[0], ferr[1], eps}));
        }
    });
}

/// With the k-th allocation failing for every k, a step is done by the road that needs no memory, or nothing happened
/// and that is told.
TYPED_TEST(LinearSystem, EveryAllocationMayFail) {
    using T = typename decltype(TypeParam::a.elements)::value_type;
    const int n = 130, count = 3;
    const TypeParam system(Kind::dominated, n, 40, 20, 'U');
    TypeParam whole = system;
    whole.factor(true);
    const std::vector<T> b = random_values<T>(n * count, 5);
    std::vector<T> x = b;
    whole.solve(true, system.solutions[0], count, x, n);
    Work<T> work(n);
    double rcond = 0.0, ferr[3], berr[3];
    whole.condition(true, system.norms[0], 1.0, rcond, work);
    for (long failing = 1; failing <= 6; ++failing) {
        const auto starved = [&](TypeParam& of, auto&& step, auto&& done, auto&& untouched) {
            NXL_FreeBuffers();
            fail_allocation(failing);
            const std::string printed = printed_by(step);
            fail_allocation(0);
            EXPECT_EQ(of.info, printed.empty() ? 0 : -1000) << failing;
            EXPECT_TRUE(printed.empty() ? done() : untouched()) << failing << printed;
        };
        TypeParam ours = system;
        starved(
            ours, [&] { ours.factor(true); },
            [&] { return difference(ours.factors.elements, whole.factors.elements) <= 1e-10; },
            [&] { return difference(ours.factors.elements, system.factors.elements) == 0.0; });
        ours = whole;
        std::vector<T> y = b;
        starved(
            ours, [&] { ours.solve(true, system.solutions[0], count, y, n); },
            [&] { return difference(x, y) <= 1e-10; }, [&] { return y == b; });
        double found = -1.0;
        starved(
            ours, [&] { ours.condition(true, system.norms[0], 1.0, found, work); },
            [&] { return std::abs(found - rcond) <= 1e-10 * rcond; }, [&] { return found == -1.0; });
        y = x;
        starved(
            ours, [&] { ours.refine(true, system.solutions[0], count, b, y, n, ferr, berr, work); },
            [&] { return difference(x, y) <= 1e-10; }, [&] { return y == x; });
    }
}

/// More rows than columns and more columns than rows; a team; no positive minor after the first.
TEST(BandFactorisation, OfRectangles) {
    const Team team(3);
    for (const auto& [m, n] : {std::pair{40, 90}, {90, 40}, {3, 50}, {120, 100}, {100, 130}})
        for (const auto& [kl, ku] : {std::pair{3, 4}, {20, 14}, {45, 0}, {14, 60}}) {
            SCOPED_TRACE(testing::Message() << m << " by " << n << " kl " << kl << " ku " << ku);
            GeneralBand<double> ours(Kind::dominated, m, n, kl, ku), expected = ours;
            ours.factor(true);
            expected.factor(false);
            EXPECT_EQ(ours.info, expected.info);
            EXPECT_EQ(ours.ipiv, expected.ipiv);
            EXPECT_LE(difference(ours.factors.elements, expected.factors.elements), 1e-9);
        }
}

} // namespace
