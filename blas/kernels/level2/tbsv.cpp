// dtbsv, ztbsv: x := op(A)^-1 x for a triangle of a band.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/triangular.hpp"

namespace nxl::NXL_TARGET {
namespace {

// Panels of columns as in a full triangle, but what is beside a panel's own triangle T is the rectangle R of the rows
// that all of its columns have, and an edge E, which goes element by element:
//
//     upper    E . . .       lower    T . . .
//              E E . .                T T . .
//              E E E .                T T T .
//              R R R R                T T T T
//              R R R R                R R R R
//              T T T T                R R R R
//              . T T T                . E E E
//              . . T T                . . E E
//              . . . T                . . . E

/// The triangle of a panel. Its chain is what a narrow band waits for: reciprocals are at hand before it comes.
template <Form F, class T> struct PanelSolution {
    static constexpr i64 width = 8 / kParts<T>;
    const StoredTriangle<F, T> triangle;
    T inverse[width];
    bool divides[width];

    [[gnu::always_inline]] PanelSolution(i64 count, const StoredTriangle<F, T>& of) : triangle(of) {
        for (i64 c = 0; c < count; ++c) {
            const T pivot = triangle.unit ? from_real<T>(1.0) : triangle.element(c, c);
            divides[c] = !has_reciprocal(pivot);
            inverse[c] = divides[c] ? pivot : reciprocal(pivot);
        }
    }
    [[gnu::always_inline]] void solve(i64 count, T* x) const {
        for (i64 step = 0; step < count; ++step) {
            const i64 c = F.forward() ? step : count - 1 - step;
            T own = x[c];
            if constexpr (F.transposed)
                for (i64 r = triangle.first_row(c); r < triangle.end_row(c, count); ++r)
                    own = own - triangle.element(r, c) * x[r];
            x[c] = own = divides[c] ? own / inverse[c] : own * inverse[c];
            if constexpr (!F.transposed)
                for (i64 r = triangle.first_row(c); r < triangle.end_row(c, count); ++r)
                    x[r] = x[r] - triangle.element(r, c) * own;
        }
    }
};

/// What column c of a panel has of rows first .. end - 1, which are of the edge.
template <Form F, class T>
[[gnu::always_inline]] inline void apply_edge(const StoredTriangle<F, T>& triangle, i64 c, i64 first, i64 end, T* x) {
    T own = x[c];
    for (i64 r = first; r < end; ++r)
        if constexpr (F.transposed) own = own - triangle.element(r, c) * x[r];
        else x[r] = x[r] - triangle.element(r, c) * own;
    if constexpr (F.transposed) x[c] = own;
}

template <Form F, class T> void solve_band(i64 n, i64 k, const StoredTriangle<F, T>& triangle, T* x) {
    for_blocks(n, PanelSolution<F, T>::width, F.forward(), [&](i64 j, i64 count) {
        const i64 last = j + count - 1, beyond = F.upper ? smaller(j, last - k) : smaller(n, j + k + 1);
        const i64 row = F.upper ? (beyond > 0 ? beyond : 0) : last + 1, rows = (F.upper ? j : beyond) - row;
        const PanelSolution<F, T> panel(count, triangle.at(j));
        in_order<F>(
            [&] {
                if (rows > 0)
                    apply_rectangle<F>(rows, count, triangle.a + row + j * triangle.lda, triangle.lda, x + row, x + j);
                for (i64 c = j; c <= last; ++c)
                    if constexpr (F.upper) apply_edge(triangle, c, c > k ? c - k : 0, row, x);
                    else apply_edge(triangle, c, rows > 0 ? beyond : row, smaller(n, c + k + 1), x);
            },
            [&] {
                if (count == PanelSolution<F, T>::width) panel.solve(PanelSolution<F, T>::width, x + j); // unrolled
                else panel.solve(count, x + j);
            });
    });
}

template <class T> void tbsv(char uplo, char trans, char diag, i64 n, i64 k, const T* a, i64 lda, T* x) {
    with_form<Task::solution>(uplo, trans,
                              [&]<Form F>() { solve_band(n, k, StoredTriangle<F, T>{a, lda, diag == 'U'}, x); });
}

} // namespace

void dtbsv(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k, const double* a,
           const i64& lda, double* x) {
    tbsv(uplo, trans, diag, n, k, a, lda, x);
}

void ztbsv(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k, const zcomplex* a,
           const i64& lda, zcomplex* x) {
    tbsv(uplo, trans, diag, n, k, scalars(a), lda, scalars(x));
}

} // namespace nxl::NXL_TARGET
