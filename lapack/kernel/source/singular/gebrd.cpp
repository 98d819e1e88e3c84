// dgebrd, zgebrd: panels, each followed by one product for the rest. A wide matrix is reduced as its adjoint: the
// reflectors are the same. Dongarra, Sorensen and Hammarling, J. Comput. Appl. Math. 27 (1989).
#include "lapack/kernel/source/singular/gebrd.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/adjoint.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/singular/bidiagonal_panel.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"

namespace nxl {

template <class T> bool bidiagonalise(const Matrix<T>& a, double* d, double* e, T* tauq, T* taup) {
    const i64 m = a.rows, n = a.columns, block = std::min(bidiagonal_panel(n), n), threads = max_threads(domain_all);
    const Scratch<T> memory(2 * block * (m + n) + threads * m);
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T* const of_left = sections.take(2 * block * m);
    T* const of_right = sections.take(2 * block * n);
    T* const parts = sections.take(threads * m);
    for (i64 j = 0; j < n; j += block) {
        const i64 width = std::min(block, n - j);
        const Matrix<T> rest = a.from(j, j), left{of_left, m - j, 2 * width, m}, right{of_right, n - j, 2 * width, n};
        reduce_panel(rest, width, PanelResults<T>{d + j, e + j, tauq + j, taup + j}, left, right, threads, parts);
        if (width < rest.columns)
            gemm('N', 'C', -1.0, left.from(width, 0), right.from(width, 0), 1.0, rest.from(width, width));
    }
    return true;
}
template bool bidiagonalise(const Matrix<double>&, double*, double*, double*, double*);
template bool bidiagonalise(const Matrix<zcomplex>&, double*, double*, zcomplex*, zcomplex*);

namespace {

template <class T> bool reduce_wide(const Matrix<T>& a, double* d, double* e, T* tauq, T* taup) {
    const Scratch<T> memory(a.rows * a.columns);
    const Matrix<T> adjoint{memory.data(), a.columns, a.rows, a.columns};
    if (!memory.data()) return false;
    copy_adjoint<T>(a, adjoint);
    if (!bidiagonalise(adjoint, d, e, taup, tauq)) return false;
    copy_adjoint<T>(adjoint, a);
    return true;
}

} // namespace

template <class T>
void gebrd(const i64& m, const i64& n, T* a, const i64& lda, double* d, double* e, T* tauq, T* taup, T* work,
           const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GEBRD");
    const Workspace<T> space(work, lwork, std::max({m, n, i64{1}}), std::max((m + n) * block_of(name), i64{1}));
    if (Arguments(name).size(1, m).size(2, n).leading(4, lda, m).workspace(10, space).refused(info)) return;
    if (space.is_query() || m == 0 || n == 0) return;
    const Matrix<T> matrix{a, m, n, lda};
    if (!(m >= n ? bidiagonalise(matrix, d, e, tauq, taup) : reduce_wide(matrix, d, e, tauq, taup)))
        refuse_for_memory(name, info);
}
template decltype(gebrd<double>) gebrd<double>;
template decltype(gebrd<zcomplex>) gebrd<zcomplex>;

} // namespace nxl
