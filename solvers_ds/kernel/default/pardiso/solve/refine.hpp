// Iterative refinement of the solutions that a factor gives.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/codes.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/amuxy.hpp"
#include <algorithm>
#include <limits>

namespace nxl::pardiso {

/// How the iteration is asked for: iparam(8) and iparam(26).
struct RefinementRule {
    i32 step_limit; ///< negative: with the extended residual
    bool residual_loop;

    bool extended() const { return step_limit < 0 || residual_loop; }
    bool unlimited() const { return step_limit == 0; } ///< two steps, for the perturbed pivots
    /// The least integer has no negative.
    i32 limit() const { return step_limit < 0 ? -std::max(step_limit, -std::numeric_limits<i32>::max()) : step_limit; }
};

struct RefinementResult {
    i32 code = 0; ///< 0 or contraction_lost
    i32 steps = 0;
    bool budget_spent = false; ///< two steps were taken without a limit of the caller's
    bool memory = true;
};

/// Work memory, n nb scalars each.
template <class T> struct RefinementWork {
    T *residual, *residual_low, *x_low; ///< the last two for the extended residual; residual_low for one column
};

/// When to go on. Steps count from 1; sums are over all right-hand sides.
class Contraction {
    const RefinementRule rule_;
    double reference_;

  public:
    Contraction(const RefinementRule& rule, double right_size) : rule_(rule), reference_(right_size) {}

    enum class Verdict { go_on, stop, stop_at_budget, stalled };

    Verdict after(i32 step, double residual_size) {
        constexpr double rate = 0.9;
        constexpr i32 patience = 4, unlimited_steps = 2;
        if (step == unlimited_steps && rule_.unlimited()) return Verdict::stop_at_budget;
        if (step == 1 && residual_size > reference_) reference_ = 2.0 * residual_size;
        if (step == rule_.limit()) return Verdict::stop;
        if (residual_size < rate * reference_) {
            reference_ = residual_size;
            return Verdict::go_on;
        }
        const i32 last = rule_.unlimited() ? unlimited_steps : rule_.limit();
        return step < patience && step < last ? Verdict::go_on : Verdict::stalled;
    }
};

/// Refines nb solutions x of A x = b; solve(d) puts A^-1 d into d and says whether it had memory. `right_size` is the
/// sum of |b_i|.
template <class T, class Solve>
RefinementResult refine(const CallerMatrix<T>& matrix, const T* b, T* x, i64 nb, const RefinementRule& rule,
                        const RefinementWork<T>& work, const Solve& solve) {
    constexpr double hopeless = 0.5; // relative size of the last correction
    const i64 n = matrix.n, length = n * nb;
    Contraction contraction(rule, sum_of_sizes(length, b));
    const double solution_size = sum_of_sizes(length, x);
    if (rule.extended()) std::fill_n(work.x_low, length, T{});
    RefinementResult result;
    for (;;) {
        for (i64 c = 0; c < length; c += n) {
            T* const r = work.residual + c;
            if (rule.extended()) {
                extended_residual(matrix, b + c, x + c, work.x_low + c, r, work.residual_low);
                continue;
            }
            amuxy(matrix, x + c, r);
            for (i64 i = 0; i < n; ++i) r[i] = b[c + i] - r[i];
        }
        const double residual_size = sum_of_sizes(length, work.residual);
        if (!solve(work.residual)) {
            result.memory = false;
            return result;
        }
        if (rule.extended()) extended_add(length, work.residual, x, work.x_low);
        else
            for (i64 i = 0; i < length; ++i) x[i] += work.residual[i];
        ++result.steps;
        const auto verdict = contraction.after(result.steps, residual_size);
        if (verdict == Contraction::Verdict::go_on) continue;
        result.budget_spent = verdict == Contraction::Verdict::stop_at_budget;
        const double correction = sum_of_sizes(length, work.residual);
        if (verdict == Contraction::Verdict::stalled && solution_size != 0.0 && correction / solution_size > hopeless)
            result.code = contraction_lost;
        return result;
    }
}

} // namespace nxl::pardiso
