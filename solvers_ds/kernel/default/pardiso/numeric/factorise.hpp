// The numeric factorisation: left-looking by supernodes. E. Ng and B. W. Peyton, SIAM J. Sci. Comput. 14 (1993)
// 1034-1056 and 761-769.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/codes.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/diagonal_block.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/update_lists.hpp"

namespace nxl::pardiso {

template <class T> struct NumericView {
    i32 n;
    Supernodes supernodes;
    const T* a;                       ///< the caller's
    FromOne<const i32> scatter_start; ///< where the entries of A go: see build_scatter_index
    FromOne<const i64> scatter_position;
    FromOne<const i32> scatter_source;
    const double *row_scale, *column_scale; ///< in the order of the factor, or null
    PivotRule rule;
    Factor<T> factor;
    i64 factor_size; ///< of L, for progress
    i32 threads;     ///< 1: without queues
    FromOne<const i32> nmod, pnlsch;
    FromOne<i32> link, length;     ///< lists, or heads and ends of queues
    FromOne<i64> queue_start;      ///< supernodes + 1, for several threads
    FromOne<WaitingUpdate> queues; ///< the sum of nmod, for several threads
    T* temp;                       ///< temp_size for each thread
    i64 temp_size;
    bool messages;
};

struct NumericResult {
    i32 code = 0;
    bool stopped = false; ///< by the host, through its progress routine
    PivotCounts counts;
};

/// Factors the matrix. A result with a code, or one that was stopped, leaves no factor.
template <class M> NumericResult factorise(const NumericView<typename M::T>& view);

/// The value at which tiny pivots are replaced, from iparam(10); `values` are the doubles of A.
double pivot_perturbation(i32 exponent, int mtype, const i32* ia, const double* values);

} // namespace nxl::pardiso
