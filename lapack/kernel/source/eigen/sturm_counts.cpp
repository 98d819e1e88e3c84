// All intervals of a block are halved together, so that their counts share vectors and threads. Barth, Martin and
// Wilkinson, Numer. Math. 9 (1967); Demmel, Dhillon and Ren, ETNA 3 (1995).
#include "lapack/kernel/source/eigen/sturm_counts.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include "service/slice.hpp"
#include "service/threads.hpp"
#include <cmath>
#include <limits>

namespace nxl {

void SturmMatrix::count(i64 many, const double* shifts, i64* counts) const {
    constexpr double least = 2e5; // pivots that are worth a thread
    constexpr i64 unit = 16;      // shifts that the kernels take at a time
    const auto run = [&](i64 start, i64 some) {
        slot<&KernelTable::dsturm>(n, d, e2, pivmin, some, shifts + start, counts + start);
    };
    const double work = static_cast<double>(n) * static_cast<double>(many);
    if (work < 2 * least || many < 2 * unit || region_would_be_serial()) return run(0, many);
    const double most = std::min(work / least, static_cast<double>(many) / static_cast<double>(unit));
    const int parts = static_cast<int>(std::min(most, static_cast<double>(max_threads(domain_all))));
    if (parts < 2) return run(0, many);
    parallel_blocks(parts, parts, [&](int part) {
        const Slice mine = balanced_slice(many, unit, part, parts);
        run(mine.start, mine.count);
    });
}

i64 SturmMatrix::count(double shift) const {
    i64 result = 0;
    count(1, &shift, &result);
    return result;
}

namespace {

double middle_of(const EigenvalueInterval& i) { return 0.5 * i.low + 0.5 * i.high; }

bool is_small(const EigenvalueInterval& i, const BisectionTolerance& tolerance, double pivmin) {
    const double size = std::max(std::fabs(i.low), std::fabs(i.high));
    return i.high - i.low <= std::max({tolerance.absolute, pivmin, tolerance.relative * size});
}

} // namespace

i64 bisect(const SturmMatrix& t, const EigenvalueInterval& all, const BisectionTolerance& tolerance,
           const BisectionSpace& space, double* w) {
    constexpr int most_rounds = 2200; // from one end of the range to the other
    EigenvalueInterval* const open = space.intervals;
    const i64 wanted = std::max(all.last - all.first + 1, i64{0});
    if (!std::isfinite(all.low) || !std::isfinite(all.high)) {
        std::fill(w, w + wanted, std::numeric_limits<double>::quiet_NaN());
        return wanted;
    }
    i64 unfinished = wanted > 0 ? 1 : 0;
    open[0] = all;
    for (int round = 0; unfinished > 0 && round < most_rounds; ++round) {
        i64 kept = 0;
        for (i64 k = 0; k < unfinished; ++k) {
            const EigenvalueInterval interval = open[k];
            const double middle = middle_of(interval);
            // Neighbouring numbers have no middle that would be news.
            if (is_small(interval, tolerance, t.pivmin) || middle <= interval.low || middle >= interval.high) {
                for (i64 i = interval.first; i <= interval.last; ++i) w[i - all.first] = middle;
                continue;
            }
            space.middles[kept] = middle;
            open[kept++] = interval;
        }
        t.count(kept, space.middles, space.counts);
        unfinished = kept;
        for (i64 k = 0; k < kept; ++k) { // halves that hold something: the second ones go to the end
            const EigenvalueInterval whole = open[k];
            const i64 below = std::clamp(space.counts[k], whole.first, whole.last + 1);
            EigenvalueInterval& half = open[k];
            if (below > whole.last) half.high = space.middles[k];
            else half.low = space.middles[k];
            if (below == whole.first || below > whole.last) continue;
            half.first = below;
            open[unfinished++] = {whole.low, space.middles[k], whole.first, below - 1};
        }
    }
    i64 bad = 0;
    for (i64 k = 0; k < unfinished; ++k)
        for (i64 i = open[k].first; i <= open[k].last; ++i, ++bad) w[i - all.first] = middle_of(open[k]);
    return bad;
}

} // namespace nxl
