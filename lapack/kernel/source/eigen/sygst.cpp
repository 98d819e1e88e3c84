// dsygst, zhegst, by halves: all work is done by products and solutions of level 3. Poulson, van de Geijn and
// Bennighof, FLAME Working Note 56 (2011).
#include "lapack/kernel/source/eigen/sygst.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/eigen/symmetric_names.hpp"
#include "service/scalars.hpp"

namespace nxl {
namespace {

// With F for the factor's triangle and [A11 ; A21 A22] for that of A, F^-1 A F^-H of a lower triangle is
//
//     A21 := A21 F11^-H - F21 A11' / 2      A11' being what A11 has become
//     A22 := A22 - A21 F21^H - F21 A21^H
//     A21 := F22^-1 (A21 - F21 A11' / 2)
//
// and then A22 in the same way; an upper triangle is the adjoint of that. F^H A F goes from A22 to A11.
template <class T> class Congruence {
    const bool inverse_, lower_;

    char uplo() const { return lower_ ? 'L' : 'U'; }
    /// How the factor is applied from the left and from the right.
    char from_left() const { return inverse_ == lower_ ? 'N' : 'C'; }
    char from_right() const { return inverse_ == lower_ ? 'C' : 'N'; }

    void apply(char side, const Operand<T>& factor, const Matrix<T>& to) const {
        const char trans = side == 'L' ? from_left() : from_right();
        if (inverse_) trsm(side, uplo(), trans, 'N', 1.0, factor, to);
        else trmm(side, uplo(), trans, 'N', 1.0, factor, to);
    }
    /// As a full square, from both sides.
    void transform_small(const Matrix<T>& a, const Matrix<const T>& factor) const {
        T elements[smallest * smallest];
        const i64 n = a.rows;
        const Matrix<T> square{elements, n, n, smallest};
        for (i64 j = 0; j < n; ++j)
            for (i64 i = 0; i <= j; ++i) {
                const T above = lower_ ? conj_if(true, a(j, i)) : a(i, j);
                square(i, j) = above;
                square(j, i) = conj_if(true, above);
                if (i == j) square(i, i) = real_part(above);
            }
        apply('L', factor, square);
        apply('R', factor, square);
        for (i64 j = 0; j < n; ++j) {
            for (i64 i = lower_ ? j + 1 : 0; i < (lower_ ? n : j); ++i) a(i, j) = square(i, j);
            a(j, j) = real_part(square(j, j));
        }
    }

  public:
    static constexpr i64 smallest = 32;

    Congruence(bool inverse, char uplo) : inverse_(inverse), lower_(uplo == 'L') {}

    void transform(const Matrix<T>& a, const Matrix<const T>& factor) const {
        const i64 n = a.rows, first = n / 2, second = n - first;
        if (n <= smallest) return transform_small(a, factor);
        const Matrix<T> a11 = a.block(0, 0, first, first), a22 = a.from(first, first);
        const Matrix<const T> f11 = factor.block(0, 0, first, first), f22 = factor.from(first, first);
        const Matrix<T> beside = lower_ ? a.block(first, 0, second, first) : a.block(0, first, first, second);
        const Matrix<const T> f =
            lower_ ? factor.block(first, 0, second, first) : factor.block(0, first, first, second);
        // The half of A that meets f twice, and from which side; the other half takes the sum.
        const Matrix<T>&middle = inverse_ ? a11 : a22, &sum = inverse_ ? a22 : a11;
        const char side = inverse_ == lower_ ? 'R' : 'L';
        const T half = inverse_ ? -0.5 : 0.5, one = inverse_ ? -1.0 : 1.0;
        transform(a11, f11);
        apply(lower_ ? 'R' : 'L', f11, beside);
        hemm(side, uplo(), half, middle, f, 1.0, beside);
        her2k(uplo(), side == 'R' ? 'N' : 'C', one, beside, f, 1.0, sum);
        hemm(side, uplo(), half, middle, f, 1.0, beside);
        apply(lower_ ? 'L' : 'R', f22, beside);
        transform(a22, f22);
    }
};

} // namespace

template <class T>
void sygst(const i64& itype, const char& uplo, const i64& n, T* a, const i64& lda, const T* b, const i64& ldb,
           i64& info, int) {
    Arguments arguments(symmetric_routine<T>("GST"));
    arguments.expect(1, itype >= 1 && itype <= 3)
        .letter(2, uplo, "UL")
        .size(3, n)
        .leading(5, lda, n)
        .leading(7, ldb, n);
    if (arguments.refused(info) || n == 0) return;
    Congruence<T>(itype == 1, uplo).transform({a, n, n, lda}, {b, n, n, ldb});
}

template void sygst<double>(const i64&, const char&, const i64&, double*, const i64&, const double*, const i64&, i64&,
                            int);
template void sygst<zcomplex>(const i64&, const char&, const i64&, zcomplex*, const i64&, const zcomplex*, const i64&,
                              i64&, int);

} // namespace nxl
