// dstebz: blocks, ranges and order; sturm_counts.cpp does the bisection.
#include "lapack/kernel/source/eigen/stebz.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/eigen/sturm_counts.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"

namespace nxl {
namespace {

constexpr double ulp = 2.0 * unit_roundoff;

struct Range {
    double low, high;
    double size() const { return std::max(std::fabs(low), std::fabs(high)); }
};

/// A range that holds all eigenvalues, by Gershgorin's discs, with room for roundings.
Range gershgorin(const SturmMatrix& t) {
    constexpr double fudge = 2.1;
    Range range{t.d[0], t.d[0]};
    double before = 0.0;
    for (i64 i = 0; i < t.n; ++i) {
        const double after = i + 1 < t.n ? std::sqrt(t.e2[i]) : 0.0, radius = before + after;
        if (std::isnan(t.d[i]) || std::isnan(radius)) return {t.d[i] + radius, t.d[i] + radius};
        range.low = std::min(range.low, t.d[i] - radius);
        range.high = std::max(range.high, t.d[i] + radius);
        before = after;
    }
    const double room = fudge * (range.size() * ulp * static_cast<double>(t.n) + 2.0 * t.pivmin);
    return {range.low - room, range.high + room};
}

/// One call, of which the matrix has been scaled.
struct Bisection {
    SturmMatrix whole;
    BisectionTolerance given; // absolute: not above 0 for the default
    BisectionSpace space;
    double* w;
    i64* iblock;
    const i64* isplit;
    i64 found = 0, blocks = 0, bad = 0;

    BisectionTolerance tolerance(const Range& of) const {
        return {given.absolute > 0.0 ? given.absolute : ulp * of.size(), given.relative};
    }
    /// The end, below or above, of the range in which eigenvalue `index`, from 0, is alone to the tolerance.
    Range enclosure(i64 index, const Range& all) const {
        Range range = all;
        const BisectionTolerance enough = tolerance(all);
        while (range.high - range.low > std::max({enough.absolute, whole.pivmin, enough.relative * range.size()})) {
            const double middle = 0.5 * range.low + 0.5 * range.high;
            if (middle <= range.low || middle >= range.high) break;
            (whole.count(middle) > index ? range.high : range.low) = middle;
        }
        return range;
    }
    /// The eigenvalues of one block that are in (range.low, range.high], or all of them.
    void add_block(i64 start, i64 count, bool all, const Range& range) {
        const SturmMatrix block{count, whole.d + start, whole.e2 + start, whole.pivmin};
        Range own = gershgorin(block);
        EigenvalueInterval interval{own.low, own.high, 0, count - 1};
        if (!all) {
            interval.low = std::max(own.low, range.low);
            interval.high = std::min(own.high, range.high);
            if (interval.low >= interval.high) return;
            interval.first = block.count(interval.low);
            interval.last = block.count(interval.high) - 1;
        }
        i64 bad_here = 0;
        const i64 many = std::max(interval.last - interval.first + 1, i64{0});
        if (count == 1 && many == 1 && std::isfinite(block.d[0])) w[found] = block.d[0];
        else bad_here = bisect(block, interval, tolerance(own), space, w + found);
        std::fill(iblock + found, iblock + found + many, bad_here > 0 ? -blocks : blocks);
        found += many;
        bad += bad_here;
    }
    void add_blocks(bool all, const Range& range) {
        for (i64 start = 0; start < whole.n; start = isplit[blocks - 1]) {
            ++blocks;
            add_block(start, isplit[blocks - 1] - start, all, range);
        }
    }
    /// Takes the least, or the largest, of what has been found away.
    void drop(bool least) {
        i64 worst = 0;
        for (i64 i = 1; i < found; ++i)
            if (least ? w[i] < w[worst] : w[i] >= w[worst]) worst = i;
        std::copy(w + worst + 1, w + found, w + worst);
        std::copy(iblock + worst + 1, iblock + found, iblock + worst);
        --found;
    }
};

/// Where e is negligible beside its neighbours, T splits: isplit(k) is the last row of block k. e2: the squares, 0
/// there.
i64 split(i64 n, const double* d, const double* e, double scale, double* e2, i64* isplit) {
    i64 blocks = 0;
    for (i64 i = 0; i + 1 < n; ++i) {
        const double off = scale * e[i];
        e2[i] = off * off;
        if (!(std::fabs(d[i] * d[i + 1]) * ulp * ulp + safe_minimum > e2[i])) continue;
        isplit[blocks++] = i + 1;
        e2[i] = 0.0;
    }
    isplit[blocks++] = n;
    e2[n - 1] = 0.0;
    return blocks;
}

struct Selection {
    char range;
    double vl, vu;
    i64 il, iu;
};

/// Returns info.
i64 select(Bisection& bisection, const Selection& wanted) {
    const i64 n = bisection.whole.n;
    if (wanted.range == 'A' || (wanted.range == 'I' && wanted.il == 1 && wanted.iu == n))
        bisection.add_blocks(true, {});
    else if (wanted.range == 'V') bisection.add_blocks(false, {wanted.vl, wanted.vu});
    else {
        const Range all = gershgorin(bisection.whole);
        const double low = bisection.enclosure(wanted.il - 1, all).low;
        const double high = bisection.enclosure(wanted.iu - 1, all).high;
        const i64 too_low = wanted.il - 1 - bisection.whole.count(low);
        const i64 too_high = bisection.whole.count(high) - wanted.iu;
        if (too_low < 0 || too_high < 0) return 4;
        bisection.add_blocks(false, {low, high}); // equal eigenvalues at the ends come all or none
        for (i64 i = 0; i < too_low && bisection.found > 0; ++i) bisection.drop(true);
        for (i64 i = 0; i < too_high && bisection.found > 0; ++i) bisection.drop(false);
    }
    const bool too_few = wanted.range == 'I' && bisection.found != wanted.iu - wanted.il + 1;
    return (bisection.bad > 0 ? 1 : 0) + (too_few ? 2 : 0);
}

} // namespace

void nxl_lapack_dstebz(const char& range, const char& order, const i64& n, const double& vl, const double& vu,
                       const i64& il, const i64& iu, const double& abstol, const double* d, const double* e, i64& m,
                       i64& nsplit, double* w, i64* iblock, i64* isplit, double* work, i64*, i64& info, int, int) {
    Arguments arguments("DSTEBZ");
    arguments.letter(1, range, "AVI").letter(2, order, "BE").size(3, n).expect(5, range != 'V' || vl < vu);
    arguments.expect(6, range != 'I' || (il >= 1 && il <= std::max(n, i64{1})));
    arguments.expect(7, range != 'I' || (iu >= std::min(n, il) && iu <= n));
    if (arguments.refused(info)) return;
    m = nsplit = 0;
    if (n == 0) return;
    const Scratch<EigenvalueInterval> intervals(n);
    const Scratch<i64> counts(n);
    if (!intervals.data() || !counts.data()) return refuse_for_memory("DSTEBZ", info);
    double *const e2 = work, *const scaled = work + n;
    const double scale = block_scale(d, e, n);
    for (i64 i = 0; i < n; ++i) scaled[i] = scale * d[i];
    nsplit = split(n, scaled, e, scale, e2, isplit);
    const double largest = std::max(1.0, largest_abs1(n, e2));
    Bisection bisection{{n, scaled, e2, largest * safe_minimum},
                        {scale * abstol, 2.0 * ulp},
                        {intervals.data(), work + 2 * n, counts.data()},
                        w,
                        iblock,
                        isplit};
    info = select(bisection, {range, scale * vl, scale * vu, il, iu});
    m = bisection.found;
    for (i64 i = 0; i < m; ++i) w[i] /= scale;
    if (order == 'E') sort_ascending(m, w, [&](i64 i, i64 j) { std::swap(iblock[i], iblock[j]); });
}

} // namespace nxl
