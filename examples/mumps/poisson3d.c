/* Past one machine: -div grad u = f on the unit cube by differences, by MUMPS over all processes. What each process
 * does on its own fronts is BLAS, and with libnxl_gnu.so preloaded runs there. Prints seconds and the scaled residual;
 * returns 1 when that is above 10. Argument: unknowns along an edge, 40 when absent. */
#include <dmumps_c.h>
#include <float.h>
#include <math.h>
#include <mpi.h>
#include <stdio.h>
#include <stdlib.h>

enum { job_init = -1, job_end = -2, job_analyse = 1, job_factor = 2, job_solve = 3, use_comm_world = -987654 };

/* The lower triangle in coordinates; returns its entries. Counts from 1. */
static MUMPS_INT8 fill(int side, MUMPS_INT* row, MUMPS_INT* column, double* value) {
    MUMPS_INT8 entries = 0;
    for (int z = 0; z < side; ++z)
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const int i = (z * side + y) * side + x + 1;
                const int there[4] = {1, x > 0, y > 0, z > 0}, step[4] = {0, 1, side, side * side};
                for (int k = 0; k < 4; ++k) {
                    if (!there[k]) continue;
                    row[entries] = i;
                    column[entries] = i - step[k];
                    value[entries++] = k == 0 ? 6.0 : -1.0;
                }
            }
    return entries;
}

/* |b - A x| / (|A| |x| n eps), largest elements; b is 1 everywhere. */
static double residual(const DMUMPS_STRUC_C* id, const double* x) {
    double* const rest = malloc(sizeof(double) * (size_t)id->n);
    double worst = 0.0, size = 0.0;
    for (int i = 0; i < id->n; ++i) rest[i] = 1.0;
    for (MUMPS_INT8 k = 0; k < id->nnz; ++k) {
        const int i = id->irn[k] - 1, j = id->jcn[k] - 1;
        rest[i] -= id->a[k] * x[j];
        if (i != j) rest[j] -= id->a[k] * x[i];
    }
    for (int i = 0; i < id->n; ++i) {
        worst = fmax(worst, fabs(rest[i]));
        size = fmax(size, fabs(x[i]));
    }
    free(rest);
    return worst / (12.0 * size * id->n * DBL_EPSILON);
}

static double seconds_of(DMUMPS_STRUC_C* id, int job) {
    const double start = MPI_Wtime();
    id->job = job;
    dmumps_c(id);
    if (id->infog[0] < 0) {
        fprintf(stderr, "job %d of MUMPS ends with %d\n", job, id->infog[0]);
        MPI_Abort(MPI_COMM_WORLD, 1);
    }
    return MPI_Wtime() - start;
}

int main(int argc, char** argv) {
    const int side = argc > 1 ? atoi(argv[1]) : 40;
    int me = 0, processes = 0, failed = 0;
    MPI_Init(&argc, &argv);
    MPI_Comm_rank(MPI_COMM_WORLD, &me);
    MPI_Comm_size(MPI_COMM_WORLD, &processes);
    DMUMPS_STRUC_C id = {.par = 1, .sym = 1, .comm_fortran = use_comm_world}; /* the host works, too; definite */
    seconds_of(&id, job_init);
    for (int k = 0; k < 4; ++k) id.icntl[k] = k == 3 ? 1 : -1; /* errors alone, and none printed */
    if (me == 0) {
        const size_t room = 4 * (size_t)side * (size_t)side * (size_t)side;
        id.n = side * side * side;
        id.irn = malloc(sizeof(MUMPS_INT) * room);
        id.jcn = malloc(sizeof(MUMPS_INT) * room);
        id.a = malloc(sizeof(double) * room);
        id.rhs = malloc(sizeof(double) * (size_t)id.n);
        id.nnz = fill(side, id.irn, id.jcn, id.a);
        for (int i = 0; i < id.n; ++i) id.rhs[i] = 1.0;
    }
    const double analysis = seconds_of(&id, job_analyse), factor = seconds_of(&id, job_factor),
                 solution = seconds_of(&id, job_solve);
    if (me == 0) {
        const double error = residual(&id, id.rhs);
        failed = !(error <= 10.0);
        printf("n = %d, processes %d: analysis %.3f s, factorisation %.3f s, solution %.3f s\n", id.n, processes,
               analysis, factor, solution);
        printf("dmumps, |b - A x| / (|A| |x| n eps) %.4f\n", error);
        free(id.irn);
        free(id.jcn);
        free(id.a);
        free(id.rhs);
    }
    seconds_of(&id, job_end);
    MPI_Finalize();
    return failed;
}
