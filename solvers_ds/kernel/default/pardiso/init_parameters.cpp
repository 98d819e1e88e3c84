#include "solvers_ds/kernel/default/pardiso/init_parameters.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include <cmath>

namespace nxl::pardiso {
namespace {

constexpr int to_be_computed = -1;

int default_perturbation(int mtype) {
    if (is_lu(mtype)) return 13;
    return is_indefinite(mtype) ? 8 : 0;
}

void fill_defaults(Parameters iparam, int mtype) {
    constexpr Iparam zero[] = {Iparam::hybrid,          Iparam::permutation,      Iparam::solution_in_b,
                               Iparam::steps_done,      Iparam::step_limit,       Iparam::accounting,
                               Iparam::transposed,      Iparam::perturbed_pivots, Iparam::hybrid_outcome,
                               Iparam::positive_pivots, Iparam::negative_pivots,  Iparam::reserved_24,
                               Iparam::reserved_25,     Iparam::out_of_core};
    for (const Iparam entry : zero) iparam[entry] = 0;
    iparam[Iparam::ordering] = 2;
    iparam[Iparam::perturbation] = default_perturbation(mtype);
    iparam[Iparam::scaling] = iparam[Iparam::matching] = is_unsymmetric(mtype);
    iparam[Iparam::factor_entries] = iparam[Iparam::factor_mflop] = to_be_computed;
    iparam[Iparam::pivoting] = is_indefinite(mtype);
}

/// Set by every start; the orderings and iterations read them.
void set_fixed_words(Control control, int threads) {
    control[Word::element_bound] = 2147483647;
    control[Word::fixed_2] = 2;
    control[Word::fixed_6] = 6;
    control[Word::fixed_pair_first] = 2;
    control[Word::fixed_pair_second] = 1;
    control[Word::fixed_1] = 1;
    control[Word::divergence_limit] = 10000;
    control[Word::initial_threads] = threads;
}

/// Matching and scaling are there for types whose pivots may fail; scaling comes from the matching.
void set_preordering(Parameters iparam, Control control, int mtype) {
    if (!may_match(mtype) || iparam[Iparam::matching] <= 0) return;
    control[Word::matching] = iparam[Iparam::matching];
    control[Word::scaling] = iparam[Iparam::scaling] == 1;
}

} // namespace

void init_parameters(const Call& call, Control control) {
    const i64 max_fac_store = control[Word::max_fac_store], table_slots = control[Word::table_slots];
    if (call.iparam[Iparam::caller_values] == 0) fill_defaults(call.iparam, call.mtype);
    control.reset();
    control[Word::max_fac_store] = max_fac_store;
    control[Word::table_slots] = table_slots;
    const int tolerance_digits = call.iparam[Iparam::hybrid] / 10;
    if (call.iparam[Iparam::caller_values] == 1 && tolerance_digits != 0)
        control[RealWord::tolerance] = std::pow(10.0, -std::fabs(static_cast<double>(tolerance_digits)));
    set_preordering(call.iparam, control, call.mtype);
    set_fixed_words(control, call.iparam[Iparam::threads]);
}

} // namespace nxl::pardiso
