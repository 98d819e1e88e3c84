// The slots of the pack family, bound by its own processor class.
#pragma once
#include "primitives/pack/pack_table.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {

template <> const PackTable& bound_table();

} // namespace nxl
