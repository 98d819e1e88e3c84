// Reduction to tridiagonal form on one thread, and what it shares with the threaded one.
#pragma once
#include "lapack/kernel/source/eigen/latrd.hpp"
#include "lapack/kernel/source/eigen/symmetric_names.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scalars.hpp"
#include "service/workspace.hpp"

namespace nxl {

template <class T>
inline constexpr Defaults tridiagonal_sizes = defaults_of(RoutineName(symmetric_routine<T>("TRD"), 6));

/// A = Q T Q^H on the calling thread, with its own checks; the arguments are those of sytrd.
template <class T>
void sytrd_serial(const char& uplo, const i64& n, T* a, const i64& lda, double* d, double* e, T* tau, T* work,
                  const i64& lwork, i64& info);

/// The same without blocks: columns reflect one by one.
template <class T> void sytd2(char uplo, const Matrix<T>& a, double* d, double* e, T* tau);

/// The checked arguments of a call.
template <class T> struct TridiagonalReduction {
    char uplo;
    Matrix<T> a;
    double *d, *e;
    T *tau, *work;
    i64 block, unblocked; // columns of a panel; order from which on the rest is reduced without panels

    /// Sizes for a workspace of `lwork` elements.
    TridiagonalReduction(char triangle, const Matrix<T>& matrix, double* diagonal, double* off, T* scalars, T* space,
                         i64 lwork)
        : uplo(triangle),
          a(matrix),
          d(diagonal),
          e(off),
          tau(scalars),
          work(space),
          block(tridiagonal_sizes<T>.block),
          unblocked(a.rows) {
        const i64 n = a.rows;
        if (block > 1 && block < n) unblocked = std::max(block, tridiagonal_sizes<T>.crossover);
        if (unblocked < n && lwork < n * block) {
            block = std::max(lwork / n, i64{1});
            if (block < tridiagonal_sizes<T>.least_block) unblocked = n;
        }
    }
    /// With `threads` for the products of panels, whose memory is y, and update(c, v, w): c := c - v w^H - w v^H.
    template <class Update> void run(i64 threads, T* y, const Update& update) const {
        const i64 n = a.rows;
        i64 first = 0, end = n; // rows that are left
        for (; end - first > unblocked;) {
            const i64 left = end - first, rest = left - block;
            const Matrix<T> part = a.block(first, first, left, left), w{work, left, block, n};
            const bool lower = uplo == 'L';
            latrd(uplo, part, e + first, tau + first, w, threads, y);
            const i64 kept = lower ? block : 0, panel = lower ? 0 : rest; // first row of the rest, and of the panel
            update(part.block(kept, kept, rest, rest), part.block(kept, panel, rest, block), w.rows_from(kept, rest));
            for (i64 j = panel; j < panel + block; ++j) {
                if (lower) part(j + 1, j) = e[first + j];
                else if (j > 0) part(j - 1, j) = e[first + j - 1];
                part(j, j) = d[first + j] = real_part(part(j, j));
            }
            (lower ? first : end) += lower ? block : -block;
        }
        sytd2(uplo, a.block(first, first, end - first, end - first), d + first, e + first, tau + first);
    }
};

template <class T>
bool refused(const char& uplo, i64 n, i64 lda, const Workspace<T>& space, i64& info) {
    Arguments arguments(symmetric_routine<T>("TRD"));
    return arguments.letter(1, uplo, "UL").size(2, n).leading(4, lda, n).workspace(9, space).refused(info);
}

} // namespace nxl
