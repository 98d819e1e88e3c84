// The Levinson recursion for unsymmetric T: Golub and Van Loan, Matrix Computations, section 4.7; Zohar, J. ACM 21
// (1974).
//
// Of the leading block of order n two columns of its inverse are carried along, scaled to a unit element:
//     T (1, g) = delta e_1,    T (h, 1) = delta e_n,    g and h of n - 1 elements.
#include "primitives/signal/toeplitz.hpp"
#include "blas/calls.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Both columns from order n to n + 1: (1, g) := (1, g, 0) - alpha (0, h, 1) and (h, 1) := (0, h, 1) - beta (1, g, 0).
/// Blocks go downwards, as h moves up by one place and each block of it is needed once more for g.
template <class T> void extend(i64 n, T alpha, T beta, T* g, T* h) {
    constexpr i64 block = 256;
    T h_block[block];
    for (i64 end = n - 1; end > 0; end -= block) {
        const i64 start = std::max(end - block, i64{0}), count = end - start;
        std::copy_n(h + start, count, h_block);
        std::copy_n(h_block, count, h + start + 1);
        axpy(count, -beta, g + start, 1, h + start + 1, 1);
        axpy(count, -alpha, h_block, 1, g + start, 1);
    }
    g[n - 1] = -alpha;
    h[0] = -beta;
}

template <class T> void solve(const T* a1, const T* a2, const T* b, T* x, T* c1, T* c2, i64 m) {
    if (m < 1) return;
    T delta = a1[0];
    x[0] = b[0] / delta;
    for (i64 n = 1; n < m; ++n) {                              // orders 1 to n are done
        const T below = a2[n - 1] + dot(n - 1, c1, 1, a2, -1); // row n + 1 of T times (1, g, 0)
        const T above = a1[n] + dot(n - 1, c2, 1, a1 + 1, 1);  // row 1 of T times (0, h, 1)
        const T alpha = below / delta, beta = above / delta;
        extend(n, alpha, beta, c1, c2);
        delta -= alpha * above;
        const T last = (b[n] - dot(n, x, 1, a2, -1)) / delta;
        axpy(n, last, c2, 1, x, 1);
        x[n] = last;
    }
}

} // namespace

void nxl_tsld1(const double* a1, const double* a2, const double* b, double* x, double* c1, double* c2, const i64* m) {
    solve(a1, a2, b, x, c1, c2, *m);
}

void nxl_tslz1(const zcomplex* a1, const zcomplex* a2, const zcomplex* b, zcomplex* x, zcomplex* c1, zcomplex* c2,
               const i64* m) {
    solve(a1, a2, b, x, c1, c2, *m);
}

} // namespace nxl
