/* Calls with a bad argument, from a program without a handler for the reports. */
#include "nxl_cblas.h"

void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k, const double* alpha,
            const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
            const int* ldc, size_t transa_length, size_t transb_length);

int main(void) {
    const int one = 1, negative = -1;
    const double alpha = 1.0, a[1] = {1.0};
    double c[1] = {0.0};
    dgemm_("N", "N", &negative, &one, &one, &alpha, a, &one, a, &one, &alpha, c, &one, 1, 1);
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, -1, 1, 1, alpha, a, 1, a, 1, alpha, c, 1);
    return c[0] != 0.0;
}
