// dgehrd, zgehrd: panel by panel. A panel gathers V and T of its reflectors and Y = A V T, so that
//
//     A := (I - V T V^H)^H (A - Y V^H)
//
// is applied to what is right of it by products of level 3. Rows above the panel need no Y, A (I - V T V^H) comes to
// them at once. Half of the work is the product of the remaining matrix with each vector, which moves as fast as memory
// delivers; threads share it. Quintana-Orti and van de Geijn, ACM TOMS 32 (2006).
#include "lapack/kernel/source/nonsymmetric/gehrd.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/common/to_and_fro.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scalars.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Columns first .. of A, in rows and columns that reach to `end`. Rows below `first` are those of the vectors: in the
/// words of the panel, vector j is v_(j.., j) with a one at v_(j, j).
template <class T> struct HessenbergPanel {
    const Matrix<T>& a;
    const i64 first, end, width;
    T* const tau;
    const Matrix<T> v, t, y, work; // m x width, width x width, m x width, and as wide for products

    i64 m() const { return end - first - 1; } // rows that are reflected
    T* column(i64 j) const { return a.at(first + 1, first + j); }

    /// w := op(T) w for the first `count` rows and columns of T.
    void times_factor(char op, i64 count, T* w) const { trmv('U', op, 'N', t.block(0, 0, count, count), w); }

    /// What the reflectors 0 .. j - 1 make of column j.
    void bring_up(i64 j) const {
        T *const b = column(j), *const w = work.data;
        for (i64 k = 0; k < j; ++k) w[k] = conj_if<true>(v(j - 1, k)); // column j of V^H, counted from the panel's
        gemv('N', m(), j, -1.0, y.data, y.ld, w, 1, 1.0, b, 1);
        gemv('C', m(), j, 1.0, v.data, v.ld, b, 1, 0.0, w, 1);
        times_factor('C', j, w);
        gemv('N', m(), j, -1.0, v.data, v.ld, w, 1, 1.0, b, 1);
    }
    void take_vector(i64 j) const {
        T* const b = column(j);
        tau[j] = make_reflector(m() - j - 1, b[j], b + std::min(j + 1, m() - 1), 1);
        std::fill_n(v.at(0, j), j, T{});
        v(j, j) = T(1.0);
        std::copy(b + j + 1, b + m(), v.at(0, j) + j + 1);
    }
    /// Column j of T and of Y.
    void extend(i64 j) const {
        T *const w = t.at(0, j), *const yj = y.at(0, j);
        product_to_and_fro('N', T(1.0), a.block(first + 1, first + 1 + j, m(), m() - j), v.at(j, j), yj, j % 2 == 0);
        gemv('C', m() - j, j, 1.0, v.at(j, 0), v.ld, v.at(j, j), 1, 0.0, w, 1);
        gemv('N', m(), j, -1.0, y.data, y.ld, w, 1, 1.0, yj, 1);
        scal(m(), tau[j], yj, 1);
        times_factor('N', j, w);
        for (i64 k = 0; k < j; ++k) w[k] *= -tau[j];
        t(j, j) = tau[j];
    }
    void factor() const {
        for (i64 j = 0; j < width; ++j) {
            if (j > 0) bring_up(j);
            take_vector(j);
            extend(j);
        }
    }
    /// All that is not in the panel.
    void update() const {
        const i64 next = first + width, n = a.columns;
        const Reflectors<T> reflectors{a.block(first + 1, first, m(), width), Order::forward, Storage::columns};
        const i64 above = first + 1;
        apply_block('R', 'N', reflectors, t, a.block(0, first + 1, above, m()),
                    Matrix<T>{work.data, above, width, a.rows});
        const Matrix<T> rest = a.block(first + 1, next, m(), end - next);
        gemm('N', 'C', -1.0, y, v.rows_from(width - 1, end - next), 1.0, rest);
        apply_block('L', 'C', reflectors, t, a.block(first + 1, next, m(), n - next),
                    Matrix<T>{work.data, width, n - next, width});
    }
};

} // namespace

template <class T> bool reduce_to_hessenberg(const Matrix<T>& a, i64 first, i64 end, T* tau) {
    constexpr i64 block = block_of(routine<T>("GEHRD"));
    const i64 n = a.rows;
    std::fill_n(tau, std::max(n - 1, i64{0}), T{});
    if (end - first < 3 && !(is_complex_scalar<T> && end - first == 2)) return true;
    const i64 m = end - first - 1, nb = std::min(block, m);
    const Scratch<T> memory(nb * (2 * m + nb + n));
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T *const v = sections.take(m * nb), *const y = sections.take(m * nb), *const t = sections.take(nb * nb);
    T* const work = sections.take(n * nb);
    const i64 last = is_complex_scalar<T> ? end - 1 : end - 2; // a complex matrix gets a real last subdiagonal element
    for (i64 i = first; i < last; i += nb) {
        const i64 width = std::min(nb, last - i), rows = end - i - 1;
        const HessenbergPanel<T> panel{a,
                                       i,
                                       end,
                                       width,
                                       tau + i,
                                       {v, rows, width, m},
                                       {t, width, width, nb},
                                       {y, rows, width, m},
                                       {work, n, width, n}};
        panel.factor();
        panel.update();
    }
    return true;
}
template bool reduce_to_hessenberg(const Matrix<double>&, i64, i64, double*);
template bool reduce_to_hessenberg(const Matrix<zcomplex>&, i64, i64, zcomplex*);

template <class T>
void gehrd(const i64& n, const i64& ilo, const i64& ihi, T* a, const i64& lda, T* tau, T* work, const i64& lwork,
           i64& info) {
    constexpr RoutineLetters name = routine<T>("GEHRD");
    const i64 least = std::max(n, i64{1});
    const Workspace<T> space(work, lwork, least, least * block_of(name));
    Arguments arguments(name);
    arguments.size(1, n).expect(2, ilo >= 1 && ilo <= least).expect(3, ihi >= std::min(ilo, n) && ihi <= n);
    if (arguments.leading(5, lda, n).workspace(8, space).refused(info) || space.is_query() || n == 0) return;
    if (!reduce_to_hessenberg(Matrix<T>{a, n, n, lda}, ilo - 1, ihi, tau)) refuse_for_memory(name, info);
}
template decltype(gehrd<double>) gehrd<double>;
template decltype(gehrd<zcomplex>) gehrd<zcomplex>;

} // namespace nxl
