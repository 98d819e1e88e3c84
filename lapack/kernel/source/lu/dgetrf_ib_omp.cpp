// LU factorisation with a static share of the columns for each thread and a look-ahead of one panel: while the others
// update their columns, the first thread factors the panel that comes next.
#include "lapack/kernel/source/lu/dgetrf_ib_omp.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/common/task_region.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/parallel.hpp"
#include "service/threads.hpp"

namespace nxl {
namespace {

/// Columns in whole vectors of four.
i64 whole_fours(i64 count) { return count / 4 * 4; }

/// One run over the panels of a matrix.
template <class T> class LookAhead {
    const LuBlock<T>& lu_;
    i64* const info_;
    const i64 thread_, offset_;
    const int threads_;
    const i64 nb_, panel_cost_;

  public:
    LookAhead(const LuBlock<T>& lu, i64* info, i64 thread, i64 offset, int threads, i64 nb)
        : lu_(lu),
          info_(info),
          thread_(thread),
          offset_(offset),
          threads_(threads),
          nb_(nb),
          panel_cost_(tuning(panel_share, getrf_name<T>, "P", lu.m, lu.n, -1, -1)) {}

    bool run() const {
        i64 panel_info = 0;
        if (factor_with_look_ahead(lu_.from(0, nb_), &panel_info, thread_, offset_)) return true;
        adopt_panel(lu_, 0, nb_, panel_info, info_);
        for (i64 j = nb_; j < lu_.steps(); j += nb_)
            if (advance(j)) return true;
        if (lu_.m < lu_.n) {
            const i64 last = (lu_.m - 1) / nb_ * nb_;
            apply_panel(lu_, last, lu_.m - last, lu_.m, lu_.n - lu_.m);
        }
        interchange_left();
        return false;
    }

  private:
    /// Applies the panel that ends before column j to all columns from there on, and factors the panel at j.
    bool advance(i64 j) const {
        const i64 width = std::min(lu_.steps() - j, nb_), remaining = lu_.n - j;
        const LookAheadShares shares = look_ahead_shares(remaining, width, nb_, panel_cost_, threads_);
        i64 panel_info = 0;
        SharedFlag stop;
        parallel_blocks(threads_, threads_, [&, j](int block) {
            const i64 start = block == 0 ? 0 : shares.first_share + (block - 1) * shares.share;
            const i64 own = block == 0 ? shares.first_share : shares.share;
            apply_panel(lu_, j - nb_, nb_, j + start, block == threads_ - 1 ? remaining - start : own);
            if (block == 0 && shares.look_ahead &&
                factor_serially(lu_.from(j, width), &panel_info, thread_, offset_ + j))
                stop.raise();
        });
        if (stop.raised()) return true;
        if (!shares.look_ahead && factor_with_look_ahead(lu_.from(j, width), &panel_info, thread_, offset_ + j))
            return true;
        adopt_panel(lu_, j, width, panel_info, info_);
        return false;
    }

    /// Makes the interchanges of later panels in the columns of each panel, in slices of those columns.
    void interchange_left() const {
        const i64 share = nb_ / threads_;
        parallel_blocks(threads_, threads_, [&, share](int block) {
            const i64 start = block * share, count = block == threads_ - 1 ? nb_ - start : share;
            for (i64 j = 0; j + nb_ < lu_.steps(); j += nb_)
                interchange_rows(lu_, j + nb_, lu_.steps(), j + start, count);
        });
    }
};

} // namespace

LookAheadShares look_ahead_shares(i64 remaining, i64 width, i64 nb, i64 panel_cost, i64 threads) {
    const i64 even = whole_fours(remaining / threads);
    if (width >= remaining) return {false, even, even}; // the last panel is all there is
    const i64 beside_panel = whole_fours(std::max(even - nb * panel_cost / 32, i64{0}));
    if (beside_panel < width && even < width && width > 8) return {false, even, even};
    const i64 first_share = std::max(beside_panel, width);
    return {true, first_share, whole_fours((remaining - first_share) / (threads - 1))};
}

template <class T> bool factor_with_look_ahead(const LuBlock<T>& lu, i64* info, i64 thread, i64 offset) {
    const int threads = std::min(max_threads(domain_all), largest_team);
    if (threads <= 1 || lu.n <= tuning(crossover, getrf_name<T>, "P", lu.m, lu.n, -1, -1))
        return factor_serially(lu, info, thread, offset);
    *info = 0;
    const i64 nb = tuning(block_size, getrf_name<T>, "P", lu.m, lu.n, -1, -1);
    if (nb <= 1 || nb >= lu.steps()) {
        factor_unblocked(lu, info);
        return stop_requested(getrf_name<T>, thread, offset + lu.steps());
    }
    return LookAhead<T>(lu, info, thread, offset, threads, nb).run();
}

template bool factor_with_look_ahead(const LuBlock<double>&, i64*, i64, i64);
template bool factor_with_look_ahead(const LuBlock<zcomplex>&, i64*, i64, i64);

} // namespace nxl
