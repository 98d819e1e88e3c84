/* nxl: double-precision numerics for x86-64 Linux. The C and C++ interface; nxl.f90 is its Fortran twin.
 *
 * Calling convention of the numerical routines, as in Fortran: every argument by reference, integers 32-bit, arrays
 * column-major with a leading dimension, complex numbers as pairs of doubles. Names are exported as they stand here,
 * without underscores. Thread-control calls and the like take their arguments by value where their prototype says so.
 * Every routine may be called from any number of threads at the same time.
 */
#ifndef NXL_H
#define NXL_H

#ifdef __cplusplus
#include <complex>
typedef std::complex<double> nxl_z;
#else
#include <complex.h>
typedef double _Complex nxl_z;
#endif

#ifdef __cplusplus
#define NXL_NOEXCEPT noexcept
extern "C" {
#else
#define NXL_NOEXCEPT
#endif

/* ==== Errors ====================================================================================================== */

void XERBLA(const char* srname, const int* info, int len) NXL_NOEXCEPT;

/* ==== Threads ===================================================================================================== */

void NXL_Set_Num_Threads(int n) NXL_NOEXCEPT;
int NXL_Get_Max_Threads(void) NXL_NOEXCEPT;
int NXL_Domain_Set_Num_Threads(int n, int domain) NXL_NOEXCEPT;
int NXL_Domain_Get_Max_Threads(int domain) NXL_NOEXCEPT;
void NXL_Set_Dynamic(int flag) NXL_NOEXCEPT;
int NXL_Get_Dynamic(void) NXL_NOEXCEPT;
void okmp_set_blocktime(int milliseconds) NXL_NOEXCEPT;

/* ==== Memory, progress, timers, machine constants ================================================================= */

typedef int (*nxl_progress_callback)(const int* thread, const int* step, const char* stage, int stage_length);

void NXL_FreeBuffers(void) NXL_NOEXCEPT;
int NXL_PROGRESS(const int* thread, const int* step, const char* stage, int stage_length) NXL_NOEXCEPT;
void set_NXL_Progress_Callback(nxl_progress_callback callback) NXL_NOEXCEPT;
int test_NXL_Progress_Callback(void) NXL_NOEXCEPT;
double DSECND(void) NXL_NOEXCEPT;
double D1MACH(const int* i) NXL_NOEXCEPT;
float R1MACH(const int* i) NXL_NOEXCEPT;

/* ==== Conjugate gradients, by reverse communication =============================================================== */

void DCG_INIT(const int* n, const double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
              double* tmp) NXL_NOEXCEPT;
void DCG_CHECK(const int* n, const double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
               double* tmp) NXL_NOEXCEPT;
void DCG(const int* n, double* x, const double* b, int* RCI_request, int* ipar, double* dpar,
         double* tmp) NXL_NOEXCEPT;
void DCG_GET(const int* n, const double* x, const double* b, const int* RCI_request, const int* ipar,
             const double* dpar, const double* tmp, int* itercount) NXL_NOEXCEPT;
void DCGMRHS_INIT(const int* n, const double* x, const int* nrhs, const double* b, const int* method,
                  int* RCI_request, int* ipar, double* dpar, double* tmp) NXL_NOEXCEPT;
void DCGMRHS_CHECK(const int* n, const double* x, const int* nrhs, const double* b, int* RCI_request, int* ipar,
                   double* dpar, double* tmp) NXL_NOEXCEPT;
void DCGMRHS(const int* n, double* x, const int* nrhs, const double* b, int* RCI_request, int* ipar, double* dpar,
             double* tmp) NXL_NOEXCEPT;
void DCGMRHS_GET(const int* n, const double* x, const int* nrhs, const double* b, const int* RCI_request,
                 const int* ipar, const double* dpar, const double* tmp, int* itercount) NXL_NOEXCEPT;

/* ==== BLAS level 1 ================================================================================================ */

/* ==== Sparse BLAS level 1 ========================================================================================= */

#ifdef __cplusplus
}
#endif

#endif
