// Two rows change places.
#include "primitives/matrices/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

void exchange(double* first, double* second, i64 n) {
    for (i64 i = 0; i < n; ++i) {
        const double kept = first[i];
        first[i] = second[i];
        second[i] = kept;
    }
}

} // namespace

void row_exchange_d(double* a, i64 row1, i64 row2, i64 cols, i64 stride) {
    exchange(a + row1 * stride, a + row2 * stride, cols);
}
void row_exchange_c(zcomplex* a, i64 row1, i64 row2, i64 cols, i64 stride) {
    exchange(parts(a + row1 * stride), parts(a + row2 * stride), 2 * cols);
}

} // namespace nxl::NXL_TARGET
