// The slots of the vector kernels, bound by vector width.
#pragma once
#include "primitives/vectors/vector_table.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {

template <> const VectorTable& bound_table();

} // namespace nxl
