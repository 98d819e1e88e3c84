// The workspace of condition and refinement routines, which is published as three arrays of doubles, or two of complex
// numbers and one of doubles; beside them real routines have an array of integers that is not used.
#pragma once
#include "service/types.hpp"
#include "service/workspace.hpp"
#include <type_traits>

namespace nxl {

/// The element of the second workspace array.
template <class T> using Spare = std::conditional_t<std::is_same_v<T, double>, i64, double>;

/// n elements in each array.
template <class T> struct EstimateSpace {
    T *x, *v;
    double* sizes;
};

inline EstimateSpace<double> estimate_space(i64 n, double* work, i64*) {
    Sections<double> parts(work);
    double *const x = parts.take(n), *const v = parts.take(n);
    return {x, v, parts.take(n)};
}
inline EstimateSpace<zcomplex> estimate_space(i64 n, zcomplex* work, double* rwork) {
    Sections<zcomplex> parts(work);
    zcomplex* const x = parts.take(n);
    return {x, parts.take(n), rwork};
}

} // namespace nxl
