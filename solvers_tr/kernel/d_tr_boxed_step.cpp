// Each pass takes a step along the projected gradient, which promises a Cauchy decrease, and a projected Newton step on
// the face that it finds: Moré and Toraldo, SIAM J. Optim. 1 (1991). With the free variables of Bertsekas, SIAM J.
// Control Optim. 20 (1982), every Newton step descends.
#include "solvers_tr/kernel/d_tr_boxed_step.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/potrs.hpp"
#include "lapack/kernel/source/cholesky/xpotrf_omp.hpp"
#include <algorithm>
#include <cmath>
#include <limits>

namespace nxl::tr {
namespace {

constexpr double realised_part = 0.01; // of the slope's promise, which a search asks of a move
constexpr int most_halvings = 50;
constexpr double first_shift = 1e-15; // on a diagonal of at most 1: about the rounding of a Cholesky factorisation
constexpr double last_shift = 1e16;
constexpr double least_gain = 1e-14; // a pass that lowers q by less than this part of it was the last

class BoxedStep {
    const BoxedModel& model_;
    const BoxedWork& work_;
    double* const z_;
    double value_ = 0.0; // q(z)

    double dot(const double* x, const double* y) const { return nxl::dot(model_.n, x, 1, y, 1); }

    /// curve = H v
    void multiply(const double* v) const {
        gemv('N', model_.n, model_.n, 1.0, model_.hessian, model_.n, v, 1, 0.0, work_.curve, 1);
    }

    /// On a bound, and q does not fall on its inner side.
    bool is_held(i64 j) const {
        return (z_[j] <= model_.lower[j] && work_.slope[j] >= 0.0) ||
               (z_[j] >= model_.upper[j] && work_.slope[j] <= 0.0);
    }

    i64 collect_free() const;
    bool factor(i64 count, double shift) const;
    void search(double t);

  public:
    BoxedStep(const BoxedModel& model, const BoxedWork& work, double* z) : model_(model), work_(work), z_(z) {
        std::fill_n(z_, model_.n, 0.0);
        std::copy_n(model_.gradient, model_.n, work_.slope);
    }

    double value() const { return value_; }

    /// The largest component of z - P(z - slope), where P moves a point into the box; 0 at a first-order point.
    double projected_gradient() const;

    void gradient_step();
    void newton_step();
};

double BoxedStep::projected_gradient() const {
    double largest = 0.0;
    for (i64 j = 0; j < model_.n; ++j) {
        const double moved = inside(z_[j] - work_.slope[j], model_.lower[j], model_.upper[j]);
        largest = std::max(largest, std::fabs(z_[j] - moved));
    }
    return largest;
}

i64 BoxedStep::collect_free() const {
    i64 count = 0;
    for (i64 j = 0; j < model_.n; ++j)
        if (!is_held(j)) work_.free[count++] = j;
    return count;
}

/// z := P(z + t direction) with the first t of t, t/2, t/4, ... for which
///     q(new z) <= q(z) + realised_part slope.(new z - z),  slope.(new z - z) < 0
/// and nothing when there is none.
void BoxedStep::search(double t) {
    for (int halvings = 0; halvings < most_halvings; ++halvings, t *= 0.5) {
        for (i64 j = 0; j < model_.n; ++j)
            work_.move[j] = inside(z_[j] + t * work_.direction[j], model_.lower[j], model_.upper[j]) - z_[j];
        const double promise = dot(work_.slope, work_.move);
        if (!(promise < 0.0)) continue;
        multiply(work_.move);
        const double change = promise + 0.5 * dot(work_.move, work_.curve);
        if (!(change <= realised_part * promise)) continue;
        for (i64 j = 0; j < model_.n; ++j) {
            z_[j] = inside(z_[j] + t * work_.direction[j], model_.lower[j], model_.upper[j]); // on a bound exactly
            work_.slope[j] += work_.curve[j];
        }
        value_ += change;
        return;
    }
}

/// Down the slope of the variables that may move; first to the least q on the ray, d.d / d.Hd, the box left aside.
void BoxedStep::gradient_step() {
    double widest = 0.0, steepest = 0.0;
    for (i64 j = 0; j < model_.n; ++j) {
        work_.direction[j] = is_held(j) ? 0.0 : -work_.slope[j];
        steepest = std::max(steepest, std::fabs(work_.direction[j]));
        widest = std::max(widest, model_.upper[j] - model_.lower[j]);
    }
    if (steepest == 0.0) return;
    const double across =
        std::min(widest / steepest, std::numeric_limits<double>::max()); // no t beyond this moves any variable further
    multiply(work_.direction);
    const double curvature = dot(work_.direction, work_.curve);
    const double square = dot(work_.direction, work_.direction);
    search(curvature * across > square ? square / curvature : across);
}

/// Cholesky factor of the free part of H + shift I, lower triangle, leading dimension count.
bool BoxedStep::factor(i64 count, double shift) const {
    for (i64 c = 0; c < count; ++c) {
        const double* column = model_.hessian + work_.free[c] * model_.n;
        double* packed = work_.factor + c * count;
        for (i64 r = c; r < count; ++r) packed[r] = column[work_.free[r]];
        packed[c] += shift;
    }
    i64 info = 0;
    potrf('L', count, work_.factor, count, info);
    return info == 0;
}

/// (free part of H + shift I) d = -slope with the first shift of 0, 1e-15, 1e-14, ... that makes the matrix positive
/// definite; the held variables stay.
void BoxedStep::newton_step() {
    const i64 count = collect_free();
    if (count == 0) return;
    double shift = 0.0;
    while (!factor(count, shift)) {
        shift = shift == 0.0 ? first_shift : 10.0 * shift;
        if (shift > last_shift) return;
    }
    for (i64 k = 0; k < count; ++k) work_.move[k] = -work_.slope[work_.free[k]];
    i64 info = 0;
    potrs('L', count, 1, work_.factor, count, work_.move, count, info);
    std::fill_n(work_.direction, model_.n, 0.0);
    for (i64 k = 0; k < count; ++k) {
        if (!std::isfinite(work_.move[k])) return;
        work_.direction[work_.free[k]] = work_.move[k];
    }
    search(1.0);
}

} // namespace

double boxed_step(const BoxedModel& model, double* z, int passes, double precision, const BoxedWork& work) {
    BoxedStep step(model, work, z);
    const double target = precision * step.projected_gradient();
    for (int pass = 0; pass < passes && step.projected_gradient() > target; ++pass) {
        const double before = step.value();
        step.gradient_step();
        step.newton_step();
        if (before - step.value() <= least_gain * -step.value()) break;
    }
    return step.value();
}

} // namespace nxl::tr
