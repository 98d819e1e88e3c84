/* nxl.h from C, with strict warnings: what differs from C++, which is complex numbers, and arguments by value. Returns
   the number of wrong results. */
#include "nxl.h"
#include <math.h>
#include <stdio.h>

static int failures = 0;

static void expect(int right, const char* what) {
    if (right) return;
    printf("wrong: %s\n", what);
    ++failures;
}

static void level1(void) {
    const int n = 3, one = 1;
    const double two = 2.0, x[3] = {1.0, 2.0, 3.0};
    double y[3] = {4.0, 5.0, 6.0};
    const nxl_z u[1] = {1.0 + 2.0 * I};
    nxl_z dot = 0.0;
    expect(ddot(&n, x, &one, y, &one) == 32.0, "ddot");
    daxpy(&n, &two, x, &one, y, &one);
    expect(y[2] == 12.0, "daxpy");
    zdotc(&dot, &one, u, &one, u, &one);
    expect(creal(dot) == 5.0 && cimag(dot) == 0.0, "zdotc");
}

/* A = (1 2; 3 4) by columns, B = (i 0; 0 1). */
static void level3(void) {
    const int two = 2;
    const double a[4] = {1.0, 3.0, 2.0, 4.0}, half = 0.5, minus_one = -1.0;
    const nxl_z b[4] = {1.0 * I, 0.0, 0.0, 1.0}, one = 1.0, zero = 0.0;
    double c[4] = {1.0, 1.0, 1.0, 1.0};
    nxl_z d[4];
    dgemm("N", "T", &two, &two, &two, &half, a, &two, a, &two, &minus_one, c, &two);
    expect(c[0] == 1.5 && c[1] == 4.5 && c[2] == 4.5 && c[3] == 11.5, "dgemm");
    zgemm("C", "N", &two, &two, &two, &one, b, &two, b, &two, &zero, d, &two);
    expect(creal(d[0]) == 1.0 && cimag(d[0]) == 0.0 && creal(d[1]) == 0.0 && creal(d[3]) == 1.0, "zgemm");
}

static void sparse_level1(void) {
    const int nz = 2, indx[2] = {4, 1};
    const double x[2] = {10.0, 20.0};
    double y[4] = {0.0, 0.0, 0.0, 0.0};
    dsctr(&nz, x, indx, y);
    expect(y[3] == 10.0 && y[0] == 20.0, "dsctr");
}

static void services(void) {
    const int four = 4;
    NXL_Set_Dynamic(0);
    NXL_Set_Num_Threads(3);
    expect(NXL_Get_Max_Threads() == 3, "NXL_Get_Max_Threads");
    expect(NXL_Domain_Set_Num_Threads(2, 1) == 1 && NXL_Domain_Get_Max_Threads(1) == 2, "NXL_Domain_Set_Num_Threads");
    expect(D1MACH(&four) > 2.2e-16 && R1MACH(&four) > 1.1e-7F, "D1MACH, R1MACH");
    expect(NXL_PROGRESS(&four, &four, "", 0) == 0, "NXL_PROGRESS");
    NXL_FreeBuffers();
}

/* H1 - J = iY of the order 1 after 0, and Bi(0) = sqrt(3) Ai(0). */
static void special_functions(void) {
    const nxl_c z = 1.5F - 2.0F * I, origin = 0.0F;
    const float order = 0.0F;
    const int zero = 0, one = 1, two = 2;
    nxl_c j[2], y[2], h[2], work[2], ai, bi;
    int nz, ierr[5];
    CBESJ(&z, &order, &one, &two, j, &nz, &ierr[0]);
    CBESY(&z, &order, &one, &two, y, &nz, work, &ierr[1]);
    CBESH(&z, &order, &one, &one, &two, h, &nz, &ierr[2]);
    expect(ierr[0] + ierr[1] + ierr[2] == 0 && cabsf(h[1] - j[1] - I * y[1]) < 1e-6F, "CBESJ, CBESY, CBESH");
    CAIRY(&origin, &zero, &one, &ai, &nz, &ierr[3]);
    CBIRY(&origin, &zero, &one, &bi, &ierr[4]);
    expect(ierr[3] + ierr[4] == 0 && fabsf(crealf(bi) - sqrtf(3.0F) * crealf(ai)) < 1e-6F, "CAIRY, CBIRY");
}

int main(void) {
    level1();
    level3();
    sparse_level1();
    services();
    special_functions();
    return failures;
}
