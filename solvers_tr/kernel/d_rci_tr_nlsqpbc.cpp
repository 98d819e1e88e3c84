// The four calls on a handle: the arguments are tested here, a BoxedRun does the work.
#include "solvers_tr/kernel/d_rci_tr_nlsqpbc.hpp"
#include "service/handle_memory.hpp"
#include "solvers_tr/kernel/d_tr_boxed_run.hpp"
#include <cmath>
#include <limits>

namespace nxl::tr {
namespace {

/// The box has a point that can be computed with, and the start can be moved into it.
bool is_box(const BoxedProblem& problem) {
    for (int j = 0; j < problem.n; ++j) {
        const double lower = problem.lower[j], upper = problem.upper[j];
        constexpr double largest = std::numeric_limits<double>::max();
        if (!(lower <= upper) || lower > largest || upper < -largest) return false;
        if (!std::isfinite(inside(problem.x[j], lower, upper))) return false;
    }
    return true;
}

bool is_valid(const BoxedProblem& problem, int most_iterations, int most_passes, double start_scale) {
    if (!problem.x || !problem.lower || !problem.upper || !problem.eps) return false;
    if (problem.n < 1 || problem.m < problem.n || most_iterations < 1 || most_passes < 1) return false;
    if (!(start_scale >= 0.0 && start_scale <= 100.0)) return false;
    for (int i = 0; i < 6; ++i)
        if (!(problem.eps[i] > 0.0)) return false;
    return is_box(problem);
}

} // namespace

Status boxed_init(void** handle, const BoxedProblem& problem, int most_iterations, int most_passes,
                  double start_scale) {
    if (!handle || !is_valid(problem, most_iterations, most_passes, start_scale)) return invalid_option;
    auto* run = take_for_handle<BoxedRun>(1);
    if (!run) return out_of_memory;
    if (!run->init(problem, most_iterations, most_passes, start_scale)) {
        give_back(run);
        return out_of_memory;
    }
    *handle = run;
    return success;
}

Status boxed_solve(void* const* handle, double* fvec, const double* fjac, int* request) {
    auto* run = record_of<BoxedRun>(handle);
    if (!run || !fvec || !fjac || !request) return invalid_option;
    const int answer = run->resume(fvec, fjac, *request);
    if (run->has_failed()) return invalid_option;
    *request = run->stop_code() > 0 ? -run->stop_code() : answer;
    return success;
}

Status boxed_get(void* const* handle, int* iterations, int* stop_code, double* r1, double* r2) {
    const auto* run = record_of<BoxedRun>(handle);
    if (!run) return invalid_option;
    *iterations = run->iterations();
    *stop_code = run->stop_code();
    *r1 = run->initial_norm();
    *r2 = run->final_norm();
    return success;
}

Status boxed_delete(void** handle) {
    auto* run = record_of<BoxedRun>(handle);
    if (!run) return invalid_option;
    run->free_memory();
    give_back(run);
    return success;
}

} // namespace nxl::tr
