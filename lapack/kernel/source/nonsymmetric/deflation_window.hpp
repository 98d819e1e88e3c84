// Aggressive early deflation.
#pragma once
#include "lapack/kernel/source/nonsymmetric/schur.hpp"
#include "lapack/kernel/source/nonsymmetric/window_products.hpp"

namespace nxl {

/// What a window has given: so many eigenvalues at its end have converged, and the others are shifts, the good ones.
/// They stand in pairs for real arithmetic: conjugate, or both real.
struct Deflation {
    i64 deflated, pairs;
};

/// Looks at the last `order` rows of the active block first .. end - 1. `shifts`: room for `order` pairs; `t`, `v`:
/// order^2 elements each, `vectors`: 2 order.
template <class T> struct DeflationSpace {
    T *t, *v, *vectors;
    zcomplex* values;
    Eigenpair* shifts;
};
template <class T>
Deflation deflate_window(const SchurIteration<T>& s, i64 first, i64 end, i64 order, const DeflationSpace<T>& space,
                         const WindowProducts<T>& products);

} // namespace nxl
