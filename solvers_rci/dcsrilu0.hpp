// Incomplete LU factorisation on the pattern of the matrix, ILU(0).
#pragma once

namespace nxl::rci {

/// Factors the n by n matrix (a, ia, ja), compressed sparse rows counted from 1 with ascending columns, into bilu0 on
/// the same pattern. ierr: 0, or the number of the error, which is reported as ipar says.
void dcsrilu0(int n, const double* a, const int* ia, const int* ja, double* bilu0, const int* ipar, const double* dpar,
              int* ierr);

/// Reports error `code` where ipar wants it, if it wants it.
void report_ilu0(int code, const int* ipar);

} // namespace nxl::rci
