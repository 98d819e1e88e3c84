// Out-of-core work on a handle: what is asked for, what an analysis decides, and what the two other stages take.
#pragma once
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "solvers_ds/kernel/default/pardiso/factor_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/factorise_ooc.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/kernel_names.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/solve_ooc.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/window.hpp"

namespace nxl::pardiso {

/// At the start of an analysis: the mode that iparam(60) asks for, and its configuration.
void start_out_of_core(const Handle& handle, const Call& call);

/// At its end, when all sizes are known: memory figures, the mode; out of core the files, and no row lists in memory.
Fault settle_mode(const Handle& handle, const Call& call);

/// The heap keeps what an analysis has freed, METIS's part too, beside the window: the system gets it back.
void return_free_memory();

/// What out-of-core work has failed with in this call.
inline Error ooc_error(const Handle& handle) { return static_cast<Error>(handle.ooc()[OocWord::error]); }

/// The window of a factorisation, in the handle's word for it; one is kept as long as the structure.
Fault take_window(const Handle& handle, const Call& call);

/// The window of a handle as scalars and integers.
template <class T> PieceMemory<T> window_of(const Handle& handle) {
    const OocContext& ooc = handle.ooc();
    double* const words = handle.block<double>(HandleWord::struc_s2);
    return {reinterpret_cast<T*>(words), ooc[OocWord::window_words] * 8 / i64{sizeof(T)},
            reinterpret_cast<i32*>(words + ooc[OocWord::window_words]), ooc[OocWord::window_list_words]};
}

template <class M>
FactorOnFiles<typename M::T> factor_on_files(const Handle& handle, const Call& call, FactorFiles& files, bool solve) {
    const Control control = handle.control();
    return {supernodes_of(handle),
            factor_in<M>(handle, handle.slots()[call.matrix_number - 1]),
            control[Word::l_size],
            control[Word::u_size],
            call.matrix_number - 1,
            files,
            solve ? OocFigure::solve_read_seconds : OocFigure::factor_read_seconds,
            solve ? OocFigure::solve_megabytes_read : OocFigure::factor_megabytes_read};
}

template <class M>
NumericResult factorise_out_of_core(const Handle& handle, const Call& call, const NumericView<typename M::T>& view) {
    const OocContext& ooc = handle.ooc();
    FactorFiles files(ooc, factor_kernel_name<M>(), call.messages);
    if (!files.open(OocFileKind::structure, 'r', ": open file for reading lindx") ||
        !files.open(OocFileKind::lower, 'r', ": open file for storing lnz") ||
        (M::has_u && !files.open(OocFileKind::upper, 'r', ": open file for storing unz")))
        return {};
    const auto memory = divide_window(window_of<typename M::T>(handle), ooc[OocWord::whole_window] != 0,
                                      ooc[OocWord::largest_block] + ooc[OocWord::largest_upper_block],
                                      handle.control()[Word::tallest_column]);
    const NumericResult result = factorise_with_files<M>(view, factor_on_files<M>(handle, call, files, false), memory);
    files.close();
    return result;
}

/// As solve.
template <class M>
bool solve_out_of_core(const Handle& handle, const Call& call, const SolveView<typename M::T>& view,
                       const typename M::T* b, typename M::T* x) {
    FactorFiles files(handle.ooc(), "solution step", call.messages);
    bool good = files.open(OocFileKind::structure, 'r', ": open lindx") &&
                files.open(OocFileKind::lower, 'r', ": open lnz") &&
                (!M::has_u || files.open(OocFileKind::upper, 'r', ": open unz"));
    files.serve(solve_kernel_name<M>(call.nb == 1));
    good = good && solve_with_files<M>(view, factor_on_files<M>(handle, call, files, true),
                                       window_of<typename M::T>(handle), b, x, call.nb);
    return files.close() && good;
}

} // namespace nxl::pardiso
