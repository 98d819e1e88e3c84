// dgeqrf, zgeqrf: panel by panel, what is right of a panel being updated by its block reflector.
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/panel.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl {

template <class T> bool factor_qr(const Matrix<T>& a, T* tau) {
    const i64 steps = a.steps(), nb = std::min(qr_panel(steps), steps);
    const Scratch<T> memory(nb * (nb + a.columns));
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T* const factor = sections.take(nb * nb);
    T* const work = sections.take(nb * a.columns);
    for (i64 j = 0; j < steps; j += nb) {
        const i64 width = std::min(nb, steps - j), next = j + width, rest = a.columns - next;
        const Matrix<T> panel = a.block(j, j, a.rows - j, width), t{factor, width, width, nb};
        factor_panel(panel, tau + j, t);
        apply_block('L', 'C', Reflectors<T>{panel, Order::forward, Storage::columns}, t,
                    a.block(j, next, a.rows - j, rest), Matrix<T>{work, width, rest, width});
    }
    return true;
}

template <class T>
void geqrf(const i64& m, const i64& n, T* a, const i64& lda, T* tau, T* work, const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GEQRF");
    const Workspace<T> space(work, lwork, std::max(n, i64{1}), std::max(n * block_of(name), i64{1}));
    if (Arguments(name).size(1, m).size(2, n).leading(4, lda, m).workspace(7, space).refused(info)) return;
    if (space.is_query() || m == 0 || n == 0) return;
    if (!factor_qr(Matrix<T>{a, m, n, lda}, tau)) refuse_for_memory(name, info);
}
template decltype(geqrf<double>) geqrf<double>;
template decltype(geqrf<zcomplex>) geqrf<zcomplex>;
template bool factor_qr(const Matrix<double>&, double*);
template bool factor_qr(const Matrix<zcomplex>&, zcomplex*);

} // namespace nxl
