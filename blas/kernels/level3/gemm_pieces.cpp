// Pieces of the matrix product that the threaded strategies of classes 2 and 3 put together.
#include "blas/gemm_processor.hpp"
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/gemm_forms.hpp"

namespace nxl::NXL_TARGET {
namespace {

// The threaded drivers decide who packs what; the pieces do it. By their names:
//
//     beta        C := beta C, before the threads share C
//     tile        one thread's tile of C: packs A by itself, reads B in place
//     tile_pb     the same against a panel of B that some thread has packed
//     tile_pab    against a block of A, alpha included, and a panel of B, both packed
//     blocks      the lengths by which a driver has to cut, so that its panels fit
//     copy_an     pack rows of op(A): A as it stands; copy_at: A is transposed; copy_ac: and conjugated
//     copy_bn     pack columns of op(B), likewise; no scale, for alpha goes with A
//
// The ending _htn is for processors of class 2 with SSE4.1, _mc for those without. Where both do the same they still
// are two kernels: a driver names the set that it works with. A tile below the least sizes ignores what has been
// packed, and reads A and B themselves.
template <class T> constexpr LeastSizes least_tile = kParts<T> == 2            ? LeastSizes{3, 3, 3}
                                                     : kClass == CpuClass::mc3 ? LeastSizes{2, 8, 4}
                                                                               : LeastSizes{2, 2, 2};
template <class T> constexpr LeastSizes least_tile_htn = kParts<T> == 2 ? LeastSizes{3, 3, 3} : LeastSizes{4, 4, 4};
/// Rows that the packed form takes are a multiple of this, the height of the tile: 2 on class 3, 4 on class 2. Complex
/// products and wide registers fill up the last panel in place of that.
template <class T> constexpr i64 row_unit = kParts<T> == 2 || kWidth == 4 ? 1 : kClass == CpuClass::mc3 ? 2 : 4;

// The block rules, told apart by a number of the scalar's type.
GemmBlocks tile_blocks(double, i64, i64 n, i64 k) {
    return kClass == CpuClass::mc3 ? gemm_blocks_mc3(n, k) : gemm_blocks_mc(n, k);
}
GemmBlocks tile_blocks(Complex, i64 m, i64 n, i64 k) {
    if (kClass == CpuClass::mc) return zgemm_blocks_mc(m, n, k);
    const GemmBlocks blocks = gemm_blocks_mc3(n, k);
    return {blocks.mb / 2, blocks.nb, blocks.kb};
}
GemmBlocks tile_blocks_htn(double, i64, i64 n, i64 k) {
    const bool small = second_cache_is_small(nxl_gemm_cache_sizes());
    const GemmBlocks blocks = gemm_blocks_htn(n, k, small);
    return {small ? 448 : 600, blocks.nb, blocks.kb};
}
GemmBlocks tile_blocks_htn(Complex, i64 m, i64 n, i64 k) { return zgemm_blocks_htn(m, n, k); }

void give(const GemmBlocks& blocks, i64& mb, i64& nb, i64& kb) {
    mb = blocks.mb;
    nb = blocks.nb;
    kb = blocks.kb;
}

/// The small form: A is packed, B stays in place. A grid of threads uses it, where all cells of one column would pack
/// the same B.
template <class T> void gemm_tile(const GeneralProduct<T>& g, const GemmBlocks& blocks, LeastSizes least_sizes) {
    if (only_scales(g)) return;
    if (below(g, least_sizes)) return plain_gemm(g);
    packed_form(g, {blocks, false, false}, row_unit<T>);
}

/// The macro kernel on operands that are packed already, k being one stretch. Drivers count strides in numbers, the
/// macro kernel in doubles.
template <class T> void multiply_packed(const BlockA& a, const T* packed_b, i64 b_stride, i64 n, double* strip,
                                        const Result<T>& to, i64 i) {
    multiply_block<T>(a, PanelB<T>{parts(packed_b), b_stride * kParts<T>, n}, strip, to, i, 0);
}

/// A is packed a block at a time and multiplied with the whole panel of B. The caller's k is one stretch already: it is
/// the length that B has been packed with.
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

/// Nothing is allocated: only narrow registers need a strip, and it stands on the stack, for the 256 steps of k that
/// the block rules never exceed.
template <class T>
void gemm_tile_pab(const GeneralProduct<T>& g, const T* packed_a, i64 a_stride, const T* packed_b, i64 b_stride) {
    if (only_scales(g)) return;
    constexpr i64 most_steps = 256;
    if (below(g, least_tile_htn<T>) || g.k > most_steps) return plain_gemm(g);
    alignas(64) double strip[kWidth == 2 ? StripB::step * most_steps : 1];
    const i64 main_rows = down_to(g.m, row_unit<T>);
    const BlockA a{parts(packed_a), a_stride * kParts<T>, main_rows, g.k};
    multiply_packed(a, packed_b, b_stride, g.n, strip, g.to, 0);
    if (main_rows < g.m) plain_gemm(g.below(main_rows));
}

// The copies. Rows of A and columns of B are the same to packing: what counts is which way they are contiguous.
template <class T> Source<T> source_of_rows(const T* a, i64 lda) { return {a, 1, lda, false}; }
template <class T> Source<T> source_of_columns(const T* a, i64 lda, bool conjugate = false) {
    return {a, lda, 1, conjugate};
}

template <class T> void copy_a(const Source<T>& from, i64 rows, i64 k, T* buffer, i64 stride, const T& alpha) {
    pack_a(from, rows, k, parts(buffer), stride * kParts<T>, &alpha);
}
template <class T> void copy_b(const Source<T>& from, i64 k, i64 columns, T* buffer, i64 stride) {
    pack_b(from, k, columns, parts(buffer), stride * kParts<T>);
}

} // namespace

// Real pieces.
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

// Complex pieces.
void xzgemm_beta(const i64& m, const i64& n, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    scale_result<Complex>(m, n, {scalars(c), ldc, scalar(beta), before_of(scalar(beta))});
}

void xzgemm_tile(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                 const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                 const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc),
              tile_blocks(Complex{}, m, n, k), least_tile<Complex>);
}

void xzgemm_tile_pb(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                    const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                    const zcomplex* packed_b, const i64& ldbuf, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile_pb(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), scalars(packed_b),
                 ldbuf, tile_blocks(Complex{}, m, n, k), least_tile<Complex>);
}

void xzgemm_tile_htn(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                     const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                     const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc),
              tile_blocks_htn(Complex{}, m, n, k), least_tile_htn<Complex>);
}

void xzgemm_tile_pb_htn(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                        const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb,
                        const zcomplex* packed_b, const i64& ldbuf, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile_pb(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), scalars(packed_b),
                 ldbuf, tile_blocks_htn(Complex{}, m, n, k), least_tile_htn<Complex>);
}

void xzgemm_tile_pab(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k,
                     const zcomplex& alpha, const zcomplex* a, const i64& lda, const zcomplex* packed_a,
                     const i64& a_stride, const zcomplex* b, const i64& ldb, const zcomplex* packed_b,
                     const i64& b_stride, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    gemm_tile_pab(general_product(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc), scalars(packed_a),
                  a_stride, scalars(packed_b), b_stride);
}

// Block lengths. gemm_blocks.hpp has the rules.
void xdgemm_blocks_mc(const i64&, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(gemm_blocks_mc(n, k), mb, nb, kb);
}
void xdgemm_blocks_htn(const i64&, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(gemm_blocks_htn(n, k, second_cache_is_small(nxl_gemm_cache_sizes())), mb, nb, kb);
}
void xzgemm_blocks(const i64& m, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(tile_blocks(Complex{}, m, n, k), mb, nb, kb);
}
void xzgemm_blocks_htn(const i64& m, const i64& n, const i64& k, i64& mb, i64& nb, i64& kb) {
    give(zgemm_blocks_htn(m, n, k), mb, nb, kb);
}

// Packing of A, multiplied by alpha on the way.
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
    copy_a(source_of_rows(scalars(a), lda), rows, k, scalars(buffer), stride, scalar(alpha));
}
void xzgemm_copy_at(const i64& rows, const i64& k, const zcomplex* a, const i64& lda, zcomplex* buffer,
                    const i64& stride, const zcomplex& alpha) {
    copy_a(source_of_columns(scalars(a), lda), rows, k, scalars(buffer), stride, scalar(alpha));
}
void xzgemm_copy_ac(const i64& rows, const i64& k, const zcomplex* a, const i64& lda, zcomplex* buffer,
                    const i64& stride, const zcomplex& alpha) {
    copy_a(source_of_columns(scalars(a), lda, true), rows, k, scalars(buffer), stride, scalar(alpha));
}

// Packing of B.
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
    copy_b(source_of_columns(scalars(b), ldb), k, columns, scalars(buffer), stride);
}
void xzgemm_copy_bt(const i64& k, const i64& columns, const zcomplex* b, const i64& ldb, zcomplex* buffer,
                    const i64& stride) {
    copy_b(source_of_rows(scalars(b), ldb), k, columns, scalars(buffer), stride);
}
void xzgemm_copy_bc(const i64& k, const i64& columns, const zcomplex* b, const i64& ldb, zcomplex* buffer,
                    const i64& stride) {
    copy_b(Source<Complex>{scalars(b), 1, ldb, true}, k, columns, scalars(buffer), stride);
}

} // namespace nxl::NXL_TARGET
