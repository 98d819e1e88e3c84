#include "primitives/matrices/slots.hpp"

namespace nxl {

// clang-format off
namespace matrices_128 { extern const MatrixTable matrix_table; }
namespace matrices_256 { extern const MatrixTable matrix_table; }
// clang-format on

template <> const MatrixTable& bound_table() {
    return nxl_vector_bits() >= 256 ? matrices_256::matrix_table : matrices_128::matrix_table;
}

} // namespace nxl
