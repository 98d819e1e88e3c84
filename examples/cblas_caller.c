/* nxl under the names that C programs know from CBLAS: matrices by rows, sizes and scalars by value. */
#include <nxl_cblas.h>
#include <stdio.h>

int main(void) {
    const double a[] = {1.0, 2.0, 3.0, /**/ 4.0, 5.0, 6.0}; /* 2 by 3, row by row */
    const double x[] = {1.0, 0.0, -1.0};
    double y[2], gram[4];
    cblas_dgemv(CblasRowMajor, CblasNoTrans, 2, 3, 1.0, a, 3, x, 1, 0.0, y, 1);
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasTrans, 2, 2, 3, 1.0, a, 3, a, 3, 0.0, gram, 2);
    printf("A x = (%g, %g), A A^T = (%g, %g; %g, %g)\n", y[0], y[1], gram[0], gram[1], gram[2], gram[3]);
    return y[0] == -2.0 && y[1] == -2.0 && gram[1] == 32.0 && gram[2] == 32.0 && gram[3] == 77.0 ? 0 : 1;
}
