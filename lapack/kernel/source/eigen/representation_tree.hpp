// The tree of representations of one tridiagonal matrix, from the root to all vectors.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// A matrix that does not split, of a norm not far from 1, with its eigenvalues, ascending, to a few roundoffs of the
/// norm.
struct KnownTridiagonal {
    i64 n;
    const double *d, *e, *values;
};

/// Where the results go: value j to w, element i of its vector to z[i step + j ld], where zeros are, and the first and
/// last element that is not zero, counted from `row`, to support[2 j] and support[2 j + 1].
struct PairPlaces {
    double *w, *z;
    i64 ld, step;
    i64 *support, row;
};

enum class TreeResult { done, not_robust, no_memory };

TreeResult find_pairs_by_representations(const KnownTridiagonal& t, const PairPlaces& places);

} // namespace nxl
