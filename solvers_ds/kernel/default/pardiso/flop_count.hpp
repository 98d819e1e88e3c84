// The arithmetic of the numeric factorisation.
#pragma once
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

/// How the operations of a column are counted.
struct FlopRule {
    bool lu;            ///< both factors
    bool complex_words; ///< four times the real operations
};

/// Additions and multiplications of one supernode's columns, with the updates that they give: of LU 2 m^2 + m for a
/// column of m entries below the diagonal, else half the square part.
double flops_of_supernode(const Supernodes& supernodes, i32 s, const FlopRule& rule);

/// Of all, in millions.
double mflop_count(const Supernodes& supernodes, const FlopRule& rule);

} // namespace nxl::pardiso
