// LU factorisation over threads: the choice of a way to order the work, and the run of the task queue, in which threads
// take panels and updates as they become ready.
#include "lapack/kernel/source/lu/xgetrf_omp.hpp"
#include "lapack/kernel/source/common/task_region.hpp"
#include "lapack/kernel/source/lu/dgetrf_ib_omp.hpp"
#include "lapack/kernel/source/lu/getrf_queue.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/arguments.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/worthwhile_threads.hpp"
#include <omp.h>

namespace nxl {
namespace {

/// One run of the queue. Panel p has the nb columns from (p - 1) nb on, from 0.
template <class T> class QueueRun {
    const Matrix<T>& a_;
    i64* const ipiv_;
    const i64 nb_;
    GetrfQueue& queue_;
    SharedFlag stop_;
    std::atomic<i64> info_{0};

  public:
    QueueRun(const Matrix<T>& a, i64* ipiv, i64 nb, GetrfQueue& queue) : a_(a), ipiv_(ipiv), nb_(nb), queue_(queue) {}

    i64 info() const { return info_.load(std::memory_order_relaxed); }

    /// The first panel stands before the fork, so that there is work for all at once; what is behind the queue's panels
    /// is too small for a fork of its own.
    void run(int threads) {
        if (factor_panel(1, 0)) return;
        run_tasks(threads);
        if (stop_.raised() || factor_panel(queue_.npanels + 1, 0)) return;
        interchange_left(threads);
    }

  private:
    /// Factors panel p, or all that is left at the last one, from its diagonal down. True when the host asks to stop.
    bool factor_panel(i64 p, i64 thread) {
        const i64 first = (p - 1) * nb_, columns = p > queue_.npanels ? a_.columns - first : nb_;
        const Matrix<T> panel = a_.block(first, first, a_.rows - first, columns);
        i64 found = 0, so_far = info();
        if (factor_serially(panel, ipiv_ + first, &found, thread, first)) return true;
        adopt_panel(a_, ipiv_, first, columns, found, &so_far);
        info_.store(so_far, std::memory_order_relaxed); // panels come one after another, whoever has them
        return false;
    }

    void carry_out(const GetrfTask& task, i64 thread) {
        const i64 column = (task.first_col - 1) * nb_, end = std::min(task.last_col * nb_, a_.columns);
        for (i64 p = task.first_panel; p <= task.last_panel; ++p)
            apply_panel(a_, ipiv_, (p - 1) * nb_, nb_, column, end - column);
        if (task.kind == TaskKind::panel && factor_panel(task.first_col, thread)) stop_.raise();
    }

    /// The strips are dealt to the team that came, which may be smaller than the one asked for. All its threads say the
    /// same, so that none waits for another before it starts.
    void work(i64 thread, i64 team) {
        GetrfTask task;
        with_table_locked([&] {
            queue_.nthreads = team;
            getrf_queue_first(thread, queue_, task);
        });
        IdleWait idle;
        while (task.kind != TaskKind::finished && !stop_.raised()) {
            with_table_locked([&] { getrf_queue_next(thread, queue_, task); });
            if (task.kind == TaskKind::none) {
                idle.wait();
                continue;
            }
            idle.found_work();
            if (task.kind != TaskKind::finished) carry_out(task, thread);
        }
    }

    void run_tasks(int threads) {
#pragma omp parallel num_threads(threads)
        work(omp_get_thread_num(), omp_get_num_threads());
    }

    /// The interchanges of later panels in the columns of each panel. The first panel has the most to come. Of a small
    /// matrix they take less time than a fork.
    void interchange_left(int threads) {
        constexpr i64 least_elements = i64{1} << 16;
        const i64 panels = queue_.npanels;
        const int team = a_.rows * a_.steps() < least_elements ? 1 : threads;
#pragma omp parallel for num_threads(team) schedule(dynamic, 1)
        for (i64 p = 1; p <= panels; ++p)
            interchange_rows(a_.columns_from((p - 1) * nb_, nb_), ipiv_, p * nb_, a_.steps());
    }
};

template <class T> void run_queue(const Matrix<T>& a, i64* ipiv, i64 nb, int threads, i64* info) {
    const i64 n = a.columns, nblk = (n - 1) / nb + 1, npanels = (a.steps() - 1) / nb;
    const Scratch<i64> words(queue_words(nblk));
    if (!words.data()) {
        factor_with_look_ahead(a, ipiv, info, 0, 0);
        return;
    }
    GetrfQueue& queue =
        prepare_queue(words.data(), nblk, npanels, lu_sizes<T>.strip(n, threads), lu_sizes<T>.pool(n, threads));
    QueueRun<T> run(a, ipiv, nb, queue);
    run.run(threads);
    *info = run.info();
}

template <class T> void factor(const Matrix<T>& a, i64* ipiv, i64* info) {
    constexpr LuSizes sizes = lu_sizes<T>;
    const i64 n = a.columns;
    const double work = product_of(a.rows, n, a.steps());
    const int threads = std::min(worthwhile_threads(domain_all, work, least_work<T>.getrf), largest_team);
    if (threads <= 1 || n <= sizes.crossover(n, 1)) {
        factor_serially(a, ipiv, info, 0, 0);
        return;
    }
    if (n <= sizes.crossover(n, threads)) {
        factor_with_look_ahead(a, ipiv, info, 0, 0);
        return;
    }
    const i64 nb = sizes.block(n, threads);
    if (nb <= 1 || nb >= a.steps()) return factor_unblocked(a, ipiv, info);
    run_queue(a, ipiv, nb, threads, info);
}

} // namespace

template <class T> void getrf(const i64& m, const i64& n, T* a, const i64& lda, i64* ipiv, i64& info) {
    if (Arguments(getrf_name<T>).size(1, m).size(2, n).leading(4, lda, m).refused(info)) return;
    if (m > 0 && n > 0) factor(Matrix<T>{a, m, n, lda}, ipiv, &info);
}
template decltype(getrf<double>) getrf<double>;
template decltype(getrf<zcomplex>) getrf<zcomplex>;

} // namespace nxl
