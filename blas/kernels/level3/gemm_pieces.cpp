// Pieces of the matrix product that the threaded strategies of classes 2 and 3 put together.
#include "blas/gemm_processor.hpp"
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/gemm_forms.hpp"

namespace nxl::NXL_TARGET {
namespace {

template <class T> constexpr LeastSizes least_tile = kParts<T> == 2            ? LeastSizes{3, 3, 3}
                                                     : kClass == CpuClass::mc3 ? LeastSizes{2, 8, 4}
                                                                               : LeastSizes{2, 2, 2};
template <class T> constexpr LeastSizes least_tile_htn = kParts<T> == 2 ? LeastSizes{3, 3, 3} : LeastSizes{4, 4, 4};
template <class T> constexpr i64 row_unit = kParts<T> == 2 || kWidth == 4 ? 1 : kClass == CpuClass::mc3 ? 2 : 4;

GemmBlocks tile_blocks(double, i64, i64 n, i64 k) {
    return kClass == CpuClass::mc3 ? gemm_blocks_mc3(n, k) : gemm_blocks_mc(n, k);
}
GemmBlocks tile_blocks(zcomplex, i64 m, i64 n, i64 k) {
    if (kClass == CpuClass::mc) return zgemm_blocks_mc(m, n, k);
    const GemmBlocks blocks = gemm_blocks_mc3(n, k);
    return {blocks.mb / 2, blocks.nb, blocks.kb};
}
GemmBlocks tile_blocks_htn(double, i64, i64 n, i64 k) {
    const bool small = second_cache_is_small(nxl_gemm_cache_sizes());
    const GemmBlocks blocks = gemm_blocks_htn(n, k, small);
    return {small ? 448 : 600, blocks.nb, blocks.kb};
}
GemmBlocks tile_blocks_htn(zcomplex, i64 m, i64 n, i64 k) { return zgemm_blocks_htn(m, n, k); }

void give(const GemmBlocks& blocks, i64& mb, i64& nb, i64& kb) {
    mb = blocks.mb;
    nb = blocks.nb;
    kb = blocks.kb;
}

/// The small form: A is packed, B stays in place.
template <class T> void gemm_tile(const GeneralProduct<T>& g, const GemmBlocks& blocks, LeastSizes least_sizes) {
    if (only_scales(g)) return;
    if (below(g, least_sizes)) return plain_gemm(g);
    packed_form(g, {blocks, false, false}, row_unit<T>);
}

/// The macro kernel on operands that are packed already, k being one stretch.
template <class T> void multiply_packed(const BlockA& a, const T* packed_b, i64 b_stride, i64 n, double* strip,
                                        const Result<T>& to, i64 i) {
    multiply_block<T>(a, PanelB<T>{reinterpret_cast<const double*>(packed_b), b_stride * kParts<T>, n}, strip, to, i,
                      0);
}

template <class T>
void gemm_tile_pb(const GeneralProduct<T>& g, const T* packed_b, i64 ldbuf, const GemmBlocks& blocks,
                  LeastSizes least_sizes) {
    if (only_scales(g)) return;
    if (below(g, least_sizes)) return plain_gemm(g);
    const GemmBuffers buffers = buffers_for<T>({{blocks.mb, 0, g.k}, false, false});
    if (!buffers.there()) return plain_gemm(g);
    const i64 main_rows = down_to(g.m, row_unit<T>), stride = panel_stride_a<T>(g.k);
    const GeneralA<T> a{g.a, g.alpha};
    for (i64 i = 0; i < main_rows; i += blocks.mb) {
        const i64 rows = least(blocks.mb, main_rows - i);
        a.pack(i, rows, 0, g.k, buffers.a(), stride);
        multiply_packed(BlockA{buffers.a(), stride, rows, g.k}, packed_b, ldbuf, g.n, buffers.strip(), g.to, i);
    }
    if (main_rows < g.m) plain_gemm(g.below(main_rows));
}

template <class T>
void gemm_tile_pab(const GeneralProduct<T>& g, const T* packed_a, i64 a_stride, const T* packed_b, i64 b_stride) {
    if (only_scales(g)) return;
    constexpr i64 most_steps = 256;
    if (below(g, least_tile_htn<T>) || g.k > most_steps) return plain_gemm(g);
    alignas(64) double strip[kWidth == 2 ? StripB::step * most_steps : 1];
    const i64 main_rows = down_to(g.m, row_unit<T>);
    const BlockA a{reinterpret_cast<const double*>(packed_a), a_stride * kParts<T>, main_rows, g.k};
    multiply_packed(a, packed_b, b_stride, g.n, strip, g.to, 0);
    if (main_rows < g.m) plain_gemm(g.below(main_rows));
}

template <class T> Source<T> source_of_rows(const T* a, i64 lda) { return {a, 1, lda, false}; }
template <class T> Source<T> source_of_columns(const T* a, i64 lda, bool conjugate = false) {
    return {a, lda, 1, conjugate};
}

template <class T> void copy_a(const Source<T>& from, i64 rows, i64 k, T* buffer, i64 stride, const T& alpha) {
    pack_a(from, rows, k, reinterpret_cast<double*>(buffer), stride * kParts<T>, &alpha);
}
template <class T> void copy_b(const Source<T>& from, i64 k, i64 columns, T* buffer, i64 stride) {
    pack_b(from, k, columns, reinterpret_cast<double*>(buffer), stride * kParts<T>);
}

} // namespace

void xdgemm_beta(const i64& m, const i64& n, const double& beta, double* c, const i64& ldc) {
    scale_result<double>(m, n, {c, ldc, beta, before_of(beta)});
}

void xdgemm_tile(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const double& alpha,
                 const double* a, const i64& lda, const double* b, const i64& ldb, const double& beta, double* c,
                 const i64& ldc) {
    gemm_tile(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc),
              tile_blocks(double{}, m, n, k), least_tile<double>);
}

void xdgemm_tile_pb(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                    const double& alpha, const double* a, const i64& lda, const double* b, const i64& ldb,
                    const double* packed_b, const i64& ldbuf, const double& beta, double* c, const i64& ldc) {
    gemm_tile_pb(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), packed_b, ldbuf,
                 tile_blocks(double{}, m, n, k), least_tile<double>);
}

void xdgemm_tile_htn(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                     const double& alpha, const double* a, const i64& lda, const double* b, const i64& ldb,
                     const double& beta, double* c, const i64& ldc) {
    gemm_tile(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc),
              tile_blocks_htn(double{}, m, n, k), least_tile_htn<double>);
}

void xdgemm_tile_pb_htn(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                        const double& alpha, const double* a, const i64& lda, const double* b, const i64& ldb,
                        const double* packed_b, const i64& ldbuf, const double& beta, double* c, const i64& ldc) {
    gemm_tile_pb(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), packed_b, ldbuf,
                 tile_blocks_htn(double{}, m, n, k), least_tile_htn<double>);
}

void xdgemm_tile_pab(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                     const double& alpha, const double* a, const i64& lda, const double* packed_a, const i64& a_stride,
                     const double* b, const i64& ldb, const double* packed_b, const i64& b_stride, const double& beta,
                     double* c, const i64& ldc) {
    gemm_tile_pab(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), packed_a, a_stride,
                  packed_b, b_stride);
}

void xzgemm_beta(const i64& m, const i64& n, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    scale_result<zcomplex>(m, n, {c, ldc, beta, before_of(beta)});
}

void xzgemm_tile(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                 const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                 const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc),
              tile_blocks(zcomplex{}, m, n, k), least_tile<zcomplex>);
}

void xzgemm_tile_pb(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                    const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                    const zcomplex* packed_b, const i64& ldbuf, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile_pb(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), packed_b, ldbuf,
                 tile_blocks(zcomplex{}, m, n, k), least_tile<zcomplex>);
}

void xzgemm_tile_htn(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                     const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                     const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc),
              tile_blocks_htn(zcomplex{}, m, n, k), least_tile_htn<zcomplex>);
}

void xzgemm_tile_pb_htn(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                        const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                        const zcomplex* packed_b, const i64& ldbuf, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile_pb(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), packed_b, ldbuf,
                 tile_blocks_htn(zcomplex{}, m, n, k), least_tile_htn<zcomplex>);
}

void xzgemm_tile_pab(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                     const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* packed_a,
                     const i64& a_stride, const zcomplex* b, const i64& ldb, const zcomplex* packed_b,
                     const i64& b_stride, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile_pab(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), packed_a, a_stride,
                  packed_b, b_stride);
}

void xdgemm_blocks_mc(const i64&, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(gemm_blocks_mc(n, k), mb, nb, kb);
}
void xdgemm_blocks_htn(const i64&, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(gemm_blocks_htn(n, k, second_cache_is_small(nxl_gemm_cache_sizes())), mb, nb, kb);
}
void xzgemm_blocks(const i64& m, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(tile_blocks(zcomplex{}, m, n, k), mb, nb, kb);
}
void xzgemm_blocks_htn(const i64& m, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(zgemm_blocks_htn(m, n, k), mb, nb, kb);
}

void xdgemm_copy_an(const i64& rows, const i64& k, const double* a, const i64& lda, double* buffer, const i64& stride,
                    const double& alpha) {
    copy_a(source_of_rows(a, lda), rows, k, buffer, stride, alpha);
}
void xdgemm_copy_at(const i64& rows, const i64& k, const double* a, const i64& lda, double* buffer, const i64& stride,
                    const double& alpha) {
    copy_a(source_of_columns(a, lda), rows, k, buffer, stride, alpha);
}
void xzgemm_copy_an(const i64& rows, const i64& k, const zcomplex* a, const i64& lda, zcomplex* buffer,
                    const i64& stride, const zcomplex& alpha) {
    copy_a(source_of_rows(a, lda), rows, k, buffer, stride, alpha);
}
void xzgemm_copy_at(const i64& rows, const i64& k, const zcomplex* a, const i64& lda, zcomplex* buffer,
                    const i64& stride, const zcomplex& alpha) {
    copy_a(source_of_columns(a, lda), rows, k, buffer, stride, alpha);
}
void xzgemm_copy_ac(const i64& rows, const i64& k, const zcomplex* a, const i64& lda, zcomplex* buffer,
                    const i64& stride, const zcomplex& alpha) {
    copy_a(source_of_columns(a, lda, true), rows, k, buffer, stride, alpha);
}

void xdgemm_copy_bn(const i64& k, const i64& columns, const double* b, const i64& ldb, double* buffer,
                    const i64& stride) {
    copy_b(source_of_columns(b, ldb), k, columns, buffer, stride);
}
void xdgemm_copy_bt(const i64& k, const i64& columns, const double* b, const i64& ldb, double* buffer,
                    const i64& stride) {
    copy_b(source_of_rows(b, ldb), k, columns, buffer, stride);
}
void xzgemm_copy_bn(const i64& k, const i64& columns, const zcomplex* b, const i64& ldb, zcomplex* buffer,
                    const i64& stride) {
    copy_b(source_of_columns(b, ldb), k, columns, buffer, stride);
}
void xzgemm_copy_bt(const i64& k, const i64& columns, const zcomplex* b, const i64& ldb, zcomplex* buffer,
                    const i64& stride) {
    copy_b(source_of_rows(b, ldb), k, columns, buffer, stride);
}
void xzgemm_copy_bc(const i64& k, const i64& columns, const zcomplex* b, const i64& ldb, zcomplex* buffer,
                    const i64& stride) {
    copy_b(Source<zcomplex>{b, 1, ldb, true}, k, columns, buffer, stride);
}

} // namespace nxl::NXL_TARGET
