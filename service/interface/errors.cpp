// Entry of the error handler. A host may define its own, which then takes the library's reports as well.
#include "service/errors.hpp"
#include "nxl.h"
#include "service/export.hpp"

extern "C" NXL_EXPORT void XERBLA(const char* srname, const int* info, int len) noexcept {
    nxl::print_error(srname, *info, len);
}
