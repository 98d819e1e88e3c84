// Products of moduli, |op(A)| |x|, by which error bounds are measured. The modulus of a complex number is abs1.
#pragma once
#include "lapack/kernel/source/common/columns.hpp"
#include "lapack/kernel/source/common/scalars.hpp"

namespace nxl {

/// w := |b|
template <class T> void set_moduli(i64 n, const T* b, double* w) {
    for (i64 i = 0; i < n; ++i) w[i] = abs1(b[i]);
}

/// The sum of |x(i)| |y(i)|, in four chains.
template <class T> double dot_moduli(i64 n, const T* x, const T* y) {
    double sums[4] = {};
    i64 i = 0;
    for (; i + 4 <= n; i += 4)
        for (i64 k = 0; k < 4; ++k) sums[k] += abs1(x[i + k]) * abs1(y[i + k]);
    for (; i < n; ++i) sums[0] += abs1(x[i]) * abs1(y[i]);
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

/// w := w + alpha |x|
template <class T> void add_moduli(i64 n, double alpha, const T* x, double* w) {
    for (i64 i = 0; i < n; ++i) w[i] += alpha * abs1(x[i]);
}

/// w := w + |op(A)| |x|
template <class T> void add_product(char trans, const Columns<const T>& a, const T* x, double* w) {
    for (i64 j = 0; j < a.a.columns; ++j)
        if (trans == 'N') add_moduli(a.count(j), abs1(x[j]), a.start(j), w + a.first(j));
        else w[j] += dot_moduli(a.count(j), a.start(j), x + a.first(j));
}

/// The same for a symmetric or Hermitian matrix of which `triangle` is stored. Of a Hermitian diagonal the real part
/// counts.
template <class T>
void add_symmetric_product(const Columns<const T>& triangle, bool hermitian, const T* x, double* w) {
    const Columns<const T> off = triangle.off_diagonal();
    for (i64 j = 0; j < off.a.columns; ++j) {
        const T diagonal = off.a(j, j);
        const double size = hermitian ? std::fabs(std::real(diagonal)) : abs1(diagonal), factor = abs1(x[j]);
        w[j] += size * factor + dot_moduli(off.count(j), off.start(j), x + off.first(j));
        add_moduli(off.count(j), factor, off.start(j), w + off.first(j));
    }
}

} // namespace nxl
