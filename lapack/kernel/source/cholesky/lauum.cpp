// dlauum, zlauum: the product of a triangular factor and its conjugate transpose, in its place.
#include "lapack/kernel/source/cholesky/lauum.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/triangular_parts.hpp"
#include "service/arguments.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {
namespace {

template <class T> void lauu2(char uplo, const Matrix<T>& a) {
    slot_of<T, &KernelTable::dlauu2, &KernelTable::zlauu2>()(uplo, a.rows, a.data, a.ld);
}

/// By halves. U U^H has the blocks U11 U11^H + U12 U12^H, U12 U22^H and U22 U22^H; L^H L has L11^H L11 + L21^H L21,
/// L22^H L21 and L22^H L22. In this order each is made of what has not yet been written over.
template <class T> void product_with_adjoint(char uplo, const Matrix<T>& a) {
    if (a.rows <= unblocked_order(routine<T>("LAUUM"))) return lauu2(uplo, a);
    const i64 half = first_part(a.rows), rest = a.rows - half;
    const Matrix<T> first = a.block(0, 0, half, half), second = a.from(half, half);
    product_with_adjoint(uplo, first);
    if (uplo == 'U') {
        const Matrix<T> above = a.block(0, half, half, rest);
        herk('U', 'N', 1.0, above, 1.0, first);
        trmm('R', 'U', 'C', 'N', 1.0, second, above);
    } else {
        const Matrix<T> below = a.block(half, 0, rest, half);
        herk('L', 'C', 1.0, below, 1.0, first);
        trmm('L', 'L', 'C', 'N', 1.0, second, below);
    }
    product_with_adjoint(uplo, second);
}

} // namespace

template <class T> void lauum(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int) {
    Arguments arguments(routine<T>("LAUUM"));
    if (arguments.letter(1, uplo, "UL").size(2, n).leading(4, lda, n).refused(info) || n == 0) return;
    product_with_adjoint(uplo, Matrix<T>{a, n, n, lda});
}
template decltype(lauum<double>) lauum<double>;
template decltype(lauum<zcomplex>) lauum<zcomplex>;

} // namespace nxl
