// Products with Q, of which there are the reflectors.
#pragma once
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"

namespace nxl {

/// C := P C (side L) or C P (R), P^H in place of P for `adjoint`, where P = H1 H2 ... Hk for forward vectors and
/// Hk ... H2 H1 for backward ones. The published Q of vectors by rows is P^H. Over threads where that pays, each with
/// rows or columns of C for itself. False when there was no memory, with nothing changed.
template <class T>
bool apply_reflectors(char side, bool adjoint, const Reflectors<T>& v, const T* tau, const Matrix<T>& c);

/// Vectors first .. first + count - 1, without the elements in which none of them has a value, and what those are.
template <class T> struct ReflectorBlock {
    Reflectors<T> vectors;
    Slice elements;
};
template <class T> ReflectorBlock<T> block_of_reflectors(const Reflectors<T>& v, i64 first, i64 count);

} // namespace nxl
