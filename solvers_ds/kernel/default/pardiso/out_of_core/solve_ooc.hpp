// The solve with files: the factor goes through the window once in each direction, for all right-hand sides together.
#pragma once
#include "solvers_ds/kernel/default/pardiso/out_of_core/piece.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"

namespace nxl::pardiso {

/// As solve. The view's factor is the resident part of `factor`. False when there was no memory, or the files failed,
/// which their status says.
template <class M>
bool solve_with_files(const SolveView<typename M::T>& view, const FactorOnFiles<typename M::T>& factor,
                      const PieceMemory<typename M::T>& window, const typename M::T* b, typename M::T* x, i64 nb);

} // namespace nxl::pardiso
