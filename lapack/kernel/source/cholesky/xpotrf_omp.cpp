// Cholesky factorisation: the choice of strategy, and the run over threads on a table of tiles. Method: Buttari,
// Langou, Kurzak and Dongarra, A class of parallel tiled linear algebra algorithms, Parallel Computing 35 (2009).
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/cholesky.hpp"
#include "lapack/kernel/source/cholesky/potrf_tiles.hpp"
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "lapack/kernel/source/common/task_region.hpp"
#include "service/arguments.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"
#include <algorithm>
#include <omp.h>

namespace nxl {
namespace {

/// A triangle of order n that the threads of one region factor, tile by tile.
template <class T> class TiledPotrf {
    const char uplo_;
    const i64 n_, nb_, level_limit_;
    T* const a_;
    const i64 lda_;
    PotrfTable table_;
    SharedFlag stopped_;
    std::atomic<i64> info_{0}; // of the one diagonal tile that failed: none after it is ever reached

    static i64 first(i64 p, i64 nb) { return (p - 1) * nb; }
    i64 first(i64 p) const { return first(p, nb_); }
    i64 width(i64 p) const { return std::min(n_ - first(p), nb_); }

    /// Tile (p, q) of the triangle.
    T* tile(i64 p, i64 q) const {
        return uplo_ == 'L' ? a_ + first(q) + first(p) * lda_ : a_ + first(p) + first(q) * lda_;
    }

    /// Takes `levels` levels from k on off the tile.
    void update(const PotrfTask& task, i64 levels) const {
        const auto [p, q, k] = task;
        const i64 depth = std::min(nb_ * levels, first(p) - first(k));
        T* const c = tile(p, q);
        if (task.diagonal())
            herk(uplo_, uplo_ == 'L' ? 'N' : 'C', width(p), depth, -1.0, tile(k, p), lda_, 1.0, c, lda_);
        else if (uplo_ == 'L')
            gemm('N', 'C', width(q), width(p), depth, -1.0, tile(k, q), lda_, tile(k, p), lda_, 1.0, c, lda_);
        else gemm('C', 'N', width(p), width(q), depth, -1.0, tile(k, p), lda_, tile(k, q), lda_, 1.0, c, lda_);
    }

    /// Factors the diagonal tile p. False when it stays unfinished, and the others on the call end for that.
    bool factor(i64 p, i64 thread) {
        i64 info = 0;
        if (potrf_serial(uplo_, width(p), tile(p, p), lda_, info, thread, first(p)) != 0) {
            stopped_.raise();
            return false;
        }
        if (info != 0) info_.store(first(p) + info, std::memory_order_relaxed);
        return info == 0;
    }

    void solve(i64 p, i64 q) const {
        if (uplo_ == 'L') trsm('R', 'L', 'C', 'N', width(q), width(p), 1.0, tile(p, p), lda_, tile(p, q), lda_);
        else trsm('L', 'U', 'C', 'N', width(p), width(q), 1.0, tile(p, p), lda_, tile(p, q), lda_);
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
    /// `words`: words_needed(tiles(n, nb)) of them, for the table. The first tile has been factored.
    TiledPotrf(char uplo, i64 n, i64 nb, i64 level_limit, T* a, i64 lda, i64* words)
        : uplo_(uplo),
          n_(n),
          nb_(nb),
          level_limit_(level_limit),
          a_(a),
          lda_(lda),
          table_(words, tiles(n, nb)) {}

    static i64 tiles(i64 n, i64 nb) { return (n + nb - 1) / nb; }
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

template <class T> i64 factor(char uplo, i64 n, T* a, i64 lda, i64& info);

/// The table run. Returns 1 when the host asks to stop.
template <class T> i64 factor_tiles(char uplo, i64 n, i64 nb, i64 threads, T* a, i64 lda, i64& info) {
    const i64 level_limit = potrf_tuning<T>(block_size, uplo, n, threads, -2);
    const Scratch<i64> words(PotrfTable::words_needed(TiledPotrf<T>::tiles(n, nb)));
    if (!words.data()) return potrf_serial(uplo, n, a, lda, info, 0, 0);
    if (factor(uplo, std::min(nb, n), a, lda, info) != 0) return 1;
    if (info != 0) return 0;
    TiledPotrf<T> run(uplo, n, nb, level_limit, a, lda, words.data());
    const int team = static_cast<int>(std::min(threads, i64{largest_team}));
#pragma omp parallel num_threads(team)
    run.work(omp_get_thread_num());
    info = run.info();
    return run.stopped();
}

/// A = U^H U or L L^H by the way that suits n and the threads. Returns 1 when the host asks to stop.
template <class T> i64 factor(char uplo, i64 n, T* a, i64 lda, i64& info) {
    info = 0;
    if (n < potrf_tuning<T>(crossover, uplo, n)) {
        potf2(uplo, n, a, lda, info);
        return 0;
    }
    const i64 threads = max_threads(domain_all);
    const i64 nb = threads > 1 ? potrf_tuning<T>(block_size, uplo, n, threads) : n;
    if (nb < 2 || n <= nb) return potrf_serial(uplo, n, a, lda, info, 0, 0);
    return factor_tiles(uplo, n, nb, threads, a, lda, info);
}

/// The letter in capitals, or 0 with info set when an argument is bad.
char checked_uplo(const RoutineLetters& name, char uplo, i64 n, i64 lda, i64& info) {
    const bool bad = Arguments(name).letter(1, uplo, "UL").size(2, n).leading(4, lda, n).refused(info);
    return bad ? '\0' : is_one_of(uplo, "U") ? 'U' : 'L';
}

} // namespace

template <class T> void potrf(const char& uplo, const i64& n, T* a, const i64& lda, i64& info, int) {
    const char letter = checked_uplo(routine<T>("POTRF"), uplo, n, lda, info);
    if (letter != 0 && n > 0) factor(letter, n, a, lda, info);
}
template decltype(potrf<double>) potrf<double>;
template decltype(potrf<zcomplex>) potrf<zcomplex>;

void nxl_lapack_zpotf2(const char& uplo, const i64& n, zcomplex* a, const i64& lda, i64& info, int) {
    const char letter = checked_uplo("ZPOTF2", uplo, n, lda, info);
    if (letter != 0 && n > 0) potf2(letter, n, a, lda, info);
}

} // namespace nxl
