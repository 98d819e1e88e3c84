// The vector kernels of this target.
#include "primitives/vectors/kernels.hpp"

namespace nxl::NXL_TARGET {

extern const VectorTable vector_table;
const VectorTable vector_table = {
    .add_value_d = add_value_d,
};

} // namespace nxl::NXL_TARGET
