#include "solvers_ds/kernel/default/pardiso/entry.hpp"
#include "service/threads.hpp"
#include "solvers_ds/kernel/default/pardiso/diagonal.hpp"
#include "solvers_ds/kernel/default/pardiso/driver.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr int diagonal_mark = -1;

/// The handle is never built for a diagonal matrix.
int diagonal_shortcut(const Call& call) {
    call.iparam[Iparam::transposed] = diagonal_mark;
    if (call.ido == 11) return 0;
    const bool solve = call.ido % 10 == 3;
    return solve_diagonal(call, solve) == 0 ? 0 : static_cast<int>(Error::unclassified);
}

} // namespace

int pardiso_entry(Call call) {
    if (call.ido == ido_query_parameters) {
        call.iparam[Iparam::caller_values] = answer_iparam_1;
        return answer_parameters;
    }
    if (call.ido == ido_query_version) return answer_version;
    const int threads = std::min(call.neqns, max_threads(domain_all));
    if (call.ido > 0 && call.neqns >= 0 && call.told_length() == call.neqns) return diagonal_shortcut(call);
    if (call.iparam[Iparam::transposed] == diagonal_mark) return 0;
    call.iparam[Iparam::threads] = threads;
    const Error error = pardiso_driver(call);
    const bool pure_solve = call.ido == 33 && call.iparam[Iparam::hybrid] == 0; // never reports failure
    return pure_solve ? 0 : static_cast<int>(error);
}

} // namespace nxl::pardiso
