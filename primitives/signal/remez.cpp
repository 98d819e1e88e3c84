// The exchange: Parks and McClellan, IEEE Trans. Circuit Theory 19 (1972). Each round levels the error on nfc + 1
// points of the grid, looks at it everywhere, and moves the points to its extrema; the level rises until none is above
// it.
#include "primitives/signal/remez.hpp"
#include "primitives/signal/interpolant.hpp"
#include "service/scratch.hpp"
#include <algorithm>
#include <cmath>
#include <limits>

namespace nxl {
namespace {

using signal::Interpolant;

constexpr int most_rounds = 25;
constexpr int most_unlevelled = 5; // rounds in a row without a level, each of which moves one point
constexpr double levelled = 1e-9;  // by what part the largest error is above that of the set when no more is to gain

struct Problem {
    i64 points;
    const double* desired;
    const double* frequency;
    const double* weight;
};

/// Extrema of the error in ascending order, alternating in sign, as they are met on the way through the grid: of
/// neighbours of one sign the larger one stays. Places, from 1, are whole numbers held as doubles.
class Alternation {
    double* const place_;
    double* const error_;
    const i64 capacity_;
    i64 count_ = 0;

    void drop(i64 first, i64 last) {
        std::copy(place_ + last, place_ + count_, place_ + first);
        std::copy(error_ + last, error_ + count_, error_ + first);
        count_ -= last - first;
    }
    bool continues(double error) const { return count_ > 0 && (error > 0.0) == (error_[count_ - 1] > 0.0); }
    bool less(i64 i, i64 j) const { return std::abs(error_[i]) < std::abs(error_[j]); }

    /// Gives up the smallest extremum, and inside also the smaller neighbour: the two beside it have one sign.
    void make_room() {
        i64 smallest = 0;
        for (i64 k = 1; k < count_; ++k)
            if (less(k, smallest)) smallest = k;
        if (smallest == 0 || smallest == count_ - 1) return drop(smallest, smallest + 1);
        const i64 first = less(smallest - 1, smallest + 1) ? smallest - 1 : smallest;
        drop(first, first + 2);
    }

  public:
    Alternation(double* place, double* error, i64 capacity) : place_(place), error_(error), capacity_(capacity) {}

    void clear() { count_ = 0; }
    void meet(i64 place, double error) {
        if (!(std::abs(error) > 0.0)) return; // NaN neither
        if (!continues(error) && count_ == capacity_) make_room();
        if (continues(error)) {
            if (std::abs(error) <= std::abs(error_[count_ - 1])) return;
            --count_;
        }
        place_[count_] = static_cast<double>(place);
        error_[count_++] = error;
    }
    void drop_smaller_end() {
        if (less(0, count_ - 1)) drop(0, 1);
        else --count_;
    }
    i64 count() const { return count_; }
    i64 place(i64 k) const { return static_cast<i64>(place_[k]); }
    double error(i64 k) const { return error_[k]; }
    i64 largest() const {
        i64 largest = 0;
        for (i64 k = 1; k < count_; ++k)
            if (less(largest, k)) largest = k;
        return largest;
    }
};

class Exchange {
    const Problem& problem_;
    Interpolant& fit_;
    i64* const set_; ///< places of the fit's nodes on the grid, from 1
    Alternation extrema_;
    double level_ = 0.0; ///< the weighted error at node k is level_ (-1)^k

    double error_at(i64 place) const {
        const double fitted = fit_(problem_.frequency[place - 1]);
        return problem_.weight[place - 1] * (problem_.desired[place - 1] - fitted);
    }
    bool replace_all();
    bool replace_one(i64 place, double error);

  public:
    Exchange(const Problem& problem, Interpolant& fit, i64* set, double* place, double* error)
        : problem_(problem),
          fit_(fit),
          set_(set),
          extrema_(place, error, fit.count + 1) {}

    i64 nodes() const { return fit_.count; }
    double level() const { return std::abs(level_); }
    void level_error();
    double measure();
    bool move();
};

/// The fit whose error on the set is of one size and alternating sign. The set's weights w annihilate every sum of
/// cosines: that of des -+ level / wt has to be 0. A level that rounding may have made is taken for 0.
void Exchange::level_error() {
    for (i64 k = 0; k < nodes(); ++k) fit_.set_node(k, problem_.frequency[set_[k] - 1]);
    fit_.compute_weights();
    double sum = 0.0, magnitude = 0.0, scale = 0.0;
    for (i64 k = 0; k < nodes(); ++k) {
        const double term = fit_.weight[k] * problem_.desired[set_[k] - 1];
        sum += term;
        magnitude += std::abs(term);
        scale += std::abs(fit_.weight[k]) / problem_.weight[set_[k] - 1];
    }
    const double rounding = static_cast<double>(nodes()) * std::numeric_limits<double>::epsilon() * magnitude;
    level_ = std::abs(sum) <= rounding ? 0.0 : sum / scale; // the first weight is positive
    for (i64 k = 0; k < nodes(); ++k) {
        const double error = (k % 2 == 0 ? level_ : -level_) / problem_.weight[set_[k] - 1];
        fit_.value[k] = problem_.desired[set_[k] - 1] - error;
    }
}

/// The largest error on the grid, and on the way all extrema.
double Exchange::measure() {
    extrema_.clear();
    for (i64 place = 1; place <= problem_.points; ++place) extrema_.meet(place, error_at(place));
    return extrema_.count() == 0 ? 0.0 : std::abs(extrema_.error(extrema_.largest()));
}

/// To the extrema that were measured. False when the set stays. Without a level the signs of the error on the set are
/// those of rounding, and so are the extrema, but for the largest.
bool Exchange::move() {
    if (extrema_.count() == 0) return false;
    const i64 largest = extrema_.largest();
    if (extrema_.count() < nodes() || level_ == 0.0)
        return replace_one(extrema_.place(largest), extrema_.error(largest));
    if (extrema_.count() > nodes()) extrema_.drop_smaller_end();
    return replace_all();
}

bool Exchange::replace_all() {
    bool moved = false;
    for (i64 k = 0; k < nodes(); ++k) {
        moved = moved || set_[k] != extrema_.place(k);
        set_[k] = extrema_.place(k);
    }
    return moved;
}

/// Takes one point in for a neighbour of its sign, or at an end for the point at the other end.
bool Exchange::replace_one(i64 place, double error) {
    const i64 behind = std::lower_bound(set_, set_ + nodes(), place) - set_; // points of the set before it
    if (behind < nodes() && set_[behind] == place) return false;
    const auto has_sign = [&](i64 k) { return ((k % 2 == 0) == (level_ >= 0.0)) == (error > 0.0); };
    if (behind == 0) {
        if (!has_sign(0)) std::copy_backward(set_, set_ + nodes() - 1, set_ + nodes());
        set_[0] = place;
    } else if (behind == nodes()) {
        if (!has_sign(nodes() - 1)) std::copy(set_ + 1, set_ + nodes(), set_);
        set_[nodes() - 1] = place;
    } else {
        set_[has_sign(behind) ? behind : behind - 1] = place;
    }
    return true;
}

bool is_usable(const i64* set, i64 nodes, i64 points) {
    for (i64 k = 0; k < nodes; ++k)
        if (set[k] <= (k == 0 ? 0 : set[k - 1]) || set[k] > points) return false;
    return true;
}

/// The caller's set, or an equally spaced one where the error's level on that is higher: the level is a lower bound of
/// the best fit's error, and a set far from its extrema has a low one.
void choose_start(Exchange& exchange, i64* set, double* saved, i64 points) {
    const i64 nodes = exchange.nodes();
    double level = -1.0;
    if (is_usable(set, nodes, points)) {
        exchange.level_error();
        level = exchange.level();
    }
    std::copy_n(set, nodes, saved);
    for (i64 k = 0; k < nodes; ++k) set[k] = 1 + k * (points - 1) / (nodes - 1);
    exchange.level_error();
    if (!(level >= exchange.level())) return;
    for (i64 k = 0; k < nodes; ++k) set[k] = static_cast<i64>(saved[k]);
    exchange.level_error();
}

/// Ends with the set of the least error, which it returns. Where an error somewhere is far above the level, the next
/// level may be higher by less than rounding shows, and the round after it by much.
double run(Exchange& exchange, i64* set, double* saved) {
    double least = 0.0;
    int unlevelled = 0;
    for (int round = 0; round < most_rounds; ++round) {
        const double level = exchange.level(), largest = exchange.measure();
        if (round == 0 || largest < least) {
            least = largest;
            std::copy_n(set, exchange.nodes(), saved);
        }
        unlevelled = level == 0.0 ? unlevelled + 1 : 0;
        if (unlevelled > most_unlevelled || !exchange.move()) break;
        exchange.level_error();
        if (!(exchange.level() > level) && largest <= level * (1.0 + levelled)) break;
    }
    for (i64 k = 0; k < exchange.nodes(); ++k) set[k] = static_cast<i64>(saved[k]);
    exchange.level_error();
    return least;
}

/// The coefficients of a fit of degree n - 1 from its values at the zeros of the cosine of n times the angle, where the
/// cosines are orthogonal. `sample`: n elements of work, `cosine`: n + 1.
void expand(const Interpolant& fit, i64 n, double* sample, double* cosine, double* alpha) {
    constexpr double pi = 3.14159265358979323846;
    const double size = static_cast<double>(n);
    for (i64 k = 0; k < n; ++k) sample[k] = fit((static_cast<double>(k) + 0.5) / (2.0 * size));
    for (i64 j = 0; j <= n; ++j) // cos(pi j / (2 n)), from the sine where that is the small one
        cosine[j] = 2 * j <= n ? std::cos(pi * static_cast<double>(j) / (2.0 * size))
                               : std::sin(pi * static_cast<double>(n - j) / (2.0 * size));
    for (i64 m = 0; m < n; ++m) {
        double sum = 0.0;
        i64 angle = m; // m (2 k + 1), in units of pi / (2 n), less whole turns of 4 n
        for (i64 k = 0; k < n; ++k) {
            const i64 half_turn = angle <= 2 * n ? angle : 4 * n - angle;
            sum += sample[k] * (half_turn <= n ? cosine[half_turn] : -cosine[2 * n - half_turn]);
            angle += 2 * m;
            if (angle >= 4 * n) angle -= 4 * n;
        }
        alpha[m] = (m == 0 ? 1.0 : 2.0) / size * sum;
    }
}

/// By Clenshaw's recurrence.
double sum_of_cosines(i64 terms, const double* alpha, double frequency) {
    const double twice = 2.0 * signal::cosine_of(frequency).high;
    double sum = 0.0, next = 0.0;
    for (i64 k = terms - 1; k > 0; --k) {
        const double last = next;
        next = sum;
        sum = alpha[k] + twice * next - last;
    }
    return alpha[0] + 0.5 * twice * sum - next;
}

/// Whether rounding has spoilt the result, so that fewer terms do better: the least error is next to nothing beside
/// des, or between the points of the grid the fit grows beyond what its coefficients can tell. `largest`: the error of
/// the fit on the grid, `level`: that which all extrema should have.
bool is_beyond_rounding(const Problem& problem, i64 terms, const double* alpha, double largest, double level) {
    double scale = 0.0, error = 0.0;
    for (i64 k = 0; k < problem.points; ++k) {
        const double sum = sum_of_cosines(terms, alpha, problem.frequency[k]);
        scale = std::max(scale, std::abs(problem.weight[k] * problem.desired[k]));
        error = std::max(error, std::abs(problem.weight[k] * (problem.desired[k] - sum)));
    }
    const double negligible = 1e-9 * scale; // the recurrence itself loses up to this much in thousands of terms
    return error > 2.0 * largest + negligible || (level < negligible && largest > 2.0 * level + 0.01 * negligible);
}

/// The caller's arrays, of nfc + 2 elements each.
struct Work {
    i64 nfc;
    i64* set;
    double *weight, *high, *low, *value, *first, *second, *alpha;
};

/// The best fit of `terms` terms from the set as it stands. False when rounding has spoilt it.
bool solve(const Problem& problem, const Work& work, i64 terms) {
    Interpolant fit{terms + 1, work.high, work.low, work.weight, work.value};
    Exchange exchange(problem, fit, work.set, work.first, work.second);
    choose_start(exchange, work.set, work.alpha, problem.points);
    const double largest = run(exchange, work.set, work.alpha);
    expand(fit, terms, work.first, work.second, work.alpha);
    std::fill(work.alpha + terms, work.alpha + work.nfc + 2, 0.0);
    std::fill(work.set + terms + 1, work.set + work.nfc + 2, problem.points + 1);
    return !is_beyond_rounding(problem, terms, work.alpha, largest, exchange.level());
}

/// A set of from + 1 extrema becomes one of to + 1 that lies as densely in each place. from < to < points.
void spread(i64* set, i64 from, i64 to, i64 points) {
    for (i64 k = to; k > 0; --k) { // downwards: what is read lies before what is written
        const i64 old = k * from / to, rest = k * from % to;
        set[k] = rest == 0 ? set[old] : set[old] + (set[old + 1] - set[old]) * rest / to;
    }
    for (i64 k = to; k >= 0; --k) set[k] = std::min(set[k], k == to ? points : set[k + 1] - 1);
    for (i64 k = 0; k <= to; ++k) set[k] = std::max(set[k], k == 0 ? 1 : set[k - 1] + 1);
}

} // namespace

void nxl_remez(const i64* ngr, const i64* nfc, i64* iext, double* ad, double* x, double* y, const double* des,
               const double* grid, const double* wt, double* a, double* p, double* q, double* alpha) {
    if (*nfc < 1) return;
    std::fill_n(alpha, *nfc + 2, 0.0);
    if (*ngr <= *nfc) return; // fewer points than an alternation has
    const Problem problem{*ngr, des, grid, wt};
    const Work work{*nfc, iext, ad, x, p, y, a, q, alpha};
    i64 terms = *nfc;
    bool good = solve(problem, work, terms);
    while (!good && terms > 1) good = solve(problem, work, terms = terms * 3 / 4);
    if (!good || terms == *nfc) return;

    // Equal spacing may have been too bad a start, but the extrema of fewer terms show where those of more are dense.
    const Scratch<i64> last_good(*nfc + 1);
    while (last_good.data() && terms < *nfc) {
        std::copy_n(iext, terms + 1, last_good.data());
        const i64 more = std::min(*nfc, terms * 4 / 3 + 1);
        spread(iext, terms, more, *ngr);
        if (!solve(problem, work, more)) break;
        terms = more;
    }
    if (!last_good.data() || terms == *nfc) return;
    std::copy_n(last_good.data(), terms + 1, iext);
    solve(problem, work, terms);
}

} // namespace nxl
