// Ordering by minimum degree, of both kinds.
#pragma once
#include "solvers_ds/kernel/default/pardiso/separators.hpp"

namespace nxl::pardiso {

/// A symmetric graph without loops, counted from 0; lists need not ascend.
struct Graph {
    i32 n;
    const i32* xadj; // n + 1
    const i32* adjncy;
};

/// perm[k] is the node that is eliminated as number k, and invp its inverse; both count from 0.
///
/// Multiple minimum degree on a quotient graph: external degrees, elimination of all nodes of least degree that do not
/// touch each other before any degree is found anew, mass elimination, indistinguishable nodes, absorption of elements.
/// J. W. H. Liu, ACM Trans. Math. Softw. 11 (1985) 141-153; A. George and J. W. H. Liu, SIAM Review 31 (1989) 1-19.
i32 multiple_minimum_degree(const Graph& graph, i32* perm, i32* invp);

/// The same with the nodes of up to `groups` independent subgraphs numbered one subgraph after the other, and those
/// between them last; the fill is that of multiple_minimum_degree. With less than two groups one subgraph.
i32 constrained_minimum_degree(const Graph& graph, i32 groups, i32* perm, i32* invp, Separators& separators);

} // namespace nxl::pardiso
