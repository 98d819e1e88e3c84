// Flexible restarted GMRES by reverse communication.
#pragma once

namespace nxl::rci {

/// Defaults for a system of n unknowns, and zeros in the first n elements of tmp.
int dfgmres_init(int n, int* ipar, double* dpar, double* tmp);

/// Examines and mends the parameters, and lays out tmp.
int dfgmres_check(int n, int* ipar, double* dpar);

/// Goes on from the last request to the next one, which is the result.
int dfgmres(double* x, const double* b, int request, int* ipar, double* dpar, double* tmp);

/// The solution of the present cycle, to the place that ipar(13) names.
int dfgmres_get(double* x, double* b, int* ipar, double* dpar, double* tmp);

} // namespace nxl::rci
