// Arrays counted from 1, as all index arrays of the symbolic factorisation are.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// A view of an array whose first element has number 1.
template <class T> class FromOne {
    T* data_ = nullptr;

  public:
    FromOne() = default;
    FromOne(T* data) : data_(data) {} // NOLINT(google-explicit-constructor): a pointer is meant wherever one is given
    operator FromOne<const T>() const { return data_; }

    T& operator[](i64 index) const { return data_[index - 1]; }
    T* data() const { return data_; }
};

/// The graph of a matrix in the order of its elimination: column j is node perm[j] of the graph, and node i is column
/// invp[i]. The neighbours of node i are adjncy[xadj[i]] .. adjncy[xadj[i + 1] - 1].
struct OrderedGraph {
    i32 n;
    FromOne<const i32> xadj, adjncy, perm, invp;

    /// Calls body(column) for each neighbour of a column.
    template <class Body> void neighbours(i32 column, Body&& body) const {
        const i32 node = perm[column];
        for (i32 k = xadj[node]; k < xadj[node + 1]; ++k) body(invp[adjncy[k]]);
    }
};

} // namespace nxl::pardiso
