// dlauum, zlauum: the product of a triangular factor and its conjugate transpose, in its place.
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/cholesky.hpp"
#include "lapack/kernel/source/triangular/triangular_parts.hpp"
#include "service/arguments.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {
namespace {

template <class T> void lauu2(char uplo, i64 n, T* a, i64 lda) {
    slot_of<T, &KernelTable::dlauu2, &KernelTable::zlauu2>()(uplo, n, a, lda);
}

/// By halves. U U^H has the blocks U11 U11^H + U12 U12^H, U12 U22^H and U22 U22^H; L^H L has L11^H L11 + L21^H L21,
/// L22^H L21 and L22^H L22. In this order each is made of what has not yet been written over.
template <class T> void product_with_adjoint(char uplo, i64 n, T* a, i64 lda, i64 unblocked) {
    if (n <= unblocked) return lauu2(uplo, n, a, lda);
    const i64 first = first_part(n), rest = n - first;
    T* const second = a + first * (lda + 1);
    product_with_adjoint(uplo, first, a, lda, unblocked);
    if (is_one_of(uplo, "U")) {
        T* const above = a + first * lda;
        herk('U', 'N', first, rest, 1.0, above, lda, 1.0, a, lda);
        trmm('R', 'U', 'C', 'N', first, rest, 1.0, second, lda, above, lda);
    } else {
        T* const below_diagonal = a + first;
        herk('L', 'C', first, rest, 1.0, below_diagonal, lda, 1.0, a, lda);
        trmm('L', 'L', 'C', 'N', rest, first, 1.0, second, lda, below_diagonal, lda);
    }
    product_with_adjoint(uplo, rest, second, lda, unblocked);
}

} // namespace

template <class T> void lauum(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int) {
    constexpr RoutineLetters name = routine<T>("LAUUM");
    if (Arguments(name).letter(1, uplo, "UL").size(2, n).leading(4, lda, n).refused(info) || n == 0) return;
    product_with_adjoint(uplo, n, a, lda, unblocked_order(name, uplo, n));
}
template decltype(lauum<double>) lauum<double>;
template decltype(lauum<zcomplex>) lauum<zcomplex>;

} // namespace nxl
