// Nonsymmetric eigenproblems: balancing, Hessenberg and Schur form, on matrices that are hard in one way each.
#include "tests/support/nonsymmetric.hpp"
#include <functional>
#include <numbers>

namespace {

using namespace nxl_test;
using std::size_t;

struct Sample {
    const char* name;
    std::function<double(int n, int i, int j)> element; // imaginary parts are random where it is not exact
    std::function<zcomplex(int n, int k)> eigenvalue;   // where they are known and not sensitive, in any order
};

double noise(int i, int j) {
    Generator generator(static_cast<unsigned>(1 + 1009 * i + j));
    return random_value<double>(generator);
}

const std::vector<Sample> samples = {
    {"random", [](int, int i, int j) { return noise(i, j); }, {}},
    {"zero", [](int, int, int) { return 0.0; }, [](int, int) { return 0.0; }},
    {"identity", [](int, int i, int j) { return i == j; }, [](int, int) { return 1.0; }},
    {"triangular", [](int, int i, int j) { return i > j ? 0.0 : noise(i, j); }, {}},
    {"permuted", [](int n, int i, int j) { return i * 7 % n > j * 7 % n ? 0.0 : noise(i, j); }, {}},
    {"companion", [](int n, int i, int j) { return i == j + 1 || (i == 0 && j == n - 1); },
     [](int n, int k) { return std::polar(1.0, 2 * std::numbers::pi * k / n); }},
    {"circulant", [](int n, int i, int j) { return (i == j) * 2.0 + ((i + 2 * n - j - 1) % n == 0); },
     [](int n, int k) { return 2.0 + std::polar(1.0, 2 * std::numbers::pi * k / n); }},
    {"Clement",
     [](int n, int i, int j) {
         return std::abs(i - j) == 1 ? std::sqrt((i < j ? j : i) * (n - (i < j ? j : i))) : 0.0;
     },
     [](int n, int k) { return n - 1 - 2.0 * k; }},
    {"Frank", [](int n, int i, int j) { return i > j + 1 ? 0.0 : n - std::max(i, j); }, {}},
    {"Grcar", [](int, int i, int j) { return i == j + 1 ? -1.0 : i <= j && j <= i + 3; }, {}},
    {"Jordan", [](int, int i, int j) { return i == j ? 0.5 : i + 1 == j; }, [](int, int) { return 0.5; }},
    {"nilpotent", [](int, int i, int j) { return i == j + 1 ? 1.0 : 0.0; }, {}},
    {"unbalanced", [](int n, int i, int j) { return noise(i, j) * std::pow(2.0, 40.0 * (i - j) / n); }, {}},
    {"graded", [](int n, int i, int j) { return noise(i, j) * std::pow(10.0, -150.0 * (i + j) / n); }, {}},
    {"huge", [](int, int i, int j) { return noise(i, j) * 1e290; }, {}},
    {"equal pairs",
     [](int, int i, int j) {
         return i / 2 != j / 2 ? (i < j ? 0.5 * noise(i, j) : 0.0) : i == j ? 1.0 : i < j ? 2.0 : -0.5;
     },
     {}},
};

/// Real samples for both scalars; those without known eigenvalues get imaginary parts.
template <class T> LapackMatrix<T> matrix_of(const Sample& sample, int n) {
    LapackMatrix<T> a(n, n, 3);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            const double value = sample.element(n, i, j);
            a.at(i, j) = scalar<T>(value, sample.eigenvalue ? 0.0 : value * noise(j, i));
        }
    return a;
}

/// How far the values are from what they should be, each being the nearest to one that no other is.
double distance(std::vector<zcomplex> found, const std::vector<zcomplex>& expected) {
    double worst = 0.0;
    for (const zcomplex& value : expected) {
        const auto nearest = std::min_element(found.begin(), found.end(), [&](const zcomplex& x, const zcomplex& y) {
            return std::abs(x - value) < std::abs(y - value);
        });
        const double apart = std::abs(*nearest - value);
        worst = apart <= worst ? worst : apart;
        found.erase(nearest);
    }
    return worst;
}

template <class T> class NonsymmetricEigen : public ::testing::Test {};
TYPED_TEST_SUITE(NonsymmetricEigen, Scalars);

TYPED_TEST(NonsymmetricEigen, SchurForm) {
    using T = TypeParam;
    for (const Sample& sample : samples)
        for (const int n : {0, 1, 2, 3, 4, 10, 33, 75, 90}) {
            SCOPED_TRACE(testing::Message() << sample.name << n);
            const LapackMatrix<T> a = matrix_of<T>(sample, n);
            const SchurForm<T> s(a);
            ASSERT_EQ(s.info, 0);
            EXPECT_TRUE(is_standard(s.t, s.w));
            EXPECT_LE(schur_error(a, s), 8.0);
            if (!sample.eigenvalue || sample.name == std::string("Jordan")) continue;
            std::vector<zcomplex> expected;
            for (int k = 0; k < n; ++k) expected.push_back(sample.eigenvalue(n, k));
            EXPECT_LE(distance(s.w, expected), 40.0 * eps * n * std::max(1.0, largest(a)));
        }
}

/// Eigenvalues alone come of other steps, on the active block only; large enough for two levels of windows, and for
/// threads to share what windows turn beside them.
TYPED_TEST(NonsymmetricEigen, ValuesAloneAndLargeMatrices) {
    using T = TypeParam;
    for (const auto& [n, threads] : {std::pair(80, 1), std::pair(300, 2)}) {
        const Team team(threads);
        const LapackMatrix<T> a = matrix_of<T>(samples[0], n);
        const SchurForm<T> s(a);
        ASSERT_EQ(s.info, 0);
        EXPECT_TRUE(is_standard(s.t, s.w));
        EXPECT_LE(schur_error(a, s), 8.0);
        LapackMatrix<T> h = a, none(0, 0, 0);
        std::vector<T> tau(static_cast<size_t>(n)), work(tau);
        const int one = 1;
        int info = -99;
        Nonsymmetric<T>::gehrd(&n, &one, &n, h.data(), &h.lda, tau.data(), work.data(), &n, &info);
        std::vector<zcomplex> w;
        EXPECT_EQ(call_hseqr('E', 'N', 1, n, h, none, w), 0);
        EXPECT_LE(distance(w, s.w), 1e-9);
    }
}

/// What trevc has made, with the columns of pairs as complex numbers: eigenvector k of value w[k].
std::vector<zcomplex> vector_of(const LapackMatrix<zcomplex>& v, const std::vector<zcomplex>&, int k) {
    return {&v.at(0, k), &v.at(0, k) + v.rows};
}
std::vector<zcomplex> vector_of(const LapackMatrix<double>& v, const std::vector<zcomplex>& w, int k) {
    const double part = w[static_cast<size_t>(k)].imag();
    std::vector<zcomplex> x(static_cast<size_t>(v.rows));
    for (int i = 0; i < v.rows; ++i) {
        const double real = v.at(i, part < 0.0 ? k - 1 : k);
        const double imaginary = part == 0.0 ? 0.0 : part > 0.0 ? v.at(i, k + 1) : -v.at(i, k);
        x[static_cast<size_t>(i)] = {real, imaginary};
    }
    return x;
}

/// |A x - w x| / (n eps |A| |x|) for the vector x of value w, or of A^H and its conjugate; largest norms.
template <class T>
double vector_error(const LapackMatrix<T>& a, bool left, const std::vector<zcomplex>& x, const zcomplex& w) {
    const int n = a.cols;
    double worst = 0.0, length = 0.0;
    for (int i = 0; i < n; ++i) {
        zcomplex sum = -(left ? std::conj(w) : w) * x[static_cast<size_t>(i)];
        for (int j = 0; j < n; ++j) sum += (left ? conjugate(a.at(j, i)) : a.at(i, j)) * x[static_cast<size_t>(j)];
        worst = std::abs(sum) <= worst ? worst : std::abs(sum);
        length = std::max(length, abs1(x[static_cast<size_t>(i)]));
    }
    return worst / (n * eps * std::max(largest(a), 1e-300) * length);
}

template <class T> struct Vectors {
    LapackMatrix<T> left, right;
    int m = -1, info = -99;
    std::vector<int> select;

    Vectors(char side, char howmny, SchurForm<T>& s, int mm, std::vector<int> selected = {})
        : left(s.z),
          right(s.z),
          select(std::move(selected)) {
        const int n = s.t.cols;
        std::vector<T> work(static_cast<size_t>(3 * n + 1));
        std::vector<double> rwork(work.size());
        select.resize(static_cast<size_t>(n) + 1);
        if constexpr (is_complex<T>)
            ztrevc(&side, &howmny, select.data(), &n, s.t.data(), &s.t.lda, left.data(), &left.lda, right.data(),
                   &right.lda, &mm, &m, work.data(), rwork.data(), &info, 1, 1);
        else
            dtrevc(&side, &howmny, select.data(), &n, s.t.data(), &s.t.lda, left.data(), &left.lda, right.data(),
                   &right.lda, &mm, &m, work.data(), &info, 1, 1);
    }
};

/// Vectors of the matrix itself, by way of batches and blocks; those of the Schur form; the overflow of a Jordan block.
TYPED_TEST(NonsymmetricEigen, Vectors) {
    using T = TypeParam;
    for (const Sample& sample : samples)
        for (const int n : {1, 2, 3, 10, 66}) {
            if ((n > 10 && &sample != samples.data()) || sample.name == std::string("graded") ||
                sample.name == std::string("huge"))
                continue;
            SCOPED_TRACE(testing::Message() << sample.name << n);
            const LapackMatrix<T> a = matrix_of<T>(sample, n);
            SchurForm<T> s(a);
            const Vectors<T> full('B', 'B', s, n), own('b', 'A', s, n);
            EXPECT_TRUE(full.info == 0 && full.m == n && own.info == 0);
            for (const bool left : {false, true})
                for (int k = 0; k < n; ++k) {
                    const zcomplex w = s.w[static_cast<size_t>(k)];
                    const auto x = vector_of(left ? full.left : full.right, s.w, k);
                    const auto y = vector_of(left ? own.left : own.right, s.w, k);
                    EXPECT_LE(vector_error(a, left, x, w), 40.0) << k;
                    EXPECT_LE(vector_error(s.t, left, y, w), 40.0) << k;
                    double size = 0.0;
                    for (const zcomplex& value : x) size = std::max(size, abs1(value));
                    EXPECT_NEAR(size, 1.0, 4 * eps);
                }
        }
}

/// Half of the vectors, of pairs by either of the two; they are those of all, and too little room is told.
TYPED_TEST(NonsymmetricEigen, SelectedVectors) {
    using T = TypeParam;
    const int n = 141;
    SchurForm<T> s(matrix_of<T>(samples[0], n));
    const Vectors<T> all('B', 'A', s, n);
    std::vector<int> select(n), columns;
    for (int k = 0; k < n; ++k) {
        const bool pair = !is_complex<T> && s.w[static_cast<size_t>(k)].imag() != 0.0;
        const int of_pair = k % 4 < 2;
        if (of_pair) select[static_cast<size_t>(k % 3 == 0 && pair ? k + 1 : k)] = 1;
        for (int j = 0; j < 1 + pair && of_pair; ++j) columns.push_back(k + j);
        k += pair;
    }
    const int count = static_cast<int>(columns.size());
    const Vectors<T> some('B', 'S', s, count, select), none('R', 'S', s, count - 1, select);
    EXPECT_TRUE(some.info == 0 && some.m == count && none.info == -11);
    for (int j = 0; j < count; ++j) {
        const int k = columns[static_cast<size_t>(j)];
        if (!is_complex<T>) EXPECT_EQ(some.select[static_cast<size_t>(k)], s.w[static_cast<size_t>(k)].imag() >= 0.0);
        for (int i = 0; i < n; ++i) {
            EXPECT_LE(std::abs(some.right.at(i, j) - all.right.at(i, k)), 1e-10);
            EXPECT_LE(std::abs(some.left.at(i, j) - all.left.at(i, k)), 1e-10);
        }
    }
}

/// Balancing is a similarity by powers of two and a permutation that gebak undoes, and stops at what stands alone.
TYPED_TEST(NonsymmetricEigen, Balancing) {
    using T = TypeParam;
    for (const Sample& sample : samples)
        for (const char job : {'N', 'P', 'S', 'B'})
            for (const int n : {0, 1, 5, 24}) {
                SCOPED_TRACE(testing::Message() << sample.name << job << n);
                const LapackMatrix<T> a = matrix_of<T>(sample, n);
                LapackMatrix<T> b = a, right = identity<T>(n), left = right;
                std::vector<double> scale(static_cast<size_t>(n) + 1);
                int ilo = -9, ihi = -9, info = -9;
                Nonsymmetric<T>::gebal(&job, &n, b.data(), &b.lda, &ilo, &ihi, scale.data(), &info, 1);
                EXPECT_TRUE(info == 0 && ilo >= 1 && ihi <= n && b.slack_untouched());
                EXPECT_TRUE(sample.name != std::string("permuted") || (job != 'P' && job != 'B') || ilo >= ihi);
                for (const char side : {'R', 'L'}) {
                    LapackMatrix<T>& v = side == 'R' ? right : left;
                    Nonsymmetric<T>::gebak(&job, &side, &n, &ilo, &ihi, scale.data(), &n, v.data(), &v.lda, &info, 1,
                                           1);
                    EXPECT_EQ(info, 0);
                }
                EXPECT_EQ(largest_difference(product(right, b), product(a, right)), 0.0);
                EXPECT_EQ(largest_difference(product(left, right, 'C'), identity<T>(n)), 0.0);
                for (int j = 0; j < n; ++j)
                    for (int i = j + 1; i < n; ++i)
                        EXPECT_TRUE(b.at(i, j) == T{} || (j >= ilo - 1 && i < ihi)) << i << j;
                if (sample.name == std::string("unbalanced") && job == 'S' && n > 5) EXPECT_LE(largest(b), 1e3);
            }
}

/// A window in the middle of a matrix that is triangular around it; rows around it keep their eigenvalues.
TYPED_TEST(NonsymmetricEigen, WindowsAndBadNumbers) {
    using T = TypeParam;
    const int n = 40, ilo = 6, ihi = 31;
    LapackMatrix<T> a = matrix_of<T>(samples[0], n);
    for (int j = 0; j < n; ++j)
        for (int i = j + 1; i < n; ++i)
            if (j < ilo - 1 || i >= ihi) a.at(i, j) = T{};
    const SchurForm<T> s(a, ilo, ihi);
    EXPECT_EQ(s.info, 0);
    EXPECT_TRUE(is_standard(s.t, s.w));
    EXPECT_LE(schur_error(a, s), 8.0);
    EXPECT_EQ(s.w[0], zcomplex(a.at(0, 0)));
    for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        LapackMatrix<T> h = s.t, z = s.z;
        h.at(ilo, ihi - 2) = bad;
        std::vector<zcomplex> w;
        EXPECT_EQ(call_hseqr('S', 'V', ilo, ihi, h, z, w), ihi);
        EXPECT_TRUE(std::isnan(w[ilo].real()) && w[n - 1] == zcomplex(a.at(n - 1, n - 1)));
    }
}

template <class T> struct Eigen {
    LapackMatrix<T> left, right;
    std::vector<zcomplex> w;
    int info = -99;

    Eigen(char jobvl, char jobvr, LapackMatrix<T> a) : left(a), right(a), w(static_cast<size_t>(a.cols)) {
        const int n = a.cols, lwork = 4 * n + 1;
        std::vector<T> work(static_cast<size_t>(lwork));
        std::vector<double> wr(work.size()), wi(work.size());
        if constexpr (is_complex<T>)
            zgeev(&jobvl, &jobvr, &n, a.data(), &a.lda, w.data(), left.data(), &left.lda, right.data(), &right.lda,
                  work.data(), &lwork, wr.data(), &info, 1, 1);
        else {
            dgeev(&jobvl, &jobvr, &n, a.data(), &a.lda, wr.data(), wi.data(), left.data(), &left.lda, right.data(),
                  &right.lda, work.data(), &lwork, &info, 1, 1);
            for (size_t k = 0; k < w.size(); ++k) w[k] = {wr[k], wi[k]};
        }
    }
};

/// Vectors of length 1 with a real largest element, at both ends of the range; values alone are the same.
TYPED_TEST(NonsymmetricEigen, Driver) {
    using T = TypeParam;
    for (const double size : {1e-290, 1.0, 1e290})
        for (const int n : {0, 1, 2, 5, 40}) {
            SCOPED_TRACE(testing::Message() << size << ' ' << n);
            LapackMatrix<T> a = matrix_of<T>(samples[0], n);
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < n; ++i) a.at(i, j) *= size;
            const Eigen<T> e('v', 'V', a), right('N', 'V', a), values('N', 'N', a);
            ASSERT_TRUE(e.info == 0 && right.info == 0 && values.info == 0);
            EXPECT_LE(distance(values.w, e.w), 1e-12 * size);
            EXPECT_EQ(largest_difference(e.right, right.right), 0.0);
            for (int k = 0; k < n; ++k)
                for (const bool left : {false, true}) {
                    const auto x = vector_of(left ? e.left : e.right, e.w, k);
                    EXPECT_LE(vector_error(a, left, x, e.w[static_cast<size_t>(k)]), 20.0);
                    zcomplex top;
                    double length = 0.0;
                    for (const zcomplex& value : x) {
                        length += std::norm(value);
                        if (std::norm(value) > std::norm(top)) top = value;
                    }
                    EXPECT_NEAR(length, 1.0, 40 * eps);
                    EXPECT_EQ(top.imag(), 0.0);
                }
        }
    LapackMatrix<T> bad = matrix_of<T>(samples[0], 7);
    bad.at(2, 5) = all_nan<T>();
    EXPECT_EQ(Eigen<T>('V', 'V', bad).info, 7);
}

/// Against the reference: the cosines to rounding, the separations to what two estimates may differ by.
TYPED_TEST(NonsymmetricEigen, Conditions) {
    using T = TypeParam;
    const auto conditions = [](auto call, SchurForm<T>& form, Vectors<T>& v, char howmny,
                               const std::vector<int>& select) {
        const int n = form.t.cols, mm = n, ldwork = n;
        const char job = 'B';
        std::vector<double> numbers(static_cast<size_t>(2 * n)), rwork(static_cast<size_t>(n));
        std::vector<T> work(static_cast<size_t>(n * (n + 6)));
        std::vector<int> iwork(static_cast<size_t>(2 * n));
        int m = -1, info = -99;
        const auto run = [&](auto* spare) {
            call(&job, &howmny, select.data(), &n, form.t.data(), &form.t.lda, v.left.data(), &v.left.lda,
                 v.right.data(), &v.right.lda, numbers.data(), numbers.data() + n, &mm, &m, work.data(), &ldwork, spare,
                 &info, 1, 1);
        };
        if constexpr (is_complex<T>) run(rwork.data());
        else run(iwork.data());
        EXPECT_EQ(info, 0);
        numbers.push_back(m);
        return numbers;
    };
    for (const Sample& sample : {samples[0], samples[7], samples[9]})
        for (const char howmny : {'A', 'S'}) {
            const int n = 13;
            SchurForm<T> s(matrix_of<T>(sample, n));
            std::vector<int> select(n);
            for (int k = 3; k < 9; ++k) select[static_cast<size_t>(k)] = 1;
            Vectors<T> v('B', howmny, s, n, select);
            const auto found = conditions(Nonsymmetric<T>::trsna, s, v, howmny, select);
            const auto expected = conditions(by_reference<T>(Nonsymmetric<T>::trsna, "trsna"), s, v, howmny, select);
            for (size_t k = 0; k < n; ++k) {
                EXPECT_NEAR(found[k], expected[k], 1e-12) << sample.name;
                EXPECT_LE(found[n + k], 8.0 * std::fabs(expected[n + k])) << sample.name;
                EXPECT_GE(8.0 * found[n + k], expected[n + k]) << sample.name;
            }
            EXPECT_EQ(found.back(), expected.back());
        }
}

} // namespace
