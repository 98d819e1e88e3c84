// dgelqf, zgelqf: the adjoint of a block of rows is a panel of columns, which is factored as such.
#include "lapack/kernel/source/orthogonal/gelqf.hpp"
#include "lapack/kernel/source/common/adjoint.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/panel.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl {
template <class T> bool factor_lq(const Matrix<T>& a, T* tau) {
    const i64 steps = a.steps(), nb = std::min(qr_panel(steps), steps);
    const Scratch<T> memory(nb * (nb + a.columns + a.rows));
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T* const factor = sections.take(nb * nb);
    T* const adjoint = sections.take(nb * a.columns);
    T* const work = sections.take(nb * a.rows);
    for (i64 j = 0; j < steps; j += nb) {
        const i64 width = std::min(nb, steps - j), next = j + width, rest = a.rows - next, length = a.columns - j;
        const Matrix<T> rows = a.block(j, j, width, length), panel{adjoint, length, width, length};
        const Matrix<T> t{factor, width, width, nb};
        copy_adjoint<T>(rows, panel);
        factor_panel(panel, tau + j, t);
        copy_adjoint<T>(panel, rows);
        apply_block('R', 'N', Reflectors<T>{panel, Order::forward, Storage::columns}, t, a.block(next, j, rest, length),
                    Matrix<T>{work, rest, width, rest});
    }
    return true;
}

template <class T>
void gelqf(const i64& m, const i64& n, T* a, const i64& lda, T* tau, T* work, const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GELQF");
    const Workspace<T> space(work, lwork, std::max(m, i64{1}), std::max(m * block_of(name), i64{1}));
    if (Arguments(name).size(1, m).size(2, n).leading(4, lda, m).workspace(7, space).refused(info)) return;
    if (space.is_query() || m == 0 || n == 0) return;
    if (!factor_lq(Matrix<T>{a, m, n, lda}, tau)) refuse_for_memory(name, info);
}
template decltype(gelqf<double>) gelqf<double>;
template decltype(gelqf<zcomplex>) gelqf<zcomplex>;
template bool factor_lq(const Matrix<double>&, double*);
template bool factor_lq(const Matrix<zcomplex>&, zcomplex*);

} // namespace nxl
