// Entries of the numeric Jacobian and the trust-region solver.
#include "nxl.h"
#include "service/export.hpp"
#include "solvers_tr/kernel/d_jacobi_withMP.hpp"
#include "solvers_tr/kernel/d_rci_tr_nlsqp_withMP.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT int djacobi_init(void** handle, const int* n, const int* m, double* x, double* fjac,
                            const double* eps) noexcept {
    return tr::jacobi_init(handle, *n, *m, x, fjac, *eps);
}

NXL_EXPORT int djacobi_solve(void** handle, double* f1, double* f2, int* RCI_Request) noexcept {
    return tr::jacobi_solve(handle, f1, f2, *RCI_Request);
}

NXL_EXPORT int djacobi_delete(void** handle) noexcept { return tr::jacobi_delete(handle); }

NXL_EXPORT int djacobi(nxl_function fcn, const int* n, const int* m, double* fjac, double* x,
                       const double* eps) noexcept {
    return tr::jacobi(fcn, *n, *m, fjac, x, *eps);
}

NXL_EXPORT int dtrnlsp_init(void** handle, const int* n, const int* m, double* x, const double* eps, const int* iter1,
                            const int* iter2, const double* rs) noexcept {
    return tr::nlsqp_init(handle, *n, *m, x, eps, *iter1, *iter2, *rs);
}

NXL_EXPORT int dtrnlsp_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) noexcept {
    return tr::nlsqp_solve(handle, fvec, fjac, *RCI_Request);
}

NXL_EXPORT int dtrnlsp_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) noexcept {
    return tr::nlsqp_get(handle, *iter, *st_cr, *r1, *r2);
}

NXL_EXPORT int dtrnlsp_delete(void** handle) noexcept { return tr::nlsqp_delete(handle); }

} // extern "C"
