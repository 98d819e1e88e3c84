// dcopy, zcopy, dswap, zswap. Elements are K doubles; contiguous vectors are runs of n K doubles.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// Doubles from which a copy bypasses the cache: y would not stay there anyway, and its lines need not be read first.
constexpr i64 streaming_count = i64{1} << 22; // 32 MiB

/// Needs p at a multiple of the vector's size.
template <int W> [[gnu::always_inline]] inline void stream(double* p, Vec<W> v) {
    __builtin_nontemporal_store(v, reinterpret_cast<Vec<W>*>(p));
}

/// Copies from the first vector boundary of y on, in whole cache lines, past the cache. Returns how many doubles are
/// done.
template <int W> i64 copy_streaming(i64 count, const double* x, double* y) {
    i64 i = 0;
    while (reinterpret_cast<std::uintptr_t>(y + i) % 64 != 0) {
        y[i] = x[i];
        ++i;
    }
    constexpr int line = 8; // doubles
    for (; i + line <= count; i += line)
        for (int k = 0; k < line; k += W) stream<W>(y + i + k, load<W>(x + i + k));
    __builtin_ia32_sfence(); // other threads see these stores before any that follow
    return i;
}

/// Four loads, then four stores: the compiler, which does not know that x and y are apart, would take turns.
template <int W> void copy_unit(i64 count, const double* x, double* y) {
    i64 i = 0;
    const bool on_doubles = reinterpret_cast<std::uintptr_t>(y) % sizeof(double) == 0;
    if (count >= streaming_count && on_doubles) i = copy_streaming<W>(count, x, y);
    for (; i + 4 * W <= count; i += 4 * W) {
        const Vec<W> v0 = load<W>(x + i), v1 = load<W>(x + i + W);
        const Vec<W> v2 = load<W>(x + i + 2 * W), v3 = load<W>(x + i + 3 * W);
        store<W>(y + i, v0);
        store<W>(y + i + W, v1);
        store<W>(y + i + 2 * W, v2);
        store<W>(y + i + 3 * W, v3);
    }
    for (; i + W <= count; i += W) store<W>(y + i, load<W>(x + i));
    for (; i < count; ++i) y[i] = x[i];
}

template <int W> [[gnu::always_inline]] inline void swap_step(double* x, double* y) {
    const Vec<W> v = load<W>(x);
    store<W>(x, load<W>(y));
    store<W>(y, v);
}

/// Both vectors are read, so that all lines are in the cache anyway and stores past it would gain nothing.
template <int W> void swap_unit(i64 count, double* x, double* y) {
    i64 i = 0;
    for (; i + 4 * W <= count; i += 4 * W)
        for (i64 k = i; k < i + 4 * W; k += W) swap_step<W>(x + k, y + k);
    for (; i + W <= count; i += W) swap_step<W>(x + i, y + i);
    for (; i < count; ++i) swap_step<1>(x + i, y + i);
}

/// Classes 2 and 3 also copy a pair of reversed vectors as a run.
bool copies_as_run(i64 incx, i64 incy, bool real) {
    if (real && (kClass == CpuClass::mc || kClass == CpuClass::mc3)) return incx * incy == 1;
    return incx == 1 && incy == 1;
}

/// Strided elements go one at a time, each with all its parts in one load and one store.
template <int K> void copy(i64 n, const double* x, i64 incx, double* y, i64 incy) {
    if (n < 1) return;
    if (copies_as_run(incx, incy, K == 1)) return copy_unit<kWidest>(n * K, x, y);
    i64 ix = first_index(n, incx) * K, iy = first_index(n, incy) * K;
    for (i64 i = 0; i < n; ++i, ix += incx * K, iy += incy * K) store<K>(y + iy, load<K>(x + ix));
}

template <int K> void swap(i64 n, double* x, i64 incx, double* y, i64 incy) {
    if (n < 1) return;
    if (incx == 1 && incy == 1) return swap_unit<kWidest>(n * K, x, y);
    i64 ix = first_index(n, incx) * K, iy = first_index(n, incy) * K;
    for (i64 i = 0; i < n; ++i, ix += incx * K, iy += incy * K) swap_step<K>(x + ix, y + iy);
}

} // namespace

void dcopy(const i64& n, const double* x, const i64& incx, double* y, const i64& incy) { copy<1>(n, x, incx, y, incy); }
void zcopy(const i64& n, const zcomplex* x, const i64& incx, zcomplex* y, const i64& incy) {
    copy<2>(n, parts(x), incx, parts(y), incy);
}
void dswap(const i64& n, double* x, const i64& incx, double* y, const i64& incy) { swap<1>(n, x, incx, y, incy); }
void zswap(const i64& n, zcomplex* x, const i64& incx, zcomplex* y, const i64& incy) {
    swap<2>(n, parts(x), incx, parts(y), incy);
}

} // namespace nxl::NXL_TARGET
