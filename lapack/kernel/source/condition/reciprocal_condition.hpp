// What all condition routines share: the estimate of the norm of an inverse through solutions that cannot overflow.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/condition/norm_estimate.hpp"
#include "service/types.hpp"

namespace nxl {

/// x := x / s. False where the quotient is beyond the range: the inverse is, too.
template <class T> bool divide_by_scale(i64 n, double s, T* x) {
    if (s == 1.0) return true;
    const double least = safe_minimum * static_cast<double>(n);
    if (s == 0.0 || s < largest_abs1(n, x) * least) return false;
    for (i64 i = 0; i < n; ++i) x[i] /= s;
    return true;
}

/// True, with the answer in `rcond`, when n or the norm of A decides: 1 for n = 0, 0 for a zero matrix, NaN for a NaN.
inline bool no_condition_to_find(i64 n, double norm, double& rcond) {
    if (n > 0 && norm > 0.0) return false;
    rcond = n == 0 ? 1.0 : norm;
    return true;
}

/// 1 / (`norm` |A^-1|), the second norm being the largest column sum, or, with `by_rows`, the largest row sum.
/// solve(op, x) makes s op(A)^-1 x of x and answers s; op is N or C. `v`, `x`: n elements. 0 when the inverse is out of
/// range.
template <class T, class Solve>
double reciprocal_condition(i64 n, double norm, bool by_rows, T* v, T* x, const Solve& solve) {
    NormEstimate<T> estimate(n, v, x);
    while (const auto wanted = estimate.step()) {
        const bool plain = (wanted == NormEstimate<T>::product) != by_rows;
        if (!divide_by_scale(n, solve(plain ? 'N' : 'C', x), x)) return 0.0;
    }
    return estimate.value() != 0.0 ? 1.0 / norm / estimate.value() : 0.0;
}

} // namespace nxl
