// dgeqrf, zgeqrf: panel by panel, what is right of a panel being updated by its block reflector. On several threads the
// next panel is factored beside the update. Strazdins, Int. J. Parallel Distrib. Syst. Networks 4 (2001): look-ahead.
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/tall_panel.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/worthwhile_threads.hpp"
#include <algorithm>

namespace nxl {

namespace {

/// The panels of a factorisation, and the threads that share the work between two of them.
template <class T> struct Panels {
    const Matrix<T>& a;
    T *const tau, *const factors, *const work; // two factors T, nb by nb; nb elements for each column of a
    const i64 nb;
    const int threads;
    const bool products_fork;

    i64 width(i64 j) const { return std::min(nb, a.steps() - j); }
    Matrix<T> panel(i64 j) const { return a.block(j, j, a.rows - j, width(j)); }
    Matrix<T> factor_of(i64 j) const { return {factors + j / nb % 2 * nb * nb, width(j), width(j), nb}; }

    void factor(i64 j) const { factor_tall_panel(panel(j), tau + j, factor_of(j)); }
    void apply(i64 j, const Slice& to) const {
        const i64 widest = products_fork ? std::max(to.count, i64{1}) : columns_at_once<T>;
        for (i64 column = to.start; column < to.end(); column += widest) {
            const i64 count = std::min(widest, to.end() - column);
            apply_block('L', 'C', Reflectors<T>{panel(j), Order::forward, Storage::columns}, factor_of(j),
                        a.block(j, column, a.rows - j, count),
                        Matrix<T>{work + column * nb, width(j), count, width(j)});
        }
    }

    /// Applies the panel at j, and factors the one after it. On a team one thread does so as soon as that panel is up
    /// to date, and takes as many of the columns beyond it as make its share of all the work: a panel of so many
    /// columns takes about as long as their update.
    void step(i64 j) const {
        const i64 next = j + width(j), ahead = next < a.steps() ? width(next) : 0;
        const Slice rest{next + ahead, a.columns - next - ahead};
        if (threads == 1 || rest.count == 0) {
            apply(j, {next, a.columns - next});
            if (ahead > 0) factor(next);
            return;
        }
        const i64 share = (rest.count + 2 * ahead) / threads;
        const i64 own = round_down(std::clamp(share - 2 * ahead, i64{0}, rest.count), 8);
        parallel_blocks(threads, threads, [&](int part) {
            if (part > 0) {
                const Slice mine = balanced_slice(rest.count - own, 8, part - 1, threads - 1);
                return apply(j, {rest.start + own + mine.start, mine.count});
            }
            if (ahead > 0) {
                apply(j, {next, ahead});
                factor(next);
            }
            apply(j, {rest.start, own});
        });
    }
};

/// A team pays where there are several panels for each thread; else the products of each panel have their own.
template <class T> int threads_for(const Matrix<T>& a, i64 nb) {
    constexpr i64 least = 3; // panels for a thread
    if (region_would_be_serial()) return 1;
    const double flops = 2.0 * flops_of<T>(a.rows, a.steps(), a.columns);
    const int threads = threads_for_work(flops, max_threads(domain_all));
    return static_cast<int>(std::clamp(a.steps() / (least * nb), i64{1}, i64{std::max(threads, 1)}));
}

} // namespace

template <class T> bool factor_qr(const Matrix<T>& a, T* tau) {
    const i64 steps = a.steps(), nb = std::min(qr_panel(steps), steps);
    const Scratch<T> memory(nb * (2 * nb + a.columns));
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T* const factors = sections.take(2 * nb * nb);
    const int threads = threads_for(a, nb);
    const bool products_fork = threads == 1 && !region_would_be_serial() && max_threads(domain_all) > 1;
    const Panels<T> panels{a, tau, factors, sections.take(nb * a.columns), nb, threads, products_fork};
    if (steps > 0) panels.factor(0);
    for (i64 j = 0; j < steps; j += nb) panels.step(j);
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
