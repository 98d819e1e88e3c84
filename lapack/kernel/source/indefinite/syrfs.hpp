// Refinement of solutions of symmetric indefinite and Hermitian systems.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"
#include "lapack/kernel/source/indefinite/symmetry.hpp"

namespace nxl {

/// Improves each column of X, for A X = B with the factors of sytrf or hetrf in af, and bounds its errors. work: 3n
/// real, or 2n complex elements; spare: n.
template <class T, Symmetry kind>
void syrfs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, const T* af, const i64& ldaf,
           const i64* ipiv, const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work,
           Spare<T>* spare, i64& info, int uplo_length = 1);
inline constexpr auto nxl_lapack_dsyrfs = syrfs<double, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zsyrfs = syrfs<zcomplex, Symmetry::symmetric>;
inline constexpr auto nxl_lapack_zherfs = syrfs<zcomplex, Symmetry::hermitian>;

} // namespace nxl
