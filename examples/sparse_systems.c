/* Several sparse systems with one analysis: heat spreads in a square plate whose edges stay cold, u' = -K u, by
 * implicit steps (I + dt K) u_next = u. All steps have one pattern: it is analysed once, factored for each length of
 * step, and each factor serves several steps with two plates at once. */
#include <math.h>
#include <nxl.h>
#include <stdint.h>
#include <stdio.h>

enum { SIDE = 40, N = SIDE * SIDE, PLATES = 2 };
static const double pi = 3.14159265358979323846;

static int ia[N + 1], ja[3 * N], perm[N];
static double a[3 * N], u[PLATES * N], next[PLATES * N];

/* The upper triangle of I + dt K, whose pattern is the same for every dt. Indices count from 1. */
static void matrix_of_step(double dt) {
    const double weight = dt * (SIDE + 1) * (SIDE + 1); /* by the square of the mesh width */
    int k = 0;
    for (int i = 0; i < N; ++i) {
        ia[i] = k + 1;
        a[k] = 1.0 + 4.0 * weight, ja[k++] = i + 1;
        if ((i + 1) % SIDE != 0) a[k] = -weight, ja[k++] = i + 2;
        if (i + SIDE < N) a[k] = -weight, ja[k++] = i + SIDE + 1;
    }
    ia[N] = k + 1;
}

/* Waves with p bellies along each edge are eigenvectors of K: element i, and the eigenvalue. */
static double wave(int p, int i) {
    const int column = i % SIDE + 1, row = i / SIDE + 1;
    return sin(p * pi * column / (SIDE + 1)) * sin(p * pi * row / (SIDE + 1));
}
static double decay(int p) {
    const double s = sin(0.5 * p * pi / (SIDE + 1));
    return 8.0 * (SIDE + 1) * (SIDE + 1) * s * s;
}

int main(void) {
    int64_t pt[64] = {0}; /* the handle: all zero before the first call */
    int iparam[64] = {0}; /* iparam(1) = 0: defaults */
    const int one = 1, definite = 2, n = N, plates = PLATES, quiet = 0;
    const int analyse = 11, factorise = 22, solve = 33, clean = -1;
    int error = 0;
    double expected[PLATES] = {1.0, 1.0};
    for (int p = 0; p < PLATES; ++p)
        for (int i = 0; i < N; ++i) u[p * N + i] = wave(p + 1, i);

    matrix_of_step(1.0);
    PARDISO(pt, &one, &one, &definite, &analyse, &n, a, ia, ja, perm, &plates, iparam, &quiet, u, next, &error);
    if (error != 0) return printf("C: analysis ends with %d\n", error), 1;
    iparam[5] = 1;                                 /* iparam(6): solutions replace the right-hand sides */
    for (double dt = 1e-4; dt < 2e-3; dt *= 2.0) { /* the steps grow as the plates calm down */
        matrix_of_step(dt);
        PARDISO(pt, &one, &one, &definite, &factorise, &n, a, ia, ja, perm, &plates, iparam, &quiet, u, next, &error);
        if (error != 0) return printf("C: factorisation ends with %d\n", error), 1;
        for (int step = 0; step < 3; ++step) {
            PARDISO(pt, &one, &one, &definite, &solve, &n, a, ia, ja, perm, &plates, iparam, &quiet, u, next, &error);
            for (int p = 0; p < PLATES; ++p) expected[p] /= 1.0 + dt * decay(p + 1);
        }
    }
    PARDISO(pt, &one, &one, &definite, &clean, &n, a, ia, ja, perm, &plates, iparam, &quiet, u, next, &error);

    /* Each plate still has its first shape, smaller by what the steps have taken. */
    double difference = 0.0;
    for (int p = 0; p < PLATES; ++p)
        for (int i = 0; i < N; ++i) difference = fmax(difference, fabs(u[p * N + i] - expected[p] * wave(p + 1, i)));
    printf("C: 15 steps with 5 factors of one analysis, largest error %.0e\n", difference);
    return difference < 1e-12 ? 0 : 1;
}
