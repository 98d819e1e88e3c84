// The slots of the matrix kernels, bound by vector width.
#pragma once
#include "primitives/matrices/matrix_table.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {

template <> const MatrixTable& bound_table();

} // namespace nxl
