// The conjugate gradient method for one right-hand side, by reverse communication.
#pragma once

namespace nxl::rci {

/// Defaults for a system of n unknowns, and zeros in the first three columns of tmp.
int dcg_init(int n, int* ipar, double* dpar, double* tmp);

int dcg_check(int n, int* ipar, double* dpar);

/// Goes on to the next request, which is the result.
int dcg(double* x, const double* b, int* ipar, double* dpar, double* tmp);

int dcg_iterations(const int* ipar);

} // namespace nxl::rci
