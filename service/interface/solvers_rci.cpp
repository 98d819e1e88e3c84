// Entries of the reverse-communication solvers.
#include "nxl.h"
#include "service/export.hpp"
#include "solvers_rci/dcg.hpp"
#include "solvers_rci/dcgmrhs.hpp"
#include "solvers_rci/dfgmres.hpp"

extern "C" {

NXL_EXPORT void DCG_INIT(const int* n, const double*, const double*, int* RCI_request, int* ipar, double* dpar,
                         double* tmp) noexcept {
    *RCI_request = nxl::rci::dcg_init(*n, ipar, dpar, tmp);
}

NXL_EXPORT void DCG_CHECK(const int* n, const double*, const double*, int* RCI_request, int* ipar, double* dpar,
                          double*) noexcept {
    *RCI_request = nxl::rci::dcg_check(*n, ipar, dpar);
}

NXL_EXPORT void DCG(const int*, double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
                    double* tmp) noexcept {
    *RCI_request = nxl::rci::dcg(x, b, ipar, dpar, tmp);
}

NXL_EXPORT void DCG_GET(const int*, const double*, const double*, const int*, const int* ipar, const double*,
                        const double*, int* itercount) noexcept {
    *itercount = nxl::rci::dcg_iterations(ipar);
}

NXL_EXPORT void DCGMRHS_INIT(const int* n, const double*, const int* nrhs, const double*, const int*, int* RCI_request,
                             int* ipar, double* dpar, double* tmp) noexcept {
    *RCI_request = nxl::rci::dcgmrhs_init(*n, *nrhs, ipar, dpar, tmp);
}

NXL_EXPORT void DCGMRHS_CHECK(const int* n, const double*, const int*, const double*, int* RCI_request, int* ipar,
                              double* dpar, double*) noexcept {
    *RCI_request = nxl::rci::dcgmrhs_check(*n, ipar, dpar);
}

NXL_EXPORT void DCGMRHS(const int*, double* x, const int* nrhs, const double* b, int* RCI_request, int* ipar,
                        double* dpar, double* tmp) noexcept {
    *RCI_request = nxl::rci::dcgmrhs(x, *nrhs, b, *RCI_request, ipar, dpar, tmp);
}

NXL_EXPORT void DCGMRHS_GET(const int*, const double*, const int* nrhs, const double*, const int*, const int* ipar,
                            const double*, const double*, int* itercount) noexcept {
    nxl::rci::dcgmrhs_iterations(*nrhs, ipar, itercount);
}

NXL_EXPORT void DFGMRES_INIT(const int* n, const double*, const double*, int* RCI_request, int* ipar, double* dpar,
                             double* tmp) noexcept {
    *RCI_request = nxl::rci::dfgmres_init(*n, ipar, dpar, tmp);
}

NXL_EXPORT void DFGMRES_CHECK(const int* n, const double*, const double*, int* RCI_request, int* ipar, double* dpar,
                              double*) noexcept {
    *RCI_request = nxl::rci::dfgmres_check(*n, ipar, dpar);
}

NXL_EXPORT void DFGMRES(const int*, double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
                        double* tmp) noexcept {
    *RCI_request = nxl::rci::dfgmres(x, b, *RCI_request, ipar, dpar, tmp);
}

NXL_EXPORT void DFGMRES_GET(const int*, double* x, double* b, int* RCI_request, int* ipar, double* dpar, double* tmp,
                            int* itercount) noexcept {
    *RCI_request = nxl::rci::dfgmres_get(x, b, ipar, dpar, tmp);
    *itercount = ipar[3];
}

} // extern "C"
