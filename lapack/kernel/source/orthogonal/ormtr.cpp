// dormtr, zunmtr, dormbr. Where a reduction leaves the first (or last) element alone, C loses a row or column to it.
#include "lapack/kernel/source/orthogonal/ormtr.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/orthogonal/q_names.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Elements `own` of C on the side that Q touches.
template <class T> Matrix<T> touched(char side, const Matrix<T>& c, const Slice& own) {
    return side == 'L' ? c.rows_from(own.start, own.count) : c.columns_from(own.start, own.count);
}

} // namespace

template <class T>
void ormtr(const char& side, const char& uplo, const char& trans, const i64& m, const i64& n, const T* a,
           const i64& lda, const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info, int, int, int) {
    constexpr RoutineLetters name = q_routine<T>("MTR");
    const i64 length = side == 'L' ? m : n, least = std::max(side == 'L' ? n : m, i64{1});
    const Workspace<T> space(work, lwork, least, least * block_of(q_routine<T>("MQR")));
    Arguments arguments(name);
    arguments.letter(1, side, "LR").letter(2, uplo, "UL").letter(3, trans, q_trans_letters<T>).size(4, m).size(5, n);
    arguments.leading(7, lda, length).leading(10, ldc, m);
    if (arguments.workspace(12, space).refused(info) || space.is_query() || m == 0 || n == 0) return;
    const Matrix<const T> whole{a, length, length, lda};
    const i64 k = length - 1;
    const bool upper = uplo == 'U';
    const Reflectors<T> v = {upper ? whole.block(0, length - k, k, k) : whole.block(length - k, 0, k, k),
                             upper ? Order::backward : Order::forward, Storage::columns};
    const Matrix<T> target = touched(side, Matrix<T>{c, m, n, ldc}, {upper ? 0 : 1, k});
    if (!apply_reflectors(side, trans != 'N', v, tau, target)) refuse_for_memory(name, info);
}
template decltype(ormtr<double>) ormtr<double>;
template decltype(ormtr<zcomplex>) ormtr<zcomplex>;

template <class T>
void ormbr(const char& vect, const char& side, const char& trans, const i64& m, const i64& n, const i64& k, const T* a,
           const i64& lda, const T* tau, T* c, const i64& ldc, T* work, const i64& lwork, i64& info, int, int, int) {
    constexpr RoutineLetters name = q_routine<T>("MBR");
    const bool is_q = vect == 'Q';
    const i64 length = side == 'L' ? m : n, least = std::max(side == 'L' ? n : m, i64{1});
    const Workspace<T> space(work, lwork, least, least * block_of(q_routine<T>("MQR")));
    Arguments arguments(name);
    arguments.letter(1, vect, "QP").letter(2, side, "LR").letter(3, trans, q_trans_letters<T>).size(4, m).size(5, n);
    arguments.size(6, k).leading(8, lda, is_q ? length : std::min(length, k)).leading(11, ldc, m);
    if (arguments.workspace(13, space).refused(info) || space.is_query() || m == 0 || n == 0) return;
    const bool aligned = is_q ? length >= k : length > k;
    const i64 first = aligned ? 0 : 1, elements = length - first, vectors = aligned ? k : length - 1;
    const Matrix<const T> v = is_q ? Matrix<const T>{a + first, elements, vectors, lda}
                                   : Matrix<const T>{a + first * lda, vectors, elements, lda};
    const Matrix<T> target = touched(side, Matrix<T>{c, m, n, ldc}, {first, elements});
    // P = H1 H2 ..., whose vectors lie conjugated in the rows: no letters to exchange.
    if (!apply_reflectors(side, trans != 'N', Reflectors<T>{v, Order::forward, is_q ? Storage::columns : Storage::rows},
                          tau, target))
        refuse_for_memory(name, info);
}
template decltype(ormbr<double>) ormbr<double>;
template decltype(ormbr<zcomplex>) ormbr<zcomplex>;

} // namespace nxl
