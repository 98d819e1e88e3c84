// Two rows or two columns change places.
#include "primitives/matrices/kernels.hpp"

namespace nxl::NXL_TARGET {

void row_exchange_d(double* a, i64 row1, i64 row2, i64 cols, i64 stride) {
    double *first = a + row1 * stride, *second = a + row2 * stride;
    for (i64 c = 0; c < cols; ++c) {
        const double kept = first[c];
        first[c] = second[c];
        second[c] = kept;
    }
}

} // namespace nxl::NXL_TARGET
