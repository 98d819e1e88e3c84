// The stages of FGMRES. With V the basis, Z the preconditioned vectors (V itself in the plain method) and h the new
// column of the Hessenberg matrix, an iteration is  w = A z(k),  w -= h(i) v(i) for i = 1..k,  v(k+1) = w / ||w||.
// Rotations turn the Hessenberg matrix into R, and ||b - A x|| e1 into g; the solution is x + Z y with R y = g.
#include "solvers_rci/fgmres_run.hpp"
#include "solvers_rci/vectors.hpp"
#include <algorithm>
#include <cmath>

namespace nxl::rci {

int FgmresRun::resume(int request) const {
    switch (static_cast<Stage>(stage_or_system())) {
    case Stage::start: return ask_for_residual(Stage::first_product);
    case Stage::first_product: return take_residual(true);
    case Stage::restart: return ask_for_residual(Stage::restart_product);
    case Stage::restart_product: return take_residual(false);
    case Stage::residual_ready: return begin_cycle();
    case Stage::plain_test: return decide(plain);
    case Stage::plain_step: return next_product();
    case Stage::plain_product: return product_ready(plain);
    case Stage::plain_norm_judged: return rotate(plain);
    case Stage::test: return decide(with_preconditioner);
    case Stage::step: return next_preconditioning();
    case Stage::preconditioned: return preconditioned_ready();
    case Stage::product: return product_ready(with_preconditioner);
    case Stage::norm_judged: return rotate(with_preconditioner);
    }
    return request;
}

int FgmresRun::ask(Request request, Stage next) const {
    stage(next);
    return request;
}

int FgmresRun::fail(FgmresError error, Request request) const {
    report(error);
    return request; // the stage stays: a further call comes back to it
}

/// Reports the first guard that is violated.
template <int Count> bool FgmresRun::rejects(const Guard (&guards)[Count]) const {
    for (const Guard& guard : guards) {
        if (!guard.violated) continue;
        report(guard.error);
        return true;
    }
    return false;
}

/// Tells the caller between which elements of tmp to operate. False, with a report, where no entry of ipar can.
bool FgmresRun::place_operation(i64 input, i64 output) const {
    const bool fits = std::max(input, output) <= largest_index;
    input_at() = fits ? static_cast<int>(input) : 0;
    output_at() = fits ? static_cast<int>(output) : 0;
    return !rejects({index_guard(output_at(), FgmresError::operation_output_index)});
}

bool FgmresRun::rejects_arnoldi_state() const {
    return rejects({restart_length_guard(), inner_guard(0, i64{restart_length()} - 1), size_guard(),
                    index_guard(triangle_at(), FgmresError::triangle_index),
                    index_guard(cosines_at(), FgmresError::cosines_index),
                    index_guard(sines_at(), FgmresError::sines_index),
                    index_guard(output_at(), FgmresError::operation_output_index)});
}

bool FgmresRun::rejects_rotation_state() const {
    return rejects({restart_length_guard(), inner_guard(1, restart_length()), size_guard(),
                    index_guard(triangle_at(), FgmresError::triangle_index),
                    index_guard(cosines_at(), FgmresError::cosines_index),
                    index_guard(sines_at(), FgmresError::sines_index),
                    index_guard(rotated_rhs_at(), FgmresError::rotated_rhs_index),
                    index_guard(output_at(), FgmresError::operation_output_index)});
}

/// For a solution of k >= 1 steps. The order of the first guards is the caller's affair.
bool FgmresRun::rejects_solution_state() const {
    return rejects({index_guard(triangle_at(), FgmresError::triangle_index),
                    index_guard(rotated_rhs_at(), FgmresError::rotated_rhs_index),
                    index_guard(small_solution_at(), FgmresError::small_solution_index),
                    {has_preconditioner() != 0 && preconditioned_at() < 1, FgmresError::preconditioned_index}});
}

/// Asks for A x into column 2; column 3 keeps b meanwhile.
int FgmresRun::ask_for_residual(Stage next) const {
    if (rejects({size_guard()})) return impossible_entry;
    if (!place_operation(1, i64{size()} + 1)) return impossible_entry;
    copy(size(), x_, basis(1));
    copy(size(), b_, basis(3));
    return ask(apply_matrix, next);
}

int FgmresRun::take_residual(bool is_first) const {
    if (rejects({size_guard()})) return impossible_entry;
    double* const residual = basis(1);
    const double* const ax = basis(2);
    const double* const b = basis(3);
    for (i64 i = 0; i < size(); ++i) residual[i] = b[i] - ax[i];
    residual_norm() = initial_norm() = norm(size(), residual);
    if (is_first) target() = residual_norm() * relative_tolerance() + absolute_tolerance(); // for the whole run
    new_norm() = residual_norm();
    if (norm_test() == 0) return ask(judge_new_norm, Stage::residual_ready);
    if (new_norm() <= norm_tolerance()) return finished;
    stage(Stage::residual_ready);
    return begin_cycle();
}

int FgmresRun::begin_cycle() const {
    if (rotated_rhs_at() < 2) return fail(FgmresError::rotated_rhs_index, impossible_entry);
    if (residual_norm() < 0.0) return fail(FgmresError::negative_residual, impossible_entry);
    if (residual_norm() == 0.0) return fail(FgmresError::zero_residual, division_by_zero);
    scale(size(), 1.0 / residual_norm(), basis(1));
    rotated_rhs()[0] = residual_norm();
    return decide(has_preconditioner() == 0 ? plain : with_preconditioner);
}

/// The stopping decision: limit, residual, the caller's own, in this order. After a stop a further call decides again:
/// nothing has changed, unless the caller has set another limit or target and goes on.
int FgmresRun::decide(const Method& method) const {
    stage(method.test);
    if (limit_test() != 0 && iterations() >= iteration_limit())
        return residual_test() != 0 && residual_norm() > target() ? limit_reached : finished;
    if (residual_test() != 0 && residual_norm() <= target()) return finished;
    if (caller_test() != 0) return ask(test_by_caller, method.step);
    if (residual_test() == 0) {
        if (limit_test() == 0) return fail(FgmresError::endless_loop, endless_loop);
        if (residual_norm() == 0.0) return finished; // solved: a further step would divide by 0
    }
    stage(method.step);
    return method.step == Stage::plain_step ? next_product() : next_preconditioning();
}

/// Moves x to the solution of the full cycle and starts the next one there.
int FgmresRun::restart() const {
    const int outcome = update_solution();
    if (outcome != finished) return outcome;
    inner() = 0;
    stage(Stage::restart);
    return ask_for_residual(Stage::restart_product);
}

int FgmresRun::next_product() const {
    if (inner() == restart_length()) return restart();
    if (rejects({restart_length_guard(), inner_guard(0, restart_length()), size_guard()})) return impossible_entry;
    const i64 vector = i64{inner()} * size() + 1;
    if (!place_operation(vector, vector + size())) return impossible_entry;
    iterations() = wrapped(i64{iterations()} + 1);
    return ask(apply_matrix, Stage::plain_product);
}

int FgmresRun::next_preconditioning() const {
    if (inner() == restart_length()) return restart();
    if (rejects({restart_length_guard(), inner_guard(0, restart_length()), size_guard(),
                 index_guard(preconditioned_at(), FgmresError::operation_output_index)})) // its text shows ipar(23)
        return impossible_entry;
    const i64 before = i64{inner()} * size();
    if (!place_operation(before + 1, before + preconditioned_at())) return impossible_entry;
    iterations() = wrapped(i64{iterations()} + 1);
    return ask(apply_preconditioner, Stage::preconditioned);
}

int FgmresRun::preconditioned_ready() const {
    if (rejects({restart_length_guard(), inner_guard(0, i64{restart_length()} - 1), size_guard(),
                 index_guard(preconditioned_at(), FgmresError::preconditioned_index)}))
        return impossible_entry;
    const i64 before = i64{inner()} * size();
    if (!place_operation(before + preconditioned_at(), before + size() + 1)) return impossible_entry;
    return ask(apply_matrix, Stage::product);
}

int FgmresRun::product_ready(const Method& method) const {
    if (rejects_arnoldi_state()) return impossible_entry;
    orthogonalise();
    stage(method.norm_judged); // also after a stop: the vector has been made, and is not made again
    if (norm_test() == 0) return judge_new_norm;
    if (new_norm() <= norm_tolerance()) return finished;
    return rotate(method);
}

/// Modified Gram-Schmidt of the product against the basis; the coefficients are the new column of R, to which the
/// rotations so far are then applied. The element below its diagonal is new_norm().
void FgmresRun::orthogonalise() const {
    const int k = ++inner();
    double* const w = new_vector();
    double* const column = triangle_column(k);
    for (int i = 1; i <= k; ++i) {
        const double h = dot(size(), w, basis(i));
        column[i - 1] = h;
        axpy(size(), -h, basis(i), w);
    }
    new_norm() = norm(size(), w);
    const double* const c = cosines();
    const double* const s = sines();
    for (int i = 0; i < k - 1; ++i) {
        const double upper = column[i], lower = column[i + 1];
        column[i] = s[i] * lower + c[i] * upper;
        column[i + 1] = c[i] * lower - s[i] * upper;
    }
}

/// Makes the product a unit vector and rotates new_norm() into the diagonal of R. Saad and Schultz, SIAM J. Sci. Stat.
/// Comput. 7 (1986), section 3.2: the last element of g is the residual norm, but for its sign.
int FgmresRun::rotate(const Method& method) const {
    const double below = new_norm();
    if (below < 0.0) return fail(FgmresError::negative_new_norm, impossible_entry);
    if (below == 0.0) return fail(FgmresError::zero_new_norm, division_by_zero);
    if (rejects_rotation_state()) return impossible_entry;
    scale(size(), 1.0 / below, new_vector());

    const int last = inner() - 1;
    double& diagonal = triangle_column(inner())[last];
    const double radius = std::sqrt(below * below + diagonal * diagonal);
    if (radius == 0.0) return fail(FgmresError::degenerate_rotation, division_by_zero); // both squares underflowed
    const double c = diagonal / radius, s = below / radius;
    cosines()[last] = c;
    sines()[last] = s;
    diagonal = c * diagonal + s * below;
    if (diagonal == 0.0) return fail(FgmresError::degenerate_triangle, division_by_zero);

    double* const g = rotated_rhs() + last;
    last_residual_norm() = residual_norm();
    g[1] = -s * g[0];
    g[0] = c * g[0];
    residual_norm() = std::abs(g[1]);
    return decide(method);
}

/// y := R^-1 g, column by column from the last; a solution element of 0 leaves the rest alone.
void FgmresRun::solve_triangle() const {
    double* const y = small_solution();
    copy(inner(), rotated_rhs(), y);
    for (int j = inner(); j >= 1; --j) {
        if (y[j - 1] == 0.0) continue;
        const double* const column = triangle_column(j);
        y[j - 1] /= column[j - 1];
        for (int i = j - 2; i >= 0; --i) y[i] -= y[j - 1] * column[i];
    }
}

/// target += Z y
void FgmresRun::add_correction(double* target) const {
    solve_triangle();
    for (int i = 1; i <= inner(); ++i)
        axpy(size(), small_solution()[i - 1], has_preconditioner() != 0 ? preconditioned(i) : basis(i), target);
}

int FgmresRun::update_solution() const {
    if (rejects({size_guard(), restart_length_guard()})) return impossible_entry;
    if (inner() == 0) return finished;
    if (rejects({inner_guard(1, restart_length())}) || rejects_solution_state()) return impossible_entry;
    add_correction(x_);
    return finished;
}

int FgmresRun::form_solution(double* b) const {
    if (solution_place() < 0) return finished;
    if (solution_place() == 0) return update_solution();
    const bool has_steps = inner() != 0;
    if (has_steps &&
        (rejects({restart_length_guard(), inner_guard(1, restart_length()), size_guard()}) || rejects_solution_state()))
        return impossible_entry;
    copy(size(), x_, b);
    if (has_steps) add_correction(b);
    return finished;
}

} // namespace nxl::rci
