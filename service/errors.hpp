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

/// The library's own XERBLA. `info` chooses the message: 1000 no work memory, 1001 incompatible optional parameters,
/// above 0 the position of a bad argument, else an internal condition. At most 20 characters of `name` are printed.
void print_error(const char* name, int info, int name_length);

/// -1, all bits set, when the first bytes of `a` and `b` are the same letter, whatever its case, or the same byte; else
/// 0. The lengths are the hidden ones of a Fortran call and are not looked at.
i64 LSAME(const char* a, const char* b, int a_length, int b_length);

} // namespace nxl
