// What the kernels of level 2 share about vectors. They walk a matrix by columns: the vector that runs along the rows
// has to be contiguous, so a strided one is copied a block at a time; the one that runs along the columns is read in
// place.
#pragma once
#include "blas/kernels/scalar.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

/// Elements that a strided vector is copied by: 8 KiB on the stack.
template <class T> constexpr i64 kRowBlock = 1024 / kParts<T>;

/// Rows taken at once. A contiguous vector needs no copy; long runs of each column suit the memory, and two vectors of
/// 128 KiB stay in the second-level cache while columns pass.
template <class T> i64 rows_at_once(i64 inc) { return inc == 1 ? 16384 / kParts<T> : kRowBlock<T>; }
template <class T> i64 rows_at_once(i64 incx, i64 incy) {
    return smaller(rows_at_once<T>(incx), rows_at_once<T>(incy));
}

/// Elements 0 .. count - 1 from `origin` on, side by side: where they are, or else in `copy`.
template <class T> T* gather(T* origin, i64 inc, i64 count, T* copy) {
    if (inc == 1) return origin;
    for (i64 i = 0; i < count; ++i) copy[i] = origin[i * inc];
    return copy;
}
template <class T> const T* gather(const T* origin, i64 inc, i64 count, T* copy) {
    return gather(const_cast<T*>(origin), inc, count, copy); // read only
}

/// Back from where gather() put them.
template <class T> void scatter(const T* block, T* origin, i64 inc, i64 count) {
    if (inc == 1) return;
    for (i64 i = 0; i < count; ++i) origin[i * inc] = block[i];
}

/// y := beta y; a zero beta clears y, whatever it holds.
template <class T> void scale(i64 n, T beta, T* y, i64 inc) {
    if (is_one(beta)) return;
    if (is_zero(beta))
        for (i64 i = 0; i < n; ++i) y[i * inc] = from_real<T>(0.0);
    else
        for (i64 i = 0; i < n; ++i) y[i * inc] = beta * y[i * inc];
}

/// Calls body(start, length) for consecutive blocks of at most `size` out of n, from the first or from the last on.
template <class Body> [[gnu::always_inline]] inline void for_blocks(i64 n, i64 size, bool forward, const Body& body) {
    const i64 blocks = (n + size - 1) / size;
    for (i64 k = 0; k < blocks; ++k) {
        const i64 start = (forward ? k : blocks - 1 - k) * size;
        body(start, smaller(size, n - start));
    }
}

/// The same with a size known to the compiler: loops over a full block unroll, when `body` is inlined.
template <i64 size, class Body>
[[gnu::always_inline]] inline void for_panels(i64 n, bool forward, const Body& body) {
    for_blocks(n, size, forward, [&](i64 start, i64 count) {
        if (count == size) body(start, size);
        else body(start, count);
    });
}

} // namespace
} // namespace nxl::NXL_TARGET
