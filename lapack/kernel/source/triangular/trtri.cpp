// dtrtri, ztrtri: inverse of a triangular matrix.
#include "lapack/kernel/source/triangular/trtri.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/triangular_parts.hpp"
#include "service/arguments.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {
namespace {

template <class T> void trti2(char uplo, char diag, const Matrix<T>& a) {
    slot_of<T, &KernelTable::dtrti2, &KernelTable::ztrti2>()(uplo, diag, a.rows, a.data, a.ld);
}

/// Inverse by halves: with X the inverse of the triangle that comes first in the product, the block beside the diagonal
/// becomes -X A12 A22^-1, or -X A21 A11^-1, so that the second factor is solved with and not inverted: the residual of
/// the published column-wise method (Du Croz and Higham, IMA J. Numer. Anal. 12, 1992).
template <class T> struct TriangularInverse {
    char uplo, diag;

    void run(const Matrix<T>& a) const {
        if (a.rows <= unblocked_order(routine<T>("TRTRI"))) return trti2(uplo, diag, a);
        const i64 first = first_part(a.rows), rest = a.rows - first;
        const Matrix<T> leading = a.block(0, 0, first, first), trailing = a.from(first, first);
        if (uplo == 'U') halves(leading, trailing, a.block(0, first, first, rest));
        else halves(trailing, leading, a.block(first, 0, rest, first));
    }

  private:
    /// The inverse of `x`, then what is beside the diagonal, then the inverse of `y`. Where `x` has no inverse within
    /// the range, it is solved with as well.
    void halves(const Matrix<T>& x, const Matrix<T>& y, const Matrix<T>& beside) const {
        const bool invertible = diag == 'U' || has_reciprocals(x);
        if (invertible) {
            run(x);
            trmm('L', uplo, 'N', diag, 1.0, x, beside);
        } else {
            trsm('L', uplo, 'N', diag, 1.0, x, beside);
        }
        trsm('R', uplo, 'N', diag, -1.0, y, beside);
        if (!invertible) run(x);
        run(y);
    }
};

} // namespace

template <class T>
void trtri(const char& uplo, const char& diag, const i64& n, T* a, const i64& lda, i64& info, int, int) {
    Arguments arguments(routine<T>("TRTRI"));
    arguments.letter(1, uplo, "UL").letter(2, diag, "UN").size(3, n).leading(5, lda, n);
    if (arguments.refused(info)) return;
    const Matrix<T> triangle{a, n, n, lda};
    if (diag == 'N') info = first_zero_on_diagonal(triangle);
    if (n > 0 && info == 0) TriangularInverse<T>{uplo, diag}.run(triangle);
}
template decltype(trtri<double>) trtri<double>;
template decltype(trtri<zcomplex>) trtri<zcomplex>;

} // namespace nxl
