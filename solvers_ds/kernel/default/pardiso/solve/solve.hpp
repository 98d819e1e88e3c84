// Solution of one or several systems with a factor: gather, forward, diagonal and backward step, scatter.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"

namespace nxl::pardiso {

/// Parts of a solve; each one alone takes what the one before it gave.
struct Steps {
    bool forward, diagonal, backward;

    /// sub_step 0: all; 1, 2, 3: one of them.
    static Steps of(i32 sub_step) {
        return {sub_step == 0 || sub_step == 1, sub_step == 0 || sub_step == 2, sub_step == 0 || sub_step == 3};
    }
};

/// From the unknowns of A to those of the factor and back. Position i of the factor takes element rows[i] of b, times
/// row_scale[i], and gives element columns[i] of x, times column_scale[i]. Elements count from 1; scales may be null.
struct Places {
    const i32 *rows, *columns;
    const double *row_scale, *column_scale;

    /// Those of the transposed matrix.
    Places transposed() const { return {columns, rows, column_scale, row_scale}; }
};

template <class T> struct SolveView {
    i32 n;
    Supernodes supernodes;
    Factor<T> factor;
    Places places; ///< of A itself, also when its transpose is solved with
    bool transposed;
    Steps steps;
    i32 threads;
    i32 tallest; ///< rows of the tallest supernode
};

/// x := A^-1 b, or A^-T b; n by nb with leading dimension n. x may be b. False when there was no memory.
template <class M> bool solve(const SolveView<typename M::T>& view, const typename M::T* b, typename M::T* x, i64 nb);

} // namespace nxl::pardiso
