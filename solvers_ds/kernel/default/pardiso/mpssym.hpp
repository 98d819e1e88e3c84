// Ordering of symmetric indefinite matrices by pairs: a matching gives the candidates for pivots of order 2, each pair
// is one node of a compressed graph, and the order of that graph is one of the matrix in which pairs stay together.
#pragma once
#include "solvers_ds/kernel/default/pardiso/bitvec.hpp"
#include "solvers_ds/kernel/default/pardiso/separators.hpp"
#include "solvers_ds/kernel/default/pardiso/smat.hpp"

namespace nxl::pardiso {

/// What the ordering of a symmetric matrix by pairs reads and writes.
struct PairedOrderingView {
    i32 n;
    i32 *ia, *ja;                // the upper triangle with its diagonal, counted from 1; from 0 while the stage runs
    double* a;                   // real values, or moduli of complex ones
    i32 method;                  // 0 and 1 minimum degree, 2 nested dissection
    i32 parts;                   // subgraphs that are asked for
    i32* perm;                   // n: in, the row matched to each column; out, the order, new to old; both count from 1
    Bitvec* sym_perm_1x1_pivots; // n, cleared: set for each position of a pivot of order 1
    Separators* ddist;
};

/// I. S. Duff and S. Pralet, SIAM J. Matrix Anal. Appl. 27 (2005) 313-340.
i32 mpssym(const PairedOrderingView& view);

/// Ordering of a matrix through the containers, by its pattern: perm[k] receives the old index of new index k, and the
/// record of the last two the column ranges.
i32 smat_minimum_degree(const Smat* A, Perm* perm);
i32 smat_constrained_minimum_degree(const Smat* A, i32 groups, Perm* perm, Separators* ddist);
i32 smat_nested_dissection(const Smat* A, i32 parts, Perm* perm, Separators* ddist);

} // namespace nxl::pardiso
