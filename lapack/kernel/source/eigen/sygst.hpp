// Generalised symmetric eigenproblems made ordinary ones.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// With B = U^H U (uplo U) or L L^H (L) as potrf has left it: A := U^-H A U^-1 or L^-1 A L^-H (itype 1), else U A U^H
/// or L^H A L.
template <class T>
void sygst(const i64& itype, const char& uplo, const i64& n, T* a, const i64& lda, const T* b, const i64& ldb,
           i64& info, int uplo_length = 1);

inline constexpr auto nxl_lapack_dsygst = sygst<double>;
inline constexpr auto nxl_lapack_zhegst = sygst<zcomplex>;

} // namespace nxl
