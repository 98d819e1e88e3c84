// The vector kernels of the target that is being compiled, as the table lists them.
#pragma once
#include "primitives/vectors/vector_table.hpp"
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {

void add_value_d(const double* src, double* dst, double value, i64 n);

} // namespace nxl::NXL_TARGET
