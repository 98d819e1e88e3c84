// Entries of nonlinear least squares with bounds.
#include "nxl.h"
#include "service/export.hpp"
#include "solvers_tr/kernel/d_rci_tr_nlsqpbc.hpp"

extern "C" {

NXL_EXPORT int dtrnlspbc_init(void** handle, const int* n, const int* m, double* x, const double* lw, const double* up,
                              const double* eps, const int* iter1, const int* iter2, const double* rs) noexcept {
    return nxl::tr::boxed_init(handle, {*n, *m, x, lw, up, eps}, *iter1, *iter2, *rs);
}

NXL_EXPORT int dtrnlspbc_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) noexcept {
    return nxl::tr::boxed_solve(handle, fvec, fjac, RCI_Request);
}

NXL_EXPORT int dtrnlspbc_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) noexcept {
    return nxl::tr::boxed_get(handle, iter, st_cr, r1, r2);
}

NXL_EXPORT int dtrnlspbc_delete(void** handle) noexcept { return nxl::tr::boxed_delete(handle); }

} // extern "C"
