// Entries of the matrix primitives: row-major blocks, arguments by value, sizes unsigned.
#include "nxl.h"
#include "primitives/matrices/slots.hpp"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void RowExchange_d(double* a, unsigned row1, unsigned row2, unsigned cols, unsigned stride) noexcept {
    row_exchange_d_slot(a, row1, row2, cols, stride);
}

} // extern "C"
