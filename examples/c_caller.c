/* nxl from C: a dot product, a vector update, and conjugate gradients on the equation -u'' = 1 of a string.
 * Every argument goes by reference; integers are 32-bit. */
#include <math.h>
#include <nxl.h>
#include <stdio.h>

enum { N = 100 };

/* y = A x for the tridiagonal matrix of -u'': 2 on the diagonal, -1 beside it. The library never sees the matrix. */
static void product(const double* x, double* y) {
    for (int i = 0; i < N; ++i) y[i] = 2.0 * x[i] - (i > 0 ? x[i - 1] : 0.0) - (i + 1 < N ? x[i + 1] : 0.0);
}

int main(void) {
    const int n = N, one = 1;
    const double minus_one = -1.0;
    double x[N] = {0.0}, b[N], exact[N];
    for (int i = 0; i < N; ++i) {
        b[i] = 1.0;
        exact[i] = 0.5 * (i + 1) * (N - i); /* the parabola that solves it */
    }

    /* The state of the run lives in these three arrays, so runs do not disturb each other. */
    int ipar[128], request;
    double dpar[128], tmp[4 * N];
    DCG_INIT(&n, x, b, &request, ipar, dpar, tmp);
    ipar[8] = 1;     /* let the solver test the residual ... */
    ipar[9] = 0;     /* ... and not ask us to */
    dpar[0] = 1e-20; /* the test is on squared norms: this asks for 1e-10 */
    DCG_CHECK(&n, x, b, &request, ipar, dpar, tmp);
    if (request != 0) return 1;
    do {
        DCG(&n, x, b, &request, ipar, dpar, tmp);
        if (request == 1) product(tmp, tmp + N); /* second column = A times first column */
    } while (request == 1);
    int iterations;
    DCG_GET(&n, x, b, &request, ipar, dpar, tmp, &iterations);

    daxpy(&n, &minus_one, exact, &one, x, &one); /* x becomes the error */
    const double error = sqrt(ddot(&n, x, &one, x, &one) / ddot(&n, exact, &one, exact, &one));
    printf("C: %s after %d iterations, relative error %.0e\n", request == 0 ? "solved" : "failed", iterations, error);
    return request == 0 && error < 1e-8 ? 0 : 1;
}
