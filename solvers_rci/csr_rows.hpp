// The pattern of a square matrix in compressed sparse rows, as the preconditioners read it.
#pragma once
#include "service/types.hpp"

namespace nxl::rci {

/// Rows, columns and positions count from 0 here, and from 1 in the caller's arrays.
struct CsrRows {
    i64 n;
    const int* ia; // row starts, n + 1
    const int* ja; // columns

    i64 begin(i64 row) const { return i64{ia[row]} - 1; }
    i64 end(i64 row) const { return i64{ia[row + 1]} - 1; }
    i64 column(i64 position) const { return i64{ja[position]} - 1; }
};

} // namespace nxl::rci
