// dtrmv, ztrmv: x := op(A) x, A n by n and triangular.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/triangular.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// One column of the triangle, from x as it was before the column's turn. Transposed, the column is an inner product
/// that gives x[c]; else its entries times x[c] are added to the x beside it, and x[c] takes the diagonal's share last.
template <Form F, class T>
[[gnu::always_inline]] inline void multiply_column(i64 count, i64 c, const StoredTriangle<F, T>& triangle, T* x) {
    T own = triangle.unit ? x[c] : triangle.element(c, c) * x[c];
    for (i64 r = triangle.first_row(c); r < triangle.end_row(c, count); ++r) {
        if constexpr (F.transposed) own = own + triangle.element(r, c) * x[r];
        else x[r] = x[r] + triangle.element(r, c) * x[c];
    }
    x[c] = own;
}

/// A panel's triangle of at most 8 real columns, which the compiler unrolls when it is whole. Columns go in the order
/// in which each finds the entries that it reads as they were: Form::forward has it.
struct MultiplySmall {
    template <Form F, class T>
    [[gnu::always_inline]] void operator()(i64 count, const StoredTriangle<F, T>& triangle, T* x) const {
        for (i64 k = 0; k < count; ++k) multiply_column(count, F.forward() ? k : count - 1 - k, triangle, x);
    }
};

template <class T> void trmv(char uplo, char trans, char diag, i64 n, const T* a, i64 lda, T* x, i64 incx) {
    if (n < 1) return;
    x += first_index(n, incx);
    with_form<T, Task::product>(uplo, trans, [&]<Form F>() {
        apply_triangle(n, StoredTriangle<F, T>{a, lda, diag == 'U'}, x, incx, MultiplySmall{});
    });
}

} // namespace

void dtrmv(const char& uplo, const char& trans, const char& diag, const i64& n, const double* a, const i64& lda,
           double* x, const i64& incx) {
    trmv(uplo, trans, diag, n, a, lda, x, incx);
}

void ztrmv(const char& uplo, const char& trans, const char& diag, const i64& n, const zcomplex* a, const i64& lda,
           zcomplex* x, const i64& incx) {
    trmv(uplo, trans, diag, n, scalars(a), lda, scalars(x), incx);
}

} // namespace nxl::NXL_TARGET
