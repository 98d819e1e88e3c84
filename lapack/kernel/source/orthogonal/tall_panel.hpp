// QR factorisation of a panel of many more rows than columns, by blocks of rows.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// Elements of a block of rows: a quarter of a second cache of 2 MiB.
template <class T> inline constexpr i64 tall_block = (i64{1} << 19) / sizeof(T);

/// What factor_panel does, for any panel: it goes by blocks of rows, of about so many elements each, on as many threads
/// as they are worth, where there are enough rows for two, which the panel's shape alone decides. Else, and where there
/// is no memory, it is factor_panel's.
template <class T>
void factor_tall_panel(const Matrix<T>& a, T* tau, const Matrix<T>& t, i64 elements = tall_block<T>);

} // namespace nxl
