// One threaded matrix product as its strategies see it: the call, the kernels of its scalar type, packing memory, and
// the routines that carry the strategies out.
#pragma once
#include "blas/kernel/default_em64t/level3/gemm_rules.hpp"
#include "blas/kernels/level3/gemm_blocks.hpp"
#include "service/kernel_slot.hpp"
#include "service/page_buffer.hpp"

namespace nxl {

/// The kernels of T that the matrix product is put together from. "htn" marks those for class 2 with SSE4.1.
template <class T> struct GemmSlots;
template <> struct GemmSlots<double> {
    static constexpr auto& serial = slot<&KernelTable::xdgemm>;
    static constexpr auto& beta = slot<&KernelTable::xdgemm_beta>;
    static constexpr auto& tile_pab = slot<&KernelTable::xdgemm_tile_pab>;
    static constexpr auto& blocks_htn = slot<&KernelTable::xdgemm_blocks_htn>;
};
template <> struct GemmSlots<zcomplex> {
    static constexpr auto& serial = slot<&KernelTable::xzgemm>;
    static constexpr auto& beta = slot<&KernelTable::xzgemm_beta>;
    static constexpr auto& tile_pab = slot<&KernelTable::xzgemm_tile_pab>;
    static constexpr auto& blocks_htn = slot<&KernelTable::xzgemm_blocks_htn>;
};

constexpr bool is_not_transposed(char trans) { return trans == 'N' || trans == 'n'; }
/// Of a complex operand that is transposed at all; any other letter conjugates too.
constexpr bool is_transposed_plainly(char trans) { return trans == 'T' || trans == 't'; }

/// C := alpha op(A) op(B) + beta C, with the arguments of the driver. Any letter but N counts as transposed.
template <class T> struct GemmCall {
    char transa, transb;
    i64 m, n, k;
    T alpha;
    const T* a;
    i64 lda;
    const T* b;
    i64 ldb;
    T beta;
    T* c;
    i64 ldc;

    GemmShape shape() const { return {m, n, k}; }

    const T* a_at(i64 row, i64 depth) const {
        return is_not_transposed(transa) ? a + row + depth * lda : a + depth + row * lda;
    }
    const T* b_at(i64 depth, i64 column) const {
        return is_not_transposed(transb) ? b + depth + column * ldb : b + column + depth * ldb;
    }
    T* c_at(i64 row, i64 column) const { return c + row + column * ldc; }

    /// The same for some rows and columns of C alone, over the whole of k.
    GemmCall cell(Slice rows, Slice columns) const {
        GemmCall part = *this;
        part.m = rows.count;
        part.n = columns.count;
        part.a = a_at(rows.start, 0);
        part.b = b_at(0, columns.start);
        part.c = c_at(rows.start, columns.start);
        return part;
    }

    /// Hands the call to a kernel that takes the thirteen arguments.
    template <class Kernel> void run(Kernel& kernel) const {
        kernel(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    }
    void run_serial() const { run(GemmSlots<T>::serial); }
};

/// The block lengths that a kernel's rule gives for a shape. Without a kernel behind it, the shape is one block.
template <class Rule> GemmBlocks blocks_by(Rule& rule, const GemmShape& shape) {
    GemmBlocks blocks{shape.m, shape.n, shape.k};
    rule(shape.m, shape.n, shape.k, blocks.mb, blocks.nb, blocks.kb);
    return blocks;
}

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
