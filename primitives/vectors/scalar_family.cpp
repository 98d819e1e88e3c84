// A scalar with each element of an array: a + value, value - a, value / a, a value.
#include "primitives/vectors/kernels.hpp"

namespace nxl::NXL_TARGET {

void add_value_d(const double* src, double* dst, double value, i64 n) {
    for (i64 i = 0; i < n; ++i) dst[i] = src[i] + value;
}

} // namespace nxl::NXL_TARGET
