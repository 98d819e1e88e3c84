// How threads share one matrix product: the routines that carry the strategies of gemm_rules.hpp out, and the memory
// that they pack into.
#pragma once
#include "blas/kernel/default_em64t/level3/gemm_call.hpp"
#include "service/page_buffer.hpp"

namespace nxl {

/// Bytes that a packing buffer holds beyond its elements: room to move its start up to a page, and for kernels that
/// read past the end.
inline constexpr i64 pack_spare_bytes = 8704;
template <class T> inline constexpr i64 pack_spare = pack_spare_bytes / i64{sizeof(T)};

// The strategies. `nt` is the number of threads offered; all but the first expect that C has been multiplied by beta
// and that the call's beta is 1. They change neither the call nor what it points to, but for C.
void nxl_blas_dgemm_1d(i64 nt, const GemmCall<double>& call);
void nxl_blas_zgemm_1d(i64 nt, const GemmCall<zcomplex>& call);
void dgemm_2D_nhm(i64 nt, const GemmCall<double>& call);
void zgemm_2D_nhm(i64 nt, const GemmCall<zcomplex>& call);
void dgemm_2D(i64 nt, const GemmCall<double>& call);
void zgemm_2D(i64 nt, const GemmCall<zcomplex>& call);
void dgemm_1D_with_copy(i64 nt, const GemmCall<double>& call);
void dgemm_2D_abcopy_abx_m_km_par_p_htn(i64 nt, const GemmCall<double>& call);
void zgemm_2D_abcopy_abx_m_km_par_p_htn(i64 nt, const GemmCall<zcomplex>& call);

} // namespace nxl
