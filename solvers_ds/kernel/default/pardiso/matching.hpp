// Maximum product matching of rows and columns, and the scaling that its dual variables give.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// Memory of a search on `entries` entries.
struct MatchingWork {
    i32* integers; // 6 n + 20 + entries
    double* reals; // 2 n + entries
};

/// Matches each column with a row, so that the product of the matched |a_ij| is largest: row perm[j] with column j,
/// counted from 0 as ia and ja are. a: n by n, moduli or real values; zeros are no entries. dr and dc: logarithms of
/// scale factors of rows and columns, by which every entry becomes at most 1 in modulus, and 1 where it is matched.
/// `matched` receives the number of columns that have a row; the others are given one of those that are left, and
/// dr = dc = 0.
/// Returns 0, kImperfectMatching, kEmptyGraph, or 1 for a mode other than 0.
/// I. S. Duff and J. Koster, SIAM J. Matrix Anal. Appl. 20 (1999) 889-901 and 22 (2001) 973-996.
i32 matching_weighted(i32 mode, i32 n, const i32* ia, const i32* ja, const double* a, const MatchingWork& work,
                      i32* perm, double* dr, double* dc, i32& matched);

/// The matching stage of a matrix of the caller.
struct MatchingView {
    i32 n;
    i32 *ia, *ja;         // the caller's, counted from 1; from 0 while the stage runs
    double* a;            // real values, or moduli of complex ones; they stay as they are
    bool symmetric;       // the upper triangle is stored: the search is on all entries, one vector scales both sides
    bool scale;           // otherwise all factors are 1
    i32 mode;             // 1 for the matching; 2 to 4 are refused
    MatchingWork work;    // for all entries: 2 nnz - n of them where the upper triangle is stored
    i32* row_of_column;   // n, counted from 1
    double* row_scale;    // n
    double* column_scale; // n
};

/// Returns as matching_weighted, or kNoMemory, with 1 for a mode above 1. After kImperfectMatching each column has its
/// own row and all factors are 1.
i32 match_and_scale(const MatchingView& view, i32& matched);

} // namespace nxl::pardiso
