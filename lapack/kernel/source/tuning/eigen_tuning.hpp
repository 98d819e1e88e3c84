// Parameters of the multishift QR iteration for Hessenberg matrices, and of its kin. Method: Braman, Byers and Mathias,
// The multishift QR algorithm, parts I and II, SIAM J. Matrix Anal. Appl. 23 (2002).
#pragma once
#include "lapack/kernel/source/tuning/routine_name.hpp"
#include "service/types.hpp"

namespace nxl {

/// What is asked for, with ILAENV's numbers.
enum class EigenQuery : i64 {
    least_order = 12,      ///< smaller matrices go to the double-shift iteration
    deflation_window = 13, ///< columns
    nibble = 14,           ///< percentage of a window that must deflate for its sweep to be skipped
    shifts = 15,           ///< simultaneous shifts, an even number
    accumulate = 16        ///< 0: reflections one by one; 1: gathered into products; 2: with the blocks' zeros kept out
};

/// -1 for another query. `opts`, `n` and `lwork` are there for parameters that depend on them; none does so far.
i64 eigen_tuning(EigenQuery query, const RoutineName& name, char opts, i64 n, i64 ilo, i64 ihi, i64 lwork);

} // namespace nxl
