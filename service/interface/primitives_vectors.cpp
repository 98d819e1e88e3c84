// Entries of the vector primitives: arguments by value, lengths unsigned.
#include "nxl.h"
#include "primitives/vectors/slots.hpp"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void AddValue_d(const double* src, double* dst, double value, unsigned n) noexcept {
    add_value_d_slot(src, dst, value, n);
}

} // extern "C"
