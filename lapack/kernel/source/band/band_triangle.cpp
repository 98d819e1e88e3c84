// One right-hand side, and several with a narrow band: by kernels. Several with others: a block of columns is copied
// with zeros around the band, which makes it one triangle and one rectangle of level 3.
//
//     lower    \ . . .          diagonal: solved with           upper    \ # . .
//              #\. . .          #: the rectangle                         . \ # .
//              .#\ . .                                                   . . \ #
#include "lapack/kernel/source/band/band_triangle.hpp"
#include "blas/calls.hpp"
#include "service/scratch.hpp"

namespace nxl {

template <class T> void pack(const Columns<const T>& a, i64 row, i64 column, const Matrix<T>& to) {
    for (i64 c = 0; c < to.columns; ++c) {
        const i64 j = column + c, first = std::clamp(a.first(j), row, row + to.rows);
        const i64 end = std::clamp(a.end(j), first, row + to.rows);
        T* const out = to.at(0, c);
        std::fill_n(out, first - row, T{});
        std::copy_n(a.a.at(first, j), end - first, out + (first - row));
        std::fill_n(out + (end - row), row + to.rows - end, T{});
    }
}

template <class T> void unpack(const Matrix<T>& from, const Columns<T>& a, i64 row, i64 column) {
    for (i64 c = 0; c < from.columns; ++c) {
        const i64 j = column + c, first = std::clamp(a.first(j), row, row + from.rows);
        const i64 end = std::clamp(a.end(j), first, row + from.rows);
        std::copy_n(from.at(first - row, c), end - first, a.a.at(first, j));
    }
}

namespace {

template <class T> struct BandTriangle {
    char uplo, trans, diag;
    Columns<const T> all;
    i64 n = all.a.rows;

    /// The columns of a triangle are gone through from its narrow end for N, and towards it for T and C.
    bool ascending() const { return (uplo == 'L') == (trans == 'N'); }
    i64 width() const { return std::max(all.above, all.below); }

    void solve_one(T* x) const {
        slot_of<T, &KernelTable::dtbsv, &KernelTable::ztbsv>()(uplo, trans, diag, n, width(), all.a.data, all.a.ld, x);
    }

    /// Columns j .. j + width - 1, whose rows off the block on the diagonal are from `row` on.
    void solve_block(i64 j, i64 width, const Matrix<T>& b, T* space) const {
        const bool lower = uplo == 'L';
        const i64 row = lower ? j + width : std::max(i64{0}, j - all.above);
        const i64 rest = lower ? std::min(n - row, all.below) : j - row;
        const Matrix<T> panel{space, width + rest, width, width + rest};
        pack(all, std::min(row, j), j, panel);
        const Matrix<T> diagonal = panel.rows_from(lower ? 0 : rest, width);
        const Matrix<T> beside = panel.rows_from(lower ? width : 0, rest);
        const Matrix<T> here = b.rows_from(j, width), there = b.rows_from(row, rest);
        if (trans != 'N' && rest > 0) gemm(trans, 'N', -1.0, beside, there, 1.0, here);
        trsm('L', uplo, trans, diag, 1.0, diagonal, here);
        if (trans == 'N' && rest > 0) gemm('N', 'N', -1.0, beside, here, 1.0, there);
    }

    void solve_blocks(const Matrix<T>& b, T* space) const {
        const i64 blocks = (n + BandSizes::panel - 1) / BandSizes::panel;
        for (i64 step = 0; step < blocks; ++step) {
            const i64 j = (ascending() ? step : blocks - 1 - step) * BandSizes::panel;
            solve_block(j, std::min(BandSizes::panel, n - j), b, space);
        }
    }
};

} // namespace

template <class T> void solve_triangle(char uplo, char trans, char diag, const Columns<const T>& triangle, T* x) {
    if (std::max(triangle.above, triangle.below) + 1 >= triangle.a.rows && triangle.a.ld >= triangle.a.rows)
        return trsv(uplo, trans, diag, triangle.a, x);
    BandTriangle<T>{uplo, trans, diag, triangle}.solve_one(x);
}

template <class T>
void solve_narrow_triangle(char uplo, char trans, char diag, const Columns<const T>& triangle, const i64* ipiv,
                           const Matrix<T>& b) {
    slot_of<T, &KernelTable::dtbsm, &KernelTable::ztbsm>()(uplo, trans, diag, b.rows,
                                                           std::max(triangle.above, triangle.below), triangle.a.data,
                                                           triangle.a.ld, ipiv, b.columns, b.data, b.ld);
}

template <class T>
void solve_triangle(char uplo, char trans, char diag, const Columns<const T>& triangle, const Matrix<T>& b) {
    if (b.columns == 1) return solve_triangle(uplo, trans, diag, triangle, b.data);
    const BandTriangle<T> solver{uplo, trans, diag, triangle};
    if (solver.width() <= side_by_side) return solve_narrow_triangle(uplo, trans, diag, triangle, nullptr, b);
    if (const Scratch<T> space((BandSizes::panel + solver.width()) * BandSizes::panel); space.data())
        return solver.solve_blocks(b, space.data());
    for (i64 k = 0; k < b.columns; ++k) solver.solve_one(b.at(0, k));
}

template void pack(const Columns<const double>&, i64, i64, const Matrix<double>&);
template void pack(const Columns<const zcomplex>&, i64, i64, const Matrix<zcomplex>&);
template void unpack(const Matrix<double>&, const Columns<double>&, i64, i64);
template void unpack(const Matrix<zcomplex>&, const Columns<zcomplex>&, i64, i64);
template void solve_triangle(char, char, char, const Columns<const double>&, double*);
template void solve_triangle(char, char, char, const Columns<const zcomplex>&, zcomplex*);
template void solve_triangle(char, char, char, const Columns<const double>&, const Matrix<double>&);
template void solve_triangle(char, char, char, const Columns<const zcomplex>&, const Matrix<zcomplex>&);
template void solve_narrow_triangle(char, char, char, const Columns<const double>&, const i64*, const Matrix<double>&);
template void solve_narrow_triangle(char, char, char, const Columns<const zcomplex>&, const i64*,
                                    const Matrix<zcomplex>&);

} // namespace nxl
