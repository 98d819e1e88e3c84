// dlatrd, zlatrd. Half of the work of the reduction is the product of the whole remaining matrix with one vector, which
// moves as fast as memory delivers; threads share it. Dongarra, Sorensen and Hammarling, J. Comput. Appl. Math. 27
// (1989).
#include "lapack/kernel/source/eigen/latrd.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scalars.hpp"
#include "service/slice.hpp"
#include <cmath>

namespace nxl {

TriangleStrip triangle_strip(char uplo, i64 n, i64 index, i64 strips) {
    const auto border = [&](i64 k) { // columns that hold k of the parts, counted from where they are short
        const double share = std::sqrt(static_cast<double>(k) / static_cast<double>(strips));
        return k == strips ? n : round_down(static_cast<i64>(share * static_cast<double>(n)), 4);
    };
    if (uplo == 'U') return {border(index), border(index + 1)};
    return {n - border(strips - index), n - border(strips - index - 1)};
}

namespace {

/// y := y + the part of A x that columns strip.start .. strip.end - 1 of the triangle have a share in, a few columns at
/// a time: their triangle on the diagonal, and the rectangle beside it, in pieces that are still in the first cache
/// when they are used once more. Columns of a piece are long enough for the memory to run ahead.
template <class T>
void multiply_strip(char uplo, const TriangleStrip& strip, const Matrix<const T>& a, const T* x, T* y) {
    constexpr i64 columns = 16, piece = i64{1 << 15} / (columns * sizeof(T)); // rows
    for (i64 j = strip.start; j < strip.end; j += columns) {
        const i64 width = std::min(columns, strip.end - j);
        hemv(uplo, 1.0, a.block(j, j, width, width), x + j, 1.0, y + j);
        const i64 end = uplo == 'U' ? j : a.rows;
        for (i64 i = uplo == 'U' ? 0 : j + width; i < end; i += piece) {
            const i64 rows = std::min(piece, end - i);
            const T* const rectangle = a.at(i, j);
            gemv('C', rows, width, 1.0, rectangle, a.ld, x + i, 1, 1.0, y + j, 1);
            gemv('N', rows, width, 1.0, rectangle, a.ld, x + j, 1, 1.0, y + i, 1);
        }
    }
}

/// y := A x. `parts`: n elements for each thread.
template <class T> void multiply(char uplo, const Matrix<const T>& a, const T* x, T* y, i64 threads, T* parts) {
    constexpr i64 least = i64{3 << 17} / sizeof(T); // stored elements that are worth a thread
    const i64 n = a.rows, strips = std::min(threads, n * n / (2 * least));
    if (strips < 2 || region_would_be_serial()) return hemv(uplo, 1.0, a, x, 0.0, y);
    const int count = static_cast<int>(strips);
    parallel_blocks(count, count, [&](int part) {
        T* const own = parts + part * n;
        std::fill(own, own + n, T{});
        multiply_strip(uplo, triangle_strip(uplo, n, part, strips), a, x, own);
    });
    std::copy(parts, parts + n, y);
    for (i64 part = 1; part < strips; ++part) axpy(n, 1.0, parts + part * n, 1, y, 1);
}

/// The conjugates of `count` elements of a row.
template <class T> struct ConjugatedRow {
    T elements[widest_tridiagonal_panel];

    ConjugatedRow(const Matrix<T>& of, i64 row, i64 column, i64 count) {
        for (i64 k = 0; k < count; ++k) elements[k] = conj_if(true, of(row, column + k));
    }
};

/// One step: column `i` of A, with what W has it become, gives a reflector, and that a column of W.
template <class T> struct PanelStep {
    const Matrix<T>&a, &w;
    i64 threads;
    T* y;

    /// Rows first .. first + rows - 1 of column i of A, less what `count` columns of A and W that are done make of
    /// them.
    void bring_up(i64 first, i64 rows, i64 i, i64 done_a, i64 done_w, i64 count) const {
        const ConjugatedRow<T> of_w(w, i, done_w, count), of_a(a, i, done_a, count);
        T* const column = a.at(first, i);
        gemv('N', rows, count, -1.0, a.at(first, done_a), a.ld, of_w.elements, 1, 1.0, column, 1);
        gemv('N', rows, count, -1.0, w.at(first, done_w), w.ld, of_a.elements, 1, 1.0, column, 1);
        a(i, i) = real_part(a(i, i));
    }
    /// Column `to` of W for the reflector v, rows first .. first + rows - 1 of column i of A.
    void complete(char uplo, i64 first, i64 rows, i64 i, const T& tau, i64 to, i64 done_a, i64 done_w,
                  i64 count) const {
        const T* const v = a.at(first, i);
        T *const column = w.at(first, to), products[widest_tridiagonal_panel];
        multiply<T>(uplo, a.block(first, first, rows, rows), v, column, threads, y);
        const auto take_off = [&](const Matrix<T>& left, i64 left_column, const Matrix<T>& right, i64 right_column) {
            gemv('C', rows, count, 1.0, left.at(first, left_column), left.ld, v, 1, 0.0, products, 1);
            gemv('N', rows, count, -1.0, right.at(first, right_column), right.ld, products, 1, 1.0, column, 1);
        };
        if (count > 0) {
            take_off(w, done_w, a, done_a);
            take_off(a, done_a, w, done_w);
        }
        scal(rows, tau, column, 1);
        axpy(rows, -0.5 * tau * dotc(rows, column, 1, v, 1), v, 1, column, 1);
    }
};

} // namespace

template <class T>
void latrd(char uplo, const Matrix<T>& a, double* e, T* tau, const Matrix<T>& w, i64 threads, T* y) {
    const i64 n = a.rows, width = w.columns;
    const PanelStep<T> step{a, w, threads, y};
    for (i64 done = 0; done < width; ++done)
        if (uplo == 'L') {
            const i64 i = done, below = n - i - 1;
            if (done > 0) step.bring_up(i, n - i, i, 0, 0, done);
            if (below == 0) continue;
            T& first = a(i + 1, i);
            tau[i] = make_reflector(below - 1, first, a.at(std::min(i + 2, n - 1), i), 1);
            e[i] = real_part(first);
            first = 1.0;
            step.complete(uplo, i + 1, below, i, tau[i], i, 0, 0, done);
        } else {
            const i64 i = n - 1 - done, to = width - 1 - done;
            if (done > 0) step.bring_up(0, i + 1, i, i + 1, to + 1, done);
            if (i == 0) continue;
            T& last = a(i - 1, i);
            tau[i - 1] = make_reflector(i - 1, last, a.at(0, i), 1);
            e[i - 1] = real_part(last);
            last = 1.0;
            step.complete(uplo, 0, i, i, tau[i - 1], to, i + 1, to + 1, done);
        }
}

template void latrd<double>(char, const Matrix<double>&, double*, double*, const Matrix<double>&, i64, double*);
template void latrd<zcomplex>(char, const Matrix<zcomplex>&, double*, zcomplex*, const Matrix<zcomplex>&, i64,
                              zcomplex*);

} // namespace nxl
