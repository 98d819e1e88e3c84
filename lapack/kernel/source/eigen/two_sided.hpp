// A reflector applied from both sides.
#pragma once
#include "blas/calls.hpp"

namespace nxl {

/// A := H^H A H of a symmetric or Hermitian matrix, one triangle, for H = I - tau v v^H; w: n elements.
template <class T> void reflect_both_sides(char uplo, const Matrix<T>& a, const T* v, const T& tau, T* w) {
    const i64 n = a.rows;
    hemv(uplo, tau, a, v, 0.0, w);
    axpy(n, -0.5 * tau * dotc(n, w, 1, v, 1), v, 1, w, 1);
    slot_of<T, &KernelTable::dsyr2, &KernelTable::zher2>()(uplo, n, T(-1.0), v, 1, w, 1, a.data, a.ld);
}

} // namespace nxl
