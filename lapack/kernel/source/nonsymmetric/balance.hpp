// Balancing before eigenvalues are computed, and its way back for the vectors.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A := D^-1 P^T A P D: permuted so that it is triangular outside of rows and columns ilo to ihi, from 1, and scaled
/// there by powers of two. What was done stands in scale(n).
template <class T>
void gebal(const char& job, const i64& n, T* a, const i64& lda, i64& ilo, i64& ihi, double* scale, i64& info,
           int job_length = 1);
inline constexpr auto nxl_lapack_dgebal = gebal<double>;
inline constexpr auto nxl_lapack_zgebal = gebal<zcomplex>;

/// V := P D V for right vectors, P D^-1 V for left ones.
template <class T>
void gebak(const char& job, const char& side, const i64& n, const i64& ilo, const i64& ihi, const double* scale,
           const i64& m, T* v, const i64& ldv, i64& info, int job_length = 1, int side_length = 1);
inline constexpr auto nxl_lapack_dgebak = gebak<double>;
inline constexpr auto nxl_lapack_zgebak = gebak<zcomplex>;

} // namespace nxl
