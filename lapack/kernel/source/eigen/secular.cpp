// Interpolation by poles: those at the ends of a root's interval stand with their own weights, and the next one on
// either side stands for all beyond it. After Li, Solving secular equations stably and efficiently, LAPACK Working Note
// 89 (1994), whose middle way does so with the ends alone, and here solves the interpolating equation.
#include "lapack/kernel/source/eigen/secular.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <algorithm>

namespace nxl {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Part {
    double value = 0.0, slope = 0.0;
};

Part term(double gap, double weight) {
    const double value = weight / gap;
    return {value, value / gap};
}

Part operator+(const Part& a, const Part& b) { return {a.value + b.value, a.slope + b.slope}; }

/// The terms of `count` poles, which are gaps[i] - x away.
Part sum_of(i64 count, const double* gaps, const double* weights, double x) {
    constexpr int lanes = 4;
    double values[lanes]{}, slopes[lanes]{};
    i64 i = 0;
    for (; i + lanes <= count; i += lanes)
        for (int lane = 0; lane < lanes; ++lane) {
            const double reciprocal = 1.0 / (gaps[i + lane] - x), value = weights[i + lane] * reciprocal;
            values[lane] += value;
            slopes[lane] += value * reciprocal;
        }
    Part sum{(values[0] + values[1]) + (values[2] + values[3]), (slopes[0] + slopes[1]) + (slopes[2] + slopes[3])};
    for (; i < count; ++i) sum = sum + term(gaps[i] - x, weights[i]);
    return sum;
}

/// Where a root is known to be.
struct Bracket {
    double low, high;

    bool holds(double x) const { return x > low && x < high; }
    void narrow(double x, double f) { (f < 0.0 ? low : high) = x; }
    /// By magnitude where the ends are of different ones.
    double middle() const {
        const double ratio = low / high;
        if (ratio > 0.25 && ratio < 4.0) return 0.5 * (low + high);
        return ratio > 0.0 ? std::copysign(std::sqrt(std::fabs(low)) * std::sqrt(std::fabs(high)), low)
                           : 0.5 * (low + high);
    }
};

/// A pole that is not there.
constexpr double no_pole = infinity;

/// constant + the terms of four poles: beyond the interval, its two ends, beyond it.
struct Interpolant {
    double constant, gaps[4], weights[4];

    /// From x, how far it is to the root of c + s / (left - t) + r / (right - t), which agrees with the value, and with
    /// the slopes of the terms on either side.
    static double step(double value, double left, double left_slope, double right, double right_slope) {
        if (right == no_pole) return left * value / (value - left * left_slope);
        const double c = value - left * left_slope - right * right_slope, b = left * right * value;
        const double a = (left + right) * value - left * right * (left_slope + right_slope);
        const double root = std::sqrt(std::max(a * a - 4.0 * b * c, 0.0));
        return a <= 0.0 ? (a - root) / (2.0 * c) : 2.0 * b / (a + root);
    }
    double root(double x, Bracket bracket) const {
        constexpr int most_steps = 40;
        constexpr double enough = 1e-9; // of a step that the next one would square
        for (int i = 0; i < most_steps; ++i) {
            Part terms[4];
            for (int k = 0; k < 4; ++k) terms[k] = term(gaps[k] - x, weights[k]);
            const Part left = terms[0] + terms[1], right = terms[2] + terms[3];
            const double value = constant + left.value + right.value;
            bracket.narrow(x, value);
            const double before = x;
            x += step(value, gaps[1] - x, left.slope, gaps[2] - x, right.slope);
            if (!bracket.holds(x)) x = bracket.middle();
            if (std::fabs(x - before) <= enough * std::fabs(x)) break;
        }
        return x;
    }
};

/// The search for root j. gaps: the poles, counted from one of them.
class RootSearch {
    const SecularEquation& f_;
    const i64 j_;
    double* const gaps_;
    Part left_, right_; // all poles before and behind the ends of the interval
    double value_ = 0.0, size_ = 0.0;

    bool has_end() const { return j_ + 1 < f_.n; }
    Part end_term(i64 i, double x) const { return i < f_.n ? term(gaps_[i] - x, f_.weights[i]) : Part{}; }

  public:
    RootSearch(const SecularEquation& f, i64 j, double* gaps) : f_(f), j_(j), gaps_(gaps) {}

    void count_from(i64 origin) const {
        const double* const d = f_.d;
        const double from = d[origin];
        if (f_.poles == SecularEquation::Poles::plain)
            for (i64 i = 0; i < f_.n; ++i) gaps_[i] = d[i] - from;
        else
            for (i64 i = 0; i < f_.n; ++i) gaps_[i] = (d[i] - from) * (d[i] + from);
    }
    double value() const { return value_; }
    /// As small as so many roundings of the terms.
    bool is_zero(double roundings) const { return !(std::fabs(value_) > roundings * unit_roundoff * size_); }

    void evaluate(double x) {
        const i64 behind = std::min(j_ + 2, f_.n);
        left_ = sum_of(j_, gaps_, f_.weights, x);
        right_ = sum_of(f_.n - behind, gaps_ + behind, f_.weights + behind, x);
        const double left = left_.value + end_term(j_, x).value, right = right_.value + end_term(j_ + 1, x).value;
        const double constant = 1.0 / f_.rho;
        value_ = constant + left + right;
        size_ = constant - left + right;
    }
    /// As it is seen from x, where it has been evaluated.
    Interpolant interpolant(double x) const {
        Interpolant p{1.0 / f_.rho, {no_pole, gaps_[j_], no_pole, no_pole}, {0.0, f_.weights[j_], 0.0, 0.0}};
        const auto stand_for = [&](int which, i64 pole, const Part& terms) {
            const double gap = gaps_[pole] - x;
            p.gaps[which] = gaps_[pole];
            p.weights[which] = gap * gap * terms.slope;
            p.constant += terms.value - gap * terms.slope;
        };
        if (j_ > 0) stand_for(0, j_ - 1, left_);
        if (has_end()) {
            p.gaps[2] = gaps_[j_ + 1];
            p.weights[2] = f_.weights[j_ + 1];
        }
        if (j_ + 2 < f_.n) stand_for(3, j_ + 2, right_);
        return p;
    }
};

struct Offset {
    i64 origin; // the pole that is closest
    double x;
};

Offset find(const SecularEquation& f, i64 j, double* gaps) {
    constexpr int most_steps = 60;
    constexpr double wanted = 4.0, reached_by_all = 64.0; // roundings: sums of many terms stop somewhere between
    RootSearch search(f, j, gaps);
    search.count_from(j);
    double width = 0.0;
    if (j + 1 < f.n) width = gaps[j + 1];
    else
        for (i64 i = 0; i < f.n; ++i) width += 2.0 * f.rho * f.weights[i]; // half of it is enough
    Offset root{j, 0.5 * width};
    Bracket bracket{0.0, width};
    search.evaluate(root.x);
    if (j + 1 < f.n && search.value() < 0.0) {
        root = {j + 1, -0.5 * width};
        bracket = {-width, 0.0};
        search.count_from(j + 1);
    }
    for (int i = 0; i < most_steps && !search.is_zero(wanted); ++i) {
        const double x_before = root.x, before = search.value();
        bracket.narrow(root.x, before);
        root.x = search.interpolant(root.x).root(root.x, bracket);
        if (root.x == x_before) break;
        search.evaluate(root.x);
        if (std::fabs(search.value()) > 0.5 * std::fabs(before) && search.is_zero(reached_by_all)) break;
    }
    return root;
}

} // namespace

double SecularEquation::root(i64 j, double* distances, double* sums) const {
    const Offset found = find(*this, j, distances);
    const double from = d[found.origin];
    if (poles == Poles::plain) {
        for (i64 i = 0; i < n; ++i) distances[i] -= found.x;
        return from + found.x;
    }
    const double x = found.x / (from + std::sqrt(from * from + found.x));
    for (i64 i = 0; i < n; ++i) {
        distances[i] = (d[i] - from) - x;
        sums[i] = (d[i] + from) + x;
    }
    return from + x;
}

void SecularEquation::weights_of_roots(i64 start, i64 end, const Matrix<const double>& distances,
                                       const Matrix<const double>& sums, double* found) const {
    std::fill(found + start, found + end, 1.0 / rho);
    for (i64 j = 0; j < n; ++j) {
        const double *const distance = distances.at(0, j), pole = d[j];
        const auto multiply = [&](i64 first, i64 last) {
            for (i64 i = first; i < last; ++i) found[i] *= distance[i] / (d[i] - pole);
            if (poles == Poles::plain) return;
            const double* const sum = sums.at(0, j);
            for (i64 i = first; i < last; ++i) found[i] *= sum[i] / (d[i] + pole);
        };
        multiply(start, std::clamp(j, start, end));
        multiply(std::clamp(j + 1, start, end), end);
        if (j < start || j >= end) continue;
        found[j] *= -distance[j];
        if (poles == Poles::squared) found[j] *= sums(j, j);
    }
}

} // namespace nxl
