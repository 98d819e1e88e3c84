// The matrix kernels of this target.
#include "primitives/matrices/kernels.hpp"

namespace nxl::NXL_TARGET {

extern const MatrixTable matrix_table;
const MatrixTable matrix_table = {
    .row_exchange_d = row_exchange_d,
};

} // namespace nxl::NXL_TARGET
