// dtrevc, ztrevc: the arguments.
#include "lapack/kernel/source/nonsymmetric/trevc.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/nonsymmetric/reorder.hpp"
#include "service/arguments.hpp"
#include "service/scalars.hpp"

namespace nxl {

template <class T> i64 count_selected(const Matrix<const T>& t, const i64* select) {
    i64 count = 0;
    for (i64 k = 0, size = 0; k < t.rows; k += size) {
        size = order_of_block(t, k);
        if (select[k] != 0 || select[k + size - 1] != 0) count += size;
    }
    return count;
}
template i64 count_selected(const Matrix<const double>&, const i64*);
template i64 count_selected(const Matrix<const zcomplex>&, const i64*);

namespace {

/// Of a pair that is selected, the first one says so alone.
void settle_pairs(const Matrix<const double>& t, i64* select) {
    for (i64 k = 0; k + 1 < t.rows; ++k)
        if (order_of_block(t, k) == 2 && (select[k] != 0 || select[k + 1] != 0)) {
            select[k] = 1;
            select[++k] = 0;
        }
}
void settle_pairs(const Matrix<const zcomplex>&, i64*) {}

} // namespace

template <class T>
void trevc(const char& side, const char& howmny, i64* select, const i64& n, const T* t, const i64& ldt, T* vl,
           const i64& ldvl, T* vr, const i64& ldvr, const i64& mm, i64& m, i64& info) {
    constexpr RoutineLetters name = routine<T>("TREVC");
    const bool left = side == 'L' || side == 'B', right = side == 'R' || side == 'B';
    Arguments arguments(name);
    arguments.letter(1, side, "RLB").letter(2, howmny, "ABS").size(4, n).leading(6, ldt, n);
    arguments.leading(8, ldvl, left ? n : 1).leading(10, ldvr, right ? n : 1);
    if (arguments.refused(info)) return;
    const Matrix<const T> form{t, n, n, ldt};
    const bool some = howmny == 'S';
    if (some) settle_pairs(form, select);
    m = some ? count_selected(form, select) : n;
    if (arguments.expect(11, mm >= m).refused(info) || n == 0) return;
    const auto find = [&](bool wanted, bool of_left, T* v, i64 ld) {
        return !wanted ||
               find_schur_vectors(of_left, form, some ? select : nullptr, howmny == 'B', Matrix<T>{v, n, m, ld});
    };
    if (!find(right, false, vr, ldvr) || !find(left, true, vl, ldvl)) refuse_for_memory(name, info);
}
template decltype(trevc<double>) trevc<double>;
template decltype(trevc<zcomplex>) trevc<zcomplex>;

} // namespace nxl
