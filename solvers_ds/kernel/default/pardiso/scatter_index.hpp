// Where the entries of A go in the storage of the factors, in the order in which supernodes are assembled.
#pragma once
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

struct ScatterView {
    i32 n;
    FromOne<const i32> ia, ja;       ///< the caller's
    FromOne<const i32> row_place;    ///< column of the factor that a row of A belongs to
    FromOne<const i32> column_place; ///< the same of a column of A
    bool triangle;                   ///< A is an upper triangle: all goes to L
    Supernodes supernodes;
    FromOne<const i64> xlnz, xunz;
    FromOne<i32> start;    ///< n + 1
    FromOne<i64> position; ///< entries of A
    FromOne<i32> source;   ///< entries of A
    FromOne<i32> work;     ///< n
};

/// Entry source[k] of a, for start[j] <= k < start[j + 1], is assembled with column j of the factor. Where position[k]
/// is positive it goes to that element of L. Where it is negative, it goes to element -position[k]: of U, or, of an
/// upper triangle, of L and across the diagonal, which conjugates a Hermitian matrix's entry. Returns 0, or
/// kUnsymmetricPattern when an entry has no place: the pattern that was analysed was not that of A.
i32 build_scatter_index(const ScatterView& view);

} // namespace nxl::pardiso
