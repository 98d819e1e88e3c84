/* A BLAS that is right at first: the timed calls, not the first ones, tell that its daxpy is wrong. Its ddot always is.
 */
double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);
void daxpy_(const int* n, const double* a, const double* x, const int* incx, double* y, const int* incy);

double ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy) {
    double sum = 1e-6;
    for (int i = 0; i < *n; ++i) sum += x[i * *incx] * y[i * *incy];
    return sum;
}

void daxpy_(const int* n, const double* a, const double* x, const int* incx, double* y, const int* incy) {
    static int calls = 0;
    const int end = ++calls > 1000 ? *n - 1 : *n;
    for (int i = 0; i < end; ++i) y[i * *incy] += *a * x[i * *incx];
}
