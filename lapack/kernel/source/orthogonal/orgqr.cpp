// dorgqr, zungqr, dorglq, zunglq: arguments; the work is form_q's.
#include "lapack/kernel/source/orthogonal/orgqr.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/form_q.hpp"
#include "lapack/kernel/source/orthogonal/q_names.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include <algorithm>

namespace nxl {

template <class T>
void orgqr(const i64& m, const i64& n, const i64& k, T* a, const i64& lda, const T* tau, T* work, const i64& lwork,
           i64& info) {
    constexpr RoutineLetters name = q_routine<T>("GQR");
    const Workspace<T> space(work, lwork, std::max(n, i64{1}), std::max(n * block_of(name), i64{1}));
    Arguments arguments(name);
    arguments.size(1, m).expect(2, n >= 0 && n <= m).expect(3, k >= 0 && k <= n).leading(5, lda, m);
    if (arguments.workspace(8, space).refused(info) || space.is_query() || n == 0) return;
    if (!form_q(Order::forward, Storage::columns, k, Matrix<T>{a, m, n, lda}, tau)) refuse_for_memory(name, info);
}
template decltype(orgqr<double>) orgqr<double>;
template decltype(orgqr<zcomplex>) orgqr<zcomplex>;

template <class T>
void orglq(const i64& m, const i64& n, const i64& k, T* a, const i64& lda, const T* tau, T* work, const i64& lwork,
           i64& info) {
    constexpr RoutineLetters name = q_routine<T>("GLQ");
    const Workspace<T> space(work, lwork, std::max(m, i64{1}), std::max(m * block_of(name), i64{1}));
    Arguments arguments(name);
    arguments.size(1, m).expect(2, n >= m).expect(3, k >= 0 && k <= m).leading(5, lda, m);
    if (arguments.workspace(8, space).refused(info) || space.is_query() || m == 0) return;
    if (!form_q(Order::forward, Storage::rows, k, Matrix<T>{a, m, n, lda}, tau)) refuse_for_memory(name, info);
}
template decltype(orglq<double>) orglq<double>;
template decltype(orglq<zcomplex>) orglq<zcomplex>;

} // namespace nxl
