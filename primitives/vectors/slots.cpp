#include "primitives/vectors/slots.hpp"

namespace nxl {

// clang-format off
namespace vectors_128 { extern const VectorTable vector_table; }
namespace vectors_256 { extern const VectorTable vector_table; }
// clang-format on

template <> const VectorTable& bound_table() {
    return nxl_vector_bits() >= 256 ? vectors_256::vector_table : vectors_128::vector_table;
}

} // namespace nxl
