// Reduction to bidiagonal form in two stages, by way of a band, for singular values alone: nearly all of the first is
// matrix products, where half of gebrd is products with a vector, at the speed of memory.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Diagonals above the main one of the band in between. With fewer, products are slower; with more, bulges are longer.
inline constexpr i64 bidiagonal_band_width = 24;
/// The order from which singular values alone are found sooner this way: on one thread of a Xeon with 512-bit registers
/// the reduction takes 0.85 of the time of gebrd for n = 100, 0.7 for 300, 0.4 for 600 and above. Complex matrices have
/// more work for each element from the start.
template <class T> inline constexpr i64 two_stage_values_order = sizeof(T) == sizeof(double) ? 100 : 250;

/// A = Q B P^H with m >= n; of the upper bidiagonal B the diagonal comes in d(n), the superdiagonal in e(n-1). A is
/// destroyed. b >= 1. False when there was no memory, with A as it was. Grosser and Lang, Parallel Computing 25 (1999).
template <class T> bool bidiagonalise_in_two_stages(const Matrix<T>& a, i64 b, double* d, double* e);

} // namespace nxl
