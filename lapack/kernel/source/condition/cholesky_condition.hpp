// The reciprocal condition number from a Cholesky factor, full or of a band.
#pragma once
#include "lapack/kernel/source/condition/estimate_space.hpp"
#include "lapack/kernel/source/condition/reciprocal_condition.hpp"
#include "lapack/kernel/source/condition/safe_solve.hpp"

namespace nxl {

template <class T>
double cholesky_condition(char uplo, const Columns<const T>& factor, double anorm, T* work, Spare<T>* spare) {
    const i64 n = factor.a.rows;
    double rcond;
    if (no_condition_to_find(n, anorm, rcond)) return rcond;
    const auto space = estimate_space(n, work, spare);
    const SafeTriangle<T> triangle(uplo, 'N', factor, space.sizes);
    return reciprocal_condition(n, anorm, false, space.v, space.x, [&](char, T* x) {
        const double first = triangle.solve(uplo == 'U' ? 'C' : 'N', x);
        return first * triangle.solve(uplo == 'U' ? 'N' : 'C', x);
    });
}

} // namespace nxl
