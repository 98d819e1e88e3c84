// Entries of the Toeplitz solvers and of the exchange algorithm.
#include "nxl.h"
#include "primitives/signal/remez.hpp"
#include "primitives/signal/toeplitz.hpp"
#include "service/errors.hpp"
#include "service/export.hpp"
#include "service/interface/integers.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void TSLD1(const double* a1, const double* a2, const double* b, double* x, double* c1, double* c2,
                      const int* m) noexcept {
    const i64 m64 = *m;
    nxl_tsld1(a1, a2, b, x, c1, c2, &m64);
}

NXL_EXPORT void TSLZ1(const nxl_z* a1, const nxl_z* a2, const nxl_z* b, nxl_z* x, nxl_z* c1, nxl_z* c2,
                      const int* m) noexcept {
    const i64 m64 = *m;
    nxl_tslz1(a1, a2, b, x, c1, c2, &m64);
}

NXL_EXPORT void REMEZ(const int* ngr, const int* nfc, int* iext, double* ad, double* x, double* y, const double* des,
                      const double* grid, const double* wt, double* a, double* p, double* q, double* alpha) noexcept {
    const i64 ngr64 = *ngr, nfc64 = *nfc;
    WideInts extrema(iext, nfc64 < 1 ? 0 : nfc64 + 2, Transfer::in_out);
    if (!extrema.data()) return report_no_memory("REMEZ ");
    nxl_remez(&ngr64, &nfc64, extrema.data(), ad, x, y, des, grid, wt, a, p, q, alpha);
}

} // extern "C"
