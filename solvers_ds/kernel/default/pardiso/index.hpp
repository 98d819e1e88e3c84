// The integers of the sparse direct solver: 32 bits for rows, columns and entries of A; sizes of factors are i64.
#pragma once
#include "service/types.hpp"

namespace nxl::pardiso {

using nxl::i32;

/// Inner codes of matching and ordering beside 0; an analysis that meets one ends with it.
enum PreprocessingCode : i32 {
    kImperfectMatching = -1,
    kEmptyGraph = -2,
    kNoMemory = -190,
    kNoPermutation = -191, // the caller's permutation is none
    kUnsymmetricPattern =
        -192,            // rows of a structurally symmetric matrix do not mirror each other, or lack the diagonal
    kNoPartition = -193, // METIS gave none
};

} // namespace nxl::pardiso
