// LAPACK's simple drivers, A X = B in one call, for the systems whose factorisations libnxl.so has: a check of the
// arguments as published, its factorisation, its solution. A singular or indefinite matrix leaves B as it was.
#include "gnu/arguments.hpp"
#include "service/export.hpp"

using nxl::gnu::Arguments;

namespace {

template <auto Factor, auto Solve, class T>
void general(const char* name, const int* n, const int* nrhs, T* a, const int* lda, int* ipiv, T* b, const int* ldb,
             int* info) {
    if (Arguments(name).size(1, *n).size(2, *nrhs).leading(4, *lda, *n).leading(7, *ldb, *n).refused(info)) return;
    Factor(n, n, a, lda, ipiv, info);
    if (*info == 0) Solve("N", n, nrhs, a, lda, ipiv, b, ldb, info, 1);
}

template <auto Factor, auto Solve, class T>
void general_band(const char* name, const int* n, const int* kl, const int* ku, const int* nrhs, T* ab, const int* ldab,
                  int* ipiv, T* b, const int* ldb, int* info) {
    Arguments arguments(name);
    arguments.size(1, *n).size(2, *kl).size(3, *ku).size(4, *nrhs).leading(6, *ldab, 2L * *kl + *ku + 1);
    if (arguments.leading(9, *ldb, *n).refused(info)) return;
    Factor(n, n, kl, ku, ab, ldab, ipiv, info);
    if (*info == 0) Solve("N", n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info, 1);
}

template <auto Factor, auto Solve, class T>
void definite(const char* name, const char* uplo, const int* n, const int* nrhs, T* a, const int* lda, T* b,
              const int* ldb, int* info) {
    Arguments arguments(name);
    arguments.triangle(1, *uplo).size(2, *n).size(3, *nrhs).leading(5, *lda, *n).leading(7, *ldb, *n);
    if (arguments.refused(info)) return;
    Factor(uplo, n, a, lda, info, 1);
    if (*info == 0) Solve(uplo, n, nrhs, a, lda, b, ldb, info, 1);
}

template <auto Factor, auto Solve, class T>
void definite_band(const char* name, const char* uplo, const int* n, const int* kd, const int* nrhs, T* ab,
                   const int* ldab, T* b, const int* ldb, int* info) {
    Arguments arguments(name);
    arguments.triangle(1, *uplo).size(2, *n).size(3, *kd).size(4, *nrhs).leading(6, *ldab, *kd + 1L);
    if (arguments.leading(8, *ldb, *n).refused(info)) return;
    Factor(uplo, n, kd, ab, ldab, info, 1);
    if (*info == 0) Solve(uplo, n, kd, nrhs, ab, ldab, b, ldb, info, 1);
}

/// lwork -1 asks for the best length, which is the factorisation's.
template <auto Factor, auto Solve, class T>
void indefinite(const char* name, const char* uplo, const int* n, const int* nrhs, T* a, const int* lda, int* ipiv,
                T* b, const int* ldb, T* work, const int* lwork, int* info) {
    Arguments arguments(name);
    arguments.triangle(1, *uplo).size(2, *n).size(3, *nrhs).leading(5, *lda, *n).leading(8, *ldb, *n);
    if (arguments.expect(10, *lwork >= 1 || *lwork == -1).refused(info)) return;
    Factor(uplo, n, a, lda, ipiv, work, lwork, info, 1);
    if (*info == 0 && *lwork != -1) Solve(uplo, n, nrhs, a, lda, ipiv, b, ldb, info, 1);
}

} // namespace

extern "C" {

NXL_EXPORT void dgesv_(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b, const int* ldb,
                       int* info) noexcept {
    general<dgetrf, dgetrs>("DGESV ", n, nrhs, a, lda, ipiv, b, ldb, info);
}
NXL_EXPORT void zgesv_(const int* n, const int* nrhs, nxl_z* a, const int* lda, int* ipiv, nxl_z* b, const int* ldb,
                       int* info) noexcept {
    general<zgetrf, zgetrs>("ZGESV ", n, nrhs, a, lda, ipiv, b, ldb, info);
}

NXL_EXPORT void dgbsv_(const int* n, const int* kl, const int* ku, const int* nrhs, double* ab, const int* ldab,
                       int* ipiv, double* b, const int* ldb, int* info) noexcept {
    general_band<dgbtrf, dgbtrs>("DGBSV ", n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info);
}
NXL_EXPORT void zgbsv_(const int* n, const int* kl, const int* ku, const int* nrhs, nxl_z* ab, const int* ldab,
                       int* ipiv, nxl_z* b, const int* ldb, int* info) noexcept {
    general_band<zgbtrf, zgbtrs>("ZGBSV ", n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info);
}

NXL_EXPORT void dposv_(const char* uplo, const int* n, const int* nrhs, double* a, const int* lda, double* b,
                       const int* ldb, int* info) noexcept {
    definite<dpotrf, dpotrs>("DPOSV ", uplo, n, nrhs, a, lda, b, ldb, info);
}
NXL_EXPORT void zposv_(const char* uplo, const int* n, const int* nrhs, nxl_z* a, const int* lda, nxl_z* b,
                       const int* ldb, int* info) noexcept {
    definite<zpotrf, zpotrs>("ZPOSV ", uplo, n, nrhs, a, lda, b, ldb, info);
}

NXL_EXPORT void dpbsv_(const char* uplo, const int* n, const int* kd, const int* nrhs, double* ab, const int* ldab,
                       double* b, const int* ldb, int* info) noexcept {
    definite_band<dpbtrf, dpbtrs>("DPBSV ", uplo, n, kd, nrhs, ab, ldab, b, ldb, info);
}
NXL_EXPORT void zpbsv_(const char* uplo, const int* n, const int* kd, const int* nrhs, nxl_z* ab, const int* ldab,
                       nxl_z* b, const int* ldb, int* info) noexcept {
    definite_band<zpbtrf, zpbtrs>("ZPBSV ", uplo, n, kd, nrhs, ab, ldab, b, ldb, info);
}

NXL_EXPORT void dsysv_(const char* uplo, const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b,
                       const int* ldb, double* work, const int* lwork, int* info) noexcept {
    indefinite<dsytrf, dsytrs>("DSYSV ", uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info);
}
NXL_EXPORT void zsysv_(const char* uplo, const int* n, const int* nrhs, nxl_z* a, const int* lda, int* ipiv, nxl_z* b,
                       const int* ldb, nxl_z* work, const int* lwork, int* info) noexcept {
    indefinite<zsytrf, zsytrs>("ZSYSV ", uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info);
}
NXL_EXPORT void zhesv_(const char* uplo, const int* n, const int* nrhs, nxl_z* a, const int* lda, int* ipiv, nxl_z* b,
                       const int* ldb, nxl_z* work, const int* lwork, int* info) noexcept {
    indefinite<zhetrf, zhetrs>("ZHESV ", uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info);
}

} // extern "C"
