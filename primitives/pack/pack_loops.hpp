// The loops of the pack family, over the element and how often the loop is unrolled. In their order: what a caller sees
// of arrays that overlap, or of places named twice, is what the plain loop leaves.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// body(i) for i from 0 to n - 1.
template <int Unroll, class Body> inline void in_order(i64 n, Body body) {
    i64 i = 0;
    for (; i + Unroll <= n; i += Unroll)
        for (int k = 0; k < Unroll; ++k) body(i + k);
    for (; i < n; ++i) body(i);
}

/// y[i incy] = a[i inca], either increment of any sign.
template <int Unroll, class T> void copy_strided(i64 n, const T* a, i64 inca, T* y, i64 incy) {
    in_order<Unroll>(n, [=](i64 i) { y[i * incy] = a[i * inca]; });
}

/// y[i] = a[ia[i]].
template <int Unroll, class T> void pack_indexed(i64 n, const T* a, const std::int32_t* ia, T* y) {
    in_order<Unroll>(n, [=](i64 i) { y[i] = a[ia[i]]; });
}

/// y[iy[i]] = a[i]; the last of several for one place stays.
template <int Unroll, class T> void unpack_indexed(i64 n, const T* a, T* y, const std::int32_t* iy) {
    in_order<Unroll>(n, [=](i64 i) { y[iy[i]] = a[i]; });
}

/// The next element of a into y[i] for each i with my[i] above 0; other elements of y are not touched.
template <int Unroll, class T> void unpack_masked(i64 n, const T* a, T* y, const std::int32_t* my) {
    in_order<Unroll>(n, [&a, y, my](i64 i) {
        if (my[i] > 0) y[i] = *a++;
    });
}

} // namespace nxl
