// Cholesky factorisation: the choice of strategy, and the run over threads on a table of tiles. Method: Buttari,
// Langou, Kurzak and Dongarra, A class of parallel tiled linear algebra algorithms, Parallel Computing 35 (2009).
#include "lapack/kernel/source/cholesky/xpotrf_omp.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/potrf_tiles.hpp"
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "lapack/kernel/source/common/task_region.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/arguments.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/worthwhile_threads.hpp"
#include <algorithm>
#include <omp.h>

namespace nxl {
namespace {

/// A triangle of order n that the threads of one region factor, tile by tile.
template <class T> class TiledPotrf {
    const char uplo_;
    const Matrix<T>& a_;
    const i64 nb_, level_limit_;
    PotrfTable table_;
    SharedFlag stopped_;
    std::atomic<i64> info_{0}; // of the one diagonal tile that failed: none after it is ever reached

    i64 first(i64 p) const { return (p - 1) * nb_; }
    i64 width(i64 p) const { return std::min(a_.rows - first(p), nb_); }

    /// The tiles (p, q) to (p + levels - 1, q) of the triangle, as far as `depth` columns, or rows, of it.
    Matrix<T> tiles(i64 p, i64 q, i64 depth) const {
        return uplo_ == 'L' ? a_.block(first(q), first(p), width(q), depth)
                            : a_.block(first(p), first(q), depth, width(q));
    }
    Matrix<T> tile(i64 p, i64 q) const { return tiles(p, q, width(p)); }

    /// Takes `levels` levels from k on off the tile.
    void update(const PotrfTask& task, i64 levels) const {
        const auto [p, q, k] = task;
        const i64 depth = std::min(nb_ * levels, first(p) - first(k));
        const Matrix<T> c = tile(p, q), to_p = tiles(k, p, depth), to_q = tiles(k, q, depth);
        if (task.diagonal()) herk(uplo_, uplo_ == 'L' ? 'N' : 'C', -1.0, to_p, 1.0, c);
        else if (uplo_ == 'L') gemm('N', 'C', -1.0, to_q, to_p, 1.0, c);
        else gemm('C', 'N', -1.0, to_p, to_q, 1.0, c);
    }

    /// Factors the diagonal tile p. False when it stays unfinished, and the others on the call end for that.
    bool factor(i64 p, i64 thread) {
        i64 info = 0;
        if (potrf_serial(uplo_, tile(p, p), info, thread, first(p))) {
            stopped_.raise();
            return false;
        }
        if (info != 0) info_.store(first(p) + info, std::memory_order_relaxed);
        return info == 0;
    }

    void solve(i64 p, i64 q) const {
        if (uplo_ == 'L') trsm('R', 'L', 'C', 'N', 1.0, tile(p, p), tile(p, q));
        else trsm('L', 'U', 'C', 'N', 1.0, tile(p, p), tile(p, q));
    }

    void run(PotrfTask& task, i64 thread) {
        if (const i64 levels = potrf_task_updates(task, table_, level_limit_); levels > 0) {
            update(task, levels);
            task.k += levels;
        }
        if (potrf_task_closes(task, table_)) {
            bool closed = true;
            if (task.diagonal()) closed = going_on() && factor(task.p, thread);
            else solve(task.p, task.q);
            if (closed) ++task.k;
        }
        potrf_task_end(task, table_);
    }

    bool going_on() const { return info() == 0 && !stopped(); }

  public:
    /// `words`: words_needed(tiles_along(n, nb)) of them, for the table. The first tile has been factored.
    TiledPotrf(char uplo, const Matrix<T>& a, i64 nb, i64* words)
        : uplo_(uplo),
          a_(a),
          nb_(nb),
          level_limit_(cholesky_sizes.level_limit(uplo, a.rows)),
          table_(words, tiles_along(a.rows, nb)) {}

    static i64 tiles_along(i64 n, i64 nb) { return (n + nb - 1) / nb; }
    i64 info() const { return info_.load(std::memory_order_relaxed); }
    bool stopped() const { return stopped_.raised(); }

    /// One thread's part, whatever the size of its team.
    void work(i64 thread) {
        PotrfTask task;
        IdleWait idle;
        potrf_task_first(task, table_, thread);
#pragma omp barrier // a scan must not take another thread's first tile
        while (!table_.finished() && going_on()) {
            if (task.held()) {
                run(task, thread);
                idle.found_work();
            } else idle.wait();
            with_table_locked([&] { potrf_task_next(task, table_); });
        }
    }
};

template <class T> bool factor(char uplo, const Matrix<T>& a, i64& info);

/// The table run. True when the host asks to stop.
template <class T> bool factor_tiles(char uplo, const Matrix<T>& a, i64 nb, i64 threads, i64& info) {
    const Scratch<i64> words(PotrfTable::words_needed(TiledPotrf<T>::tiles_along(a.rows, nb)));
    if (!words.data()) return potrf_serial(uplo, a, info, 0, 0);
    if (factor(uplo, a.block(0, 0, nb, nb), info)) return true;
    if (info != 0) return false;
    TiledPotrf<T> run(uplo, a, nb, words.data());
    const int team = static_cast<int>(std::min(threads, i64{largest_team}));
#pragma omp parallel num_threads(team)
    run.work(omp_get_thread_num());
    info = run.info();
    return run.stopped();
}

/// A = U^H U or L L^H by the way that suits n and the threads. True when the host asks to stop.
template <class T> bool factor(char uplo, const Matrix<T>& a, i64& info) {
    info = 0;
    const i64 n = a.rows;
    if (n < cholesky_sizes.crossover) {
        potf2(uplo, a, info);
        return false;
    }
    const i64 threads = worthwhile_threads(domain_all, product_of(n, n, n), least_work<T>.potrf);
    const i64 nb = threads > 1 ? cholesky_sizes.block(n, threads) : n;
    if (nb < 2 || n <= nb) return potrf_serial(uplo, a, info, 0, 0);
    return factor_tiles(uplo, a, nb, threads, info);
}

bool bad_arguments(const RoutineLetters& name, char uplo, i64 n, i64 lda, i64& info) {
    return Arguments(name).letter(1, uplo, "UL").size(2, n).leading(4, lda, n).refused(info);
}

} // namespace

template <class T> void potrf(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int) {
    if (bad_arguments(potrf_name<T>, uplo, n, lda, info) || n == 0) return;
    factor(uplo, Matrix<T>{a, n, n, lda}, info);
}
template decltype(potrf<double>) potrf<double>;
template decltype(potrf<zcomplex>) potrf<zcomplex>;

void nxl_lapack_zpotf2(const char& uplo, const i64& n, zcomplex* a, const i64& lda, i64& info, int) {
    if (bad_arguments("ZPOTF2", uplo, n, lda, info) || n == 0) return;
    potf2(uplo, Matrix<zcomplex>{a, n, n, lda}, info);
}

} // namespace nxl
