// Entries of the incomplete LU preconditioners.
#include "nxl.h"
#include "service/export.hpp"
#include "solvers_rci/dcsrilu0.hpp"
#include "solvers_rci/dcsrilut.hpp"

extern "C" {

NXL_EXPORT void DCSRILU0(const int* n, const double* a, const int* ia, const int* ja, double* bilu0, const int* ipar,
                         const double* dpar, int* ierr) noexcept {
    nxl::rci::dcsrilu0(*n, a, ia, ja, bilu0, ipar, dpar, ierr);
}

NXL_EXPORT void DCSRILUT(const int* n, const double* a, const int* ia, const int* ja, double* bilut, int* ibilut,
                         int* jbilut, const double* tol, const int* maxfil, const int* ipar, const double* dpar,
                         int* ierr) noexcept {
    nxl::rci::dcsrilut(*n, a, ia, ja, bilut, ibilut, jbilut, *tol, *maxfil, ipar, dpar, ierr);
}

} // extern "C"
