// The matrix kernels of this target.
#include "primitives/matrices/kernels.hpp"

namespace nxl::NXL_TARGET {

extern const MatrixTable matrix_table;
const MatrixTable matrix_table = {
    .transpose_d = transpose_d,
    .transpose_c = transpose_c,
    .adjoint_c = adjoint_c,
    .transpose_square_d = transpose_square_d,
    .transpose_square_c = transpose_square_c,
    .adjoint_square_c = adjoint_square_c,
    .row_exchange_d = row_exchange_d,
    .row_exchange_c = row_exchange_c,
};

} // namespace nxl::NXL_TARGET
