// Singular values of bidiagonal matrices without vectors.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Replaces the diagonal d(n) of an upper bidiagonal matrix with superdiagonal e(n-1) by its singular values,
/// descending, each to a few units of its own last place. False, with nothing changed, when there was no memory, a
/// value is no finite number, the elements differ by so much that squares would leave the range, or the shifts do not
/// converge.
bool values_by_dqds(i64 n, double* d, const double* e);

} // namespace nxl
