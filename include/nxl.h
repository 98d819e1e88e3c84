/* nxl: double-precision numerics for x86-64 Linux. The C and C++ interface; nxl.f90 is its Fortran twin.
 *
 * Calling convention of the numerical routines, as in Fortran: every argument by reference, integers 32-bit, arrays
 * column-major with a leading dimension, complex numbers as pairs of doubles. Names are exported as they stand here,
 * without underscores. Thread-control calls and the like take their arguments by value where their prototype says so.
 * Every routine may be called from any number of threads at the same time.
 */
#ifndef NXL_H
#define NXL_H

#include <stdint.h>
#ifdef __cplusplus
#include <complex>
typedef std::complex<double> nxl_z; /**< complex numbers, in Fortran complex(c_double_complex) */
typedef std::complex<float> nxl_c;  /**< the same in single precision, complex(c_float_complex) */
#else
#include <complex.h>
typedef double _Complex nxl_z; /**< complex numbers, in Fortran complex(c_double_complex) */
typedef float _Complex nxl_c;  /**< the same in single precision, complex(c_float_complex) */
#endif

/* A Fortran compiler passes the lengths of character arguments behind the declared ones, by value. LAPACK routines have
 * room for them and look at first characters only; callers in C pass 1 for each, callers in C++ may leave them out. */
#ifdef __cplusplus
#define NXL_NOEXCEPT noexcept
#define NXL_LENGTH(name) int name = 1
extern "C" {
#else
#define NXL_NOEXCEPT
#define NXL_LENGTH(name) int name
#endif

/* ==== Errors ======================================================================================================
 * Where reports of bad arguments go. */

/* Where BLAS and LAPACK routines report a bad argument. Prints one line on standard output and returns; it never stops
 * the program. A host that wants the reports defines a function of this name itself, which then replaces this one.
 *   srname  the routine's name, not terminated, padded with blanks to six characters by the library's own calls;
 *           at most 20 characters are printed
 *   info    above 0: the position, from 1, of the bad argument; 1000: no work memory; 1001: optional parameters that do
 *           not go together; 0 or below: an internal condition, printed negated
 *   len     length of srname, by value. */
void XERBLA(const char* srname, const int* info, int len) NXL_NOEXCEPT;

/* ==== Threads =====================================================================================================
 * How many OpenMP threads a call may use. Arguments come by value. Counts are kept per domain: 0 all routines, 1 BLAS,
 * 2 FFT, 3 VML; the last two are kept for hosts that name them, no routine here asks for them. What the program sets
 * beats the environment, before the first query and after. The environment: docs/threads-and-memory.md. */

/* Sets the count of domain 0. An n below 1 is ignored. */
void NXL_Set_Num_Threads(int n) NXL_NOEXCEPT;

/* The threads that a call may use, at least 1: the count of domain 0, else what omp_get_max_threads says, that of
 * libgomp in a program that uses it. With dynamic adjustment on, at most the physical cores, and 1 inside a parallel
 * region. */
int NXL_Get_Max_Threads(void) NXL_NOEXCEPT;

/* Sets the count of one domain. Returns 1; or 0, with nothing changed, for a negative n or a domain outside 0 to 3. A
 * stored 0 means: go by domain 0; and for domain 0: go by OpenMP's own default, whatever the environment says. */
int NXL_Domain_Set_Num_Threads(int n, int domain) NXL_NOEXCEPT;

/* As NXL_Get_Max_Threads, for routines of one domain: its own count first, then that of domain 0. A domain outside 0 to
 * 3 is answered as domain 0. */
int NXL_Domain_Get_Max_Threads(int domain) NXL_NOEXCEPT;

/* Turns dynamic adjustment off (flag 0) or on (any other). It is on unless the environment has NXL_DYNAMIC=FALSE. */
void NXL_Set_Dynamic(int flag) NXL_NOEXCEPT;

/* 1 when dynamic adjustment is on, else 0. */
int NXL_Get_Dynamic(void) NXL_NOEXCEPT;

/* How long OpenMP's threads stay awake after a parallel region, in milliseconds: kmp_set_blocktime of the runtime. */
void okmp_set_blocktime(int milliseconds) NXL_NOEXCEPT;

/* ==== Memory, progress, timers, machine constants =================================================================
 * Giving scratch memory back, following a factorisation, elapsed time, the limits of the number formats. */

/* Gives the scratch memory that the library keeps for reuse, on all threads, back to the system. What a thread keeps
 * goes back by itself when it ends. Call it when no other call into the library is running. Blocks in use stay.
 * Afterwards every thread may go on calling. */
void NXL_FreeBuffers(void) NXL_NOEXCEPT;

/* A host's function that is told about progress: thread number, step, and the stage's name with its length. */
typedef int (*nxl_progress_callback)(const int* thread, const int* step, const char* stage, int stage_length);

/* Called by routines that report progress; returns 0. A host that wants to follow them defines a function of this name
 * itself, which then takes the place of this one. */
int NXL_PROGRESS(const int* thread, const int* step, const char* stage, int stage_length) NXL_NOEXCEPT;

/* Keeps a callback, in place of the one before; null takes it away. Only test_NXL_Progress_Callback calls it. */
void set_NXL_Progress_Callback(nxl_progress_callback callback) NXL_NOEXCEPT;

/* Calls the callback once for trial and returns its answer, or 0 when there is none. The callback gets the addresses of
 * the integers 1, 2 and 3 (stage points to an int here, not to text) and the length 4. */
int test_NXL_Progress_Callback(void) NXL_NOEXCEPT;

/* Elapsed seconds from the processor's time-stamp counter. Only differences mean anything. The first call takes a tenth
 * of a second, in which the counter's rate is measured against the system's monotonic clock. */
double DSECND(void) NXL_NOEXCEPT;

/* Machine constants of double precision: i = 1 smallest positive number, 2 largest number, 3 smallest relative spacing,
 * 4 largest relative spacing, 5 log10 of 2; 0 for any other i. They are traditional decimal values, close to the limits
 * of the format but not exactly at them. */
double D1MACH(const int* i) NXL_NOEXCEPT;

/* Machine constants of single precision, by the same numbers as D1MACH. */
float R1MACH(const int* i) NXL_NOEXCEPT;

/* ==== Sparse linear systems, directly =============================================================================
 * A X = B with A sparse, by factorisation. One routine for nine types of matrices, called with a step at a time: what
 * is known of a pattern is kept in a handle and serves every matrix that has it. A whole program and advice:
 * docs/pardiso.md.
 *
 * A is stored by compressed rows, counted from 1: the entries of row i are a(k), in the columns ja(k), for ia(i) <= k <
 * ia(i+1), columns ascending. Types whose number is even store the upper triangle, with its whole diagonal, the others
 * every entry.
 *   1   real, symmetric pattern           2   real, symmetric positive definite   -2  real, symmetric
 *   3   complex, symmetric pattern        4   Hermitian positive definite         -4  Hermitian
 *   6   complex, symmetric               11   real                                13  complex
 *
 * ido, the step; error is 0 unless told otherwise:
 *   11, 12, 13  analysis; analysis and factorisation; both and solution
 *   22, 23, 33  factorisation; factorisation and solution; solution, with error 0 whatever happens while iparam(4)
 *               is 0; where files of the factors cannot be read x is NaN
 *   331, 332, 333  the forward, the diagonal and the backward step of a solution
 *   0    frees the factorisation of matrix_number
 *   -1   frees everything and makes the handle new
 *   -2   query: error 16 and iparam(1) = 23     -3  query: error 300000
 * A factorisation that the host stops through NXL_PROGRESS ends without an error, without a factor and without what the
 * step was to do next. A solution is refined where iparam(8) asks for it or pivots were replaced.
 *
 * iparam, 64 integers; in brackets the default that a step beginning with the analysis fills in while iparam(1) is 0:
 *    1       0: fill the defaults in; 1: they are the caller's; others: too, without L of iparam(4), with iparam(12)
 *    2 [2]   order of elimination: 0 multiple minimum degree, 1 the same by independent subgraphs, 2 nested dissection
 *            by METIS
 *    3       out: threads, the smaller of neqns and NXL_Get_Max_Threads; 1 out of core
 *    4 [0]   10 L + K, solution by iterations that an older factorisation preconditions, to a residual of 10^-L: by CG
 *            for types 2 and -2, else by CGS; K = 0: none. A factorisation is made where there is none or the
 *            iteration has failed, but not by step 33; above 0, K also limits the time of the iteration, to 1.35 K
 *            times that of the factorisation; below 0 there are 150 steps
 *    5 [0]   above 0 but not 2: perm is the order; 2: perm receives the computed one; below 0: the one that is used
 *    6 [0]   1: the solution is written over b too
 *    7       out: steps of refinement done
 *    8 [0]   most steps of refinement, 0: two where pivots were replaced; below 0 with residuals in doubled precision
 *    9 [0]   below 0: iparam(17) leaves factors and refinement out
 *   10       types 11, 13, -2, -4, 6: pivots below 10^-iparam(10) are replaced. [13] for 11 and 13, of the matrix as
 *            the matching scaled it; [8] for the others, times the root of row 1's largest entry off the diagonal
 *   11       1: scale by the matching: [1] for 11 and 13, else [0]
 *   12 [0]   1: solve with the transpose of an A that is stored in full; unless iparam(1) is 1. -1 afterwards: A is
 *            diagonal, the handle was never built, and steps 0 and -1 have nothing to do until this is 0 again
 *   13       1: permute large entries to the diagonal, or to its 2 by 2 blocks, before ordering; reads a: [1] for 11
 *            and 13, else [0]; types -2, -4, 6, 11 and 13 only, the first three with all of the diagonal stored; 2 to 4
 *            are refused
 *   14 [0]   out: pivots that were replaced
 *   15, 16, 17  out: kilobytes of memory that the analysis takes, of what stays of it, of factors
 *   18 [-1]  below 0: receives the entries of the factors, diagonal blocks whole; 2147483647 for any more
 *   19 [-1]  below 0: receives the millions of operations of a factorisation
 *   20 [0]   out: steps of the iterations, below 0 when they failed
 *   21       1: pivots of order 1 and 2 in symmetric indefinite blocks: [1] for -2, -4, 6, else [0], of order 1 alone
 *   22, 23 [0]  out: positive and negative pivots
 *   26       another than 0: no refinement while iparam(8) is 0, else residuals in doubled precision
 *   27       another than 0: check ia and ja, which otherwise have to be right; 0 afterwards
 *   31, 32, 33  out: where the check found ia or ja wrong, see below
 *   60 [0]   1, 2: factors on files, when memory does not do for them, or always; read by steps that begin with the
 *            analysis, before defaults are filled in. How much memory and which files: docs/out-of-core.md
 *   61, 62, 63  out: megabytes of the analysis, of what stays of it, and of factors in memory
 *   64       out: 105
 *   others are not read, or written 0
 *
 * error:
 *     0       success
 *    -1       an argument: with msglvl, lines on standard output say which and tell all of them; without, -7
 *    -2       no memory
 *    -3       no order: perm is no permutation, the pattern of types 1 and 3 is not symmetric, or a matching finds no
 *             entry stored on the diagonal of a symmetric matrix
 *    -4       a pivot that is not positive (types 2, 4) or 0 (1, 3), or iterations without convergence
 *    -5       internal
 *    -6       no perfect matching: A is structurally singular; or iparam(13) is 2 to 4
 *    -7       as -1, without messages; a 0 on the diagonal of a diagonal matrix
 *    -8       the graph or the factors are too large for their integers
 *    -9, -10, -11  out of core: memory; opening a file, or it belongs to another handle; reading or writing it. An
 *                  analysis that cannot save its part ends the program with code 2
 * iparam(27) finds four faults in a pattern; the first one that applies is told, at its last place, in iparam(31..33):
 *   21  ia does not begin with 1 or does not ascend at i: i, ia(i), ia(i+1)
 *   22  a column out of range at j: j, ja(j), neqns
 *   23  an entry below the diagonal, even types: i, ia(i), ja(ia(i))
 *   24  columns that do not ascend: j, ja(j), ja(j+1)
 * A failed first step leaves no handle behind; after others step -1 is due.
 *
 * A matrix with as many entries as rows is diagonal and solved at once: x = b / a. */

/* One step.
 *   pt             the handle: 64 words of 64 bits, all 0 before the first step; a handle serves one call at a time
 *   max_fac_store  factorisations kept at a time, for matrices of one pattern; fixed by the first step
 *   matrix_number  which of them, from 1
 *   matrix_type    see above
 *   ido            the step
 *   neqns          rows of A
 *   a              entries of A, doubles or pairs of them
 *   ia, ja         neqns + 1 row pointers, and columns; may be counted from 0 during an analysis, and are afterwards as
 *                  they were
 *   perm           neqns; the row that is eliminated first, second, ...: in, out, or not looked at, see iparam(5)
 *   nb             right-hand sides
 *   iparam         see above
 *   msglvl         another than 0: print a summary of each step, and what is wrong, on standard output
 *   b              neqns by nb, one column after the other
 *   x              the same: the solutions
 *   error          out
 * Methods: matching, Duff and Koster, SIAM J. Matrix Anal. Appl. 22 (2001); pairs, Duff and Pralet, the same 27 (2005);
 * minimum degree, Liu, ACM Trans. Math. Softw. 11 (1985); nested dissection, Karypis and Kumar, SIAM J. Sci. Comput. 20
 * (1998); elimination tree, Liu, SIAM J. Matrix Anal. Appl. 11 (1990); column counts, Gilbert, Ng and Peyton, the same
 * 15 (1994). */
void PARDISO(void* pt, const int* max_fac_store, const int* matrix_number, const int* matrix_type, const int* ido,
             const int* neqns, const void* a, int* ia, int* ja, int* perm, const int* nb, int* iparam,
             const int* msglvl, void* b, void* x, int* error) NXL_NOEXCEPT;

/* ==== Conjugate gradients, by reverse communication ===============================================================
 * For A x = b with A symmetric positive definite. The solver never sees A: call it in a loop, do what RCI_request asks
 * on columns of tmp, call again. A run is its ipar, dpar and tmp; nothing else is kept, and runs on arrays of their own
 * may go side by side. A whole program: docs/iterative-solvers.md. Indices below count from 1, columns hold n doubles.
 *
 * RCI_request as DCG and DCGMRHS return it:
 *      0  finished                           1  put A tmp(:,1) into tmp(:,2)
 *      2  test for yourself; to stop, leave the loop of DCG, or call DCGMRHS with RCI_request 1003
 *      3  DCG: put the preconditioned tmp(:,3) into tmp(:,4). DCGMRHS: put the preconditioned tmp(:,3+s), s = ipar(3),
 *         into tmp(:,3)
 *     -1  DCG: iteration limit reached, residual test not met
 *     -2  DCG: p.Ap is 0: A is not positive definite, or the solution has been found already
 *    -10  DCG: the last test quantity dpar(6) is 0        -11  DCG: no stopping test is on
 * DCGMRHS has no negative values. After its 0 look at ipar(30): nrhs + 1 says that all systems had their turn, a
 * smaller number is the system at which the run broke off, with a report. ipar(128+s) is 1 for the systems that are
 * done. A residual that becomes exactly 0 breaks a run off: the next p.Ap is 0. In DCGMRHS that seed is done, its final
 * value is its initial norm as after any breakdown, and the systems behind it wait: to go on with those whose
 * ipar(128+s) is 0, set ipar(39) to 0 and call again. After the end a further call of DCGMRHS answers 0 again: nothing
 * changes when all systems had their turn, while one that broke off, like any ended run of DCG, enters the stage that
 * stopped once more. That is harmless after a p.Ap of 0; elsewhere it may make a step that nobody asked for, and spoil
 * x.
 *
 * ipar, 128 integers (DCGMRHS: 128 + 2 nrhs); in brackets what _INIT sets:
 *      1  [n] size: all lengths come from here            2  [6] reports to standard output; any other value: to files
 *      3  [1] DCG: stage; DCGMRHS: system s of a request  4  [0] iterations
 *      5  [min(150, n)] iteration limit                   6  [1] non-zero: report errors
 *      7  [1] non-zero: report warnings of _CHECK         8  [1] non-zero: test for the iteration limit
 *      9  [0] non-zero: test the residual                10  [1] non-zero: ask for the caller's test
 *     11  [0] non-zero: ask for preconditioning
 *   DCGMRHS alone: 30 the system now iterated on, the seed; 31 the system whose residual is computed afresh; 32 seed is
 *   done; 33 [nrhs]; 39 stage; 128+s 1 when system s is done; 128+nrhs+s iterations of system s.
 *   _INIT does not set 39 and 128+s: zero them before the first call of DCGMRHS.
 *
 * dpar, 128 doubles (DCGMRHS: 128 + 2 nrhs):
 *      1  [1e-6] relative tolerance       2  [0] absolute tolerance
 *   DCG: 3 initial test quantity, 4 target dpar(1) dpar(3) + dpar(2), 5 test quantity, 6 that of the last iteration,
 *   7 alpha, 8 beta [all 0]. The test quantity is the squared norm r.r, preconditioned r.z: 1e-6 asks for three digits.
 *   DCGMRHS: 3 alpha, 4 beta, 30 last gamma, 31 gamma = r.z, 32 projection coefficient, 33 p.Ap, 128+s initial residual
 *   norm of system s, 128+nrhs+s its final value: relative residual norm; initial norm when the run broke down at it
 *   or when that met a tolerance at once; -1 when the caller stopped the system. _INIT sets none from 9 on: a system
 *   that had no turn keeps what stood there, or what the residual test found when its residual was computed afresh.
 *
 * tmp: DCG 4 columns: p, Ap, r, z (the last only with a preconditioner). DCGMRHS nrhs + 3: p, Ap, z, then each r.
 * Columns are found with 64 bits: n nrhs may exceed 2^31.
 *
 * Reports with ipar(2) other than 6 are appended to Dcg_errors.txt and Dcg_check_warnings.txt, current directory. */

/* Sets ipar(1..11) and dpar(1..8) to their defaults, tmp(:,1..3) to 0 and RCI_request to 0. x and b are not read. */
void DCG_INIT(const int* n, const double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
              double* tmp) NXL_NOEXCEPT;

/* Examines the parameters after the caller's changes, warns and mends. RCI_request: 0 nothing found; -1001 a suspicious
 * value was left; -1010 a value was replaced by its default; -1011 both; -1100 a size below 1, do not go on. */
void DCG_CHECK(const int* n, const double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
               double* tmp) NXL_NOEXCEPT;

/* Conjugate gradients for one right-hand side. x(n): in, the start vector; out, the solution as far as it has come, at
 * every request. b(n): right-hand side. RCI_request is not read: its value says what to do before the next call.
 * Method: Hestenes and Stiefel, J. Res. NBS 49 (1952). */
void DCG(const int* n, double* x, const double* b, int* RCI_request, int* ipar, double* dpar, double* tmp) NXL_NOEXCEPT;

/* itercount := ipar(4), the iterations so far; at any time. */
void DCG_GET(const int* n, const double* x, const double* b, const int* RCI_request, const int* ipar,
             const double* dpar, const double* tmp, int* itercount) NXL_NOEXCEPT;

/* As DCG_INIT, for nrhs systems; sets ipar(33) too, and all nrhs + 3 columns of tmp to 0. method is not read and may be
 * null. */
void DCGMRHS_INIT(const int* n, const double* x, const int* nrhs, const double* b, const int* method, int* RCI_request,
                  int* ipar, double* dpar, double* tmp) NXL_NOEXCEPT;

/* As DCG_CHECK, with the same texts; -1100 also when ipar(33) is below 1. */
void DCGMRHS_CHECK(const int* n, const double* x, const int* nrhs, const double* b, int* RCI_request, int* ipar,
                   double* dpar, double* tmp) NXL_NOEXCEPT;

/* Conjugate gradients for nrhs right-hand sides of one matrix. x(n,nrhs): start vectors, then solutions; b(n,nrhs).
 * Iterates on one system at a time and projects the others onto its directions, so that later ones start close.
 * RCI_request is read after a request 2: 1003 stops the system ipar(3), anything else goes on. The limit ipar(5) holds
 * for each seed, which may pass it by one. With neither ipar(9) nor ipar(10) set the run ends after one step, with a
 * report. The residual test compares the relative residual norm of system s with dpar(1) dpar(128+s) + dpar(2); a
 * system whose initial norm is at most dpar(1) or dpar(2) is taken as solved. Method: seed projection; Smith, Peterson
 * and Mittra, IEEE Trans. Antennas Propag. 37 (1989); Chan and Wan, SIAM J. Sci. Comput. 18 (1997). */
void DCGMRHS(const int* n, double* x, const int* nrhs, const double* b, int* RCI_request, int* ipar, double* dpar,
             double* tmp) NXL_NOEXCEPT;

/* itercount(nrhs): iterations spent on each system. Nothing is written when nrhs is below 1. */
void DCGMRHS_GET(const int* n, const double* x, const int* nrhs, const double* b, const int* RCI_request,
                 const int* ipar, const double* dpar, const double* tmp, int* itercount) NXL_NOEXCEPT;

/* ==== FGMRES, by reverse communication ============================================================================
 * For A x = b with any square A: GMRES, restarted after m iterations, with a preconditioner that may change from one
 * iteration to the next. The loop is that of DCG, but the vectors lie where ipar(22) and ipar(23) say, DFGMRES_CHECK is
 * obligatory, as it lays out tmp, and x moves at restarts alone: call DFGMRES_GET for the solution. A run is its ipar,
 * dpar and tmp; runs on arrays of their own may go side by side. A whole program: docs/iterative-solvers.md. Indices
 * below count from 1; n = ipar(1), k = ipar(14), m = ipar(15).
 * Method: Saad, SIAM J. Sci. Comput. 14 (1993), modified Gram-Schmidt; rotations: Saad and Schultz, SIAM J. Sci. Stat.
 * Comput. 7 (1986).
 *
 * RCI_request as DFGMRES returns it; in and out are the n elements of tmp from ipar(22) and from ipar(23):
 *      0  finished                                        1  out := A in
 *      2  test for yourself; to stop, leave the loop      3  out := in with the preconditioner applied
 *      4  is dpar(7), the norm of the vector just made, to be taken as zero? If so, leave the loop: the residual
 *         (first request of a cycle) or the Krylov space leaves nothing to gain, and going on divides by it
 *     -1  iteration limit reached, residual test not met
 *    -10  division by zero ahead: the solution was found before, or values were altered
 *    -11  no stopping test is on                        -12  an entry of ipar or dpar cannot be right
 *
 * ipar, 128 integers; in brackets what DFGMRES_INIT sets:
 *      1  [n] size: all lengths come from here            2  [6] reports to standard output; any other value: to a file
 *      3  [1] stage                                       4  [0] iterations, over all cycles
 *      5  [min(150, n)] iteration limit                   6  [1] non-zero: report errors
 *      7  [1] non-zero: report warnings of the check      8  [1] non-zero: test for the iteration limit
 *      9  [0] non-zero: test the residual                10  [1] non-zero: ask for the caller's test, request 2
 *     11  [0] non-zero: ask for preconditioning          12  [0] non-zero: compare dpar(7) with dpar(8); 0: request 4
 *     13  [0] solution to x; positive: to b, x unchanged; negative: nowhere
 *     14  [0] iterations k in this cycle                 15  [min(150, n)] restart length m
 *   Set by DFGMRES_CHECK, first elements of the regions of tmp:
 *     16  n(m+1) + 1                R, packed upper triangle, R(i,k) at ipar(16) + k(k-1)/2 + i-1
 *     17  n(m+1) + m(m+1)/2 + 1     cosines, m              18  n(m+1) + m(m+3)/2 + 1  sines, m
 *     19  n(m+1) + m(m+5)/2 + 1     rotated right-hand side g, m + 1
 *     20  n(m+1) + m(m+7)/2 + 2     y with R y = g, m       21  n(m+1) + m(m+9)/2 + 2  preconditioned vectors, n m
 *   Set by DFGMRES: 22 and 23, the first elements of in and out.
 *
 * dpar, 128 doubles; these are norms, not squares:
 *      1  [1e-6] relative tolerance                       2  [0] absolute tolerance
 *      3  [0] residual norm at the start of the cycle     4  [0] target: dpar(1) times the first dpar(3), + dpar(2)
 *      5  [0] residual norm                               6  [0] residual norm one iteration before
 *      7  [0] norm of the vector just made                8  [1e-12] what counts as zero there, with ipar(12)
 *
 * tmp: (2m + 1) n + m(m+9)/2 + 1 elements. The basis, m + 1 columns of n, comes first; at the start of a cycle
 * column 2 is out, and column 3 holds b. Without a preconditioner nothing from ipar(21) on is touched, but column 3
 * has to be there when m is 1.
 * Elements are named by 32-bit entries: their number has to stay below 2^31, without a preconditioner that of the
 * elements before ipar(21), (m + 1) n + m(m+9)/2 + 1. With m = 150 that is an n of 7.1 million, or 14.2 million without
 * a preconditioner; beyond, choose a smaller m. DFGMRES_CHECK refuses what is larger, and leaves 0 in ipar(16..21),
 * with which DFGMRES returns -12; so it does where a vector cannot be named as ipar(1), (11) or (15) has changed since.
 *
 * After 0 or -1 from the limit or the residual test a further call decides again: the same answer, and nothing changes,
 * unless the limit or the target has; then the run goes on. After 0 by dpar(8) at the start of a cycle it answers 0
 * again, later it goes on as after request 4. After -10, -11 and -12 it comes back to what it refused.
 *
 * Reports with ipar(2) other than 6 are appended to NXL_RCI_FGMRES_Log.txt in the current directory. */

/* Sets ipar(1..15) and dpar(1..8) to their defaults, the first n elements of tmp to 0 and RCI_request to 0. x and b are
 * not read. */
void DFGMRES_INIT(const int* n, const double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
                  double* tmp) NXL_NOEXCEPT;

/* Examines the parameters after the caller's changes, warns and mends, and sets ipar(16..21). RCI_request: 0 nothing
 * found; -1001 a suspicious value was left; -1010 a value was replaced by its default; -1011 both; -1100 ipar(1) or
 * ipar(15) is below 1, or tmp has more elements than ipar can name: do not go on. */
void DFGMRES_CHECK(const int* n, const double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
                   double* tmp) NXL_NOEXCEPT;

/* Goes on to the next request. x(n): in, the start vector; moved to the solution of each full cycle. b(n): right-hand
 * side. RCI_request is not read: its value says what to do before the next call. With ipar(3) outside 1 to 14 nothing
 * happens. */
void DFGMRES(const int* n, double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
             double* tmp) NXL_NOEXCEPT;

/* The solution as far as it has come, to x or b as ipar(13) says, and itercount := ipar(4); at any time. ipar, dpar and
 * tmp keep the cycle as it is, but for y. With ipar(13) 0 each call adds the cycle's gain to x, so call it once, or go
 * on with ipar(13) positive. RCI_request: 0, or -12 when an entry of ipar cannot be right. */
void DFGMRES_GET(const int* n, double* x, double* b, int* RCI_request, int* ipar, double* dpar, double* tmp,
                 int* itercount) NXL_NOEXCEPT;

/* ==== Incomplete LU preconditioners ===============================================================================
 * Factors L U close to a sparse square A: L has a unit diagonal, which is not stored. Applying them, U^-1 L^-1 r, is
 * the caller's: two loops, in docs/iterative-solvers.md. Matrices are compressed sparse rows counted from 1: row i has
 * the values a(k) in the columns ja(k), k = ia(i) to ia(i+1) - 1. ipar and dpar are the arrays of a solver's run, 128
 * entries each. None is changed, and these are read:
 *   ipar(2)   6: reports to standard output; any other value: to the routine's log file in the current directory
 *   ipar(6)   non-zero: report errors
 *   ipar(7)   DCSRILUT, at a warning: above 0 report and go on; 0 return at once, no report; below 0 report and return
 *   ipar(31)  0: a pivot that is too small is an error; otherwise see each routine
 *   dpar(31)  DCSRILU0: what |pivot| is compared with. DCSRILUT: factor of a replaced pivot
 *   dpar(32)  DCSRILU0: the value of a replaced pivot
 * Both run on the calling thread; the log files are all that calls have in common. */

/* ILU(0): the factors keep the pattern of A. Columns ascend in each row, and every row has its diagonal. bilu0: as long
 * as a, with ia and ja as its pattern: in row i L left of the diagonal, then U; it may be a itself. With ipar(31)
 * non-zero a pivot of 0 becomes dpar(32); so does one below |dpar(31)| in magnitude in row 1, while later rows keep it.
 * ierr:
 *      0  done                                      -104  no memory
 *   -101  a row is empty or has no diagonal         -105  n < 1
 *   -102  a pivot is 0, and ipar(31) is             -106  columns of a row do not ascend from 1 or more
 *   -103  |pivot| < |dpar(31)|, ipar(31) is 0
 * -101 and -106 are found before any elimination. Log file: NXL_PREC_log.txt. Cost: for each entry left of the
 * diagonal, the length of its row and of the row that it stands for. Method: Saad, Iterative Methods for Sparse Linear
 * Systems, 2nd ed., section 10.3. */
void DCSRILU0(const int* n, const double* a, const int* ia, const int* ja, double* bilu0, const int* ipar,
              const double* dpar, int* ierr) NXL_NOEXCEPT;

/* ILUT: fill is kept by size. With r the root mean square of a row of A and t = tol r, multipliers below t are dropped,
 * as is fill and what is left of U up to t; then the maxfil largest entries of L and of U stay. A diagonal up to t
 * becomes dpar(31) r when ipar(31) is non-zero. maxfil 0 keeps the diagonal alone. Columns of a row should ascend, as
 * rows are eliminated in the order given; entries of one column add up.
 * bilut, jbilut: room for 2 maxfil + 1 entries per row, in all more than 2^31 if need be; ibilut(n+1). Each row: L, its
 * diagonal, U; columns need not ascend within L and within U. ierr:
 *      0  done                                      -103  ia(i) >= ia(i+1), or ia(1) < 1
 *   -101  a row turned out empty: outputs overlay   -104  no memory, or more than 2^31 - 2 entries kept
 *         inputs                                    -105  maxfil < 0
 *   -102  a diagonal up to t, and ipar(31) is 0     -106  n < 0            -107  a column outside 1 to n
 *    101  maxfil >= n: n - 1 is taken                102  tol < 0: -tol is taken
 *    103  |dpar(31)| < |tol|                         104  ipar(31) is 1 and dpar(31) 0
 * Warnings, 101 to 104, end the call unless ipar(7) is above 0: then the last one is ierr at the end of a run that went
 * well. Log file: NXL_PREC_DILUT_log.txt. Method: Saad, Iterative Methods for Sparse Linear Systems, 2nd ed., section
 * 10.4; and Numer. Linear Algebra Appl. 1 (1994). */
void DCSRILUT(const int* n, const double* a, const int* ia, const int* ja, double* bilut, int* ibilut, int* jbilut,
              const double* tol, const int* maxfil, const int* ipar, const double* dpar, int* ierr) NXL_NOEXCEPT;

/* ==== Numeric Jacobian ============================================================================================
 * fjac(m,n) of F: R^n -> R^m by central differences, two evaluations a column. The step is eps |x(i)| where |x(i)| is
 * above eps, and eps itself elsewhere; about 1e-5 suits most functions. x is perturbed one component at a time and is
 * in the end what it was, bit for bit. A row of J is NaN where its component of F, or an x that it depends on, is not
 * finite. docs/least-squares.md has examples. A handle is a pointer variable of the caller's, passed by address to all
 * calls; it may be used on any thread, by one at a time.
 *
 * Status, the result of all calls here and in the section that follows: 1501 success; 1502 invalid argument, no handle,
 * or no trial step; 1503 no memory. Nothing is printed. */

/* F at x(n), stored to f(m); the argument of djacobi. */
typedef void (*nxl_function)(const int* m, const int* n, const double* x, double* f);

/* Begins a Jacobian by reverse communication. x(n) and fjac(m,n) stay the caller's and have to live as long as the
 * handle. 1502 unless n >= 1, m >= 1 and eps > 0. */
int djacobi_init(void** handle, const int* n, const int* m, double* x, double* fjac, const double* eps) NXL_NOEXCEPT;

/* One step. RCI_Request: in, 0 at the first call, then what the last one left. Out: 1 evaluate F at x into f1(m), 2
 * into f2(m), and call again; 0 fjac is ready, and stays so. f1 is overwritten. A new run needs a new handle. */
int djacobi_solve(void** handle, double* f1, double* f2, int* RCI_Request) NXL_NOEXCEPT;

/* Frees the handle; the variable itself stays as it is. */
int djacobi_delete(void** handle) NXL_NOEXCEPT;

/* The whole Jacobian at one call. With more than one thread fcn is called concurrently, each time with its own x and f.
 * 1502 unless n >= 1 and eps > 0; m is not examined, but m below 1 finds no memory. On several threads a failed
 * allocation goes unreported: 1501, and fjac as it was. */
int djacobi(nxl_function fcn, const int* n, const int* m, double* fjac, double* x, const double* eps) NXL_NOEXCEPT;

/* ==== Nonlinear least squares =====================================================================================
 * Finds x(n) that makes the norm of F(x), of m >= n components, small. Reverse communication: the caller evaluates F
 * and its Jacobian when asked to. docs/least-squares.md has a whole program and the traps. Method: trust region; a step
 * is (J'J + mu I) s = -J'F with mu from Newton's method on its length, More and Sorensen, SIAM J. Sci. Stat. Comput. 4
 * (1983); the radius follows the ratio of actual to predicted reduction, Dennis and Schnabel, Numerical Methods for
 * Unconstrained Optimization (1983). Steps with a ratio of 1e-4 or more are taken; else x and fvec go back to the
 * accepted point, bit for bit, and the radius shrinks to a half or less, also where F at the trial point is not finite.
 *
 * eps(6), all above 0 at dtrnlsp_init and read at each use afterwards:
 *   1  least radius of the trust region     2  target for |F|
 *   3  norm below which a column of J counts as zero; change of |F| up to which a step promises nothing: absolute, and
 *      what ends most fits, so 1e-15 where the digits of x matter
 *   4  least length of a step               5, 6  without effect beyond the check
 *
 * RCI_Request of dtrnlsp_solve
 *   in     0 at the first call, then what the last one left; or -1, -2 to stop, which comes back as 0
 *   out    0 call again   1 evaluate F at x into fvec   2 evaluate J at x into fjac   -1 .. -6 ended, stop code negated
 *
 * Stop codes, st_cr of dtrnlsp_get
 *    0  running                         1  iter1 steps have been taken     2  radius below eps(1)
 *    3  |F| at most eps(2)              4  all columns of J below eps(3)   5  length of the step at most eps(4)
 *    6  |F| and |F - J s| differ by at most eps(3)
 *   -1, -2  stopped by the caller      -4  no trial step, as F, J, J'J or the step is not finite: dtrnlsp_solve returns
 *                                          1502, RCI_Request stays as it was, x is the accepted point, iter is 0
 * The normal equations are formed: a column of J above 1e154 cannot be squared and ends in -4, one below 1e-162 counts
 * as 0. Where iter2 steps do not find the shift, the last step is tried as it is, longer than the radius. */

/* x(n): the start; while the run lasts the point to evaluate at, in the end the solution. x and eps are kept by
 * address. iter1: limit of accepted steps; iter2: of the iterations for one step. rs, 0 to 100: the first radius is rs
 * times |x|, scaled by the columns of J; 0 is taken as 100. 1502, with nothing allocated, for n, m, iter1 or iter2
 * below 1, m < n, an eps not above 0, or rs outside its range; 1503 without memory. */
int dtrnlsp_init(void** handle, const int* n, const int* m, double* x, const double* eps, const int* iter1,
                 const int* iter2, const double* rs) NXL_NOEXCEPT;

/* Goes on to the next request. fvec(m), fjac(m,n): the same arrays at every call, as they carry F and J of the accepted
 * point over to the next one. */
int dtrnlsp_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) NXL_NOEXCEPT;

/* Steps accepted, stop code, |F| at the start and at the end; r2 is set by stop codes above 0 alone. At any time. When
 * a caller stops a run at request 1, x is the trial point. */
int dtrnlsp_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) NXL_NOEXCEPT;

/* Frees the handle; the variable itself, x and eps stay as they are. */
int dtrnlsp_delete(void** handle) NXL_NOEXCEPT;

/* ==== Nonlinear least squares with bounds =========================================================================
 * Finds x of n unknowns, lw(i) <= x(i) <= up(i), that makes |F(x)| least, F of m >= n components. By reverse
 * communication: dtrnlspbc_solve is called in a loop and returns with RCI_Request saying what it needs. All points at
 * which it wants F or its Jacobian J are inside the bounds, exactly. A whole program: docs/bounded-least-squares.md.
 *
 * The routines return 1501 for success, 1502 for a bad argument, a null handle or a run that has failed, 1503 without
 * memory. handle is the address of the caller's pointer, in every call. A handle belongs to one thread at a time.
 *
 * RCI_Request:
 *      0  in: go on; out: call again
 *      1  out: put F(x) into fvec(m), call again with the value unchanged
 *      2  out: put J(x) into fjac(m,n), column-major, call again with the value unchanged
 *     -1, -2  in: stop; x goes back to the best point, RCI_Request becomes 0, the stop code -1 or -2
 *     -1 to -6  out: the run has ended with stop code 1 to 6
 * Stop codes:
 *      0  running                                       1  iter1 iterations have been made
 *      2  the radius is below eps(1)                    3  |F| is at most eps(2)
 *      4  all columns of J that belong to free variables have norms below eps(3), or no variable is free; a variable is
 *         free unless it is on a bound and |F| would not fall on the bound's inner side
 *      5  the step is at most eps(4)                    6  the change of |F| that J predicts is at most eps(3), or too
 *                                                          small to show in |F| in double precision
 *     -1, -2  stopped by the caller                    -4  F at the start, or J, is not finite: dtrnlspbc_solve returns
 *                                                          1502, RCI_Request stays as it was
 * At a solution on bounds the run ends with 4, 5 or 6 however small eps is.
 *
 * Method: a trust region of the form |D s| <= radius in the largest norm, D the largest column norms of J so far, cut
 * with the bounds to one box; Conn, Gould and Toint, SIAM J. Numer. Anal. 25 (1988), and Trust-Region Methods (2000),
 * chapter 12. A step makes a model of |F|^2 small in that box by projected gradients and Newton steps on faces;
 * Moré and Toraldo, SIAM J. Optim. 1 (1991). The model is |F + J s|^2, or has a secant estimate of second derivatives
 * as well, whichever foretold the last trial better; Dennis, Gay and Welsch, ACM TOMS 7 (1981). It falls as far as on a
 * Cauchy step at least, so that the run goes to points where the first-order conditions with bounds hold. */

/* Makes a handle. x(n) is moved into the bounds; x, lw(n), up(n) and eps(6) are kept, not copied, and stay until
 * dtrnlspbc_delete. A bound may be infinite, and lw(i) = up(i) fixes x(i).
 *   eps    all above 0; 1 to 4 as above; 5 is not used; 6 the factor by which the projected gradient of the subproblem
 *          falls, at most 0.1
 *   iter1  most iterations, which are accepted steps          iter2  most passes in the subproblem, as in 100
 *   rs     the first radius is rs times the largest D(i) |x(i)|, or rs if that is not above eps(1); 0 to 100, where 0
 *          means 100
 * 1502: n, m, iter1 or iter2 below 1, m < n, an eps not above 0, rs not in 0 to 100, lw(i) > up(i), a bound that is no
 * number, bounds with no finite number between them, x(i) no number. Nothing is allocated then. On failure the handle
 * variable and x stay as they were. */
int dtrnlspbc_init(void** handle, const int* n, const int* m, double* x, const double* lw, const double* up,
                   const double* eps, const int* iter1, const int* iter2, const double* rs) NXL_NOEXCEPT;

/* Goes on from the caller's answer to the next request. A trial point at which F is larger, or not finite, is rejected:
 * x and fvec become what they were, the radius shrinks, and the old J serves on. Leave fvec and fjac alone between two
 * requests for them. */
int dtrnlspbc_solve(void** handle, double* fvec, double* fjac, int* RCI_Request) NXL_NOEXCEPT;

/* iter: iterations, 0 after stop code -4; st_cr: stop code; r1: |F| at the start; r2: |F| at x once the run has ended,
 * until then 0. */
int dtrnlspbc_get(void** handle, int* iter, int* st_cr, double* r1, double* r2) NXL_NOEXCEPT;

/* Frees the handle; the variable itself, x, the bounds and eps stay as they are. */
int dtrnlspbc_delete(void** handle) NXL_NOEXCEPT;

/* ==== BLAS level 1 ================================================================================================
 * Vectors: sums, norms, rotations, copies. Lawson, Hanson, Kincaid and Krogh, ACM TOMS 5 (1979).
 *
 * Nothing is checked and nothing is reported: with n below 1 a routine returns at once, functions with 0. Vectors of n
 * elements lie incx (incy) elements apart; the arrays hold at least 1 + (n - 1) |inc| elements. With a negative
 * increment a vector starts at the far end, at element (1 - n) inc, as in the published routines. What goes beyond
 * those is said at each routine. Sums are accumulated in several chains, so their rounding may differ between processor
 * classes and vector widths, not between calls. Only daxpy and ddot use threads, on processor classes 2 and 3 and for
 * long vectors. */

/* Sum of |x(i)|. incx 0 counts the first element n times; a negative incx sums the same n elements as its magnitude. */
double dasum(const int* n, const double* x, const int* incx) NXL_NOEXCEPT;

/* y := y + alpha x. With alpha 0 y is left alone, bit for bit. Threads: n above 4300. */
void daxpy(const int* n, const double* alpha, const double* x, const int* incx, double* y,
           const int* incy) NXL_NOEXCEPT;

/* y := x. With incy 0, y(1) ends as the last element of x. */
void dcopy(const int* n, const double* x, const int* incx, double* y, const int* incy) NXL_NOEXCEPT;

/* Sum of x(i) y(i). Threads: n above 2600. */
double ddot(const int* n, const double* x, const int* incx, const double* y, const int* incy) NXL_NOEXCEPT;

/* Euclidean norm of x, without overflow or underflow on the way. The step is |incx|, from the first element on. */
double dnrm2(const int* n, const double* x, const int* incx) NXL_NOEXCEPT;

/* Plane rotation: (x(i), y(i)) := (c x(i) + s y(i), c y(i) - s x(i)). */
void drot(const int* n, double* x, const int* incx, double* y, const int* incy, const double* c,
          const double* s) NXL_NOEXCEPT;

/* Constructs the rotation with c a + s b = r and c b - s a = 0. Out: a = r, b = z (from which c and s can be recovered:
 * z = 1 stands for c = 0, s = 1; |z| < 1 for s = z; |z| > 1 for c = 1/z), c, s. */
void drotg(double* a, double* b, double* c, double* s) NXL_NOEXCEPT;

/* Modified rotation: (x(i), y(i)) := H (x(i), y(i)). param(1) is the flag, param(2..5) hold h11, h21, h12, h22.
 * Flag -1: all of H as it stands. 0: h11 = h22 = 1. 1: h12 = 1, h21 = -1. -2: H is the identity, nothing is done. */
void drotm(const int* n, double* x, const int* incx, double* y, const int* incy, const double* param) NXL_NOEXCEPT;

/* Constructs the modified rotation that zeroes the second component of (sqrt(d1) x1, sqrt(d2) y1); d1, d2, x1 are
 * updated, param (5 elements) is written as drotm reads it; entries that the flag implies are left alone. A negative d1
 * or a negative d2 y1^2 where that leads gives flag -1 with H, d1, d2 and x1 zero; d2 y1 = 0 gives flag -2. */
void drotmg(double* d1, double* d2, double* x1, const double* y1, double* param) NXL_NOEXCEPT;

/* x := alpha x. With alpha 0 the elements are multiplied too, so that NaN and infinity do not vanish; with alpha 1 some
 * processor classes return at once. incx 0 multiplies the first element n times; a negative incx scales the same n
 * elements as its magnitude. */
void dscal(const int* n, const double* alpha, double* x, const int* incx) NXL_NOEXCEPT;

/* Exchanges x and y. */
void dswap(const int* n, double* x, const int* incx, double* y, const int* incy) NXL_NOEXCEPT;

/* Position, from 1, of the first element of largest |x(i)|; 0 when n or incx is below 1. NaN elements are passed over,
 * but for a NaN in first place, which nothing replaces. */
int idamax(const int* n, const double* x, const int* incx) NXL_NOEXCEPT;

/* Position, from 1, of the first element of smallest |x(i)|; otherwise as idamax. */
int idamin(const int* n, const double* x, const int* incx) NXL_NOEXCEPT;

/* Sum of |Re x(i)| + |Im x(i)|; increments as in dasum. */
double dzasum(const int* n, const nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* Euclidean norm of x; increments as in dnrm2. */
double dznrm2(const int* n, const nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* Positions of the largest and of the smallest |Re x(i)| + |Im x(i)|, as idamax and idamin. */
int izamax(const int* n, const nxl_z* x, const int* incx) NXL_NOEXCEPT;
int izamin(const int* n, const nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* y := y + alpha x. With alpha 0 y is left alone. */
void zaxpy(const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* y := x. */
void zcopy(const int* n, const nxl_z* x, const int* incx, nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* *result := sum of conj(x(i)) y(i); the result is the first argument, not a return value. */
void zdotc(nxl_z* result, const int* n, const nxl_z* x, const int* incx, const nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* *result := sum of x(i) y(i); the result is the first argument, not a return value. */
void zdotu(nxl_z* result, const int* n, const nxl_z* x, const int* incx, const nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* Plane rotation with real c and s: (x(i), y(i)) := (c x(i) + s y(i), c y(i) - s x(i)). */
void zdrot(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy, const double* c,
           const double* s) NXL_NOEXCEPT;

/* x := alpha x with a real alpha; increments as in dscal. */
void zdscal(const int* n, const double* alpha, nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* Plane rotation with real c and complex s: (x(i), y(i)) := (c x(i) + s y(i), c y(i) - conj(s) x(i)). */
void ZROT(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy, const double* c,
          const nxl_z* s) NXL_NOEXCEPT;

/* Constructs the rotation with c a + s b = r and c b - conj(s) a = 0. Out: a = r, c, s; b is not altered. */
void zrotg(nxl_z* a, const nxl_z* b, double* c, nxl_z* s) NXL_NOEXCEPT;

/* x := alpha x; increments as in dscal. */
void zscal(const int* n, const nxl_z* alpha, nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* Exchanges x and y. */
void zswap(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* Upper-case aliases: the same routines. */
void DAXPY(const int* n, const double* alpha, const double* x, const int* incx, double* y,
           const int* incy) NXL_NOEXCEPT;
void DCOPY(const int* n, const double* x, const int* incx, double* y, const int* incy) NXL_NOEXCEPT;
double DDOT(const int* n, const double* x, const int* incx, const double* y, const int* incy) NXL_NOEXCEPT;
double DNRM2(const int* n, const double* x, const int* incx) NXL_NOEXCEPT;
void DSCAL(const int* n, const double* alpha, double* x, const int* incx) NXL_NOEXCEPT;
void DSWAP(const int* n, double* x, const int* incx, double* y, const int* incy) NXL_NOEXCEPT;
int IDAMAX(const int* n, const double* x, const int* incx) NXL_NOEXCEPT;
int IZAMAX(const int* n, const nxl_z* x, const int* incx) NXL_NOEXCEPT;
void ZDSCAL(const int* n, const double* alpha, nxl_z* x, const int* incx) NXL_NOEXCEPT;
void ZSCAL(const int* n, const nxl_z* alpha, nxl_z* x, const int* incx) NXL_NOEXCEPT;
void ZSWAP(const int* n, nxl_z* x, const int* incx, nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* ==== BLAS levels 2 and 3: what holds for all =====================================================================
 * Conventions of the matrix routines.
 *
 * Arguments are looked at in order, by position from 1; the first bad one is reported to XERBLA with the routine's
 * name, and the call returns with nothing changed. Each routine lists the positions it may report. Bad is: an option
 * letter that is not among those listed (either case will do), a size below 0, an increment of 0, and a leading
 * dimension below max(1, r), where r is the number of rows of that array as declared below. ZSYR alone reports nothing.
 *   trans, transa, transb   op(A) is A for N, A^T for T, A^H for C; for real matrices C is the same as T
 *   uplo    U or L: only the upper or only the lower triangle of the matrix is stored; the other is neither read nor
 *           written, nor are rows past the matrix
 *   diag    N, or U: the diagonal is taken as ones and is not read
 *   side    L: the matrix with special structure stands on the left; R: on the right
 * Shapes are written a(rows,columns); columns of a lie lda elements apart, elements of a vector incx apart as in level
 * 1, with a negative increment from the far end. Of a Hermitian matrix the imaginary parts of the diagonal are taken as
 * 0, and an update sets them to 0 where it writes. With alpha 0 the matrices and vectors that alpha multiplies are not
 * read; with beta 0 the output is overwritten and need not be set, so NaN in it does not spread. Triangular solvers do
 * not test for singularity: a zero on the diagonal gives infinities or NaN. The output may not overlap any input. */

/* ==== BLAS level 2 ================================================================================================
 * A matrix with a vector: products, updates of rank one and two, triangular solutions. Dongarra, Du Croz, Hammarling
 * and Hanson, ACM TOMS 14 (1988).
 *
 * Only dgemv and zgemv use threads, on processor classes
 * 2 and 3 when m or n is at least 64 and each thread gets work enough; blocks of y are disjoint, so nothing is summed
 * across threads. With a size of 0 nothing is done. */

/* y := alpha op(A) x + beta y, with a(m,n). y has m elements for trans N, else n; x has the others. With m or n 0, y
 * is not scaled either. Reports 1 trans, 2 m, 3 n, 6 lda, 8 incx, 11 incy. */
void dgemv(const char* trans, const int* m, const int* n, const double* alpha, const double* a, const int* lda,
           const double* x, const int* incx, const double* beta, double* y, const int* incy) NXL_NOEXCEPT;
void zgemv(const char* trans, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
           const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* A := A + alpha x y^T; zgerc: A := A + alpha x y^H. a(m,n), m elements in x, n in y.
 * Reports 1 m, 2 n, 5 incx, 7 incy, 9 lda. */
void dger(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
          const int* incy, double* a, const int* lda) NXL_NOEXCEPT;
void zgeru(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
           const int* incy, nxl_z* a, const int* lda) NXL_NOEXCEPT;
void zgerc(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
           const int* incy, nxl_z* a, const int* lda) NXL_NOEXCEPT;

/* y := alpha A x + beta y, A symmetric (dsymv) or Hermitian (zhemv), a(n,n), by its triangle uplo.
 * Reports 1 uplo, 2 n, 5 lda, 7 incx, 10 incy. */
void dsymv(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda, const double* x,
           const int* incx, const double* beta, double* y, const int* incy) NXL_NOEXCEPT;
void zhemv(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda, const nxl_z* x,
           const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) NXL_NOEXCEPT;

/* A := A + alpha x x^T, A symmetric; zher: A := A + alpha x x^H, A Hermitian, alpha real. a(n,n), triangle uplo.
 * Reports 1 uplo, 2 n, 5 incx, 7 lda. */
void dsyr(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
          const int* lda) NXL_NOEXCEPT;
void zher(const char* uplo, const int* n, const double* alpha, const nxl_z* x, const int* incx, nxl_z* a,
          const int* lda) NXL_NOEXCEPT;

/* A := A + alpha x x^T, A complex symmetric, a(n,n), triangle uplo. Reports nothing: with an argument that zher would
 * report, nothing is done. Upper-case name only. */
void ZSYR(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, nxl_z* a,
          const int* lda) NXL_NOEXCEPT;

/* A := A + alpha x y^T + alpha y x^T, A symmetric; zher2: A := A + alpha x y^H + conj(alpha) y x^H, A Hermitian.
 * a(n,n), triangle uplo. Reports 1 uplo, 2 n, 5 incx, 7 incy, 9 lda. */
void dsyr2(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
           const int* incy, double* a, const int* lda) NXL_NOEXCEPT;
void zher2(const char* uplo, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
           const int* incy, nxl_z* a, const int* lda) NXL_NOEXCEPT;

/* x := op(A) x, A triangular, a(n,n). Reports 1 uplo, 2 trans, 3 diag, 4 n, 6 lda, 8 incx. */
void dtrmv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a, const int* lda,
           double* x, const int* incx) NXL_NOEXCEPT;
void ztrmv(const char* uplo, const char* trans, const char* diag, const int* n, const nxl_z* a, const int* lda,
           nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* x := op(A)^-1 x, the solution of op(A) z = x, A triangular, a(n,n). Reports the same positions as dtrmv. */
void dtrsv(const char* uplo, const char* trans, const char* diag, const int* n, const double* a, const int* lda,
           double* x, const int* incx) NXL_NOEXCEPT;
void ztrsv(const char* uplo, const char* trans, const char* diag, const int* n, const nxl_z* a, const int* lda,
           nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* ==== BLAS level 3 ================================================================================================
 * Matrices with matrices: products, updates of rank k, triangular solutions for many right-hand sides. Dongarra, Du
 * Croz, Duff and Hammarling, ACM TOMS 16 (1990).
 *
 * All may use threads, by size, shape and processor class.
 * With m or n 0 nothing is done. With k or alpha 0 the output is multiplied by beta; where there is no beta, it becomes
 * 0. */

/* C := alpha op(A) op(B) + beta C, c(m,n). a(m,k) for transa N, else a(k,m); b(k,n) for transb N, else b(n,k).
 * Reports 1 transa, 2 transb, 3 m, 4 n, 5 k, 8 lda, 10 ldb, 13 ldc. */
void dgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k, const double* alpha,
           const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
           const int* ldc) NXL_NOEXCEPT;
void zgemm(const char* transa, const char* transb, const int* m, const int* n, const int* k, const nxl_z* alpha,
           const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c,
           const int* ldc) NXL_NOEXCEPT;

/* C := alpha A B + beta C (side L, a(m,m)) or C := alpha B A + beta C (side R, a(n,n)), b(m,n), c(m,n). A is symmetric
 * (dsymm, zsymm) or Hermitian (zhemm), triangle uplo. Reports 1 side, 2 uplo, 3 m, 4 n, 7 lda, 9 ldb, 12 ldc. */
void dsymm(const char* side, const char* uplo, const int* m, const int* n, const double* alpha, const double* a,
           const int* lda, const double* b, const int* ldb, const double* beta, double* c, const int* ldc) NXL_NOEXCEPT;
void zsymm(const char* side, const char* uplo, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a,
           const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c, const int* ldc) NXL_NOEXCEPT;
void zhemm(const char* side, const char* uplo, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a,
           const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c, const int* ldc) NXL_NOEXCEPT;

/* C := alpha A A^T + beta C for trans N, a(n,k); C := alpha A^T A + beta C else, a(k,n). C is symmetric, c(n,n),
 * triangle uplo. trans: N, T, and for dsyrk C, the same as T. Reports 1 uplo, 2 trans, 3 n, 4 k, 7 lda, 10 ldc. */
void dsyrk(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha, const double* a,
           const int* lda, const double* beta, double* c, const int* ldc) NXL_NOEXCEPT;
void zsyrk(const char* uplo, const char* trans, const int* n, const int* k, const nxl_z* alpha, const nxl_z* a,
           const int* lda, const nxl_z* beta, nxl_z* c, const int* ldc) NXL_NOEXCEPT;

/* C := alpha A A^H + beta C for trans N, a(n,k); C := alpha A^H A + beta C for trans C, a(k,n). C is Hermitian, c(n,n),
 * triangle uplo; alpha and beta are real. trans: N, C. Reports the same positions as dsyrk. */
void zherk(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha, const nxl_z* a,
           const int* lda, const double* beta, nxl_z* c, const int* ldc) NXL_NOEXCEPT;

/* C := alpha A B^T + alpha B A^T + beta C for trans N, a(n,k) and b(n,k); C := alpha A^T B + alpha B^T A + beta C else,
 * a(k,n) and b(k,n). C is symmetric, c(n,n), triangle uplo. trans as in dsyrk and zsyrk.
 * Reports 1 uplo, 2 trans, 3 n, 4 k, 7 lda, 9 ldb, 12 ldc. */
void dsyr2k(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha, const double* a,
            const int* lda, const double* b, const int* ldb, const double* beta, double* c,
            const int* ldc) NXL_NOEXCEPT;
void zsyr2k(const char* uplo, const char* trans, const int* n, const int* k, const nxl_z* alpha, const nxl_z* a,
            const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c, const int* ldc) NXL_NOEXCEPT;

/* C := alpha A B^H + conj(alpha) B A^H + beta C for trans N, a(n,k) and b(n,k); C := alpha A^H B + conj(alpha) B^H A +
 * beta C for trans C, a(k,n) and b(k,n). C is Hermitian, c(n,n), triangle uplo; beta is real. trans: N, C.
 * Reports the same positions as dsyr2k. */
void zher2k(const char* uplo, const char* trans, const int* n, const int* k, const nxl_z* alpha, const nxl_z* a,
            const int* lda, const nxl_z* b, const int* ldb, const double* beta, nxl_z* c, const int* ldc) NXL_NOEXCEPT;

/* B := alpha op(A) B (side L, a(m,m)) or B := alpha B op(A) (side R, a(n,n)), b(m,n), A triangular.
 * Reports 1 side, 2 uplo, 3 transa, 4 diag, 5 m, 6 n, 9 lda, 11 ldb. */
void dtrmm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m, const int* n,
           const double* alpha, const double* a, const int* lda, double* b, const int* ldb) NXL_NOEXCEPT;
void ztrmm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m, const int* n,
           const nxl_z* alpha, const nxl_z* a, const int* lda, nxl_z* b, const int* ldb) NXL_NOEXCEPT;

/* B := alpha op(A)^-1 B (side L, a(m,m)) or B := alpha B op(A)^-1 (side R, a(n,n)), b(m,n), A triangular: the solution
 * X of op(A) X = alpha B or X op(A) = alpha B takes the place of B. Reports the same positions as dtrmm. */
void dtrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m, const int* n,
           const double* alpha, const double* a, const int* lda, double* b, const int* ldb) NXL_NOEXCEPT;
void ztrsm(const char* side, const char* uplo, const char* transa, const char* diag, const int* m, const int* n,
           const nxl_z* alpha, const nxl_z* a, const int* lda, nxl_z* b, const int* ldb) NXL_NOEXCEPT;

/* Upper-case aliases: the same routines. */
void DGEMM(const char* transa, const char* transb, const int* m, const int* n, const int* k, const double* alpha,
           const double* a, const int* lda, const double* b, const int* ldb, const double* beta, double* c,
           const int* ldc) NXL_NOEXCEPT;
void DGEMV(const char* trans, const int* m, const int* n, const double* alpha, const double* a, const int* lda,
           const double* x, const int* incx, const double* beta, double* y, const int* incy) NXL_NOEXCEPT;
void DGER(const int* m, const int* n, const double* alpha, const double* x, const int* incx, const double* y,
          const int* incy, double* a, const int* lda) NXL_NOEXCEPT;
void DSYR(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx, double* a,
          const int* lda) NXL_NOEXCEPT;
void DTRSM(const char* side, const char* uplo, const char* transa, const char* diag, const int* m, const int* n,
           const double* alpha, const double* a, const int* lda, double* b, const int* ldb) NXL_NOEXCEPT;
void ZGEMM(const char* transa, const char* transb, const int* m, const int* n, const int* k, const nxl_z* alpha,
           const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, const nxl_z* beta, nxl_z* c,
           const int* ldc) NXL_NOEXCEPT;
void ZGEMV(const char* trans, const int* m, const int* n, const nxl_z* alpha, const nxl_z* a, const int* lda,
           const nxl_z* x, const int* incx, const nxl_z* beta, nxl_z* y, const int* incy) NXL_NOEXCEPT;
void ZGERU(const int* m, const int* n, const nxl_z* alpha, const nxl_z* x, const int* incx, const nxl_z* y,
           const int* incy, nxl_z* a, const int* lda) NXL_NOEXCEPT;
void ZHER(const char* uplo, const int* n, const double* alpha, const nxl_z* x, const int* incx, nxl_z* a,
          const int* lda) NXL_NOEXCEPT;
void ZTRSM(const char* side, const char* uplo, const char* transa, const char* diag, const int* m, const int* n,
           const nxl_z* alpha, const nxl_z* a, const int* lda, nxl_z* b, const int* ldb) NXL_NOEXCEPT;

/* ==== LAPACK: LU factorisation ====================================================================================
 * P A = L U of a general matrix, and the solutions and the inverse that follow from it.
 *
 * Matrices are a(rows,columns), column-major, with columns lda elements apart; rows past the matrix are neither read
 * nor written. Pivots ipiv say that row i was interchanged with row ipiv(i), both counted from 1, in the order of i. A
 * bad argument is reported to XERBLA with its position, info becomes that position negated, and nothing else changes;
 * the first bad one in the order listed counts. Without memory for a copy of ipiv XERBLA is told (number 1000), nothing
 * is done, and info, where there is one, becomes -1000. */

/* P A = L U with partial pivoting: a(m,n) is overwritten with L, whose ones on the diagonal are not stored, and U.
 *   ipiv   min(m,n) pivots
 *   info   0 done; i > 0: U(i,i) is exactly 0, the first such, and the factorisation is complete but U is singular;
 *          below 0: a bad argument. Reports 1 m, 2 n, 4 lda.
 * The pivot is the first of the largest |a(i,j)|, for complex elements |Re| + |Im|. L is the column times the pivot's
 * reciprocal, or divided by a pivot whose reciprocal leaves the range. Up to order 32 (complex 16) all roundings are
 * those of the published unblocked routine, so that a singular matrix of integers is found where that finds it.
 * Progress: whenever a few more columns are done, by one thread of the call at a time, NXL_PROGRESS is told the
 * thread's number in its team, the column reached, and "DGETRF" or "ZGETRF". An odd answer stops the factorisation: the
 * call returns with a and ipiv in a state between, and info as it stood.
 * Threads: n above 64, over blocks of columns that threads take as they become ready.
 * Method: recursive on one thread; Toledo, SIAM J. Matrix Anal. Appl. 18 (1997), and Gustavson, IBM J. Res. Dev. 41
 * (1997). Golub and Van Loan, Matrix Computations, 4th ed., section 3.4. */
void dgetrf(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) NXL_NOEXCEPT;
void zgetrf(const int* m, const int* n, nxl_z* a, const int* lda, int* ipiv, int* info) NXL_NOEXCEPT;

/* Solves A X = B (trans N), A^T X = B (T) or A^H X = B (C), b(n,nrhs), with the factors and pivots that dgetrf or
 * zgetrf has left in a(n,n) and ipiv(n). X takes the place of B. info: 0, or -i when argument i is bad, which is
 * reported as well: 1 trans, 2 n, 3 nrhs, 5 lda, 8 ldb. */
void dgetrs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda, const int* ipiv,
            double* b, const int* ldb, int* info, NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zgetrs(const char* trans, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const int* ipiv, nxl_z* b,
            const int* ldb, int* info, NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* The inverse of A in the place of its factors a(n,n), from dgetrf or zgetrf with pivots ipiv(n): the inverse of U,
 * then X L = U^-1 by blocks of columns. work(lwork), lwork at least max(1, n); lwork -1 asks for the best size, which
 * comes back in work(1) and does nothing else. With less, the routine tries to get the rest itself. info: 0; i when
 * U(i,i) is 0, then a is as it was; -i when argument i is bad, which is reported as well: 1 n, 3 lda, 6 lwork. */
void dgetri(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
            int* info) NXL_NOEXCEPT;
void zgetri(const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work, const int* lwork,
            int* info) NXL_NOEXCEPT;

/* Interchanges rows i and ipiv of the n columns of a, for i from k1 to k2; the pivot of row i is ipiv(k1 + (i - k1)
 * |incx|). A negative incx goes from k2 down to k1, which undoes the interchanges of the positive one; with incx 0
 * nothing is done. ipiv has |incx| k2 elements, all of which are read. Nothing is checked. Upper-case names only. */
void DLASWP(const int* n, double* a, const int* lda, const int* k1, const int* k2, const int* ipiv,
            const int* incx) NXL_NOEXCEPT;
void ZLASWP(const int* n, nxl_z* a, const int* lda, const int* k1, const int* k2, const int* ipiv,
            const int* incx) NXL_NOEXCEPT;

/* x := conj(x), n elements incx apart, from the far end for a negative incx; nothing is done with n below 1. incx 0
 * conjugates the first element n times. Upper-case name only. */
void ZLACGV(const int* n, nxl_z* x, const int* incx) NXL_NOEXCEPT;

/* Upper-case aliases: the same routines. */
void DGETRF(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) NXL_NOEXCEPT;
void ZGETRF(const int* m, const int* n, nxl_z* a, const int* lda, int* ipiv, int* info) NXL_NOEXCEPT;

/* ==== LAPACK: Cholesky factorisation ==============================================================================
 * A = U^H U or L L^H of a positive definite matrix, and the solutions and the inverse that follow from it.
 *
 * A is symmetric or Hermitian, a(n,n), of which triangle uplo alone is read and written. The
 * imaginary parts of a Hermitian diagonal are taken as 0. info: 0, or -i when argument i is bad, which is reported too.
 * Methods: Golub and Van Loan, Matrix Computations, 4th ed., section 4.2; on several threads by tiles, Buttari, Langou,
 * Kurzak and Dongarra, Parallel Computing 35 (2009). */

/* A = U^H U (uplo U) or L L^H (uplo L); the factor takes the place of the triangle. Uses threads from n = 128 on.
 * info above 0: the order of the first leading minor that is not positive, or holds a NaN; the factorisation ended
 * there. Reports 1 uplo, 2 n, 4 lda.
 * From n = 128 on NXL_PROGRESS is called for finished blocks of columns with the number of the working thread, from 0,
 * the column reached, and the routine's name in capitals ("DPOTRF"), by any thread of the team. When it returns an odd
 * number, the factorisation stops: the triangle is left incomplete, with info 0. */
void dpotrf(const char* uplo, const int* n, double* a, const int* lda, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpotrf(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* As zpotrf, for small matrices: without blocks, on the caller's thread, without progress. Reports the same positions.
 * Upper-case name only. */
void ZPOTF2(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Solves A X = B from the factor that dpotrf has left in triangle uplo of a: X takes the place of b(n,nrhs).
 * Reports 1 uplo, 2 n, 3 nrhs, 5 lda, 7 ldb. */
void dpotrs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda, double* b, const int* ldb,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpotrs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, nxl_z* b, const int* ldb,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* The inverse of a symmetric or Hermitian positive definite A, triangle uplo, in the place of its factor a(n,n) from
 * dpotrf or zpotrf; the other triangle is not touched. info: 0; i when diagonal element i of the factor is 0, then a is
 * as it was; -i when argument i is bad, which is reported as well: 1 uplo, 2 n, 4 lda. */
void dpotri(const char* uplo, const int* n, double* a, const int* lda, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpotri(const char* uplo, const int* n, nxl_z* a, const int* lda, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Upper-case alias: the same routine. */
void DPOTRF(const char* uplo, const int* n, double* a, const int* lda, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* ==== LAPACK: triangular matrices =================================================================================
 * Inverses, and solutions that look for a zero on the diagonal first. */

/* The inverse of a triangular matrix in its place, a(n,n); the other triangle, and the diagonal with diag U, which then
 * counts as ones, are not touched. By halves, on products and solutions of level 3. info: 0; i when diagonal element i
 * is 0, then a is as it was; -i when argument i is bad, which is reported as well: 1 uplo, 2 diag, 3 n, 5 lda. */
void dtrtri(const char* uplo, const char* diag, const int* n, double* a, const int* lda, int* info,
            NXL_LENGTH(uplo_length), NXL_LENGTH(diag_length)) NXL_NOEXCEPT;
void ztrtri(const char* uplo, const char* diag, const int* n, nxl_z* a, const int* lda, int* info,
            NXL_LENGTH(uplo_length), NXL_LENGTH(diag_length)) NXL_NOEXCEPT;

/* Solves op(A) X = B, a(n,n) triangular, b(n,nrhs); X takes the place of B. info: 0; i when diagonal element i is 0,
 * then b is as it was; -i when argument i is bad, which is reported as well: 1 uplo, 2 trans, 3 diag, 4 n, 5 nrhs,
 * 7 lda, 9 ldb. */
void dtrtrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs, const double* a,
            const int* lda, double* b, const int* ldb, int* info, NXL_LENGTH(uplo_length), NXL_LENGTH(trans_length),
            NXL_LENGTH(diag_length)) NXL_NOEXCEPT;
void ztrtrs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs, const nxl_z* a,
            const int* lda, nxl_z* b, const int* ldb, int* info, NXL_LENGTH(uplo_length), NXL_LENGTH(trans_length),
            NXL_LENGTH(diag_length)) NXL_NOEXCEPT;

/* The reciprocal condition number of a triangular matrix a(n,n), 1 / (|A| |A^-1|), in the norm 1 (or O), largest column
 * sum, or I, largest row sum. The norm of the inverse is estimated from a few solutions: rcond is seldom off by more
 * than a factor of 3, and never too small but by rounding. rcond: 1 for n = 0, 0 for a singular matrix or one whose
 * inverse is beyond the range, NaN for one with a NaN. work(3n), iwork(n); complex: work(2n), rwork(n). info: 0; -i
 * when argument i is bad, which is reported as well: 1 norm, 2 uplo, 3 diag, 4 n, 6 lda. Higham, ACM Trans. Math.
 * Software 14 (1988). */
void dtrcon(const char* norm, const char* uplo, const char* diag, const int* n, const double* a, const int* lda,
            double* rcond, double* work, int* iwork, int* info, NXL_LENGTH(norm_length), NXL_LENGTH(uplo_length),
            NXL_LENGTH(diag_length)) NXL_NOEXCEPT;
void ztrcon(const char* norm, const char* uplo, const char* diag, const int* n, const nxl_z* a, const int* lda,
            double* rcond, nxl_z* work, double* rwork, int* info, NXL_LENGTH(norm_length), NXL_LENGTH(uplo_length),
            NXL_LENGTH(diag_length)) NXL_NOEXCEPT;

/* How good solutions x(n,nrhs) of op(A) X = B are, a(n,n) triangular, b(n,nrhs); none of them is changed. berr(nrhs):
 * the smallest relative change of elements of A and b for which x is exact. ferr(nrhs): a bound, not quite certain, on
 * the largest error of an element relative to the largest element of x. work(3n), iwork(n); complex: work(2n),
 * rwork(n). info: 0; -i when argument i is bad, which is reported as well: 1 uplo, 2 trans, 3 diag, 4 n, 5 nrhs, 7 lda,
 * 9 ldb, 11 ldx. Arioli, Demmel and Duff, SIAM J. Matrix Anal. Appl. 10 (1989). */
void dtrrfs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs, const double* a,
            const int* lda, const double* b, const int* ldb, const double* x, const int* ldx, double* ferr,
            double* berr, double* work, int* iwork, int* info, NXL_LENGTH(uplo_length), NXL_LENGTH(trans_length),
            NXL_LENGTH(diag_length)) NXL_NOEXCEPT;
void ztrrfs(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs, const nxl_z* a,
            const int* lda, const nxl_z* b, const int* ldb, const nxl_z* x, const int* ldx, double* ferr, double* berr,
            nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length), NXL_LENGTH(trans_length),
            NXL_LENGTH(diag_length)) NXL_NOEXCEPT;

/* The reciprocal condition number of a(n,n) from its factors of dgetrf, 1 / (anorm |A^-1|), anorm being the norm of A:
 * 1 (or O), largest column sum, or I, largest row sum. The norm of the inverse is estimated from a few solutions: rcond
 * is seldom off by more than a factor of 3, and never too small but by rounding. rcond: 1 for n = 0, 0 for a singular
 * matrix or one whose inverse is beyond the range, NaN where anorm or the estimate is. work(4n), iwork(n); complex:
 * work(2n), rwork(2n). info: 0; -i when argument i is bad, which is reported as well: 1 norm, 2 n, 4 lda, 5 anorm,
 * which is negative. Higham, ACM Trans. Math. Software 14 (1988). */
void dgecon(const char* norm, const int* n, const double* a, const int* lda, const double* anorm, double* rcond,
            double* work, int* iwork, int* info, NXL_LENGTH(norm_length)) NXL_NOEXCEPT;
void zgecon(const char* norm, const int* n, const nxl_z* a, const int* lda, const double* anorm, double* rcond,
            nxl_z* work, double* rwork, int* info, NXL_LENGTH(norm_length)) NXL_NOEXCEPT;

/* The reciprocal condition number, in the norm 1, of a symmetric or Hermitian positive definite matrix from its factor
 * of dpotrf, as dgecon; anorm is the norm of A. work(3n), iwork(n); complex: work(2n), rwork(n). Reports 1 uplo, 2 n, 4
 * lda, 5 anorm. */
void dpocon(const char* uplo, const int* n, const double* a, const int* lda, const double* anorm, double* rcond,
            double* work, int* iwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpocon(const char* uplo, const int* n, const nxl_z* a, const int* lda, const double* anorm, double* rcond,
            nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Refines the solutions x(n,nrhs) of op(A) X = B and tells how good they are; af and ipiv are the factors of a(n,n)
 * that dgetrf has left. A step solves for the residual, as long as that halves the backward error, five times at most.
 * berr(nrhs): the smallest relative change of elements of A and b for which x is exact. ferr(nrhs): a bound, not quite
 * certain, on the largest error of an element relative to the largest element of x. work(3n), iwork(n); complex:
 * work(2n), rwork(n). info: 0; -i when argument i is bad, which is reported as well: 1 trans, 2 n, 3 nrhs, 5 lda, 7
 * ldaf, 10 ldb, 12 ldx. Arioli, Demmel and Duff, SIAM J. Matrix Anal. Appl. 10 (1989). */
void dgerfs(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda, const double* af,
            const int* ldaf, const int* ipiv, const double* b, const int* ldb, double* x, const int* ldx, double* ferr,
            double* berr, double* work, int* iwork, int* info, NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zgerfs(const char* trans, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
            const int* ldaf, const int* ipiv, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx, double* ferr,
            double* berr, nxl_z* work, double* rwork, int* info, NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* Refines the solutions x(n,nrhs) of A X = B and bounds their errors, as dgerfs, triangle uplo of the symmetric or
 * Hermitian positive definite A being in a(n,n) and its factor of dpotrf in af. Reports 1 uplo, 2 n, 3 nrhs, 5 lda,
 * 7 ldaf, 9 ldb, 11 ldx. */
void dporfs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda, const double* af,
            const int* ldaf, const double* b, const int* ldb, double* x, const int* ldx, double* ferr, double* berr,
            double* work, int* iwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zporfs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
            const int* ldaf, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx, double* ferr, double* berr,
            nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* The LU factorisation P A = L U of a band matrix of m by n with kl and ku diagonals below and above the main one, by
 * rows interchanged as dgetrf does. Element (i, j) of A lies at ab(kl+ku+1+i-j,j); rows 1 to kl of ab(2kl+ku+1,n) are
 * for what interchanges fill in, and need not be set. U takes kl+ku diagonals above the main one, the multipliers of L
 * the kl below, each column in the order that the rows had when it was made: later interchanges are not applied to it.
 * ipiv(min(m,n)): row i was interchanged with row ipiv(i). info: 0; i when u(i,i) is zero and U is singular; -i when
 * argument i is bad, which is reported as well: 1 m, 2 n, 3 kl, 4 ku, 6 ldab. Du Croz, Mayes and Radicati, LAPACK
 * Working Note 21 (1990). */
void dgbtrf(const int* m, const int* n, const int* kl, const int* ku, double* ab, const int* ldab, int* ipiv,
            int* info) NXL_NOEXCEPT;
void zgbtrf(const int* m, const int* n, const int* kl, const int* ku, nxl_z* ab, const int* ldab, int* ipiv,
            int* info) NXL_NOEXCEPT;

/* Solves op(A) X = B with the factors that dgbtrf has left in ab and ipiv, A being n by n: X takes the place of
 * b(n,nrhs). trans: N, T or C for A, its transpose or its adjoint. Reports 1 trans, 2 n, 3 kl, 4 ku, 5 nrhs, 7 ldab, 10
 * ldb. */
void dgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const double* ab,
            const int* ldab, const int* ipiv, double* b, const int* ldb, int* info,
            NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zgbtrs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const nxl_z* ab,
            const int* ldab, const int* ipiv, nxl_z* b, const int* ldb, int* info,
            NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* The reciprocal condition number of a band matrix from its factors of dgbtrf, as dgecon; anorm is the norm of A.
 * work(3n), iwork(n); complex: work(2n), rwork(n). Reports 1 norm, 2 n, 3 kl, 4 ku, 6 ldab, 8 anorm. */
void dgbcon(const char* norm, const int* n, const int* kl, const int* ku, const double* ab, const int* ldab,
            const int* ipiv, const double* anorm, double* rcond, double* work, int* iwork, int* info,
            NXL_LENGTH(norm_length)) NXL_NOEXCEPT;
void zgbcon(const char* norm, const int* n, const int* kl, const int* ku, const nxl_z* ab, const int* ldab,
            const int* ipiv, const double* anorm, double* rcond, nxl_z* work, double* rwork, int* info,
            NXL_LENGTH(norm_length)) NXL_NOEXCEPT;

/* Refines the solutions x(n,nrhs) of op(A) X = B and bounds their errors, as dgerfs, A being the band ab(kl+ku+1,n)
 * with element (i, j) at ab(ku+1+i-j,j), and afb and ipiv its factors of dgbtrf. work(3n), iwork(n); complex: work(2n),
 * rwork(n). Reports 1 trans, 2 n, 3 kl, 4 ku, 5 nrhs, 7 ldab, 9 ldafb, 12 ldb, 14 ldx. */
void dgbrfs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const double* ab,
            const int* ldab, const double* afb, const int* ldafb, const int* ipiv, const double* b, const int* ldb,
            double* x, const int* ldx, double* ferr, double* berr, double* work, int* iwork, int* info,
            NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zgbrfs(const char* trans, const int* n, const int* kl, const int* ku, const int* nrhs, const nxl_z* ab,
            const int* ldab, const nxl_z* afb, const int* ldafb, const int* ipiv, const nxl_z* b, const int* ldb,
            nxl_z* x, const int* ldx, double* ferr, double* berr, nxl_z* work, double* rwork, int* info,
            NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* The Cholesky factorisation A = U^H U or L L^H of a symmetric or Hermitian positive definite band matrix of order n
 * with kd diagonals beside the main one. ab(kd+1,n) holds one triangle, which becomes the factor: for uplo U element
 * (i, j) at ab(kd+1+i-j,j), for L at ab(1+i-j,j). info: 0; i when the leading minor of order i is not positive, then
 * the factorisation is incomplete; -i when argument i is bad, which is reported as well: 1 uplo, 2 n, 3 kd, 5 ldab.
 * Golub and Van Loan, Matrix Computations, section 4.3. */
void dpbtrf(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpbtrf(const char* uplo, const int* n, const int* kd, nxl_z* ab, const int* ldab, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Solves A X = B with the factor that dpbtrf has left in ab: X takes the place of b(n,nrhs).
 * Reports 1 uplo, 2 n, 3 kd, 4 nrhs, 6 ldab, 8 ldb. */
void dpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab, const int* ldab,
            double* b, const int* ldb, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpbtrs(const char* uplo, const int* n, const int* kd, const int* nrhs, const nxl_z* ab, const int* ldab, nxl_z* b,
            const int* ldb, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* The reciprocal condition number, in the norm 1, of a positive definite band matrix from its factor of dpbtrf, as
 * dgecon; anorm is the norm of A. work(3n), iwork(n); complex: work(2n), rwork(n). Reports 1 uplo, 2 n, 3 kd, 5 ldab, 6
 * anorm. */
void dpbcon(const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab, const double* anorm,
            double* rcond, double* work, int* iwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpbcon(const char* uplo, const int* n, const int* kd, const nxl_z* ab, const int* ldab, const double* anorm,
            double* rcond, nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Refines the solutions x(n,nrhs) of A X = B and bounds their errors, as dgerfs, triangle uplo of the positive definite
 * band matrix A being in ab(kd+1,n) and its factor of dpbtrf in afb. work(3n), iwork(n); complex: work(2n), rwork(n).
 * Reports 1 uplo, 2 n, 3 kd, 4 nrhs, 6 ldab, 8 ldafb, 10 ldb, 12 ldx. */
void dpbrfs(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab, const int* ldab,
            const double* afb, const int* ldafb, const double* b, const int* ldb, double* x, const int* ldx,
            double* ferr, double* berr, double* work, int* iwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zpbrfs(const char* uplo, const int* n, const int* kd, const int* nrhs, const nxl_z* ab, const int* ldab,
            const nxl_z* afb, const int* ldafb, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx, double* ferr,
            double* berr, nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* ==== LAPACK: symmetric indefinite systems =======================================================================
 * A = L D L^T or U D U^T of a symmetric matrix, real or complex (sy), or L D L^H or U D U^H of a Hermitian one (he),
 * with interchanges of rows and columns, and the solutions, the inverse and the condition that follow from it.
 *
 * Triangle uplo (U or L) of a(n,n) is read; the other one is not touched. Imaginary parts on the diagonal of a
 * Hermitian matrix are not read. D has blocks of order 1 and 2. Pivots ipiv: ipiv(k) > 0 says that D(k,k) is a block of
 * its own and that row and column k were interchanged with ipiv(k); a block of two has the same number p < 0 in both
 * places, and says that of its two rows the one reached last, k + 1 for L and k - 1 for U, was interchanged with -p.
 * Bad arguments, and the want of memory, are told as by LU factorisation. */

/* The factorisation: triangle uplo of a is overwritten with L or U, whose ones are not stored, and D. work(lwork),
 * lwork at least 1; -1 asks for the best length, which comes back in work(1), and does nothing else. With less, the
 * routine takes memory of its own. info above 0: D(info,info) is exactly 0, the first such on the way; the
 * factorisation is complete, but D is singular. Reports 1 uplo, 2 n, 4 lda, 7 lwork. Threads: within its products.
 * Bunch and Kaufman, Math. Comp. 31 (1977). */
void dsytrf(const char* uplo, const int* n, double* a, const int* lda, int* ipiv, double* work, const int* lwork,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zsytrf(const char* uplo, const int* n, nxl_z* a, const int* lda, int* ipiv, nxl_z* work, const int* lwork,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhetrf(const char* uplo, const int* n, nxl_z* a, const int* lda, int* ipiv, nxl_z* work, const int* lwork,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Solves A X = B with the factors and pivots that trf has left: X takes the place of b(n,nrhs). Reports 1 uplo, 2 n,
 * 3 nrhs, 5 lda, 8 ldb. Threads: over right-hand sides. */
void dsytrs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda, const int* ipiv,
            double* b, const int* ldb, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zsytrs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const int* ipiv, nxl_z* b,
            const int* ldb, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhetrs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const int* ipiv, nxl_z* b,
            const int* ldb, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* The inverse of A in the place of its factors, one triangle. work(n) is not used; the routine takes memory of its own.
 * info above 0: D(info,info) is 0, the first such on the way of the factorisation, and a is as it was. Reports 1 uplo,
 * 2 n, 4 lda. */
void dsytri(const char* uplo, const int* n, double* a, const int* lda, const int* ipiv, double* work, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zsytri(const char* uplo, const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhetri(const char* uplo, const int* n, nxl_z* a, const int* lda, const int* ipiv, nxl_z* work, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* The reciprocal condition number 1 / (|A| |A^-1|) in the norm of largest column sums, from the factors and anorm =
 * |A|. The norm of the inverse is estimated from a few solutions. rcond: 1 for n = 0, 0 for anorm = 0 and where D is
 * singular, NaN where the factors have one. work(2n), iwork(n); complex: work(2n) alone. Reports 1 uplo, 2 n, 4 lda, 6
 * anorm below 0. Higham, ACM Trans. Math. Software 14 (1988). */
void dsycon(const char* uplo, const int* n, const double* a, const int* lda, const int* ipiv, const double* anorm,
            double* rcond, double* work, int* iwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zsycon(const char* uplo, const int* n, const nxl_z* a, const int* lda, const int* ipiv, const double* anorm,
            double* rcond, nxl_z* work, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhecon(const char* uplo, const int* n, const nxl_z* a, const int* lda, const int* ipiv, const double* anorm,
            double* rcond, nxl_z* work, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Improves solutions x(n,nrhs) of A X = B, given a(n,n), its factors af(n,n) and b(n,nrhs), and tells how good they
 * are: berr(nrhs), the smallest relative change of elements of A and b for which x is exact, and ferr(nrhs), a bound,
 * not quite certain, on the largest error of an element relative to the largest element of x. work(3n), iwork(n);
 * complex: work(2n), rwork(n). Reports 1 uplo, 2 n, 3 nrhs, 5 lda, 7 ldaf, 10 ldb, 12 ldx. Arioli, Demmel and Duff,
 * SIAM J. Matrix Anal. Appl. 10 (1989). */
void dsyrfs(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda, const double* af,
            const int* ldaf, const int* ipiv, const double* b, const int* ldb, double* x, const int* ldx, double* ferr,
            double* berr, double* work, int* iwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zsyrfs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
            const int* ldaf, const int* ipiv, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx, double* ferr,
            double* berr, nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zherfs(const char* uplo, const int* n, const int* nrhs, const nxl_z* a, const int* lda, const nxl_z* af,
            const int* ldaf, const int* ipiv, const nxl_z* b, const int* ldb, nxl_z* x, const int* ldx, double* ferr,
            double* berr, nxl_z* work, double* rwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* ==== LAPACK: orthogonal factorisations ==========================================================================
 * A = Q R, A = L Q and their kin, with Q orthogonal or unitary, as products of reflectors H = I - tau v v^H.
 *
 * Reflectors stay where a factorisation has left them: of each vector v the elements beside the first one, which is 1
 * and not stored, in the part of a that R or L does not have, and its scalar in tau. Q itself is formed, or applied to
 * a matrix, by a call of its own. Of work(lwork) every routine tells the best length: lwork -1 asks for it, it comes
 * back in work(1), and nothing else is done. Any length from the least one up gives the same result at the same speed:
 * blocks have memory of the routine's own. info: 0; -i when argument i is bad, which is reported as well; -1000 when
 * there was no memory, which is reported, too. Schreiber and Van Loan, SIAM J. Sci. Stat. Comput. 10 (1989). */

/* A = Q R of a(m,n): R in the upper triangle, min(m, n) by n, its diagonal real; below it the vectors of Q = H1 H2 ...,
 * with tau(min(m, n)). work(lwork), lwork at least max(1, n). Reports 1 m, 2 n, 4 lda, 7 lwork.
 * Method: blocks of columns, halved recursively; Elmroth and Gustavson, IBM J. Res. Dev. 44 (2000). */
void dgeqrf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work, const int* lwork,
            int* info) NXL_NOEXCEPT;
void zgeqrf(const int* m, const int* n, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work, const int* lwork,
            int* info) NXL_NOEXCEPT;

/* A = L Q of a(m,n): L in the lower triangle, m by min(m, n), its diagonal real; right of it the vectors of
 * Q = ... H2^H H1^H, conjugated, with tau(min(m, n)). work(lwork), lwork at least max(1, m). Reports 1 m, 2 n, 4 lda,
 * 7 lwork. Method: that of dgeqrf on the adjoint of blocks of rows. */
void dgelqf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work, const int* lwork,
            int* info) NXL_NOEXCEPT;
void zgelqf(const int* m, const int* n, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work, const int* lwork,
            int* info) NXL_NOEXCEPT;

/* A P = Q R of a(m,n) with pivots, stored as by dgeqrf: of the columns left, each step takes the one of the largest
 * norm, so that |R(i,i)| does not grow. jpvt(n): columns with a number other than 0 come first, without pivots among
 * them; on exit column j of A P was column jpvt(j) of A. work(lwork), lwork at least 3n + 1. Reports 1 m, 2 n, 4 lda, 8
 * lwork. Quintana-Orti, Sun and Bischof, SIAM J. Sci. Comput. 19 (1998); norms: Drmac and Bujanovic, ACM TOMS 35
 * (2008). */
void dgeqp3(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau, double* work,
            const int* lwork, int* info) NXL_NOEXCEPT;

/* The first n columns of Q = H1 ... Hk of a QR factorisation, m >= n >= k: a(m,n) has the vectors in its first k
 * columns, as dgeqrf has left them, with tau(k), and is overwritten. work(lwork), lwork at least max(1, n). Reports 1
 * m, 2 n, 3 k, 5 lda, 8 lwork. */
void dorgqr(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau, double* work,
            const int* lwork, int* info) NXL_NOEXCEPT;
void zungqr(const int* m, const int* n, const int* k, nxl_z* a, const int* lda, const nxl_z* tau, nxl_z* work,
            const int* lwork, int* info) NXL_NOEXCEPT;

/* The first m rows of Q = Hk^H ... H1^H of an LQ factorisation, n >= m >= k: a(m,n) has the vectors in its first k
 * rows, as dgelqf has left them, with tau(k), and is overwritten. work(lwork), lwork at least max(1, m). Reports 1 m, 2
 * n, 3 k, 5 lda, 8 lwork. */
void dorglq(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau, double* work,
            const int* lwork, int* info) NXL_NOEXCEPT;
void zunglq(const int* m, const int* n, const int* k, nxl_z* a, const int* lda, const nxl_z* tau, nxl_z* work,
            const int* lwork, int* info) NXL_NOEXCEPT;

/* C := op(Q) C (side L) or C op(Q) (R), c(m,n), Q = H1 ... Hk of order m (L) or n (R) from dgeqrf, whose vectors are
 * the columns of a(m,k) or a(n,k), with tau(k). op by trans: N as it is, T transposed (real), C adjoint (complex).
 * work(lwork), lwork at least max(1, n) for L, max(1, m) for R. Reports 1 side, 2 trans, 3 m, 4 n, 5 k, 7 lda, 10 ldc,
 * 12 lwork. Threads: each has columns (L) or rows (R) of C for itself. */
void dormqr(const char* side, const char* trans, const int* m, const int* n, const int* k, const double* a,
            const int* lda, const double* tau, double* c, const int* ldc, double* work, const int* lwork, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zunmqr(const char* side, const char* trans, const int* m, const int* n, const int* k, const nxl_z* a,
            const int* lda, const nxl_z* tau, nxl_z* c, const int* ldc, nxl_z* work, const int* lwork, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* The same with Q = Hk^H ... H1^H from dgelqf, whose vectors are the rows of a(k,m) or a(k,n). */
void dormlq(const char* side, const char* trans, const int* m, const int* n, const int* k, const double* a,
            const int* lda, const double* tau, double* c, const int* ldc, double* work, const int* lwork, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zunmlq(const char* side, const char* trans, const int* m, const int* n, const int* k, const nxl_z* a,
            const int* lda, const nxl_z* tau, nxl_z* c, const int* ldc, nxl_z* work, const int* lwork, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* Q of the reduction to tridiagonal form by dsytrd or zhetrd with the same uplo, in the place of its vectors in a(n,n);
 * tau(n - 1). work(lwork), lwork at least max(1, n - 1). Reports 1 uplo, 2 n, 4 lda, 7 lwork. */
void dorgtr(const char* uplo, const int* n, double* a, const int* lda, const double* tau, double* work,
            const int* lwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zungtr(const char* uplo, const int* n, nxl_z* a, const int* lda, const nxl_z* tau, nxl_z* work, const int* lwork,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Q of the reduction of rows and columns ilo to ihi, from 1, to Hessenberg form by dgehrd or zgehrd, in the place of
 * its vectors in a(n,n); tau(n - 1). Outside of them Q is the identity. work(lwork), lwork at least max(1, ihi - ilo).
 * Reports 1 n, 2 ilo, 3 ihi, 5 lda, 8 lwork. */
void dorghr(const int* n, const int* ilo, const int* ihi, double* a, const int* lda, const double* tau, double* work,
            const int* lwork, int* info) NXL_NOEXCEPT;
void zunghr(const int* n, const int* ilo, const int* ihi, nxl_z* a, const int* lda, const nxl_z* tau, nxl_z* work,
            const int* lwork, int* info) NXL_NOEXCEPT;

/* One factor of the reduction to bidiagonal form by dgebrd or zgebrd in the place of its vectors in a(m,n), with tau:
 * vect Q, the first n columns of Q of a matrix that had k columns, m >= n >= min(m, k); vect P, the first m rows of P^H
 * of one that had k rows, n >= m >= min(n, k). work(lwork), lwork at least max(1, min(m, n)). Reports 1 vect, 2 m, 3 n,
 * 4 k, 6 lda, 9 lwork. */
void dorgbr(const char* vect, const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau,
            double* work, const int* lwork, int* info, NXL_LENGTH(vect_length)) NXL_NOEXCEPT;
void zungbr(const char* vect, const int* m, const int* n, const int* k, nxl_z* a, const int* lda, const nxl_z* tau,
            nxl_z* work, const int* lwork, int* info, NXL_LENGTH(vect_length)) NXL_NOEXCEPT;

/* C := op(Q) C (side L) or C op(Q) (R), c(m,n), Q of order m (L) or n (R) from the reduction to tridiagonal form with
 * the same uplo, its vectors in a. op and work as for dormqr. Reports 1 side, 2 uplo, 3 trans, 4 m, 5 n, 7 lda, 10 ldc,
 * 12 lwork. */
void dormtr(const char* side, const char* uplo, const char* trans, const int* m, const int* n, const double* a,
            const int* lda, const double* tau, double* c, const int* ldc, double* work, const int* lwork, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(uplo_length), NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zunmtr(const char* side, const char* uplo, const char* trans, const int* m, const int* n, const nxl_z* a,
            const int* lda, const nxl_z* tau, nxl_z* c, const int* ldc, nxl_z* work, const int* lwork, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(uplo_length), NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* The same with Q (vect Q) or P (P) from the reduction to bidiagonal form by dgebrd of a matrix that had k columns (Q)
 * or k rows (P). Reports 1 vect, 2 side, 3 trans, 4 m, 5 n, 6 k, 8 lda, 11 ldc, 13 lwork. */
void dormbr(const char* vect, const char* side, const char* trans, const int* m, const int* n, const int* k,
            const double* a, const int* lda, const double* tau, double* c, const int* ldc, double* work,
            const int* lwork, int* info, NXL_LENGTH(vect_length), NXL_LENGTH(side_length),
            NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* ==== LAPACK: least squares ======================================================================================
 * min |b - A x|, and the shortest x where there are many. */

/* Solves with op(A) = A (trans N), A^T (T, real) or A^H (C, complex), a(m,n) of full rank, for each of nrhs columns of
 * b: min |b - op(A) x| where op(A) has at least as many rows as columns, else the shortest x with op(A) x = b. b has
 * max(m, n) rows, the right-hand sides in the first ones; x takes their place. In a least squares problem the sum of
 * squares of the elements below x is that of the residual. a is overwritten with its QR or, for m < n, its LQ
 * factorisation. A and B near the limits of the range are scaled. work(lwork), lwork at least
 * max(1, min(m, n) + max(min(m, n), nrhs)); -1 asks for the best length, which comes back in work(1). info: 0; i above
 * 0: element i on the diagonal of the triangle is 0, A has not full rank, and there is no solution; -i and -1000 as by
 * dgeqrf. Reports 1 trans, 2 m, 3 n, 4 nrhs, 6 lda, 8 ldb, 10 lwork.
 * Golub and Van Loan, Matrix Computations, 4th ed., sections 5.3 and 5.6. */
void dgels(const char* trans, const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
           const int* ldb, double* work, const int* lwork, int* info, NXL_LENGTH(trans_length)) NXL_NOEXCEPT;
void zgels(const char* trans, const int* m, const int* n, const int* nrhs, nxl_z* a, const int* lda, nxl_z* b,
           const int* ldb, nxl_z* work, const int* lwork, int* info, NXL_LENGTH(trans_length)) NXL_NOEXCEPT;

/* The shortest x among those with the least |b - A x|, for each of nrhs columns of b, whatever the rank of a(m,n),
 * by its singular values, which come in s(min(m,n)), descending. rank: how many are above rcond times the largest;
 * the others count as 0. A negative rcond stands for the unit roundoff. b has max(m,n) rows, the right-hand sides in
 * the first m; x takes their place; for m >= n and rank n the sum of squares of the elements below x is that of the
 * residual. The first min(m,n) rows of a become the right singular vectors, as V^H. A and B near the limits of the
 * range are scaled. work(lwork), lwork at least 3 min(m,n) + max(2 min(m,n), max(m,n), nrhs), complex 2 min(m,n) +
 * max(m,n,nrhs), and rwork(5 min(m,n)); lwork -1 asks for the size, which comes back in work(1) and does nothing
 * else. info: 0; above 0 when values have not converged; -1000 when there is no memory; or -i when argument i is
 * bad, which is reported as well: 1 m, 2 n, 3 nrhs, 5 lda, 7 ldb, 12 lwork. Golub and Van Loan, Matrix Computations,
 * 4th ed., section 5.5. */
void dgelss(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b, const int* ldb,
            double* s, const double* rcond, int* rank, double* work, const int* lwork, int* info) NXL_NOEXCEPT;
void zgelss(const int* m, const int* n, const int* nrhs, nxl_z* a, const int* lda, nxl_z* b, const int* ldb, double* s,
            const double* rcond, int* rank, nxl_z* work, const int* lwork, double* rwork, int* info) NXL_NOEXCEPT;

/* The same without the vectors: a is destroyed. Where the rank is full the bidiagonal form is solved as it stands,
 * else by its vectors, from divide and conquer. An rcond of 0 or below, or of 1 and above, stands for the unit
 * roundoff. work(lwork), with k = min(m,n) and l = max(0, 1 + log2(k/26)), without its fraction, at least 12k + 50k
 * + 8kl + k nrhs + 676, complex 2k + k nrhs; rwork of 10k + 50k + 8kl + 75 nrhs + max(676, k (1 + nrhs) + 2 nrhs),
 * and iwork of 3kl + 11k elements are not used but for their first, which tell these sizes, with lwork -1, too. */
void dgelsd(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b, const int* ldb,
            double* s, const double* rcond, int* rank, double* work, const int* lwork, int* iwork,
            int* info) NXL_NOEXCEPT;
void zgelsd(const int* m, const int* n, const int* nrhs, nxl_z* a, const int* lda, nxl_z* b, const int* ldb, double* s,
            const double* rcond, int* rank, nxl_z* work, const int* lwork, double* rwork, int* iwork,
            int* info) NXL_NOEXCEPT;

/* ==== LAPACK: singular values ====================================================================================
 * The singular value decomposition, and the bidiagonal matrices on the way to it. */

/* A = Q B P^H: a(m,n) brought to real bidiagonal form, upper for m >= n, else lower. The diagonal of B comes in
 * d(min(m,n)), the other diagonal in e(min(m,n)-1); both stand in a as well. Q is H1 H2 ..., their vectors below the
 * bidiagonal, P is G1 G2 ..., their conjugated vectors in the rows beyond it, each beside a one that is not stored;
 * scalars in tauq(min(m,n)), taup(min(m,n)). dormbr multiplies by Q and P, dorgbr forms them. work(lwork), lwork at
 * least max(1, m, n); lwork -1 asks for the published best size, which comes back in work(1) and does nothing else.
 * info: 0; -1000 when there is no memory; or -i when argument i is bad, which is reported as well: 1 m, 2 n, 4 lda, 10
 * lwork. Golub and Van Loan, Matrix Computations, 4th ed., section 5.4.8; Dongarra, Sorensen and Hammarling, J. Comput.
 * Appl. Math. 27 (1989); Howell, Demmel, Fulton, Hammarling and Marmol, ACM TOMS 34 (2008). */
void dgebrd(const int* m, const int* n, double* a, const int* lda, double* d, double* e, double* tauq, double* taup,
            double* work, const int* lwork, int* info) NXL_NOEXCEPT;
void zgebrd(const int* m, const int* n, nxl_z* a, const int* lda, double* d, double* e, nxl_z* tauq, nxl_z* taup,
            nxl_z* work, const int* lwork, int* info) NXL_NOEXCEPT;

/* B = Q S P^T: the singular values of a bidiagonal matrix, upper or lower (uplo), with diagonal d(n) and
 * off-diagonal e(n-1), come in d, descending, each to a few units of its own last place. vt(n,ncvt) becomes P^T VT,
 * u(nru,n) U Q and c(n,ncc) Q^T C; one with a dimension of 0 is not looked at. Without any of them by dqds. e is
 * destroyed; work is not used. info: 0; the number of off-diagonal elements that have not converged, d and e then
 * being those of a bidiagonal matrix with the same values, or as they were when one of them was not finite; -1000
 * when there is no memory; or -i when argument i is bad, which is reported as well: 1 uplo, 2 n, 3 ncvt, 4 nru, 5
 * ncc, 9 ldvt, 11 ldu, 13 ldc. Demmel and Kahan, SIAM J. Sci. Stat. Comput. 11 (1990); Fernando and Parlett, Numer.
 * Math. 67 (1994). */
void dbdsqr(const char* uplo, const int* n, const int* ncvt, const int* nru, const int* ncc, double* d, double* e,
            double* vt, const int* ldvt, double* u, const int* ldu, double* c, const int* ldc, double* work, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zbdsqr(const char* uplo, const int* n, const int* ncvt, const int* nru, const int* ncc, double* d, double* e,
            nxl_z* vt, const int* ldvt, nxl_z* u, const int* ldu, nxl_z* c, const int* ldc, double* work, int* info,
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* A = U S V^H: the singular value decomposition of a(m,n), by QR iteration. The values come in s(min(m,n)),
 * descending. jobu: A u(m,m) holds all of U, S u(m,min(m,n)) its first columns, O they take the place of a, N none;
 * jobvt the same for V^H in vt(n,n), vt(min(m,n),n) and the rows of a; not both O. a is destroyed otherwise.
 * work(lwork), lwork at least max(1, 3 min(m,n) + max(m,n), 5 min(m,n)), complex 2 min(m,n) + max(m,n), and rwork(5
 * min(m,n)); lwork -1 asks for the size, which comes back in work(1) and does nothing else. info: 0; the number of
 * superdiagonals of a bidiagonal form, of A^H where m < n, that have not converged, and then stand in work(2...),
 * complex rwork; -1000 when there is no memory; or -i when argument i is bad, which is reported as well: 1 jobu, 2
 * jobvt, 3 m, 4 n, 6 lda, 9 ldu, 11 ldvt, 13 lwork. Golub and Van Loan, Matrix Computations, 4th ed., section 8.6; tall
 * ones by way of their triangle: Chan, ACM TOMS 8 (1982). */
void dgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda, double* s,
            double* u, const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int* info,
            NXL_LENGTH(jobu_length), NXL_LENGTH(jobvt_length)) NXL_NOEXCEPT;
void zgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, nxl_z* a, const int* lda, double* s,
            nxl_z* u, const int* ldu, nxl_z* vt, const int* ldvt, nxl_z* work, const int* lwork, double* rwork,
            int* info, NXL_LENGTH(jobu_length), NXL_LENGTH(jobvt_length)) NXL_NOEXCEPT;

/* The same by divide and conquer. jobz A, S and N as both letters of dgesvd; O: the first min(m,n) left vectors for
 * m >= n, else right ones, take the place of a, and vt(n,n), or u(m,m), holds the others. work(lwork), lwork at
 * least for k = min(m,n), l = max(m,n): N 3k + max(l, 7k), O 3k + max(l, 5k^2 + 4k), S 4k^2 + 7k, A 4k^2 + 6k + l;
 * complex: N 2k + l, O 2k^2 + 2k + l, S k^2 + 3k, A k^2 + 2k + l. iwork(8k) and rwork are not used. info: 0; above 0
 * when values have not converged; -4 for a NaN in a; -1000 when there is no memory; or -i when argument i is bad,
 * which is reported as well: 1 jobz, 2 m, 3 n, 5 lda, 8 ldu, 10 ldvt, 12 lwork. Gu and Eisenstat, SIAM J. Matrix
 * Anal. Appl. 16 (1995). */
void dgesdd(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s, double* u,
            const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int* iwork, int* info,
            NXL_LENGTH(jobz_length)) NXL_NOEXCEPT;
void zgesdd(const char* jobz, const int* m, const int* n, nxl_z* a, const int* lda, double* s, nxl_z* u, const int* ldu,
            nxl_z* vt, const int* ldvt, nxl_z* work, const int* lwork, double* rwork, int* iwork, int* info,
            NXL_LENGTH(jobz_length)) NXL_NOEXCEPT;

/* ==== LAPACK: eigenproblems ======================================================================================
 * Eigenvalues and eigenvectors. */

/* A = Q T Q^H: a symmetric or Hermitian matrix, triangle uplo of a(n,n), brought to real symmetric tridiagonal form.
 * The diagonal of T comes in d(n), its off-diagonal in e(n-1); both stand in a as well. Q is H1 H2 ... (uplo L), vector
 * i in a(i+2..n,i) behind a one, or ... H2 H1 (U), vector i in a(1..i-1,i+1) before a one; their scalars in tau(n-1).
 * dormtr multiplies by Q, dorgtr forms it. The imaginary parts of a Hermitian diagonal are taken as 0. By panels from n
 * = 33 on, on threads from n = 32 on. work(lwork), lwork at least 1; lwork -1 asks for the best size, n times the
 * block, which comes back in work(1) and does nothing else. info: 0, or -i when argument i is bad, which is reported as
 * well: 1 uplo, 2 n, 4 lda, 9 lwork. Golub and Van Loan, Matrix Computations, 4th ed., section 8.3; Dongarra, Sorensen
 * and Hammarling, J. Comput. Appl. Math. 27 (1989). */
void dsytrd(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e, double* tau, double* work,
            const int* lwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhetrd(const char* uplo, const int* n, nxl_z* a, const int* lda, double* d, double* e, nxl_z* tau, nxl_z* work,
            const int* lwork, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Eigenvalues of a symmetric or Hermitian matrix, triangle uplo of a(n,n), and with jobz V their vectors: all of them
 * (range A), those in (vl, vu] (V), or the il-th to the iu-th, ascending, from 1 (I). The m values come in w,
 * ascending, the vectors in the first m columns of z, which has n in any case. a is destroyed. All pairs come by QL
 * when abstol is not above 0; else, and others, by bisection to abstol, see dstebz, and inverse iteration, see dstein.
 * work(lwork), lwork at least 8n, complex 2n, or 1 for n below 2; lwork -1 asks for the best size, which comes back in
 * work(1) and does nothing else. iwork(5n), complex: rwork(7n), are not used. ifail(n): 0, or first the numbers of
 * vectors that have not converged. info: 0; as many of them; -1000 when there is no memory; or -i when argument i is
 * bad, which is reported as well: 1 jobz, 2 range, 3 uplo, 4 n, 6 lda, 8 vl and vu, 9 il, 10 iu, 15 ldz, 17 lwork. */
void dsyevx(const char* jobz, const char* range, const char* uplo, const int* n, double* a, const int* lda,
            const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w,
            double* z, const int* ldz, double* work, const int* lwork, int* iwork, int* ifail, int* info,
            NXL_LENGTH(jobz_length), NXL_LENGTH(range_length), NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zheevx(const char* jobz, const char* range, const char* uplo, const int* n, nxl_z* a, const int* lda,
            const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w,
            nxl_z* z, const int* ldz, nxl_z* work, const int* lwork, double* rwork, int* iwork, int* ifail, int* info,
            NXL_LENGTH(jobz_length), NXL_LENGTH(range_length), NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* The same by another way: all pairs by multiple relatively robust representations, and with jobz N by dsterf; those of
 * a range, and all where representations are not to be found that are good enough, as of dsyevx, to abstol. isuppz(2m)
 * is set with jobz V and all pairs: vector i of the tridiagonal matrix is zero but for rows isuppz(2i-1) to isuppz(2i).
 * That is so when jobz and range are the capitals V and A, or I with il 1 and iu n; with small letters isuppz is left
 * alone. work(lwork), lwork at least 26n, complex 2n, then also rwork(lrwork), lrwork at least 24n; iwork(liwork),
 * liwork at least 10n; none below 1. A length of -1 asks for the best ones, which come back in work(1), rwork(1) and
 * iwork(1), and does nothing else. info: 0; above 0 when vectors have not converged, or values of a NaN; -1000 when
 * there is no memory; or -i when argument i is bad, which is reported as well: those of dsyevx, but 18 lwork, 20
 * liwork, complex 20 lrwork, 22 liwork. Dhillon and Parlett, Linear Algebra Appl. 387 (2004); Dhillon, Parlett and
 * Voemel, ACM TOMS 32 (2006). */
void dsyevr(const char* jobz, const char* range, const char* uplo, const int* n, double* a, const int* lda,
            const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w,
            double* z, const int* ldz, int* isuppz, double* work, const int* lwork, int* iwork, const int* liwork,
            int* info, NXL_LENGTH(jobz_length), NXL_LENGTH(range_length), NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zheevr(const char* jobz, const char* range, const char* uplo, const int* n, nxl_z* a, const int* lda,
            const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w,
            nxl_z* z, const int* ldz, int* isuppz, nxl_z* work, const int* lwork, double* rwork, const int* lrwork,
            int* iwork, const int* liwork, int* info, NXL_LENGTH(jobz_length), NXL_LENGTH(range_length),
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* All eigenvalues w(n), ascending, of a symmetric or Hermitian band matrix with kd diagonals beside the main one, and
 * with jobz V their vectors z(n,n). ab(ldab,n) holds a triangle: element (i,j) at ab(kd+1+i-j,j) (uplo U) or
 * ab(1+i-j,j) (L), and is not changed. The band is brought to tridiagonal form by reflectors that chase bulges; then
 * QL, and for the vectors of the forms with d divide and conquer, which is the faster one. No workspace is used; those
 * of the forms with d have to be as long as published, and a length of -1 asks for that, in work(1), rwork(1),
 * iwork(1). work(3n-2), complex: work(n), rwork(3n-2); with d: lwork 1 for n below 2, 2n for jobz N, 1 + 5n + 2n^2 for
 * V, complex: n or 2n^2, with lrwork n or 1 + 5n + 2n^2; liwork 1, or for V 3 + 5n. info: 0; the number of off-diagonal
 * elements that have not become 0, or by divide and conquer n + 1 times the first row, from 1, plus the last of the
 * part where that has been so; -1000 when there is no memory; or -i when argument i is bad, which is reported as well:
 * 1 jobz, 2 uplo, 3 n, 4 kd, 6 ldab, 9 ldz, 11 lwork, 13 liwork or lrwork, 15 liwork. Murata and Horikoshi, Information
 * Processing in Japan 15 (1975); Lang, SIAM J. Sci. Comput. 14 (1993); Gu and Eisenstat, SIAM J. Matrix Anal. Appl. 16
 * (1995). */
void dsbev(const char* jobz, const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab,
           double* w, double* z, const int* ldz, double* work, int* info, NXL_LENGTH(jobz_length),
           NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhbev(const char* jobz, const char* uplo, const int* n, const int* kd, const nxl_z* ab, const int* ldab, double* w,
           nxl_z* z, const int* ldz, nxl_z* work, double* rwork, int* info, NXL_LENGTH(jobz_length),
           NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void dsbevd(const char* jobz, const char* uplo, const int* n, const int* kd, const double* ab, const int* ldab,
            double* w, double* z, const int* ldz, double* work, const int* lwork, int* iwork, const int* liwork,
            int* info, NXL_LENGTH(jobz_length), NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhbevd(const char* jobz, const char* uplo, const int* n, const int* kd, const nxl_z* ab, const int* ldab,
            double* w, nxl_z* z, const int* ldz, nxl_z* work, const int* lwork, double* rwork, const int* lrwork,
            int* iwork, const int* liwork, int* info, NXL_LENGTH(jobz_length), NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Selected eigenvalues and vectors of a band matrix as that of dsbev; what is asked for and what comes back is that of
 * dsyevx. With jobz V the matrix that brings the band to tridiagonal form comes in q(n,n). work(7n), complex: work(n),
 * rwork(7n), and iwork(5n) are not used. Reports 1 jobz, 2 range, 3 uplo, 4 n, 5 kd, 7 ldab, 9 ldq, 11 vl and vu, 12
 * il, 13 iu, 18 ldz. */
void dsbevx(const char* jobz, const char* range, const char* uplo, const int* n, const int* kd, const double* ab,
            const int* ldab, double* q, const int* ldq, const double* vl, const double* vu, const int* il,
            const int* iu, const double* abstol, int* m, double* w, double* z, const int* ldz, double* work, int* iwork,
            int* ifail, int* info, NXL_LENGTH(jobz_length), NXL_LENGTH(range_length),
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhbevx(const char* jobz, const char* range, const char* uplo, const int* n, const int* kd, const nxl_z* ab,
            const int* ldab, nxl_z* q, const int* ldq, const double* vl, const double* vu, const int* il, const int* iu,
            const double* abstol, int* m, double* w, nxl_z* z, const int* ldz, nxl_z* work, double* rwork, int* iwork,
            int* ifail, int* info, NXL_LENGTH(jobz_length), NXL_LENGTH(range_length),
            NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* Generalised eigenproblems made ordinary ones: with the factor of B = U^H U (uplo U) or L L^H (L) that dpotrf or
 * zpotrf has left in b(n,n), triangle uplo of A, a(n,n), becomes that of U^-H A U^-1 or L^-1 A L^-H for itype 1, A x =
 * lambda B x, or of U A U^H or L^H A L for itype 2, A B x = lambda x, and 3, B A x = lambda x. By halves, on products
 * and solutions of level 3. info: 0, or -i when argument i is bad, which is reported as well: 1 itype, 2 uplo, 3 n, 5
 * lda, 7 ldb. Golub and Van Loan, Matrix Computations, 4th ed., section 8.7.2. */
void dsygst(const int* itype, const char* uplo, const int* n, double* a, const int* lda, const double* b,
            const int* ldb, int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;
void zhegst(const int* itype, const char* uplo, const int* n, nxl_z* a, const int* lda, const nxl_z* b, const int* ldb,
            int* info, NXL_LENGTH(uplo_length)) NXL_NOEXCEPT;

/* All eigenvalues of the symmetric tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1): they take the place
 * of d, ascending; e is destroyed. QL without square roots, variant of Pal, Walker and Kahan: Parlett, The Symmetric
 * Eigenvalue Problem, SIAM 1998, section 8.15. info: 0; -1 when n is negative, which is reported as well; or as many
 * off-diagonal elements as have not become 0 in 30 n steps or because of a NaN, then d is not sorted. */
void dsterf(const int* n, double* d, double* e, int* info) NXL_NOEXCEPT;

/* Eigenvalues of the symmetric tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1) by bisection: all of them
 * (range A), those in (vl, vu] (V), or the il-th to the iu-th, ascending, from 1 (I). They come in w(m), ascending in
 * each block that the matrix splits into (order B), as dstein wants them, or all in all (order E). nsplit blocks: block
 * k ends with row isplit(k), and eigenvalue i is one of block iblock(i), negative where it is not as good as it should
 * be. abstol: the length of the interval that is taken for an eigenvalue; not above 0 for roundoff times the norm of
 * the block; 2 D1MACH(1) for the most accurate values. w, iblock, isplit: n elements; work(4n), iwork(3n). info: 0; 1
 * when some values are not good, as with a NaN; 2 when range I found other than iu - il + 1 of them; 3 both; 4 when
 * none could be told apart; -1000 when there is no memory; or -i when argument i is bad, which is reported as well: 1
 * range, 2 order, 3 n, 5 vl and vu, 6 il, 7 iu. Demmel, Dhillon and Ren, ETNA 3 (1995). */
void dstebz(const char* range, const char* order, const int* n, const double* vl, const double* vu, const int* il,
            const int* iu, const double* abstol, const double* d, const double* e, int* m, int* nsplit, double* w,
            int* iblock, int* isplit, double* work, int* iwork, int* info, NXL_LENGTH(range_length),
            NXL_LENGTH(order_length)) NXL_NOEXCEPT;

/* Eigenvectors z(n,m) of the symmetric tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1) for its
 * eigenvalues w(m), by inverse iteration. w, iblock(m) and isplit are those of dstebz with order B. Vectors of length
 * 1; those of values that are closer than a thousandth of the norm are made orthogonal to each other, the other groups
 * are spread over threads. work(5n) is not used. iwork(n), ifail(m). info: 0, then ifail is 0; the number of vectors
 * that have not converged from 3 starts, whose numbers stand in ifail(1) and on; -1000 when there is no memory; or -i
 * when argument i is bad, which is reported as well: 1 n, 4 m, 5 w is not ascending in a block, 6 iblock is not
 * ascending, 9 ldz. Jessup and Ipsen, SIAM J. Sci. Stat. Comput. 13 (1992). */
void dstein(const int* n, const double* d, const double* e, const int* m, const double* w, const int* iblock,
            const int* isplit, double* z, const int* ldz, double* work, int* iwork, int* ifail, int* info) NXL_NOEXCEPT;
void zstein(const int* n, const double* d, const double* e, const int* m, const double* w, const int* iblock,
            const int* isplit, nxl_z* z, const int* ldz, double* work, int* iwork, int* ifail, int* info) NXL_NOEXCEPT;

/* All eigenvalues and, with compz V or I, eigenvectors of the symmetric tridiagonal matrix with diagonal d(n) and
 * off-diagonal e(n-1), by implicit QL or QR with Wilkinson's shift. The values take the place of d, ascending; e is
 * destroyed. compz I: the columns of z(n,n) become the vectors. V: z holds the matrix by which a full matrix was
 * brought to tridiagonal form, and its columns become the full matrix's vectors. N: neither z nor work is looked at,
 * and the values are dsterf's. work(2n-2) is not used. info: 0; the number of off-diagonal elements that have not
 * become 0 in 30 n steps or because of a NaN; -1000 when there is no memory; or -i when argument i is bad, which is
 * reported as well: 1 compz, 2 n, 6 ldz. Golub and Van Loan, Matrix Computations, 4th ed., section 8.3; rotations are
 * applied many sweeps at a time and on several threads: Van Zee, van de Geijn and Quintana-Orti, ACM TOMS 40 (2014). */
void dsteqr(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz, double* work, int* info,
            NXL_LENGTH(compz_length)) NXL_NOEXCEPT;
void zsteqr(const char* compz, const int* n, double* d, double* e, nxl_z* z, const int* ldz, double* work, int* info,
            NXL_LENGTH(compz_length)) NXL_NOEXCEPT;

/* Eigenvalues of a positive definite tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1), descending, in
 * d, each to a few units of its own last place as far as the matrix settles it; for compz I their vectors in z(n,n),
 * for V z becomes z times them, for N not. e is destroyed; work is not used. info: 0; i when the leading minor of
 * order i is not positive; n + i when i values have not converged; -1000 when there is no memory; or -i when
 * argument i is bad, which is reported as well: 1 compz, 2 n, 6 ldz. Barlow and Demmel, SIAM J. Numer. Anal. 27
 * (1990). */
void dpteqr(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz, double* work, int* info,
            NXL_LENGTH(compz_length)) NXL_NOEXCEPT;
void zpteqr(const char* compz, const int* n, double* d, double* e, nxl_z* z, const int* ldz, double* work, int* info,
            NXL_LENGTH(compz_length)) NXL_NOEXCEPT;

/* The eigenvalues of the Hermitian matrix [a b; conj(b) c], whose a and c count by their real parts: rt1 is the one of
 * larger modulus, to a few units in the last place; rt2 the other, as exact as a c - |b|^2 does not cancel. (cs1, sn1)
 * is the vector of rt1 after conjugation of sn1: [cs1 conj(sn1); -sn1 cs1] A [cs1 -conj(sn1); sn1 cs1] = diag(rt1,
 * rt2). Golub and Van Loan, Matrix Computations, section 8.5.2. */
void ZLAEV2(const nxl_z* a, const nxl_z* b, const nxl_z* c, double* rt1, double* rt2, double* cs1,
            nxl_z* sn1) NXL_NOEXCEPT;

/* ==== LAPACK: nonsymmetric eigenproblems ==========================================================================
 * Eigenvalues and vectors of matrices without symmetry, by way of Hessenberg and Schur form.
 *
 * The road: dgebal, dgehrd, dorghr, dhseqr, dtrevc, dgebak. ilo and ihi, from 1, are the rows and columns outside of
 * which a matrix is triangular: what dgebal has found, or 1 and n. A real Schur form is quasi-triangular: blocks of
 * order 2 on its diagonal, with equal diagonal elements and off-diagonal ones of opposite signs, are pairs of conjugate
 * eigenvalues. More: docs/nonsymmetric-eigenproblems.md. */

/* Balances a(n,n): with job P permutes it so that eigenvalues that stand alone come to the ends and only rows and
 * columns ilo to ihi are left, with S scales those by powers of two until the 2-norms of each row and its column are
 * close, with B does both, with N nothing. scale(n) tells what was done, for dgebak: a number from ilo to ihi is a
 * factor, any other the row, from 1, that i was exchanged with, from n down to ihi + 1 and then from 1 to ilo - 1.
 * info: 0, or -i when argument i is bad, which is reported as well: 1 job, 2 n, 4 lda. James, Langou and Lowery, On
 * matrix balancing and eigenvector computation, arXiv:1401.5766 (2014). */
void dgebal(const char* job, const int* n, double* a, const int* lda, int* ilo, int* ihi, double* scale, int* info,
            NXL_LENGTH(job_length)) NXL_NOEXCEPT;
void zgebal(const char* job, const int* n, nxl_z* a, const int* lda, int* ilo, int* ihi, double* scale, int* info,
            NXL_LENGTH(job_length)) NXL_NOEXCEPT;

/* Eigenvectors of a matrix from those of the balanced one, v(n,m): side R right ones, L left ones. job, ilo, ihi and
 * scale are those of dgebal. info: 0, or -i when argument i is bad, which is reported as well: 1 job, 2 side, 3 n, 4
 * ilo, 5 ihi, 7 m, 9 ldv. */
void dgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi, const double* scale,
            const int* m, double* v, const int* ldv, int* info, NXL_LENGTH(job_length),
            NXL_LENGTH(side_length)) NXL_NOEXCEPT;
void zgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi, const double* scale,
            const int* m, nxl_z* v, const int* ldv, int* info, NXL_LENGTH(job_length),
            NXL_LENGTH(side_length)) NXL_NOEXCEPT;

/* Q^H A Q = H, upper Hessenberg, of a(n,n) on rows and columns ilo to ihi. H comes in its place, and below it the
 * vectors of Q = H(ilo) ... H(ihi-1), whose scalars are in tau(n-1), 0 outside of that; dorghr forms Q. work(lwork),
 * lwork at least n, 32 n is best; -1 asks for that, which work(1) tells. info: 0; -1000 when there is no memory; or -i
 * when argument i is bad, which is reported as well: 1 n, 2 ilo, 3 ihi, 5 lda, 8 lwork. Quintana-Orti and van de Geijn,
 * ACM TOMS 32 (2006). */
void dgehrd(const int* n, const int* ilo, const int* ihi, double* a, const int* lda, double* tau, double* work,
            const int* lwork, int* info) NXL_NOEXCEPT;
void zgehrd(const int* n, const int* ilo, const int* ihi, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work,
            const int* lwork, int* info) NXL_NOEXCEPT;

/* Eigenvalues of the upper Hessenberg matrix h(n,n), which is triangular outside of ilo to ihi, and with job S its
 * Schur form T = Z^H H Z in h; with job E what is left there means nothing. compz I: Z comes in z(n,n); V: what z
 * holds, as the Q of dgehrd, is multiplied by it from the right; N: z is not looked at. What stands in h below the
 * subdiagonal is not looked at either. Values of conjugate pairs follow each other, the one with the positive imaginary
 * part first. work(lwork), lwork at least n; -1 asks for the best, which work(1) tells. info: 0; i when not all
 * eigenvalues have been found, or h has a NaN or an infinity: those from i + 1 on, and before ilo, are there, the
 * others are NaN; -1000 when there is no memory; or -i when argument i is bad, which is reported as well: 1 job, 2
 * compz, 3 n, 4 ilo, 5 ihi, 7 ldh, 11 (complex 10) ldz, 13 (12) lwork. Multishift QR with aggressive early deflation:
 * Braman, Byers and Mathias, SIAM J. Matrix Anal. Appl. 23 (2002), two papers. */
void dhseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi, double* h, const int* ldh,
            double* wr, double* wi, double* z, const int* ldz, double* work, const int* lwork, int* info,
            NXL_LENGTH(job_length), NXL_LENGTH(compz_length)) NXL_NOEXCEPT;
void zhseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi, nxl_z* h, const int* ldh,
            nxl_z* w, nxl_z* z, const int* ldz, nxl_z* work, const int* lwork, int* info, NXL_LENGTH(job_length),
            NXL_LENGTH(compz_length)) NXL_NOEXCEPT;

/* Eigenvectors of a Schur form t(n,n): right ones, T x = lambda x, with side R, left ones, y^H T = lambda y^H, with L,
 * both with B. howmny A: all; B: all, multiplied by what vr and vl hold, as the Z of dhseqr, so that they are vectors
 * of the full matrix; S: those that select(n) is not 0 for, of a conjugate pair either of the two. They come in
 * vr(n,mm) and vl(n,mm), one column for a real vector, and two, real and imaginary parts, for a conjugate pair, of the
 * value with the positive imaginary part; afterwards select is not 0 for that one alone. m: the columns that are used.
 * The largest element, by |re| + |im|, is 1. work(3n), complex work(2n) and rwork(n), are not used. info: 0; -1000 when
 * there is no memory; or -i when argument i is bad, which is reported as well: 1 side, 2 howmny, 4 n, 6 ldt, 8 ldvl, 10
 * ldvr, 11 mm, which is below m. Vectors are found and multiplied many at a time, by products of level 3, and scaled
 * where they would overflow. Golub and Van Loan, Matrix Computations, 4th ed., section 7.6. */
void dtrevc(const char* side, const char* howmny, int* select, const int* n, const double* t, const int* ldt,
            double* vl, const int* ldvl, double* vr, const int* ldvr, const int* mm, int* m, double* work, int* info,
            NXL_LENGTH(side_length), NXL_LENGTH(howmny_length)) NXL_NOEXCEPT;
void ztrevc(const char* side, const char* howmny, const int* select, const int* n, const nxl_z* t, const int* ldt,
            nxl_z* vl, const int* ldvl, nxl_z* vr, const int* ldvr, const int* mm, int* m, nxl_z* work, double* rwork,
            int* info, NXL_LENGTH(side_length), NXL_LENGTH(howmny_length)) NXL_NOEXCEPT;

/* Eigenvalues of a(n,n), which is destroyed, and with jobvl, jobvr V left and right eigenvectors vl(n,n), vr(n,n):
 * columns of length 1 whose largest element is real; of a conjugate pair, which begins with the positive imaginary
 * part, real and imaginary parts of the first one stand in two columns. work(lwork), lwork at least 3n, with vectors
 * 4n, complex 2n; -1 asks for the best, which work(1) tells. rwork(2n). info: 0; i when the iteration has failed, or A
 * has a NaN or an infinity: no vectors, values from i + 1 on, the others NaN; -1000 when there is no memory; or -i when
 * argument i is bad, which is reported as well: 1 jobvl, 2 jobvr, 3 n, 5 lda, 9 (complex 8) ldvl, 11 (10) ldvr, 13 (12)
 * lwork. */
void dgeev(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda, double* wr, double* wi,
           double* vl, const int* ldvl, double* vr, const int* ldvr, double* work, const int* lwork, int* info,
           NXL_LENGTH(jobvl_length), NXL_LENGTH(jobvr_length)) NXL_NOEXCEPT;
void zgeev(const char* jobvl, const char* jobvr, const int* n, nxl_z* a, const int* lda, nxl_z* w, nxl_z* vl,
           const int* ldvl, nxl_z* vr, const int* ldvr, nxl_z* work, const int* lwork, double* rwork, int* info,
           NXL_LENGTH(jobvl_length), NXL_LENGTH(jobvr_length)) NXL_NOEXCEPT;

/* The Sylvester equation op(A) X + isgn X op(B) = scale C for Schur forms a(m,m) and b(n,n); X takes the place of
 * c(m,n). op is N, T or C; of complex matrices N or C. isgn: 1 or -1. 0 < scale <= 1 keeps X within the range. info: 0;
 * 1 when A and -isgn B have eigenvalues so close that one was moved; -1000 when there is no memory; or -i when argument
 * i is bad, which is reported as well: 1 trana, 2 tranb, 3 isgn, 4 m, 5 n, 7 lda, 9 ldb, 11 ldc. Recursive over halves:
 * Jonsson and Kagstrom, ACM TOMS 28 (2002). */
void dtrsyl(const char* trana, const char* tranb, const int* isgn, const int* m, const int* n, const double* a,
            const int* lda, const double* b, const int* ldb, double* c, const int* ldc, double* scale, int* info,
            NXL_LENGTH(trana_length), NXL_LENGTH(tranb_length)) NXL_NOEXCEPT;
void ztrsyl(const char* trana, const char* tranb, const int* isgn, const int* m, const int* n, const nxl_z* a,
            const int* lda, const nxl_z* b, const int* ldb, nxl_z* c, const int* ldc, double* scale, int* info,
            NXL_LENGTH(trana_length), NXL_LENGTH(tranb_length)) NXL_NOEXCEPT;

/* Reciprocal condition numbers of eigenvalues (job E), s(mm), and of right eigenvectors (V), sep(mm), or both (B), of a
 * Schur form t(n,n): of all (howmny A), or of those that select(n) is not 0 for (S), of a conjugate pair either of the
 * two, which have one number each. s = |y^H x| / (|x| |y|) for the vectors that dtrevc has left in vr and vl in the
 * same order; sep estimates the distance to the other eigenvalues, the least singular value of T22 - lambda I. m: how
 * many numbers there are. With job E neither work(ldwork,n+6), nor iwork(2n-2), complex rwork(n), is used, else their
 * contents mean nothing; job V does not look at vl and vr. info: 0; -1000 when there is no memory; or -i when argument
 * i is bad, which is reported as well: 1 job, 2 howmny, 4 n, 6 ldt, 8 ldvl, 10 ldvr, 13 mm, which is below m, 16
 * ldwork. Bai, Demmel and McKenney, ACM TOMS 19 (1993). */
void dtrsna(const char* job, const char* howmny, const int* select, const int* n, const double* t, const int* ldt,
            const double* vl, const int* ldvl, const double* vr, const int* ldvr, double* s, double* sep, const int* mm,
            int* m, double* work, const int* ldwork, int* iwork, int* info, NXL_LENGTH(job_length),
            NXL_LENGTH(howmny_length)) NXL_NOEXCEPT;
void ztrsna(const char* job, const char* howmny, const int* select, const int* n, const nxl_z* t, const int* ldt,
            const nxl_z* vl, const int* ldvl, const nxl_z* vr, const int* ldvr, double* s, double* sep, const int* mm,
            int* m, nxl_z* work, const int* ldwork, double* rwork, int* info, NXL_LENGTH(job_length),
            NXL_LENGTH(howmny_length)) NXL_NOEXCEPT;

/* ==== Sparse BLAS level 1 =========================================================================================
 * Vectors with few non-zeros: sums, gather and scatter. Dodson, Grimes and Lewis, ACM TOMS 17 (1991).
 *
 * A sparse vector is nz values x and their places indx in a dense vector
 * y, counted from 1. Indices are not checked; a repeated index counts each time it stands. With nz below 1 nothing is
 * done and sums are 0. Without memory for a copy of indx the call has no effect and XERBLA is told (number 1000). */

/* y(indx(i)) := y(indx(i)) + a x(i); nothing is done when a is 0. */
void daxpyi(const int* nz, const double* a, const double* x, const int* indx, double* y) NXL_NOEXCEPT;
void zaxpyi(const int* nz, const nxl_z* a, const nxl_z* x, const int* indx, nxl_z* y) NXL_NOEXCEPT;

/* Sum of x(i) y(indx(i)); zdotci takes conj(x(i)). The complex sums are written through the first argument. */
double ddoti(const int* nz, const double* x, const int* indx, const double* y) NXL_NOEXCEPT;
void zdotui(nxl_z* result, const int* nz, const nxl_z* x, const int* indx, const nxl_z* y) NXL_NOEXCEPT;
void zdotci(nxl_z* result, const int* nz, const nxl_z* x, const int* indx, const nxl_z* y) NXL_NOEXCEPT;

/* Gather: x(i) := y(indx(i)). */
void dgthr(const int* nz, const double* y, double* x, const int* indx) NXL_NOEXCEPT;
void zgthr(const int* nz, const nxl_z* y, nxl_z* x, const int* indx) NXL_NOEXCEPT;

/* Scatter: y(indx(i)) := x(i). */
void dsctr(const int* nz, const double* x, const int* indx, double* y) NXL_NOEXCEPT;
void zsctr(const int* nz, const nxl_z* x, const int* indx, nxl_z* y) NXL_NOEXCEPT;

/* ==== Vector primitives ===========================================================================================
 * Loops over arrays by plain C calls: arguments by value, lengths unsigned and in elements, complex scalars by pointer.
 * Letters behind a name tell what is complex: none, or d, real; c complex; of two, the first is the array or first
 * operand, the second the scalar or second operand (AddValuecd_d: complex array, real scalar). Nothing is checked and
 * nothing threads. Destination and source may be the same array when their elements are of one size, unless a routine
 * says otherwise; arrays that overlap in part give no settled result. A length of 0 does nothing. Results are the same
 * on every processor. NaN, zeros, ranges: docs/primitives.md. */

/* dst[i] = src[i] + value. */
void AddValue_d(const double* src, double* dst, double value, uint32_t n) NXL_NOEXCEPT;
void AddValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;
void AddValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) NXL_NOEXCEPT;
void AddValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = value - src[i]. */
void SubFromValue_d(const double* src, double* dst, double value, uint32_t n) NXL_NOEXCEPT;
void SubFromValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;
void SubFromValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) NXL_NOEXCEPT;
void SubFromValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = value / src[i], a zero element giving what floating point gives. A complex divisor by Smith's method, CACM 5
 * (1962), algorithm 116. */
void DivideValue_d(const double* src, double* dst, double value, uint32_t n) NXL_NOEXCEPT;
void DivideValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;
void DivideValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) NXL_NOEXCEPT;
void DivideValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = src[i] value. */
void ScaleByValue_d(const double* src, double* dst, double value, uint32_t n) NXL_NOEXCEPT;
void ScaleByValuec_d(const nxl_z* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;
void ScaleByValuecd_d(const nxl_z* src, nxl_z* dst, double value, uint32_t n) NXL_NOEXCEPT;
void ScaleByValuedc_d(const double* src, nxl_z* dst, const nxl_z* value, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = a[i] + b[i], a[i] - b[i], a[i] b[i]. */
void AddVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void SubVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void SubVecdc_d(const double* a, const nxl_z* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void MulVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = a[i] / b[i]; a complex divisor as in DivideValuec_d. */
void DivVeccc_d(const nxl_z* a, const nxl_z* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void DivVeccd_d(const nxl_z* a, const double* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void DivVecdc_d(const double* a, const nxl_z* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = conj(a[i]) b[i]. */
void ConjMulcc_d(const nxl_z* a, const nxl_z* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = -1.0, 0.0 or 1.0 by the sign of src[i]: 0.0 for both zeros, 1.0 for NaN. First letter source, second
 * destination. The sign of a complex number is that of its real part, or of its imaginary part when the real part is 0;
 * a complex destination gets the imaginary part 0.0. */
void Sgndd_d(const double* src, double* dst, uint32_t n) NXL_NOEXCEPT;
void Sgncd_d(const nxl_z* src, double* dst, uint32_t n) NXL_NOEXCEPT;
void Sgndc_d(const double* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void Sgncc_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* dst[i], in place, by the sign of src[i] as above: 0.0 where it is 0, negated where it is negative, else as it was,
 * for NaN too. A complex dst[i] in both parts. */
void SgnMul_d(const double* src, double* dst, uint32_t n) NXL_NOEXCEPT;
void SgnMulc_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void SgnMulcd_d(const nxl_z* src, double* dst, uint32_t n) NXL_NOEXCEPT;
void SgnMuldc_d(const double* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* Remainder: dst[i] = x[i] - y[i] q, q the quotient x[i] / y[i] truncated to a signed 32-bit integer. Defined while it
 * fits; beyond, and for NaN, q is -2147483648. */
void Rem_d(const double* x, const double* y, double* dst, uint32_t n) NXL_NOEXCEPT;

/* Remainder for one divisor: as Rem_d, but q is x[i] (1 / value) truncated, with the reciprocal rounded once. Near
 * whole multiples it can differ from Rem_d. */
void RemVal_d(const double* x, double value, double* dst, uint32_t n) NXL_NOEXCEPT;

/* The smallest integer not below src[i], the largest not above it, with the sign of src[i] when it is 0. */
void Ceil_d(const double* src, double* dst, uint32_t n) NXL_NOEXCEPT;
void Floor_d(const double* src, double* dst, uint32_t n) NXL_NOEXCEPT;

/* dst[0] = src[0], dst[i] = dst[i - 1] + src[i], added in this order. */
void CumSum_d(const double* src, double* dst, uint32_t n) NXL_NOEXCEPT;
void CumSumc_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* Cumulative sums at lag delta: the first delta elements (at most n) are copied, then dst[i] = src[i] + dst[i - delta].
 * Arrays may overlap in any way: the result is that of the loop over single elements, forwards. With delta 0, dst[i]
 * grows by src[i]. */
void CumSumDelta_d(const double* src, double* dst, uint32_t n, uint32_t delta) NXL_NOEXCEPT;
void CumSumDeltac_d(const nxl_z* src, nxl_z* dst, uint32_t n, uint32_t delta) NXL_NOEXCEPT;

/* The product of all elements, 1 for an empty array. Product_d multiplies sixteen interleaved parts first, or all in
 * the array's order where such a part would overflow or underflow. Productc_d multiplies in the array's order and
 * writes its result to out. */
double Product_d(const double* src, uint32_t n) NXL_NOEXCEPT;
void Productc_d(const nxl_z* src, nxl_z* out, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = src[n - 1 - i], of complex numbers. */
void Reverse_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* Each (re, im) becomes (im, re), (im, -re) and, by MulI_d, (-im, re), which is i times it. */
void Flip_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void FlipConj_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;
void MulI_d(const nxl_z* src, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* dst[i] = offset + i step, by parts. */
void Rampc_d(nxl_z* dst, uint32_t n, const nxl_z* offset, const nxl_z* step) NXL_NOEXCEPT;

/* Appends src[i] to dst where mask[i] is above 0. Returns the number of elements written; nothing is written behind
 * them. */
uint32_t PackByMask_d(uint32_t n, const double* src, double* dst, const int32_t* mask) NXL_NOEXCEPT;
uint32_t PackByMaskc_d(uint32_t n, const nxl_z* src, nxl_z* dst, const int32_t* mask) NXL_NOEXCEPT;

/* dst[i] = a[i] to the power b[i] by the C library's cpow, from i = 1 on: dst[0] is left as it was. */
void Powc_d(const nxl_z* a, const nxl_z* b, nxl_z* dst, uint32_t n) NXL_NOEXCEPT;

/* Single values behind pointers, for languages that have none: a double into out or as the result, a complex number, a
 * 32-bit integer; then stored. */
void GetValFromPtr_d(const double* p, double* out) NXL_NOEXCEPT;
double GetValFromPtrf_d(const double* p) NXL_NOEXCEPT;
void GetValcFromPtr_d(const nxl_z* p, nxl_z* out) NXL_NOEXCEPT;
void GetValIFromPtr(const int32_t* p, int32_t* out) NXL_NOEXCEPT;
void SetValToPtr_d(double* p, double value) NXL_NOEXCEPT;
void SetValcToPtr_d(nxl_z* p, const nxl_z* value) NXL_NOEXCEPT;
void SetValIToPtr(int32_t* p, int32_t value) NXL_NOEXCEPT;

/* ==== Matrix primitives ===========================================================================================
 * Copies, transposes, triangles, exchanges of rows and columns.
 *
 * Plain C calls: arguments by value but for the arrays, sizes unsigned. Matrices are row-major: element (r, c) is
 * a[r stride + c], with rows and columns counted from 0, and all of rows, cols and strides in elements. Where there are
 * two matrices, rows and cols are those of the part of src that is read. Nothing is checked, nothing outside the told
 * elements is written, and a size of 0 does nothing. Elements are moved bit by bit: NaN and signed zeros pass as they
 * are, and a conjugate has the other sign bit in its imaginary part. Complex arrays need the alignment of a double. */

/* Copies rows by cols elements: dst(dstRow + r, dstCol + c) = src(srcRow + r, srcCol + c). The offsets of the two
 * corners, as srcRow srcStride + srcCol, are taken modulo 2^32; rows follow them at their stride. Row after row is
 * copied, each as if through a copy of itself, so that the rows of one pair may overlap; what an earlier row wrote is
 * what a later one reads. */
void CopySubMatrix_d(const double* src, double* dst, uint32_t srcRow, uint32_t srcCol, uint32_t dstRow, uint32_t dstCol,
                     uint32_t rows, uint32_t cols, uint32_t srcStride, uint32_t dstStride) NXL_NOEXCEPT;
void CopySubMatrixc_d(const nxl_z* src, nxl_z* dst, uint32_t srcRow, uint32_t srcCol, uint32_t dstRow, uint32_t dstCol,
                      uint32_t rows, uint32_t cols, uint32_t srcStride, uint32_t dstStride) NXL_NOEXCEPT;

/* Copies the rows by cols block that src and dst begin with, from one stride to another, in the same way. In place it
 * can draw rows together (dstStride at most srcStride), not apart. */
void ResizeMatrix_d(const double* src, double* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                    uint32_t dstStride) NXL_NOEXCEPT;
void ResizeMatrixc_d(const nxl_z* src, nxl_z* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                     uint32_t dstStride) NXL_NOEXCEPT;

/* dst(c, r) = src(r, c); Adjungate takes conj(src(r, c)). dst has cols rows of `rows` elements. src and dst may not
 * overlap. Large results are written past the caches. */
void TransposeMatrix_d(const double* src, double* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                       uint32_t dstStride) NXL_NOEXCEPT;
void TransposeMatrixc_d(const nxl_z* src, nxl_z* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                        uint32_t dstStride) NXL_NOEXCEPT;
void AdjungateMatrixc_d(const nxl_z* src, nxl_z* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                        uint32_t dstStride) NXL_NOEXCEPT;

/* Transposes the n by n matrix a in place; Adjungate conjugates every element, the diagonal too. */
void TransposeSquareMatrix_d(double* a, uint32_t n, uint32_t stride) NXL_NOEXCEPT;
void TransposeSquareMatrixc_d(nxl_z* a, uint32_t n, uint32_t stride) NXL_NOEXCEPT;
void AdjungateSquareMatrixc_d(nxl_z* a, uint32_t n, uint32_t stride) NXL_NOEXCEPT;

/* Copies the elements below the diagonal of a rows by cols matrix, or above it; with them the diagonal when
 * includeDiagonal is not 0. The rest of dst stays. src and dst may be the same matrix. */
void LowerTriangle_d(const double* src, double* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                     uint32_t dstStride, int32_t includeDiagonal) NXL_NOEXCEPT;
void LowerTrianglec_d(const nxl_z* src, nxl_z* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                      uint32_t dstStride, int32_t includeDiagonal) NXL_NOEXCEPT;
void UpperTriangle_d(const double* src, double* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                     uint32_t dstStride, int32_t includeDiagonal) NXL_NOEXCEPT;
void UpperTrianglec_d(const nxl_z* src, nxl_z* dst, uint32_t rows, uint32_t cols, uint32_t srcStride,
                      uint32_t dstStride, int32_t includeDiagonal) NXL_NOEXCEPT;

/* Sets the elements below the diagonal of a rows by cols matrix, or above it, to 0; with them the diagonal when
 * zeroDiagonal, a byte, is not 0. */
void ZeroLowerTriangle_d(double* a, uint32_t rows, uint32_t cols, uint32_t stride, uint8_t zeroDiagonal) NXL_NOEXCEPT;
void ZeroLowerTrianglec_d(nxl_z* a, uint32_t rows, uint32_t cols, uint32_t stride, uint8_t zeroDiagonal) NXL_NOEXCEPT;
void ZeroUpperTriangle_d(double* a, uint32_t rows, uint32_t cols, uint32_t stride, uint8_t zeroDiagonal) NXL_NOEXCEPT;
void ZeroUpperTrianglec_d(nxl_z* a, uint32_t rows, uint32_t cols, uint32_t stride, uint8_t zeroDiagonal) NXL_NOEXCEPT;

/* Rows row1 and row2 of a change places, in their first cols elements. */
void RowExchange_d(double* a, uint32_t row1, uint32_t row2, uint32_t cols, uint32_t stride) NXL_NOEXCEPT;
void RowExchangec_d(nxl_z* a, uint32_t row1, uint32_t row2, uint32_t cols, uint32_t stride) NXL_NOEXCEPT;

/* Columns col1 and col2 of a change places, in their first `rows` elements. */
void ColExchange_d(double* a, uint32_t col1, uint32_t col2, uint32_t rows, uint32_t stride) NXL_NOEXCEPT;
void ColExchangec_d(nxl_z* a, uint32_t col1, uint32_t col2, uint32_t rows, uint32_t stride) NXL_NOEXCEPT;

/* ==== Pack and unpack =============================================================================================
 * Gather into an array without gaps, scatter from it: by stride, by index, by mask. Indices count from 0; nothing is
 * checked. Real arrays: everything by reference, n of 0 or less does nothing. Complex arrays (c_d): n, unsigned, and
 * increments by value. */

/* y[i] = a[i incra] for i from 0 to n - 1; a negative increment runs backwards from a. */
void vdpacki(const int32_t* n, const double* a, const int32_t* incra, double* y) NXL_NOEXCEPT;
void vdpackic_d(uint32_t n, const nxl_z* a, int32_t incra, nxl_z* y) NXL_NOEXCEPT;

/* y[i] = a[ia[i]]. */
void vdpackv(const int32_t* n, const double* a, const int32_t* ia, double* y) NXL_NOEXCEPT;
void vdpackvc_d(uint32_t n, const nxl_z* a, const int32_t* ia, nxl_z* y) NXL_NOEXCEPT;

/* Appends a[i] to y where ma[i] is above 0. */
void vdpackm(const int32_t* n, const double* a, const int32_t* ma, double* y) NXL_NOEXCEPT;
void vdpackmc_d(uint32_t n, const nxl_z* a, const int32_t* ma, nxl_z* y) NXL_NOEXCEPT;

/* y[i incry] = a[i]. */
void vdunpacki(const int32_t* n, const double* a, double* y, const int32_t* incry) NXL_NOEXCEPT;
void vdunpackic_d(uint32_t n, const nxl_z* a, nxl_z* y, int32_t incry) NXL_NOEXCEPT;

/* y[iy[i]] = a[i]; of several values for one place the last stays. */
void vdunpackv(const int32_t* n, const double* a, double* y, const int32_t* iy) NXL_NOEXCEPT;
void vdunpackvc_d(uint32_t n, const nxl_z* a, nxl_z* y, const int32_t* iy) NXL_NOEXCEPT;

/* The next element of a into y[i] where my[i] is above 0; other elements of y are not touched. */
void vdunpackm(const int32_t* n, const double* a, double* y, const int32_t* my) NXL_NOEXCEPT;
void vdunpackmc_d(uint32_t n, const nxl_z* a, nxl_z* y, const int32_t* my) NXL_NOEXCEPT;

/* ==== Bessel and Airy functions ===================================================================================
 * Functions of complex arguments and real orders >= 0, in single precision: J and Y, I and K, the Hankel functions H1
 * and H2, Ai and Bi. A call computes n orders at once, fnu, fnu + 1, ..., fnu + n - 1, into cy(1) ... cy(n).
 *   z      the argument, anywhere in the plane; not 0 for K, H and Y. The functions are cut along the negative axis, on
 *          which arg z is pi, whatever the sign of a zero imaginary part
 *   fnu    the first order, not negative
 *   kode   1: the function; 2: the function times the exponential factor said below, which takes away most of its
 *          growth or decay
 *   n      number of orders, at least 1
 *   nz     out: how many elements have been set to 0 because their modulus is below the smallest normalised number,
 *          2^-126. For I and J these are the last ones, as such functions get small with their order; for K, H1 (upper
 *          half plane) and H2 (lower) the first ones; else the number alone is told
 *   ierr   out: one of these codes. With 1, 2, 4 and 5 cy stays as it was and nz is 0. Nothing is reported
 *
 *   0  done
 *   1  bad input: an argument outside its bounds above, or fnu not a number
 *   2  overflow: a part of an element is above the largest number. With kode 1 large |Re z| or |Im z|; with either, an
 *      order large beside |z|, for K, H and Y
 *   3  done; |z| or fnu + n - 1 is above 2048, where arithmetic in single precision would have lost more than half of
 *      its digits
 *   4  |z| or fnu + n - 1 is above 2^22 = 4194304, where it would have lost all; or z is infinite or not a number
 *   5  an iteration did not end
 *
 * The meaning of arguments and codes is that of D. E. Amos, ACM TOMS 12 (1986) 265-273, Algorithm 644. Computation is
 * in double precision throughout, code 3 included: an error is below 1 unit in the last place of the modulus (rounding
 * both parts correctly: up to 0.71). It may be more next to a zero of a function of an order from 86 on, where an error
 * of |z| 3e-16 times the function's size nearby can show. Parts that are 0 by symmetry are exactly 0; zeros have no
 * sign. Methods and measurements: docs/special-functions.md. Formulas: DLMF, chapters 9 and 10. */

/* I, the modified function of the first kind. kode 2: times exp(-|Re z|). */
void CBESI(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz, int* ierr) NXL_NOEXCEPT;

/* J, the function of the first kind. kode 2: times exp(-|Im z|). */
void CBESJ(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz, int* ierr) NXL_NOEXCEPT;

/* K, the modified function of the second kind. kode 2: times exp(z). */
void CBESK(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz, int* ierr) NXL_NOEXCEPT;

/* H1 = J + iY (m = 1) or H2 = J - iY (m = 2), the Hankel functions. kode 2: times exp(-iz) for m = 1, exp(iz) for
 * m = 2. Any other m is bad input. */
void CBESH(const nxl_c* z, const float* fnu, const int* kode, const int* m, const int* n, nxl_c* cy, int* nz,
           int* ierr) NXL_NOEXCEPT;

/* Y, the function of the second kind. kode 2: times exp(-|Im z|). cwrk(n) is work memory that goes unused. */
void CBESY(const nxl_c* z, const float* fnu, const int* kode, const int* n, nxl_c* cy, int* nz, nxl_c* cwrk,
           int* ierr) NXL_NOEXCEPT;

/* Ai(z) (id 0) or Ai'(z) (id 1). kode 2: times exp(zeta), zeta = 2/3 z sqrt(z) with the principal root. nz: 1 when the
 * result has been set to 0, else 0. ierr as above, by |z| alone: 3 above 2^(22/3) = 161.3, 4 above 2^(44/3) = 26008.0;
 * 1 for id or kode. Accuracy as above, with |z|^1.5 in the place of |z| next to zeros. */
void CAIRY(const nxl_c* z, const int* id, const int* kode, nxl_c* ai, int* nz, int* ierr) NXL_NOEXCEPT;

/* Bi(z) (id 0) or Bi'(z) (id 1). kode 2: times exp(-|Re zeta|). ierr as of CAIRY. */
void CBIRY(const nxl_c* z, const int* id, const int* kode, nxl_c* bi, int* ierr) NXL_NOEXCEPT;

/* ==== Toeplitz systems and filter design ==========================================================================
 * Solutions with a Toeplitz matrix, best approximation by cosines. None of these reports anything but a lack of memory
 * in REMEZ. All run in the calling thread, but for what ddot does with long vectors. */

/* T x = b for a Toeplitz matrix of order m, neither symmetric nor Hermitian: T(i,j) = a1(j-i+1) for j >= i, a2(i-j)
 * for i > j. a1(m): its first row; a2(m-1): its first column from the second element on; b(m), x(m); work: c1(m-1),
 * c2(m-1). x may be b itself; otherwise inputs stay as they are. With m below 1 nothing is done; with m = 1 a2, c1 and
 * c2 are not looked at. Nothing is conjugated. Cost: 3 m^2 products and sums. There is no pivoting: every leading
 * principal minor has to be non-zero, and digits are lost to one that nearly is 0. Positive definite matrices are
 * safe. Behind a minor of 0, x holds infinities or NaN. Method: Levinson, J. Math. Phys. 25 (1947); for unsymmetric T
 * and any right-hand side Trench, J. SIAM 12 (1964), and Zohar, J. ACM 21 (1974); Golub and Van Loan, Matrix
 * Computations, section 4.7. */
void TSLD1(const double* a1, const double* a2, const double* b, double* x, double* c1, double* c2,
           const int* m) NXL_NOEXCEPT;
void TSLZ1(const nxl_z* a1, const nxl_z* a2, const nxl_z* b, nxl_z* x, nxl_z* c1, nxl_z* c2, const int* m) NXL_NOEXCEPT;

/* Best approximation by cosines on a grid, the heart of linear-phase filter design: the sum P(f) of alpha(k+1) cos(2 pi
 * k f), k = 0 to nfc - 1, with the least maximum of wt |des - P| over the grid. grid(ngr): frequencies in cycles per
 * sample, ascending in 0 to 0.5, none twice; des(ngr): what is desired there; wt(ngr): weights above 0. What lies
 * between bands is left out of the grid; 16 points a coefficient make it dense. iext(nfc+2): in, places on the grid,
 * from 1, where the nfc + 1 extrema of the error may be; out, where they are, and ngr + 1 behind them. A start that
 * does not ascend within 1 to ngr, or is worse than equally spaced places, is replaced by those. alpha(nfc+2): out, the
 * coefficients, then zeros. Work of nfc + 2 each: ad, x, y, a, p, q. wt (des - P) has one size at all nfc + 1 extrema,
 * and signs in turn. After 25 rounds of exchange, or when rounding keeps the error from changing, the best set so far
 * counts; it has converged when no error on the grid is above that at iext. Coefficients have a rounding error of about
 * 1e-15 of the largest |P| in 0 to 0.5, between bands too. Where that spoils the result - the best error is below some
 * 1e-9 of des, or gaps between bands are so wide that P grows out of all bounds there - fewer terms are used, each
 * number of them with 25 rounds of its own, and the others are 0: iext then holds ngr + 1 behind as many extrema as
 * there are. With nfc below 1 nothing is done; with ngr below nfc + 1 alpha is 0 and iext stays. NaN in the data may
 * make alpha NaN. Without memory for a copy of iext nothing is done and XERBLA is told (number 1000). Cost: a division
 * for each term, point and round. Method: Parks and McClellan, IEEE Trans. Circuit Theory 19 (1972); McClellan, Parks
 * and Rabiner, IEEE Trans. Audio Electroacoust. 21 (1973); Rabiner, McClellan and Parks, Proc. IEEE 63 (1975).
 * docs/nxl-fir.md is about a program that designs filters with it. */
void REMEZ(const int* ngr, const int* nfc, int* iext, double* ad, double* x, double* y, const double* des,
           const double* grid, const double* wt, double* a, double* p, double* q, double* alpha) NXL_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif
