// Reports of the library's own calls, through the handler that a host may replace, and what stands behind that handler.
#pragma once
#include "nxl.h"
#include "service/types.hpp"

namespace nxl {

/// `name`: six characters, padded with blanks.
inline void report_no_memory(const char* name) {
    const int no_memory = 1000;
    XERBLA(name, &no_memory, 6);
}

/// Argument `position`, from 1, of a routine is bad. True, for checks that return whether they have reported.
[[gnu::cold]] bool report_argument(const char* name, int position);

/// The library's own XERBLA. `info` chooses the message: 1000 no work memory, 1001 incompatible optional parameters,
/// above 0 the position of a bad argument, else an internal condition. At most 20 characters of `name` are printed.
void print_error(const char* name, int info, int name_length);

} // namespace nxl
