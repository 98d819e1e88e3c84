// dtrsv, ztrsv: x := op(A)^-1 x, A n by n and triangular.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/triangular.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// The unknown of one column: by substitution of those known, or, not transposed, to be substituted in those to come.
/// It is divided by the diagonal, not multiplied with a reciprocal: a quotient has one rounding less, and there is one
/// for each column only.
template <Form F, class T>
[[gnu::always_inline]] inline void solve_column(i64 count, i64 c, const StoredTriangle<F, T>& triangle, T* x) {
    T own = x[c];
    if constexpr (F.transposed)
        for (i64 r = triangle.first_row(c); r < triangle.end_row(c, count); ++r)
            own = own - triangle.element(r, c) * x[r];
    if (!triangle.unit) own = own / triangle.element(c, c);
    x[c] = own;
    if constexpr (!F.transposed)
        for (i64 r = triangle.first_row(c); r < triangle.end_row(c, count); ++r)
            x[r] = x[r] - triangle.element(r, c) * own;
}

/// A panel's triangle of at most 8 real columns. This chain of divisions and products is what a solution waits for: it
/// cannot be spread over a vector, so that panels are kept small and all else is left to their rectangles.
struct SolveSmall {
    template <Form F, class T>
    [[gnu::always_inline]] void operator()(i64 count, const StoredTriangle<F, T>& triangle, T* x) const {
        for (i64 k = 0; k < count; ++k) solve_column(count, F.forward() ? k : count - 1 - k, triangle, x);
    }
};

template <class T> void trsv(char uplo, char trans, char diag, i64 n, const T* a, i64 lda, T* x, i64 incx) {
    if (n < 1) return;
    x += first_index(n, incx);
    with_form<T, Task::solution>(uplo, trans, [&]<Form F>() {
        apply_triangle(n, StoredTriangle<F, T>{a, lda, diag == 'U'}, x, incx, SolveSmall{});
    });
}

} // namespace

void dtrsv(const char& uplo, const char& trans, const char& diag, const i64& n, const double* a, const i64& lda,
           double* x, const i64& incx) {
    trsv(uplo, trans, diag, n, a, lda, x, incx);
}

void ztrsv(const char& uplo, const char& trans, const char& diag, const i64& n, const zcomplex* a, const i64& lda,
           zcomplex* x, const i64& incx) {
    trsv(uplo, trans, diag, n, scalars(a), lda, scalars(x), incx);
}

} // namespace nxl::NXL_TARGET
