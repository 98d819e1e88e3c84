// dtrtri, ztrtri: inverse of a triangular matrix.
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/triangular.hpp"
#include "lapack/kernel/source/triangular/triangular_parts.hpp"
#include "service/arguments.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {
namespace {

template <class T> void trti2(char uplo, char diag, i64 n, T* a, i64 lda) {
    slot_of<T, &KernelTable::dtrti2, &KernelTable::ztrti2>()(uplo, diag, n, a, lda);
}

/// Inverse by halves: with X the inverse of the triangle that comes first in the product, the block beside the diagonal
/// becomes -X A12 A22^-1, or -X A21 A11^-1, so that the second factor is solved with and not inverted: the residual of
/// the published column-wise method (Du Croz and Higham, IMA J. Numer. Anal. 12, 1992).
template <class T> struct TriangularInverse {
    char uplo, diag;
    i64 lda, unblocked;

    void run(i64 n, T* a) const {
        if (n <= unblocked) return trti2(uplo, diag, n, a, lda);
        const i64 first = first_part(n), rest = n - first;
        T* const second = a + first * (lda + 1);
        if (is_one_of(uplo, "U")) halves(first, a, rest, second, a + first * lda);
        else halves(rest, second, first, a, a + first);
    }

  private:
    /// The inverse of `x`, then what is beside the diagonal, p by q, then the inverse of `y`. Where `x` has no inverse
    /// within the range, it is solved with as well.
    void halves(i64 p, T* x, i64 q, T* y, T* beside) const {
        const bool invertible = is_one_of(diag, "U") || has_reciprocals(p, x, lda);
        if (invertible) {
            run(p, x);
            trmm('L', uplo, 'N', diag, p, q, 1.0, x, lda, beside, lda);
        } else {
            trsm('L', uplo, 'N', diag, p, q, 1.0, x, lda, beside, lda);
        }
        trsm('R', uplo, 'N', diag, p, q, -1.0, y, lda, beside, lda);
        if (!invertible) run(p, x);
        run(q, y);
    }
};

} // namespace

template <class T>
void trtri(const char& uplo, const char& diag, const i64& n, T* a, const i64& lda, i64& info, int, int) {
    constexpr RoutineLetters name = routine<T>("TRTRI");
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").letter(2, diag, "UN").size(3, n).leading(5, lda, n);
    if (arguments.refused(info)) return;
    if (is_one_of(diag, "N")) info = first_zero_on_diagonal(n, a, lda);
    if (n == 0 || info != 0) return;
    TriangularInverse<T>{uplo, diag, lda, unblocked_order(name, uplo, n)}.run(n, a);
}
template decltype(trtri<double>) trtri<double>;
template decltype(trtri<zcomplex>) trtri<zcomplex>;

} // namespace nxl
