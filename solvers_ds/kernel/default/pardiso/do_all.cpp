#include "solvers_ds/kernel/default/pardiso/do_all.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis_memory.hpp"
#include "solvers_ds/kernel/default/pardiso/preprocessing.hpp"

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
    return prepare_factorization(handle, call);
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
    return fault;
}

Fault factorise_and_solve(const Handle&, const Call& call) { return {Error::internal, call.last_stage()}; }

} // namespace nxl::pardiso
