// dormqr, zunmqr, dormlq, zunmlq: arguments; the work is apply_q's.
#include "lapack/kernel/source/orthogonal/ormqr.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/orthogonal/q_names.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T, Storage storage>
void multiply(const RoutineLetters& name, i64 block, char side, char trans, i64 m, i64 n, i64 k, const T* a, i64 lda,
              const T* tau, T* c, i64 ldc, T* work, i64 lwork, i64& info) {
    constexpr bool by_columns = storage == Storage::columns;
    const i64 length = side == 'L' ? m : n, least = std::max(side == 'L' ? n : m, i64{1});
    const Workspace<T> space(work, lwork, least, least * block);
    Arguments arguments(name);
    arguments.letter(1, side, "LR").letter(2, trans, q_trans_letters<T>).size(3, m).size(4, n);
    arguments.expect(5, k >= 0 && k <= length).leading(7, lda, by_columns ? length : k).leading(10, ldc, m);
    if (arguments.workspace(12, space).refused(info) || space.is_query()) return;
    const Matrix<const T> v = by_columns ? Matrix<const T>{a, length, k, lda} : Matrix<const T>{a, k, length, lda};
    const bool adjoint = (trans != 'N') == by_columns;
    if (!apply_reflectors(side, adjoint, Reflectors<T>{v, Order::forward, storage}, tau, Matrix<T>{c, m, n, ldc}))
        refuse_for_memory(name, info);
}

} // namespace

template <class T>
void ormqr(const char& side, const char& trans, const i64& m, const i64& n, const i64& k, const T* a, const i64& lda,
           const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info, int, int) {
    constexpr RoutineLetters name = q_routine<T>("MQR");
    multiply<T, Storage::columns>(name, block_of(name), side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info);
}
template decltype(ormqr<double>) ormqr<double>;
template decltype(ormqr<zcomplex>) ormqr<zcomplex>;

template <class T>
void ormlq(const char& side, const char& trans, const i64& m, const i64& n, const i64& k, const T* a, const i64& lda,
           const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info, int, int) {
    constexpr RoutineLetters name = q_routine<T>("MLQ");
    multiply<T, Storage::rows>(name, block_of(name), side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info);
}
template decltype(ormlq<double>) ormlq<double>;
template decltype(ormlq<zcomplex>) ormlq<zcomplex>;

} // namespace nxl
