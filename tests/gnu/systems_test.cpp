// What libnxl_gnu.so computes by algorithms of its own: tridiagonal and packed systems, and norms.
#include "nxl.h"
#include "tests/support/dense.hpp"
#include "tests/support/lapack_matrices.hpp"
#include <limits>

using nxl_test::zcomplex;

template <class T> using Gtsv = void(const int*, const int*, T*, T*, T*, T*, const int*, int*);
template <class T> using Ptsv = void(const int*, const int*, double*, T*, T*, const int*, int*);
template <class T> using Spsv = void(const char*, const int*, const int*, T*, int*, T*, const int*, int*);
template <class T> using Lange = double(const char*, const int*, const int*, const T*, const int*, double*);
template <class T>
using Lantr = double(const char*, const char*, const char*, const int*, const int*, const T*, const int*, double*);
template <class T> using Langb = double(const char*, const int*, const int*, const int*, const T*, const int*, double*);
template <class T> using Lansy = double(const char*, const char*, const int*, const T*, const int*, double*);
template <class T>
using Lansb = double(const char*, const char*, const int*, const int*, const T*, const int*, double*);

extern "C" {
Gtsv<double> dgtsv_;
Ptsv<double> dptsv_;
Spsv<double> dspsv_;
Lange<double> dlange_;
Lantr<double> dlantr_;
Langb<double> dlangb_;
Lansy<double> dlansy_;
Lansb<double> dlansb_;
Gtsv<zcomplex> zgtsv_;
Ptsv<zcomplex> zptsv_;
Spsv<zcomplex> zspsv_, zhpsv_;
Lange<zcomplex> zlange_;
Lantr<zcomplex> zlantr_;
Langb<zcomplex> zlangb_;
Lansy<zcomplex> zlansy_, zlanhe_;
Lansb<zcomplex> zlansb_, zlanhb_;
}

namespace {

using namespace nxl_test;

template <class T> struct Gnu;
template <> struct Gnu<double> {
    static constexpr auto* gtsv = dgtsv_;
    static constexpr auto* ptsv = dptsv_;
    static constexpr auto* spsv = dspsv_;
    static constexpr auto* lange = dlange_;
    static constexpr auto* lantr = dlantr_;
    static constexpr auto* langb = dlangb_;
    static constexpr auto* lansy = dlansy_;
    static constexpr auto* lansb = dlansb_;
    static constexpr auto* hpsv = dspsv_;
    static constexpr auto* lanhe = dlansy_;
    static constexpr auto* lanhb = dlansb_;
};
template <> struct Gnu<zcomplex> {
    static constexpr auto* gtsv = zgtsv_;
    static constexpr auto* ptsv = zptsv_;
    static constexpr auto* spsv = zspsv_;
    static constexpr auto* lange = zlange_;
    static constexpr auto* lantr = zlantr_;
    static constexpr auto* langb = zlangb_;
    static constexpr auto* lansy = zlansy_;
    static constexpr auto* lansb = zlansb_;
    static constexpr auto* hpsv = zhpsv_;
    static constexpr auto* lanhe = zlanhe_;
    static constexpr auto* lanhb = zlanhb_;
};

/// Right-hand sides of full matrix a for solutions of random values, what a driver has made of them, and its info.
template <class T> struct System {
    Dense<T> a;
    LapackMatrix<T> x, b, given = b;
    int info = -99;

    System(const Dense<T>& matrix, int nrhs)
        : a(matrix),
          x(matrix_of<T>(MatrixKind::random, a.rows, nrhs)),
          b(a.rows, nrhs, 3) {
        for (int k = 0; k < nrhs; ++k)
            for (int i = 0; i < a.rows; ++i) {
                b.at(i, k) = T{};
                for (int j = 0; j < a.rows; ++j) b.at(i, k) += a(i, j) * x.at(j, k);
            }
        given = b;
    }
    /// The largest |b - A x| over n eps |A| |x|, in the largest elements.
    double residual() const {
        double worst = 0.0, size = 0.0;
        for (int k = 0; k < b.cols; ++k)
            for (int i = 0; i < b.rows; ++i) {
                T sum = given.at(i, k);
                for (int j = 0; j < b.rows; ++j) sum -= a(i, j) * b.at(j, k);
                size = std::max(size, abs1(b.at(i, k)));
                if (!(abs1(sum) <= worst)) worst = abs1(sum);
            }
        return a.rows == 0 || b.cols == 0 ? 0.0 : worst / (a.rows * eps * a.largest() * size);
    }
    bool unchanged() const {
        return std::memcmp(b.elements.data(), given.elements.data(), b.elements.size() * sizeof(T)) == 0;
    }
};

/// dl, d and du of a tridiagonal matrix, each of n elements.
template <class T> struct Diagonals {
    std::vector<T> below, main, above;

    Diagonals(int n, unsigned long seed)
        : below(random_values<T>(n, seed)),
          main(random_values<T>(n, seed + 1)),
          above(random_values<T>(n, seed + 2)) {}
    Dense<T> full() const {
        Dense<T> a(static_cast<int>(main.size()), static_cast<int>(main.size()));
        for (int i = 0; i < a.rows; ++i) {
            const auto at = static_cast<std::size_t>(i);
            a(i, i) = main[at];
            if (i + 1 == a.rows) break;
            a(i + 1, i) = below[at];
            a(i, i + 1) = above[at];
        }
        return a;
    }
};

template <class T> class GnuSystems : public ::testing::Test {};
TYPED_TEST_SUITE(GnuSystems, Scalars);

TYPED_TEST(GnuSystems, TridiagonalWithInterchanges) { // catches fill that is lost, or swapped twice
    using T = TypeParam;
    for (const int n : {0, 1, 2, 3, 4, 50})
        for (const int nrhs : {0, 1, 3, 9})
            for (unsigned long seed = 1; seed < 9; ++seed) {
                Diagonals<T> t(n, 10 * seed);
                if (n > 3 && seed == 1) t.main[0] = t.main[2] = t.below[1] = T{}; // rows that have to change places
                System<T> system(t.full(), nrhs);
                Gnu<T>::gtsv(&n, &nrhs, t.below.data(), t.main.data(), t.above.data(), system.b.data(), &system.b.lda,
                             &system.info);
                EXPECT_EQ(system.info, 0) << n << " " << seed;
                EXPECT_LE(system.residual(), 10.0) << n << " " << nrhs << " " << seed;
                EXPECT_TRUE(n == 0 || system.b.slack_untouched());
            }
    const int n = 5, nrhs = 2;
    Diagonals<T> t(n, 1);
    t.main[3] = t.below[2] = t.below[3] = T{}; // a zero column but for the row above
    System<T> singular(t.full(), nrhs);
    Gnu<T>::gtsv(&n, &nrhs, t.below.data(), t.main.data(), t.above.data(), singular.b.data(), &singular.b.lda,
                 &singular.info);
    EXPECT_EQ(singular.info, 4);
    EXPECT_TRUE(singular.unchanged());
}

TYPED_TEST(GnuSystems, TridiagonalDefinite) {
    using T = TypeParam;
    for (const int n : {0, 1, 2, 50})
        for (const int nrhs : {1, 6})
            for (const bool definite : {true, false}) {
                Diagonals<T> t(n, 3);
                std::vector<double> d(t.main.size(), 3.0);
                for (std::size_t i = 0; i < d.size(); ++i) t.above[i] = conjugate(t.below[i]);
                if (!definite && n > 1) d[1] = std::norm(t.below[0]) / 4.0;
                t.main.assign(d.begin(), d.end());
                System<T> system(t.full(), nrhs);
                Gnu<T>::ptsv(&n, &nrhs, d.data(), t.below.data(), system.b.data(), &system.b.lda, &system.info);
                EXPECT_EQ(system.info, definite || n < 2 ? 0 : 2);
                if (system.info == 0) EXPECT_LE(system.residual(), 10.0) << n;
                else EXPECT_TRUE(system.unchanged());
            }
}

TYPED_TEST(GnuSystems, PackedIndefinite) { // catches a triangle packed by the other's rule, and factors left behind
    using T = TypeParam;
    for (const int n : {0, 1, 2, 3, 70})
        for (const char uplo : {'U', 'l'})
            for (const bool hermitian : {true, false}) {
                Dense<T> a(n, n);
                std::vector<T> packed, before;
                Generator generator(7);
                for (int j = 0; j < n; ++j)
                    for (int i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n); ++i) {
                        T value = random_value<T>(generator);
                        if (i == j && hermitian) value = std::real(value);
                        packed.push_back(value);
                        a(j, i) = hermitian ? conjugate(value) : value;
                        a(i, j) = value;
                    }
                packed.push_back(7.0);
                const int nrhs = 3;
                std::vector<int> pivots(static_cast<std::size_t>(n));
                const auto solve = hermitian ? Gnu<T>::hpsv : Gnu<T>::spsv;
                System<T> system(a, nrhs);
                before = packed;
                solve(&uplo, &n, &nrhs, packed.data(), pivots.data(), system.b.data(), &system.b.lda, &system.info);
                EXPECT_EQ(system.info, 0);
                EXPECT_LE(system.residual(), 30.0) << n << uplo << hermitian;
                EXPECT_EQ(packed.back(), T(7.0));
                EXPECT_TRUE(n < 2 || packed != before);
                EXPECT_EQ(std::count(pivots.begin(), pivots.end(), 0), 0);
            }
}

/// A kind of matrix of the routines' names (ge tr gb sy he sb hb) as it is stored, NaN wherever nothing may be read,
/// and its moduli in full.
template <class T> struct Stored {
    std::string kind;
    char uplo, diag;
    int m, n, kl, ku;
    LapackMatrix<T> array;
    Dense<long double> moduli;
    std::vector<T*> elements{};

    static bool is_band(const std::string& kind) { return kind[1] == 'b'; }
    bool symmetric() const { return kind[0] == 's' || kind[0] == 'h'; }
    bool unit() const { return kind == "tr" && diag == 'U'; }

    Stored(const char* of, char triangle, char unit_or_not, int rows, int columns, double scale)
        : kind(of),
          uplo(triangle),
          diag(unit_or_not),
          m(rows),
          n(columns),
          kl(is_band(kind) ? 2 : m),
          ku(is_band(kind) ? 1 : n),
          array(is_band(kind) ? 4 : m, n, 2),
          moduli(m, n) {
        if (kind != "ge" && kind != "gb") (uplo == 'U' ? kl : ku) = 0;
        for (T& element : array.elements) element = all_nan<T>();
        Generator generator(5);
        for (int j = 0; j < n; ++j)
            for (int i = std::max(0, j - ku); i <= std::min(m - 1, j + kl); ++i) {
                if (i == j && unit()) continue;
                const bool small = generator() % 3 == 0;
                T& element = is_band(kind) ? array.at(ku + i - j, j) : array.at(i, j);
                element = random_value<T>(generator) * scale * (small ? 1e-9 : 1.0);
                elements.push_back(&element);
            }
        fill_moduli();
    }
    void fill_moduli() {
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) {
                const bool here = j - i <= ku && i - j <= kl, mirrored = symmetric() && !here;
                const int row = mirrored ? j : i, column = mirrored ? i : j;
                if (i == j && unit()) moduli(i, j) = 1.0L;
                if (column - row > ku || row - column > kl || (i == j && unit())) continue;
                const T value = is_band(kind) ? array.at(ku + row - column, column) : array.at(row, column);
                const long double imaginary = i == j && kind[0] == 'h' ? 0.0L : std::imag(value);
                moduli(i, j) = std::hypot(static_cast<long double>(std::real(value)), imaginary);
            }
    }
    double expected(char norm) const {
        long double largest = 0.0L, squares = 0.0L;
        const bool rows = norm == 'I';
        for (int j = 0; j < (rows ? m : n); ++j) {
            long double sum = 0.0L;
            for (int i = 0; i < (rows ? n : m); ++i) {
                const long double value = rows ? moduli(j, i) : moduli(i, j);
                sum = norm == 'M' ? std::max(sum, value) : sum + value;
                squares += value * value;
            }
            largest = std::max(largest, sum);
        }
        return static_cast<double>(norm == 'F' ? std::sqrt(squares) : largest);
    }
    double found(char norm) {
        const T* const a = array.data();
        const int *const lda = &array.lda, width = std::max(kl, ku);
        std::vector<double> sums(static_cast<std::size_t>(m) + 1, -1.0);
        double* const work = sums.data();
        if (kind == "ge") return Gnu<T>::lange(&norm, &m, &n, a, lda, work);
        if (kind == "tr") return Gnu<T>::lantr(&norm, &uplo, &diag, &m, &n, a, lda, work);
        if (kind == "gb") return Gnu<T>::langb(&norm, &n, &kl, &ku, a, lda, work);
        if (kind == "sy") return Gnu<T>::lansy(&norm, &uplo, &n, a, lda, work);
        if (kind == "he") return Gnu<T>::lanhe(&norm, &uplo, &n, a, lda, work);
        return (kind == "sb" ? Gnu<T>::lansb : Gnu<T>::lanhb)(&norm, &uplo, &n, &width, a, lda, work);
    }
};

template <class T> class GnuNorms : public ::testing::Test {};
TYPED_TEST_SUITE(GnuNorms, Scalars);

TYPED_TEST(GnuNorms, OfEveryStorageOverTheRange) { // catches squares that overflow or vanish, and elements read twice
    for (const char* kind : {"ge", "tr", "gb", "sy", "he", "sb", "hb"})
        for (const auto& [m, n] : {std::pair(1, 1), {13, 13}, {12, 5}, {5, 12}, {0, 3}, {3, 0}})
            for (const char uplo : {'U', 'L'})
                for (const double scale : {1.0, 1e-300, 1e-155, 1e155, 1e307}) {
                    if (m != n && kind[1] != 'e' && kind[1] != 'r') continue;
                    if (m != n && kind[0] == 'h') continue;
                    Stored<TypeParam> matrix(kind, uplo, scale > 1.0 ? 'N' : 'U', m, n, scale);
                    for (const char norm : {'M', '1', 'O', 'I', 'F', 'E'}) {
                        const double right = matrix.expected(norm == 'O' ? '1' : norm == 'E' ? 'F' : norm);
                        const double found = matrix.found(norm);
                        if (std::isinf(right)) EXPECT_EQ(found, right);
                        else EXPECT_LE(std::fabs(found - right), 8 * eps * right) << kind << uplo << norm << scale;
                    }
                }
}

TYPED_TEST(GnuNorms, NanAnywhereIsSeen) { // catches a comparison that a later element wins against NaN
    for (const char* kind : {"ge", "tr", "gb", "sy", "sb"}) {
        Stored<TypeParam> matrix(kind, 'L', 'N', 9, 9, 1.0);
        for (TypeParam* element : matrix.elements) {
            const TypeParam kept = *element;
            *element = std::numeric_limits<double>::quiet_NaN();
            for (const char norm : {'m', '1', 'i', 'f'}) EXPECT_TRUE(std::isnan(matrix.found(norm))) << kind << norm;
            *element = kept;
        }
    }
}

} // namespace
