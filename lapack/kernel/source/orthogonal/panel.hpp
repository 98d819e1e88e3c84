// QR factorisation of a panel, with the factor T of its reflectors.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A = Q R for a panel of at least as many rows as columns, on this thread unless the products fork: R in the upper
/// triangle, the vectors of Q = H1 ... Hk = I - V T V^H below, their scalars in tau. T is upper triangular, k by k; the
/// rest of its array is workspace.
/// Recursive over halves of the columns: Elmroth and Gustavson, IBM J. Res. Dev. 44 (2000).
template <class T> void factor_panel(const Matrix<T>& a, T* tau, const Matrix<T>& t);

} // namespace nxl
