// The error handler of CBLAS, apart from its callers, so that their calls can be taken by a program's own.
#include "nxl_cblas.h"
#include "service/export.hpp"
#include <cstdarg>
#include <cstdio>

extern "C" NXL_EXPORT void cblas_xerbla(int p, const char* rout, const char* form, ...) {
    std::va_list values;
    va_start(values, form);
    flockfile(stderr); // one report, also where several threads report
    if (p != 0) std::fprintf(stderr, "NXL ERROR: Parameter %d was incorrect on entry to %s. ", p, rout);
    std::vfprintf(stderr, form, values);
    funlockfile(stderr);
    va_end(values);
}
