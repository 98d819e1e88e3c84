// dorgtr, dorghr, dorgbr and their unitary kin. A reduction leaves each vector one column (or row) before the one where
// its reflector belongs in Q: vectors move by one, and the row and column that are left are those of the identity.
#include "lapack/kernel/source/orthogonal/orgtr.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/form_q.hpp"
#include "lapack/kernel/source/orthogonal/q_names.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Clears row and column i of a square matrix but for a 1 where they meet.
template <class T> void make_unit(const Matrix<T>& a, i64 i) {
    for (i64 j = 0; j < a.columns; ++j) a(i, j) = T{};
    std::fill_n(a.at(0, i), a.rows, T{});
    a(i, i) = T(1.0);
}

/// Column j takes what column j - 1 had below row j: the vectors of forward reflectors.
template <class T> void shift_right(const Matrix<T>& a) {
    for (i64 j = a.columns - 1; j > 0; --j)
        std::copy(a.at(0, j - 1) + j + 1, a.at(0, j - 1) + a.rows, a.at(0, j) + j + 1);
    make_unit(a, 0);
}
/// Column j takes what column j + 1 had above row j: backward ones.
template <class T> void shift_left(const Matrix<T>& a) {
    for (i64 j = 0; j + 1 < a.columns; ++j) std::copy_n(a.at(0, j + 1), j, a.at(0, j));
    make_unit(a, a.columns - 1);
}
/// Row i takes what row i - 1 had right of column i.
template <class T> void shift_down(const Matrix<T>& a) {
    for (i64 j = a.columns - 1; j > 0; --j)
        for (i64 i = j - 1; i > 0; --i) a(i, j) = a(i - 1, j);
    make_unit(a, 0);
}

/// A square matrix whose vectors have been shifted: all of it but the row and column of the identity.
template <class T> bool form_shifted(Order order, Storage storage, const Matrix<T>& a, const T* tau) {
    const i64 rest = a.rows - 1, first = order == Order::forward ? 1 : 0;
    return form_q(order, storage, rest, a.block(first, first, rest, rest), tau);
}

/// The matrix is orthogonal outside of rows and columns first .. first + count - 1 as the identity is.
template <class T> void make_identity_outside(const Matrix<T>& a, i64 first, i64 count) {
    for (i64 j = 0; j < a.columns; ++j)
        if (j < first || j >= first + count) make_unit(a, j);
}

} // namespace

template <class T>
void orgtr(const char& uplo, const i64& n, T* a, const i64& lda, const T* tau, T* work, const i64& lwork, i64& info,
           int) {
    constexpr RoutineLetters name = q_routine<T>("GTR");
    const i64 least = std::max(n - 1, i64{1});
    const Workspace<T> space(work, lwork, least, least * block_of(q_routine<T>("GQR")));
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).leading(4, lda, n);
    if (arguments.workspace(7, space).refused(info) || space.is_query() || n == 0) return;
    const Matrix<T> q{a, n, n, lda};
    const Order order = uplo == 'U' ? Order::backward : Order::forward;
    if (uplo == 'U') shift_left(q);
    else shift_right(q);
    if (!form_shifted(order, Storage::columns, q, tau)) refuse_for_memory(name, info);
}
template decltype(orgtr<double>) orgtr<double>;
template decltype(orgtr<zcomplex>) orgtr<zcomplex>;

template <class T>
void orghr(const i64& n, const i64& ilo, const i64& ihi, T* a, const i64& lda, const T* tau, T* work, const i64& lwork,
           i64& info) {
    constexpr RoutineLetters name = q_routine<T>("GHR");
    const i64 least = std::max(ihi - ilo, i64{1});
    const Workspace<T> space(work, lwork, least, least * block_of(q_routine<T>("GQR")));
    Arguments arguments(name);
    arguments.size(1, n).expect(2, ilo >= 1 && ilo <= std::max(n, i64{1}));
    arguments.expect(3, ihi >= std::min(ilo, n) && ihi <= n).leading(5, lda, n);
    if (arguments.workspace(8, space).refused(info) || space.is_query() || n == 0) return;
    const Matrix<T> q{a, n, n, lda};
    const i64 first = ilo - 1, count = ihi - first;
    make_identity_outside(q, first, count);
    const Matrix<T> active = q.block(first, first, count, count);
    shift_right(active);
    if (!form_shifted(Order::forward, Storage::columns, active, tau + first)) refuse_for_memory(name, info);
}
template decltype(orghr<double>) orghr<double>;
template decltype(orghr<zcomplex>) orghr<zcomplex>;

template <class T>
void orgbr(const char& vect, const i64& m, const i64& n, const i64& k, T* a, const i64& lda, const T* tau, T* work,
           const i64& lwork, i64& info, int) {
    constexpr RoutineLetters name = q_routine<T>("GBR");
    const bool is_q = vect == 'Q';
    const i64 least = std::max(std::min(m, n), i64{1}), length = is_q ? m : n, count = is_q ? n : m;
    const Workspace<T> space(work, lwork, least, least * block_of(q_routine<T>("GQR")));
    Arguments arguments(name);
    arguments.letter(1, vect, "QP").size(2, m);
    arguments.expect(3, n >= 0 && count <= length && count >= std::min(length, k)).size(4, k).leading(6, lda, m);
    if (arguments.workspace(9, space).refused(info) || space.is_query() || m == 0 || n == 0) return;
    const Matrix<T> q{a, m, n, lda};
    const Storage storage = is_q ? Storage::columns : Storage::rows;
    const bool aligned = is_q ? m >= k : n > k; // else the first reflector leaves the first element alone
    if (!aligned && is_q) shift_right(q);
    if (!aligned && !is_q) shift_down(q);
    if (!(aligned ? form_q(Order::forward, storage, k, q, tau) : form_shifted(Order::forward, storage, q, tau)))
        refuse_for_memory(name, info);
}
template decltype(orgbr<double>) orgbr<double>;
template decltype(orgbr<zcomplex>) orgbr<zcomplex>;

} // namespace nxl
