// Columns, or rows, of Q itself in the place of its reflectors.
#pragma once
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"

namespace nxl {

/// Overwrites `a` by the columns of P = H1 ... Hk (forward, the first ones) or Hk ... H1 (backward, the last ones), by
/// rows by the rows of P^H: as many as `a` has, at least k. The k vectors are its first columns or rows when they are
/// forward, else its last. False when there was no memory, with nothing changed.
template <class T> bool form_q(Order order, Storage storage, i64 k, const Matrix<T>& a, const T* tau);

} // namespace nxl
