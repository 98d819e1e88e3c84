#include "solvers_ds/kernel/default/pardiso/do_all.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis_memory.hpp"
#include "solvers_ds/kernel/default/pardiso/factor_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/hybrid_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/ooc_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/preprocessing.hpp"
#include "solvers_ds/kernel/default/pardiso/solve_stage.hpp"

namespace nxl::pardiso {
namespace {

Fault run_analysis(const Handle& handle, const Call& call) {
    const Control control = handle.control();
    if (const Fault fault = settle_sizes(call, control)) return fault;
    if (const Fault fault = take_order_blocks(handle)) return fault;
    if (control[Word::matching] != 0)
        if (const Fault fault = match_matrix(handle, call)) return fault;
    if (const Fault fault = order_matrix(handle, call)) return fault;
    if (const Fault fault = take_symbolic_blocks(handle)) return fault;
    if (const Fault fault = build_structure(handle, call)) return fault;
    if (const Fault fault = prepare_factorization(handle, call)) return fault;
    return settle_mode(handle, call);
}

void release_structure(const Handle& handle) {
    for (const HandleWord word : {HandleWord::struc_fi, HandleWord::matching, HandleWord::scaling})
        handle.release(word);
}

} // namespace

Fault analyse(const Handle& handle, const Call& call) {
    const Fault fault = run_analysis(handle, call);
    handle.control()[Word::inner_error] = fault.inner;
    handle.control()[Word::analysed_type] = call.mtype;
    release_work_blocks(handle);
    if (fault) release_structure(handle);
    else trim_structure(handle);
    if (handle.ooc().out_of_core()) return_free_memory();
    return fault;
}

Fault factorise_and_solve(const Handle& handle, const Call& call) {
    if (call.matrix_number < 1) return refused(inner::matrix_number_below_one);
    const i32 analysed = handle.control().small(Word::analysed_type);
    if (stores_triangle(call.mtype) != stores_triangle(analysed)) return refused(inner::type_incompatible);
    handle.control()[Word::numeric_memory] = handle.control()[Word::factor_memory];
    if (handle.control()[Word::hybrid_kind] != 0 && call.sub_step == 0) return iterate_or_factorise(handle, call);
    if (call.first_stage() <= 2) {
        bool stopped = false;
        if (const Fault fault = factorise_matrix(handle, call, stopped)) return fault;
        if (stopped) return {};
    }
    return call.last_stage() == 3 && call.nb > 0 ? solve_systems(handle, call) : Fault{};
}

} // namespace nxl::pardiso
