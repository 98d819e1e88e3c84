// How the drivers of symmetric products and rank updates cut C.
#pragma once
#include "service/slice.hpp"
#include "service/types.hpp"

namespace nxl {

/// A strip of a triangle: the square part of it on the diagonal, and the rectangle that joins it to the edge.
struct TriangleStrip {
    Slice diagonal;      ///< rows and columns of the part on the diagonal
    Slice rows, columns; ///< of the rectangle; the first strip has none
};

/// Strip `index` of `strips` of a triangle of order n, of equal areas: horizontal strips of a lower triangle, vertical
/// ones of an upper. The borders lie at n sqrt(i / strips), rounded to a multiple of 8 but for the last.
TriangleStrip triangle_strip(bool lower, i64 n, i64 index, i64 strips);

/// Strips for a triangle of order n: two for each thread, so that each gets an early one, which is mostly diagonal, and
/// a late one, which is mostly rectangle; but none without a row of its own.
int strips_for(i64 n, int threads);

} // namespace nxl
