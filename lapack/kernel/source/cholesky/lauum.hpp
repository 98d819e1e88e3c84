// The product of a triangular factor and its conjugate transpose.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// U U^H or L^H L, in place of the factor's triangle.
template <class T>
void lauum(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dlauum = lauum<double>;
inline constexpr auto nxl_lapack_zlauum = lauum<zcomplex>;

} // namespace nxl
