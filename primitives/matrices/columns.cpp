// Two columns change places.
#include "primitives/matrices/columns.hpp"

namespace nxl {
namespace {

template <class T> void column_exchange(T* a, i64 col1, i64 col2, i64 rows, i64 stride) {
    for (i64 r = 0; r < rows; ++r) {
        T* row = a + r * stride;
        const T kept = row[col1];
        row[col1] = row[col2];
        row[col2] = kept;
    }
}

} // namespace

void column_exchange_d(double* a, i64 col1, i64 col2, i64 rows, i64 stride) {
    column_exchange(a, col1, col2, rows, stride);
}
void column_exchange_c(zcomplex* a, i64 col1, i64 col2, i64 rows, i64 stride) {
    column_exchange(a, col1, col2, rows, stride);
}

} // namespace nxl
