// Drivers of the Cholesky family: factorisation, solution, inverse. Arguments as published, with integers of 64 bits;
// option characters have their hidden lengths at the end, which nobody looks at.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A = U^H U or L L^H, over threads where that pays.
template <class T>
void potrf(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int uplo_length);
inline constexpr auto nxl_lapack_dpotrf = potrf<double>;
inline constexpr auto nxl_lapack_zpotrf = potrf<zcomplex>;

/// The same for small matrices, on one thread, without blocks.
void nxl_lapack_zpotf2(const char& uplo, const i64& n, zcomplex* a, const i64& lda, i64& info, int uplo_length);

/// A X = B from the factor of potrf.
template <class T>
void potrs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, T* b, const i64& ldb, i64& info,
           int uplo_length);
inline constexpr auto nxl_lapack_dpotrs = potrs<double>;
inline constexpr auto nxl_lapack_zpotrs = potrs<zcomplex>;

/// One triangle of the inverse from the factor of potrf.
template <class T>
void potri(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int uplo_length);
inline constexpr auto nxl_lapack_dpotri = potri<double>;
inline constexpr auto nxl_lapack_zpotri = potri<zcomplex>;

/// U U^H or L^H L, in place of the factor's triangle.
template <class T>
void lauum(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int uplo_length);
inline constexpr auto nxl_lapack_dlauum = lauum<double>;
inline constexpr auto nxl_lapack_zlauum = lauum<zcomplex>;

} // namespace nxl
