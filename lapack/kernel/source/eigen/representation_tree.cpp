// Eigenvalues that differ in their leading digits have vectors of their own; others form a cluster, which gets a
// representation of its own, shifted to one end of it, where they do differ. Dhillon, Parlett and Voemel, ACM TOMS 32
// (2006); for glued matrices, BIT 45 (2005).
#include "lapack/kernel/source/eigen/representation_tree.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/common/share_work.hpp"
#include "lapack/kernel/source/eigen/representation.hpp"
#include "service/scratch.hpp"
#include <atomic>

namespace nxl {
namespace {

constexpr double roundoff = 2.0 * unit_roundoff, infinity = std::numeric_limits<double>::infinity();

/// What eigenvalues of one size have to differ by, relative to it, for their vectors to be told apart: the more the
/// better these are. In large matrices most neighbours differ by less than would be best.
double least_gap(i64 n) { return std::clamp(0.3 / static_cast<double>(n), 1e-3, 1e-2); }

constexpr i64 at_once = 8; // counts that take hardly longer than one

/// Numbers in [-1, 1) that look random, others for each attempt.
class Noise {
    std::uint64_t state_;

  public:
    explicit Noise(int attempt) : state_(0x9e3779b97f4a7c15 * static_cast<std::uint64_t>(attempt + 1)) {}
    double next() {
        state_ = state_ * 6364136223846793005 + 1442695040888963407;
        return static_cast<double>(static_cast<std::int64_t>(state_)) * 0x1p-63;
    }
};

/// Eigenvalues first .. last, and how far away those before and behind them are.
struct Cluster {
    i64 first, last;
    double gap_before, gap_behind;

    i64 count() const { return last - first + 1; }
};

class Tree {
    const KnownTridiagonal& t_;
    const PairPlaces& places_;
    const double diameter_;     // of the spectrum
    ValueBounds* const bounds_; // in the representation that an eigenvalue has come to
    double* const probes_;      // n each, of which a group uses what it has numbers of
    i64 *const counts_, *const open_;
    mutable std::atomic<TreeResult> result_{TreeResult::done};

    void report(TreeResult trouble) const { result_.store(trouble, std::memory_order_relaxed); }
    bool in_trouble() const { return result() != TreeResult::done; }

  public:
    Tree(const KnownTridiagonal& t, const PairPlaces& places, ValueBounds* bounds, double* probes, i64* integers)
        : t_(t),
          places_(places),
          diameter_(t.values[t.n - 1] - t.values[0]),
          bounds_(bounds),
          probes_(probes),
          counts_(integers),
          open_(integers + t.n) {}

    /// The definite one beyond the end at which more eigenvalues are; shaken by a few roundoffs, lest some agree in all
    /// digits. Returns its shift.
    double make_root(const Representation& root, int attempt) const {
        const double low = t_.values[0], high = t_.values[t_.n - 1], quarter = 0.25 * diameter_;
        i64 at_low = 0, at_high = 0;
        for (i64 i = 0; i < t_.n; ++i) {
            at_low += t_.values[i] <= low + quarter ? 1 : 0;
            at_high += t_.values[i] >= high - quarter ? 1 : 0;
        }
        const double sign = at_low >= at_high ? 1.0 : -1.0;
        const auto size = static_cast<double>(t_.n);
        double distance = 4.0 * roundoff * (size * diameter_ + std::max(std::fabs(low), std::fabs(high)));
        double shift = 0.0;
        for (bool definite = false; !definite; distance *= 2.0) {
            shift = sign > 0.0 ? low - distance : high + distance;
            definite = true;
            for (i64 i = 0; i < t_.n && definite; ++i) {
                const double pivot = t_.d[i] - shift - (i > 0 ? root.l[i - 1] * t_.e[i - 1] : 0.0);
                definite = sign * pivot > 0.0;
                root.d[i] = pivot;
                if (i + 1 < t_.n) root.l[i] = t_.e[i] / pivot;
            }
        }
        Noise noise(attempt);
        for (i64 i = 0; i < t_.n; ++i) root.d[i] *= 1.0 + 4.0 * roundoff * noise.next();
        for (i64 i = 0; i + 1 < t_.n; ++i) root.l[i] *= 1.0 + 4.0 * roundoff * noise.next();
        root.complete();
        return shift;
    }

    void set_bounds(double shift) const {
        for (i64 i = 0; i < t_.n; ++i) bounds_[i] = around(t_.values[i] - shift, 16.0 * roundoff * diameter_);
    }
    static ValueBounds around(double value, double distance) { return {value - distance, value + distance}; }

    /// Bounds that do hold their eigenvalue, and differ by at most `digits` of its size, or of how far the next one is.
    void refine(const Representation& r, const Cluster& c, double digits) const {
        enclose(r, c, true);
        enclose(r, c, false);
        narrow(r, c, [&](i64 i) {
            const double before = i == c.first ? c.gap_before : bounds_[i].low - bounds_[i - 1].high;
            const double behind = i == c.last ? c.gap_behind : bounds_[i + 1].low - bounds_[i].high;
            return digits * std::max(size_of(bounds_[i]), std::min(before, behind));
        });
    }
    /// Halves bounds of the cluster until those of eigenvalue i are at most width(i) apart; few are cut into more
    /// parts.
    template <class Width> void narrow(const Representation& r, const Cluster& c, const Width& width) const {
        constexpr int most_rounds = 200;
        double* const probes = probes_ + c.first;
        i64 *const counts = counts_ + c.first, *const open = open_ + c.first;
        for (int round = 0; round < most_rounds; ++round) {
            i64 many = 0;
            for (i64 i = c.first; i <= c.last; ++i) {
                const auto [low, high] = bounds_[i];
                const double middle = bounds_[i].middle();
                if (high - low <= width(i) || !(middle > low && middle < high)) continue;
                probes[many] = middle;
                open[many++] = i;
            }
            if (many == 0) return;
            if (many <= at_once / 2) {
                cut(r, many, open);
                continue;
            }
            r.count(many, probes, counts);
            for (i64 k = 0; k < many; ++k)
                (counts[k] > open[k] ? bounds_[open[k]].high : bounds_[open[k]].low) = probes[k];
        }
    }
    /// Cuts the bounds of few eigenvalues into as many parts as are counted at once.
    void cut(const Representation& r, i64 many, const i64* open) const {
        const i64 points = at_once / many;
        double probes[at_once];
        i64 counts[at_once];
        for (i64 k = 0; k < many; ++k) {
            const auto [low, high] = bounds_[open[k]];
            const double part = (high - low) / static_cast<double>(points + 1);
            for (i64 q = 0; q < points; ++q) probes[k * points + q] = low + static_cast<double>(q + 1) * part;
        }
        r.count(many * points, probes, counts);
        for (i64 k = 0; k < many; ++k) {
            ValueBounds& bounds = bounds_[open[k]];
            i64 q = 0;
            for (; q < points && counts[k * points + q] <= open[k]; ++q) bounds.low = probes[k * points + q];
            if (q < points) bounds.high = probes[k * points + q];
        }
    }
    /// Moves lower, or upper, ends out until they are on the right side of their eigenvalues.
    void enclose(const Representation& r, const Cluster& c, bool lower) const {
        constexpr int most_rounds = 80;
        double* const probes = probes_ + c.first;
        i64 *const counts = counts_ + c.first, *const open = open_ + c.first;
        i64 many = c.count();
        for (i64 k = 0; k < many; ++k) open[k] = c.first + k;
        for (int round = 0; round < most_rounds && many > 0; ++round) {
            for (i64 k = 0; k < many; ++k) probes[k] = lower ? bounds_[open[k]].low : bounds_[open[k]].high;
            r.count(many, probes, counts);
            i64 wrong = 0;
            for (i64 k = 0; k < many; ++k) {
                if (lower ? counts[k] <= open[k] : counts[k] > open[k]) continue;
                auto& [low, high] = bounds_[open[k]];
                const double step = 2.0 * (high - low) + 4.0 * roundoff * size_of(bounds_[open[k]]);
                (lower ? low : high) += lower ? -step : step;
                open[wrong++] = open[k];
            }
            many = wrong;
        }
    }
    static double size_of(const ValueBounds& bounds) { return std::max(std::fabs(bounds.low), std::fabs(bounds.high)); }

    /// Returns how many groups there are.
    i64 find_groups(const Cluster& c, Cluster* groups) const {
        i64 count = 0, start = c.first;
        double before = c.gap_before;
        for (i64 i = c.first; i <= c.last; ++i) {
            const double behind = i == c.last ? c.gap_behind : bounds_[i + 1].low - bounds_[i].high;
            if (i < c.last && !(behind >= least_gap(t_.n) * size_of(bounds_[i]))) continue;
            groups[count++] = {start, i, before, behind};
            before = behind;
            start = i + 1;
        }
        return count;
    }

    /// All pairs of a cluster, by r, which is the matrix less `shift`.
    void resolve(const Representation& r, const Cluster& c, double shift, int depth) const {
        constexpr double digits = 1e-6; // enough for groups, and for quotients to converge at once
        refine(r, c, digits);
        const Scratch<Cluster> groups(c.count());
        if (!groups.data()) return report(TreeResult::no_memory);
        const i64 count = find_groups(c, groups.data());
        const i64 threads = region_would_be_serial() ? 1 : max_threads(domain_all);
        const i64 large = threads < 2 ? t_.n + 1 : std::max(c.count() / (4 * threads), i64{16});
        for (i64 k = 0; k < count; ++k) // all threads share their work
            if (groups.data()[k].count() >= large) descend(r, groups.data()[k], shift, depth);
        constexpr double operations = 100.0; // for each element of a vector
        const i64 parts = static_cast<double>(count * r.n) * operations < 2e5 ? 1 : std::min(threads, count);
        const Scratch<double> space(parts * TwistedVectors::room(r.n));
        if (!space.data()) return report(TreeResult::no_memory);
        parallel_blocks(static_cast<int>(parts), static_cast<int>(parts), [&](int part) {
            const TwistedVectors vectors(r.n, space.data() + part * TwistedVectors::room(r.n));
            for (i64 k = part; k < count && !in_trouble(); k += parts) {
                const Cluster& group = groups.data()[k];
                if (group.count() == 1) find_vector(r, group, shift, vectors);
                else if (group.count() < large) descend(r, group, shift, depth);
            }
        });
    }

    void find_vector(const Representation& r, const Cluster& alone, double shift, const TwistedVectors& vectors) const {
        const i64 j = alone.first;
        RepresentedVector found;
        if (!vectors.find(r, j, bounds_[j], std::min(alone.gap_before, alone.gap_behind), found))
            return report(TreeResult::not_robust);
        places_.w[j] = found.value + shift;
        double* const column = places_.z + j * places_.ld;
        for (i64 i = found.first; i <= found.last; ++i) column[i * places_.step] = found.scale * vectors.x()[i];
        places_.support[2 * j] = places_.row + found.first;
        places_.support[2 * j + 1] = places_.row + found.last;
    }

    /// The pairs of a cluster by a representation of its own.
    void descend(const Representation& r, const Cluster& c, double shift, int depth) const {
        constexpr int deepest = 24;
        if (in_trouble()) return;
        if (depth == deepest) return report(TreeResult::not_robust);
        for (const i64 end : {c.first, c.last}) // the shift has to be close by what the cluster is wide
            narrow(r, {end, end, 0.0, 0.0}, [&](i64 i) {
                const double width = bounds_[c.last].low - bounds_[c.first].high;
                return std::max(4.0 * roundoff * size_of(bounds_[i]), 1e-2 * width);
            });
        const Scratch<double> space(2 * Representation::room(r.n) + r.n), vectors(TwistedVectors::room(r.n));
        if (!space.data() || !vectors.data()) return report(TreeResult::no_memory);
        const Representation child(r.n, space.data()), other(r.n, space.data() + Representation::room(r.n));
        double* const envelope = other.d + Representation::room(r.n);
        std::fill(envelope, envelope + r.n, 0.0);
        for (const i64 end : {c.first, c.last})
            TwistedVectors(r.n, vectors.data()).add_to_envelope(r, bounds_[end].middle(), envelope);
        double by = 0.0;
        if (!shift_to_end(r, c, envelope, child, other, by)) return report(TreeResult::not_robust);
        for (i64 i = c.first; i <= c.last; ++i) {
            const double slack = 4.0 * roundoff * size_of(bounds_[i]);
            bounds_[i] = {bounds_[i].low - by - slack, bounds_[i].high - by + slack};
        }
        child.complete();
        resolve(child, c, shift + by, depth + 1);
    }
    /// child := r less `by`, a number just beyond one end of the cluster, further away while pivots grow too much where
    /// its vectors, below the envelope, are not small.
    bool shift_to_end(const Representation& r, const Cluster& c, const double* envelope, const Representation& child,
                      const Representation& other, double& by) const {
        constexpr int tries = 6;
        constexpr double good = 8.0, bearable = 64.0; // growth, relative to the diameter
        const double low = bounds_[c.first].low, high = bounds_[c.last].high;
        double step_low = 4.0 * roundoff * std::fabs(low), step_high = 4.0 * roundoff * std::fabs(high);
        const double mean_gap = (high - low) / static_cast<double>(c.count());
        double best = infinity;
        for (int i = 0; i < tries; ++i) {
            for (const double shift : {low - step_low, high + step_high}) {
                const double growth = r.shift_to(shift, envelope, other);
                if (!(growth < best)) continue;
                best = growth;
                by = shift;
                std::copy(other.d, other.d + r.n, child.d);
                std::copy(other.l, other.l + r.n - 1, child.l);
            }
            if (best <= good * diameter_) return true;
            step_low = std::min(std::max(2.0 * step_low, 0.25 * mean_gap), 0.25 * c.gap_before);
            step_high = std::min(std::max(2.0 * step_high, 0.25 * mean_gap), 0.25 * c.gap_behind);
        }
        return best <= bearable * diameter_;
    }

    /// Vectors of an attempt before may have been longer.
    void clear() const {
        for (i64 j = 0; j < t_.n; ++j)
            for (i64 i = 0; i < t_.n; ++i) places_.z[i * places_.step + j * places_.ld] = 0.0;
    }

    TreeResult result() const { return result_.load(std::memory_order_relaxed); }
};

} // namespace

TreeResult find_pairs_by_representations(const KnownTridiagonal& t, const PairPlaces& places) {
    const i64 n = t.n;
    const Scratch<double> space(Representation::room(n) + n);
    const Scratch<ValueBounds> bounds(n);
    const Scratch<i64> integers(2 * n);
    if (!space.data() || !bounds.data() || !integers.data()) return TreeResult::no_memory;
    const Representation root(n, space.data());
    constexpr int attempts = 3; // of a large matrix now and then some representation is poor, which other noise mends
    TreeResult result = TreeResult::not_robust;
    for (int attempt = 0; attempt < attempts && result == TreeResult::not_robust; ++attempt) {
        const Tree tree(t, places, bounds.data(), space.data() + Representation::room(n), integers.data());
        if (attempt > 0) tree.clear();
        const double shift = tree.make_root(root, attempt);
        tree.set_bounds(shift);
        tree.resolve(root, {0, n - 1, infinity, infinity}, shift, 0);
        result = tree.result();
    }
    return result;
}

} // namespace nxl
