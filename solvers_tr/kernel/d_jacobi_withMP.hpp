// The Jacobian of a function by central differences: by reverse communication, and with the function given, over
// threads. Column i costs two evaluations, at points that differ from x in x(i) alone.
#pragma once

namespace nxl::tr {

/// f(1..m) at x(1..n).
using Function = void (*)(const int* m, const int* n, const double* x, double* f);

/// Values of RCI_Request; as a result, what the caller has to do next.
enum JacobiRequest : int { jacobian_done = 0, evaluate_forward = 1, evaluate_backward = 2 };

int jacobi_init(void** handle, int n, int m, double* x, double* fjac, double eps);
int jacobi_solve(void** handle, double* f1, double* f2, int& request);
int jacobi_delete(void** handle);

/// The whole Jacobian, fjac(m,n). x is written and restored. On several threads `fcn` is called concurrently.
int jacobi(Function fcn, int n, int m, double* fjac, double* x, double eps);

} // namespace nxl::tr
