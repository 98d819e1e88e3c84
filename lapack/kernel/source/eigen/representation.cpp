// Differential qd transforms and twisted factorisations: Dhillon and Parlett, Linear Algebra Appl. 387 (2004), and SIAM
// J. Matrix Anal. Appl. 25 (2004).
#include "lapack/kernel/source/eigen/representation.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/common/share_work.hpp"

namespace nxl {
namespace {

/// A pivot is at least that large. It is far below what a pivot of a matrix of norm 1 is uncertain by, and products of
/// some of its reciprocals stay in the range.
constexpr double least_pivot = 1e-100;

double guarded(double pivot) { return std::fabs(pivot) < least_pivot ? -least_pivot : pivot; }

/// The pivots of L D L^T - x of which the negative ones are counted, for some x at once.
template <int Lanes> void count_negative(const Representation& r, const double* shifts, i64* counts) {
    double s[Lanes], below[Lanes];
    for (int v = 0; v < Lanes; ++v) {
        s[v] = -shifts[v];
        below[v] = 0.0;
    }
    for (i64 i = 0; i < r.n; ++i) {
        const double d = r.d[i], lld = i + 1 < r.n ? r.lld[i] : 0.0;
        for (int v = 0; v < Lanes; ++v) {
            const double pivot = guarded(d + s[v]);
            below[v] += pivot < 0.0 ? 1.0 : 0.0;
            s[v] = s[v] / pivot * lld - shifts[v];
        }
    }
    for (int v = 0; v < Lanes; ++v) counts[v] = static_cast<i64>(below[v]);
}

} // namespace

void Representation::complete() const {
    for (i64 i = 0; i + 1 < n; ++i) {
        ld[i] = l[i] * d[i];
        lld[i] = l[i] * ld[i];
    }
}

void Representation::count(i64 many, const double* shifts, i64* counts) const {
    constexpr i64 lanes = 8;
    share_work(many, lanes, static_cast<double>(n), [&](i64 start, i64 end) {
        for (; start + lanes <= end; start += lanes) count_negative<lanes>(*this, shifts + start, counts + start);
        for (; start < end; ++start) count_negative<1>(*this, shifts + start, counts + start);
    });
}

double Representation::shift_to(double shift, const double* weights, const Representation& to) const {
    double s = -shift, largest = 0.0;
    for (i64 i = 0; i < n; ++i) {
        to.d[i] = guarded(d[i] + s);
        if (const double size = std::fabs(to.d[i]) * weights[i]; !(size <= largest)) largest = size;
        if (i + 1 == n) break;
        to.l[i] = ld[i] / to.d[i];
        s = s * to.l[i] * l[i] - shift;
    }
    return std::isfinite(largest) ? largest : std::numeric_limits<double>::infinity();
}

TwistedVectors::TwistedVectors(i64 order, double* space) {
    for (double** part : {&lower_, &upper_, &from_top_, &from_bottom_, &top_pivots_, &bottom_pivots_, &x_}) {
        *part = space;
        space += order;
    }
}

/// From both ends at once, since each is a chain of divisions. The twist is where they meet best.
TwistedVectors::Twist TwistedVectors::factor(const Representation& of, double value) const {
    const i64 n = of.n;
    double s = 0.0, p = of.d[n - 1] - value;
    from_top_[0] = s;
    from_bottom_[n - 1] = p;
    for (i64 i = 0, k = n - 2; i + 1 < n; ++i, --k) {
        const double top = guarded(of.d[i] + (s - value)), bottom = guarded(of.lld[k] + p);
        const double lower = of.ld[i] / top, ratio = of.d[k] / bottom;
        top_pivots_[i] = top;
        bottom_pivots_[k + 1] = bottom;
        lower_[i] = lower;
        upper_[k] = of.l[k] * ratio;
        from_top_[i + 1] = s = (s - value) * lower * of.l[i];
        from_bottom_[k] = p = p * ratio - value;
    }
    Twist best{0, 0, from_top_[0] + from_bottom_[0]};
    for (i64 i = 1; i < n; ++i)
        if (const double gamma = from_top_[i] + from_bottom_[i]; std::fabs(gamma) <= std::fabs(best.gamma))
            best = {i, 0, gamma};
    for (i64 i = 0; i < best.at; ++i) best.below += top_pivots_[i] < 0.0 ? 1 : 0;
    for (i64 i = best.at + 1; i < n; ++i) best.below += bottom_pivots_[i] < 0.0 ? 1 : 0;
    best.below += best.gamma < 0.0 ? 1 : 0;
    return best;
}

RepresentedVector TwistedVectors::solve(const Representation& of, const Twist& twist, double negligible,
                                        double& square) const {
    RepresentedVector result{0.0, 1.0, 0, of.n - 1};
    x_[twist.at] = 1.0;
    square = 1.0;
    for (i64 i = twist.at - 1; i >= 0; --i) {
        x_[i] = -lower_[i] * x_[i + 1];
        if ((std::fabs(x_[i]) + std::fabs(x_[i + 1])) * std::fabs(of.ld[i]) < negligible) {
            result.first = i + 1;
            break;
        }
        square += x_[i] * x_[i];
    }
    for (i64 i = twist.at; i + 1 < of.n; ++i) {
        x_[i + 1] = -upper_[i] * x_[i];
        if ((std::fabs(x_[i]) + std::fabs(x_[i + 1])) * std::fabs(of.ld[i]) < negligible) {
            result.last = i;
            break;
        }
        square += x_[i + 1] * x_[i + 1];
    }
    return result;
}

bool TwistedVectors::find(const Representation& of, i64 number, ValueBounds bounds, double gap,
                          RepresentedVector& found) const {
    constexpr int most_steps = 40;
    constexpr double roundoff = 2.0 * unit_roundoff;
    bool good = false;
    const double tolerance = 4.0 * std::log(static_cast<double>(of.n) + 2.0) * roundoff * gap;
    double value = bounds.middle();
    for (int step = 0; step < most_steps && !good; ++step) {
        const Twist twist = factor(of, value);
        double square = 0.0;
        found = solve(of, twist, tolerance, square);
        const double residual = std::fabs(twist.gamma) / std::sqrt(square);
        const double correction = twist.gamma / square; // to the Rayleigh quotient
        (twist.below > number ? bounds.high : bounds.low) = value;
        found.value = value + correction;
        found.scale = 1.0 / std::sqrt(square);
        good = residual <= tolerance || std::fabs(correction) <= roundoff * std::fabs(value);
        const bool inside = found.value > bounds.low && found.value < bounds.high;
        const double next = inside ? found.value : bounds.middle();
        good = good || next == value;
        value = next;
    }
    return good;
}

void TwistedVectors::add_to_envelope(const Representation& of, double value, double* envelope) const {
    double square = 0.0;
    solve(of, factor(of, value), 0.0, square);
    for (i64 i = 0; i < of.n; ++i) envelope[i] = std::max(envelope[i], std::fabs(x_[i]) / std::sqrt(square));
}

} // namespace nxl
