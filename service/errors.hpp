// Reports of the library's own calls, through the handler that a host may replace.
#pragma once
#include "nxl.h"

namespace nxl {

/// `name`: six characters, padded with blanks.
inline void report_no_memory(const char* name) {
    const int no_memory = 1000;
    XERBLA(name, &no_memory, 6);
}

} // namespace nxl
