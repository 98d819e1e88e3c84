// CBLAS levels 2 and 3: each routine in both orders and with every option, against the column-major routine on the same
// matrix. All values are small integers and every diagonal is a power of two, so results are exact and compared as
// such.
#include "nxl.h"
#include "nxl_cblas.h"
#include <cmath>
#include <complex>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {

using zcomplex = std::complex<double>;

const CBLAS_ORDER orders[] = {CblasRowMajor, CblasColMajor};
struct Operation {
    CBLAS_TRANSPOSE value;
    const char* letter;
};
const Operation operations[] = {{CblasNoTrans, "N"}, {CblasTrans, "T"}, {CblasConjTrans, "C"}};
struct Triangle {
    CBLAS_UPLO value;
    const char* letter;
};
const Triangle triangles[] = {{CblasUpper, "U"}, {CblasLower, "L"}};
struct Side {
    CBLAS_SIDE value;
    const char* letter;
};
const Side sides[] = {{CblasLeft, "L"}, {CblasRight, "R"}};
struct Diagonal {
    CBLAS_DIAG value;
    const char* letter;
};
const Diagonal diagonals[] = {{CblasNonUnit, "N"}, {CblasUnit, "U"}};

const int increments[] = {1, 2, -1, -3};
const int sizes[] = {0, 1, 5, 70}; // the last is too long for a vector's copy on the stack

// ---- Operands ----

template <class T> T value(int seed, int i, int j) {
    const auto part = [&](int s) { return static_cast<double>((s * 3 + i * 5 + j * 11 + i * j * 3) % 7 - 3); };
    if constexpr (std::is_same_v<T, double>) return part(seed);
    else return {part(seed), part(seed + 2)};
}

template <class T> const T nan = std::numeric_limits<double>::quiet_NaN();

bool same(double a, double b) { return a == b || (a != a && b != b); }
bool same(zcomplex a, zcomplex b) { return same(a.real(), b.real()) && same(a.imag(), b.imag()); }

enum class Part { all, upper, lower };
Part part_of(const Triangle& triangle) { return triangle.value == CblasUpper ? Part::upper : Part::lower; }

/// A matrix in one order, with NaN in what does not belong to it: past its columns or rows, in the other triangle.
template <class T> class Matrix {
    int rows_, columns_;
    bool by_rows_;
    std::vector<T> data_;

  public:
    const int ld;
    Matrix(CBLAS_ORDER order, int rows, int columns, int seed, Part part = Part::all)
        : rows_(rows),
          columns_(columns),
          by_rows_(order == CblasRowMajor),
          ld((by_rows_ ? columns : rows) + 2) {
        data_.assign(static_cast<std::size_t>(ld) * static_cast<std::size_t>((by_rows_ ? rows : columns) + 1), nan<T>);
        for (int i = 0; i < rows; ++i)
            for (int j = 0; j < columns; ++j)
                if (part == Part::all || (part == Part::upper ? i <= j : i >= j)) at(i, j) = value<T>(seed, i, j);
    }
    T* data() { return data_.data(); }
    const T* data() const { return data_.data(); }
    T& at(int i, int j) {
        return data_[static_cast<std::size_t>(by_rows_ ? std::int64_t{i} * ld + j : i + std::int64_t{j} * ld)];
    }
    const T& at(int i, int j) const { return const_cast<Matrix&>(*this).at(i, j); }
    /// A triangular matrix whose solutions stay exact: powers of two on the diagonal and little beside it, all near it.
    Matrix& solvable() {
        for (int i = 0; i < rows_; ++i)
            for (int j = 0; j < columns_; ++j)
                if (i == j) at(i, j) = i % 2 == 0 ? 1.0 : -2.0;
                else if (std::abs(i - j) != 1 || i / 4 != j / 4) at(i, j) = same(at(i, j), nan<T>) ? at(i, j) : T(0.0);
        return *this;
    }
    int wrong_against(const Matrix& expected) const {
        int wrong = 0, outside = 0;
        for (int i = 0; i < rows_; ++i)
            for (int j = 0; j < columns_; ++j) wrong += !same(at(i, j), expected.at(i, j));
        for (const T& element : data_) outside += std::real(element) == std::real(element);
        for (int i = 0; i < rows_; ++i)
            for (int j = 0; j < columns_; ++j) outside -= std::real(at(i, j)) == std::real(at(i, j));
        return wrong + outside; // outside: numbers where there were none
    }
};

template <class T> std::vector<T> vector(int n, int increment, int seed) {
    std::vector<T> result(static_cast<std::size_t>(n) * static_cast<std::size_t>(std::abs(increment)) + 1, nan<T>);
    for (int i = 0; i < n; ++i)
        result[static_cast<std::size_t>(i) * static_cast<std::size_t>(std::abs(increment))] = value<T>(seed, i, 1);
    return result;
}
template <class T> int differences(const std::vector<T>& a, const std::vector<T>& b) {
    int count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) count += !same(a[i], b[i]);
    return count;
}

// ---- The routines of each scalar type; complex scalars go by address ----

double by_value(const double& scalar) { return scalar; }
const void* by_value(const zcomplex& scalar) { return &scalar; }

template <class T> struct Routines;
template <> struct Routines<double> {
    static constexpr auto gemv = dgemv;
    static constexpr auto c_gemv = cblas_dgemv;
    static constexpr auto symv = dsymv;
    static constexpr auto c_symv = cblas_dsymv;
    static constexpr auto syr = dsyr;
    static constexpr auto c_syr = cblas_dsyr;
    static constexpr auto syr2 = dsyr2;
    static constexpr auto c_syr2 = cblas_dsyr2;
    static constexpr auto trmv = dtrmv, trsv = dtrsv;
    static constexpr auto c_trmv = cblas_dtrmv, c_trsv = cblas_dtrsv;
    static constexpr auto gemm = dgemm;
    static constexpr auto c_gemm = cblas_dgemm;
    static constexpr auto trmm = dtrmm, trsm = dtrsm;
    static constexpr auto c_trmm = cblas_dtrmm, c_trsm = cblas_dtrsm;
};
template <> struct Routines<zcomplex> {
    static constexpr auto gemv = zgemv;
    static constexpr auto c_gemv = cblas_zgemv;
    static constexpr auto symv = zhemv;
    static constexpr auto c_symv = cblas_zhemv;
    static constexpr auto syr = zher;
    static constexpr auto c_syr = cblas_zher;
    static constexpr auto syr2 = zher2;
    static constexpr auto c_syr2 = cblas_zher2;
    static constexpr auto trmv = ztrmv, trsv = ztrsv;
    static constexpr auto c_trmv = cblas_ztrmv, c_trsv = cblas_ztrsv;
    static constexpr auto gemm = zgemm;
    static constexpr auto c_gemm = cblas_zgemm;
    static constexpr auto trmm = ztrmm, trsm = ztrsm;
    static constexpr auto c_trmm = cblas_ztrmm, c_trsm = cblas_ztrsm;
};

template <class T> class Cblas : public ::testing::Test {
  protected:
    const T alpha = value<T>(1, 2, 3) + 4.0, beta = value<T>(3, 1, 2) - 5.0;
};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(Cblas, Scalars);

// ---- Level 2 ----

TYPED_TEST(Cblas, Gemv) {
    using T = TypeParam;
    using R = Routines<T>;
    for (const CBLAS_ORDER order : orders)
        for (const Operation& op : operations)
            for (const int m : sizes)
                for (const int n : {0, 3, 66})
                    for (const int incx : increments)
                        for (const int incy : {1, -2}) {
                            const Matrix<T> a(CblasColMajor, m, n, 1), stored(order, m, n, 1);
                            const bool across = op.value == CblasNoTrans;
                            const auto x = vector<T>(across ? n : m, incx, 2);
                            auto y = vector<T>(across ? m : n, incy, 3), expected = y;
                            R::gemv(op.letter, &m, &n, &this->alpha, a.data(), &a.ld, x.data(), &incx, &this->beta,
                                    expected.data(), &incy);
                            R::c_gemv(order, op.value, m, n, by_value(this->alpha), stored.data(), stored.ld, x.data(),
                                      incx, by_value(this->beta), y.data(), incy);
                            EXPECT_EQ(differences(y, expected), 0) << order << op.letter << m << " " << n;
                        }
}

TYPED_TEST(Cblas, ScalarsOfZeroDropWhatTheyMultiply) { // catches a conjugated copy of, or a NaN that survives in, y
    using T = TypeParam;
    const int n = 3;
    const T zero = 0.0;
    for (const CBLAS_ORDER order : orders)
        for (const Operation& op : operations) {
            std::vector<T> y(n, nan<T>);
            Routines<T>::c_gemv(order, op.value, n, n, by_value(zero), nullptr, n, nullptr, 1, by_value(zero), y.data(),
                                1);
            EXPECT_EQ(y, std::vector<T>(n, zero));
        }
}

template <class T, class Fn, class CFn> void check_ger(Fn* routine, CFn* entry, const T& alpha) {
    for (const CBLAS_ORDER order : orders)
        for (const int m : sizes)
            for (const int n : {0, 3, 66})
                for (const int incx : increments)
                    for (const int incy : increments) {
                        Matrix<T> a(CblasColMajor, m, n, 1), stored(order, m, n, 1);
                        const auto x = vector<T>(m, incx, 2), y = vector<T>(n, incy, 3);
                        routine(&m, &n, &alpha, x.data(), &incx, y.data(), &incy, a.data(), &a.ld);
                        entry(order, m, n, by_value(alpha), x.data(), incx, y.data(), incy, stored.data(), stored.ld);
                        EXPECT_EQ(stored.wrong_against(a), 0) << order << " " << m << " " << n;
                    }
}
TYPED_TEST(Cblas, Ger) {
    if constexpr (std::is_same_v<TypeParam, double>) check_ger(dger, cblas_dger, this->alpha);
    else {
        check_ger(zgeru, cblas_zgeru, this->alpha);
        check_ger(zgerc, cblas_zgerc, this->alpha);
    }
}

/// The cases of routines with a symmetric or Hermitian matrix and up to two vectors.
template <class T, class Body> void for_each_symmetric(Body body) {
    for (const CBLAS_ORDER order : orders)
        for (const Triangle& uplo : triangles)
            for (const int n : sizes)
                for (const int incx : increments)
                    for (const int incy : increments) {
                        Matrix<T> a(CblasColMajor, n, n, 1, part_of(uplo)), stored(order, n, n, 1, part_of(uplo));
                        body(order, uplo, n, a, stored, incx, incy);
                        EXPECT_EQ(stored.wrong_against(a), 0) << order << uplo.letter << n << " " << incx;
                    }
}
TYPED_TEST(Cblas, SymvAndHemv) {
    using T = TypeParam;
    using R = Routines<T>;
    for_each_symmetric<T>([&](auto order, auto& uplo, int n, auto& a, auto& stored, int incx, int incy) {
        const auto x = vector<T>(n, incx, 2);
        auto y = vector<T>(n, incy, 3), expected = y;
        R::symv(uplo.letter, &n, &this->alpha, a.data(), &a.ld, x.data(), &incx, &this->beta, expected.data(), &incy);
        R::c_symv(order, uplo.value, n, by_value(this->alpha), stored.data(), stored.ld, x.data(), incx,
                  by_value(this->beta), y.data(), incy);
        EXPECT_EQ(differences(y, expected), 0) << order << uplo.letter << n;
    });
}
TYPED_TEST(Cblas, SyrAndHer) {
    using T = TypeParam;
    using R = Routines<T>;
    const double alpha = -3.0;
    for_each_symmetric<T>([&](auto order, auto& uplo, int n, auto& a, auto& stored, int incx, int) {
        const auto x = vector<T>(n, incx, 2);
        R::syr(uplo.letter, &n, &alpha, x.data(), &incx, a.data(), &a.ld);
        R::c_syr(order, uplo.value, n, alpha, x.data(), incx, stored.data(), stored.ld);
    });
}
TYPED_TEST(Cblas, Syr2AndHer2) {
    using T = TypeParam;
    using R = Routines<T>;
    for_each_symmetric<T>([&](auto order, auto& uplo, int n, auto& a, auto& stored, int incx, int incy) {
        const auto x = vector<T>(n, incx, 2), y = vector<T>(n, incy, 3);
        R::syr2(uplo.letter, &n, &this->alpha, x.data(), &incx, y.data(), &incy, a.data(), &a.ld);
        R::c_syr2(order, uplo.value, n, by_value(this->alpha), x.data(), incx, y.data(), incy, stored.data(),
                  stored.ld);
    });
}

template <class T, class Fn, class CFn> void check_triangular_vector(Fn* routine, CFn* entry, bool solves) {
    for (const CBLAS_ORDER order : orders)
        for (const Triangle& uplo : triangles)
            for (const Operation& op : operations)
                for (const Diagonal& diag : diagonals)
                    for (const int n : sizes)
                        for (const int incx : increments) {
                            Matrix<T> a(CblasColMajor, n, n, 1, part_of(uplo)), stored(order, n, n, 1, part_of(uplo));
                            if (solves) {
                                a.solvable();
                                stored.solvable();
                            }
                            auto x = vector<T>(n, incx, 2), expected = x;
                            routine(uplo.letter, op.letter, diag.letter, &n, a.data(), &a.ld, expected.data(), &incx);
                            entry(order, uplo.value, op.value, diag.value, n, stored.data(), stored.ld, x.data(), incx);
                            EXPECT_EQ(differences(x, expected), 0)
                                << order << uplo.letter << op.letter << diag.letter << n << " " << incx;
                        }
}
TYPED_TEST(Cblas, TrmvAndTrsv) {
    using R = Routines<TypeParam>;
    check_triangular_vector<TypeParam>(R::trmv, R::c_trmv, false);
    check_triangular_vector<TypeParam>(R::trsv, R::c_trsv, true);
}

// ---- Level 3 ----

TYPED_TEST(Cblas, Gemm) {
    using T = TypeParam;
    using R = Routines<T>;
    const int m = 5, n = 3;
    for (const CBLAS_ORDER order : orders)
        for (const Operation& op_a : operations)
            for (const Operation& op_b : operations)
                for (const int k : {0, 4, 9}) {
                    const bool wide_a = op_a.value == CblasNoTrans, wide_b = op_b.value == CblasNoTrans;
                    const auto left = [&](CBLAS_ORDER o) { return Matrix<T>(o, wide_a ? m : k, wide_a ? k : m, 1); };
                    const auto right = [&](CBLAS_ORDER o) { return Matrix<T>(o, wide_b ? k : n, wide_b ? n : k, 2); };
                    const auto a = left(CblasColMajor), a_stored = left(order);
                    const auto b = right(CblasColMajor), b_stored = right(order);
                    Matrix<T> c(CblasColMajor, m, n, 3), c_stored(order, m, n, 3);
                    R::gemm(op_a.letter, op_b.letter, &m, &n, &k, &this->alpha, a.data(), &a.ld, b.data(), &b.ld,
                            &this->beta, c.data(), &c.ld);
                    R::c_gemm(order, op_a.value, op_b.value, m, n, k, by_value(this->alpha), a_stored.data(),
                              a_stored.ld, b_stored.data(), b_stored.ld, by_value(this->beta), c_stored.data(),
                              c_stored.ld);
                    EXPECT_EQ(c_stored.wrong_against(c), 0) << order << op_a.letter << op_b.letter << k;
                }
}

template <class T, class Fn, class CFn> void check_symm(Fn* routine, CFn* entry, const T& alpha, const T& beta) {
    const int m = 5, n = 3;
    for (const CBLAS_ORDER order : orders)
        for (const Side& side : sides)
            for (const Triangle& uplo : triangles) {
                const int size = side.value == CblasLeft ? m : n;
                const Matrix<T> a(CblasColMajor, size, size, 1, part_of(uplo)), b(CblasColMajor, m, n, 2);
                const Matrix<T> a_stored(order, size, size, 1, part_of(uplo)), b_stored(order, m, n, 2);
                Matrix<T> c(CblasColMajor, m, n, 3), c_stored(order, m, n, 3);
                routine(side.letter, uplo.letter, &m, &n, &alpha, a.data(), &a.ld, b.data(), &b.ld, &beta, c.data(),
                        &c.ld);
                entry(order, side.value, uplo.value, m, n, by_value(alpha), a_stored.data(), a_stored.ld,
                      b_stored.data(), b_stored.ld, by_value(beta), c_stored.data(), c_stored.ld);
                EXPECT_EQ(c_stored.wrong_against(c), 0) << order << side.letter << uplo.letter;
            }
}
TYPED_TEST(Cblas, SymmAndHemm) {
    if constexpr (std::is_same_v<TypeParam, double>) check_symm(dsymm, cblas_dsymm, this->alpha, this->beta);
    else {
        check_symm(zsymm, cblas_zsymm, this->alpha, this->beta);
        check_symm(zhemm, cblas_zhemm, this->alpha, this->beta);
    }
}

/// Rank updates C := ... with factors a and b, n by k or k by n; body gets both storages. `left_out`: the operation
/// that the routine does not have.
template <class T, class Body> void for_each_update(CBLAS_TRANSPOSE left_out, Body body) {
    const int n = 5;
    for (const CBLAS_ORDER order : orders)
        for (const Triangle& uplo : triangles)
            for (const Operation& op : operations)
                for (const int k : {0, 3, 8}) {
                    if (op.value == left_out) continue;
                    const bool tall = op.value == CblasNoTrans;
                    const auto factor = [&](CBLAS_ORDER o, int seed) {
                        return Matrix<T>(o, tall ? n : k, tall ? k : n, seed);
                    };
                    const auto a = factor(CblasColMajor, 1), b = factor(CblasColMajor, 2);
                    const auto a_stored = factor(order, 1), b_stored = factor(order, 2);
                    Matrix<T> c(CblasColMajor, n, n, 3, part_of(uplo)), c_stored(order, n, n, 3, part_of(uplo));
                    body(uplo, op, n, k, a, b, c, CblasColMajor, false);
                    body(uplo, op, n, k, a_stored, b_stored, c_stored, order, true);
                    EXPECT_EQ(c_stored.wrong_against(c), 0) << order << uplo.letter << op.letter << k;
                }
}
template <class T, class S, class Fn, class CFn>
void check_syrk(Fn* routine, CFn* entry, CBLAS_TRANSPOSE left_out, const S& alpha, const S& beta) {
    for_each_update<T>(left_out, [&](auto& uplo, auto& op, int n, int k, auto& a, auto&, auto& c, auto order,
                                     bool c_api) {
        if (c_api)
            entry(order, uplo.value, op.value, n, k, by_value(alpha), a.data(), a.ld, by_value(beta), c.data(), c.ld);
        else routine(uplo.letter, op.letter, &n, &k, &alpha, a.data(), &a.ld, &beta, c.data(), &c.ld);
    });
}
template <class T, class S, class Fn, class CFn>
void check_syr2k(Fn* routine, CFn* entry, CBLAS_TRANSPOSE left_out, const T& alpha, const S& beta) {
    for_each_update<T>(left_out, [&](auto& uplo, auto& op, int n, int k, auto& a, auto& b, auto& c, auto order,
                                     bool c_api) {
        if (c_api)
            entry(order, uplo.value, op.value, n, k, by_value(alpha), a.data(), a.ld, b.data(), b.ld, by_value(beta),
                  c.data(), c.ld);
        else routine(uplo.letter, op.letter, &n, &k, &alpha, a.data(), &a.ld, b.data(), &b.ld, &beta, c.data(), &c.ld);
    });
}
TYPED_TEST(Cblas, RankUpdates) {
    using T = TypeParam;
    const T alpha = this->alpha, beta = this->beta;
    const double real_alpha = 2.0, real_beta = -3.0;
    if constexpr (std::is_same_v<T, double>) {
        const auto none = static_cast<CBLAS_TRANSPOSE>(0);
        check_syrk<T>(dsyrk, cblas_dsyrk, none, alpha, beta);
        check_syr2k<T>(dsyr2k, cblas_dsyr2k, none, alpha, beta);
    } else {
        check_syrk<T>(zsyrk, cblas_zsyrk, CblasConjTrans, alpha, beta);
        check_syrk<T>(zherk, cblas_zherk, CblasTrans, real_alpha, real_beta);
        check_syr2k<T>(zsyr2k, cblas_zsyr2k, CblasConjTrans, alpha, beta);
        check_syr2k<T>(zher2k, cblas_zher2k, CblasTrans, alpha, real_beta);
    }
}

template <class T, class Fn, class CFn> void check_triangular(Fn* routine, CFn* entry, bool solves) {
    const int m = 5, n = 3;
    const T alpha = 2.0;
    for (const CBLAS_ORDER order : orders)
        for (const Side& side : sides)
            for (const Triangle& uplo : triangles)
                for (const Operation& op : operations)
                    for (const Diagonal& diag : diagonals) {
                        const int size = side.value == CblasLeft ? m : n;
                        Matrix<T> a(CblasColMajor, size, size, 1, part_of(uplo));
                        Matrix<T> a_stored(order, size, size, 1, part_of(uplo));
                        if (solves) {
                            a.solvable();
                            a_stored.solvable();
                        }
                        Matrix<T> b(CblasColMajor, m, n, 2), b_stored(order, m, n, 2);
                        routine(side.letter, uplo.letter, op.letter, diag.letter, &m, &n, &alpha, a.data(), &a.ld,
                                b.data(), &b.ld);
                        entry(order, side.value, uplo.value, op.value, diag.value, m, n, by_value(alpha),
                              a_stored.data(), a_stored.ld, b_stored.data(), b_stored.ld);
                        EXPECT_EQ(b_stored.wrong_against(b), 0)
                            << order << side.letter << uplo.letter << op.letter << diag.letter;
                    }
}
TYPED_TEST(Cblas, TrmmAndTrsm) {
    using R = Routines<TypeParam>;
    check_triangular<TypeParam>(R::trmm, R::c_trmm, false);
    check_triangular<TypeParam>(R::trsm, R::c_trsm, true);
}

} // namespace
