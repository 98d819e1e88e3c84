// Incomplete LU factorisation with a drop tolerance and a limit per row, ILUT.
#pragma once

namespace nxl::rci {

/// Factors the n by n matrix (a, ia, ja), compressed sparse rows counted from 1, into (bilut, ibilut, jbilut), at most
/// 2 maxfil + 1 entries per row. ierr: 0, the number of the last warning, or that of the error.
void dcsrilut(int n, const double* a, const int* ia, const int* ja, double* bilut, int* ibilut, int* jbilut, double tol,
              int maxfil, const int* ipar, const double* dpar, int* ierr);

/// Reports `code`, a warning (101 to 104) or an error (-101 to -107), where ipar(2) wants it. Whether it is wanted is
/// left to the caller.
void report_ilut(int code, const int* ipar);

} // namespace nxl::rci
