// LAPACK, eigenproblems: entries.
#include "lapack/kernel/source/eigen/laev2.hpp"
#include "nxl.h"
#include "service/export.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void ZLAEV2(const nxl_z* a, const nxl_z* b, const nxl_z* c, double* rt1, double* rt2, double* cs1,
                       nxl_z* sn1) noexcept {
    nxl_lapack_zlaev2(*a, *b, *c, *rt1, *rt2, *cs1, *sn1);
}

} // extern "C"
