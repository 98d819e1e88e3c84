// A packed block of A times a panel of B, by the loops of the target's registers.
#include "blas/kernels/level3/macro_tiles.hpp"

namespace nxl::NXL_TARGET {

template <class T, class ColumnsB>
void multiply_block(const BlockA& a, const ColumnsB& b, double* strip, const Result<T>& to, i64 i, i64 j) {
    if constexpr (kWidest == 2) multiply_narrow<T>(a, b, strip, to, i, j);
    else if constexpr (kWidest == 4) multiply_wide<T>(a, b, 0, to, i, j);
    else multiply_widest<T>(a, b, to, i, j);
}

template void multiply_block(const BlockA&, const PanelB<double>&, double*, const Result<double>&, i64, i64);
template void multiply_block(const BlockA&, const PanelsAsB<double>&, double*, const Result<double>&, i64, i64);
template void multiply_block(const BlockA&, const ColumnsInPlace<double>&, double*, const Result<double>&, i64, i64);
template void multiply_block(const BlockA&, const RowsInPlace<double>&, double*, const Result<double>&, i64, i64);
template void multiply_block(const BlockA&, const PanelB<Complex>&, double*, const Result<Complex>&, i64, i64);
template void multiply_block(const BlockA&, const PanelsAsB<Complex>&, double*, const Result<Complex>&, i64, i64);
template void multiply_block(const BlockA&, const ColumnsInPlace<Complex>&, double*, const Result<Complex>&, i64, i64);
template void multiply_block(const BlockA&, const RowsInPlace<Complex>&, double*, const Result<Complex>&, i64, i64);

} // namespace nxl::NXL_TARGET
