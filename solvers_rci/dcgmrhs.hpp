// Conjugate gradients for several right-hand sides of one matrix, by reverse communication.
#pragma once

namespace nxl::rci {

/// Defaults for nrhs systems of n unknowns, and zeros in all of tmp, nrhs + 3 columns.
int dcgmrhs_init(int n, int nrhs, int* ipar, double* dpar, double* tmp);

int dcgmrhs_check(int n, int* ipar, double* dpar);

/// Goes on from the caller's answer to the last request to the next request, which is the result.
int dcgmrhs(double* x, int nrhs, const double* b, int answer, int* ipar, double* dpar, double* tmp);

/// The iterations spent on each system.
void dcgmrhs_iterations(int nrhs, const int* ipar, int* itercount);

} // namespace nxl::rci
