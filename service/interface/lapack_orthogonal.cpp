// LAPACK, orthogonal factorisations, Q formed and applied, least squares: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/least_squares/gels.hpp"
#include "lapack/kernel/source/orthogonal/gelqf.hpp"
#include "lapack/kernel/source/orthogonal/geqp3.hpp"
#include "lapack/kernel/source/orthogonal/geqrf.hpp"
#include "lapack/kernel/source/orthogonal/orgqr.hpp"
#include "lapack/kernel/source/orthogonal/orgtr.hpp"
#include "lapack/kernel/source/orthogonal/ormqr.hpp"
#include "lapack/kernel/source/orthogonal/ormtr.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgeqrf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                       const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dgeqrf(*m, *n, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zgeqrf(const int* m, const int* n, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zgeqrf(*m, *n, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void dgelqf(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                       const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dgelqf(*m, *n, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zgelqf(const int* m, const int* n, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zgelqf(*m, *n, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void dgeqp3(const int* m, const int* n, double* a, const int* lda, int* jpvt, double* tau, double* work,
                       const int* lwork, int* info) noexcept {
    OutInt info64(info);
    const WideInts pivots(jpvt, unless_query(*n, *lwork), Transfer::in_out);
    if (!pivots.data()) return refuse_for_memory("DGEQP3", info64.value);
    nxl_lapack_dgeqp3(*m, *n, a, *lda, pivots.data(), tau, work, *lwork, info64.value);
}

NXL_EXPORT void dorgqr(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau,
                       double* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dorgqr(*m, *n, *k, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zungqr(const int* m, const int* n, const int* k, nxl_z* a, const int* lda, const nxl_z* tau,
                       nxl_z* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zungqr(*m, *n, *k, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void dorglq(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau,
                       double* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dorglq(*m, *n, *k, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zunglq(const int* m, const int* n, const int* k, nxl_z* a, const int* lda, const nxl_z* tau,
                       nxl_z* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zunglq(*m, *n, *k, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void dormqr(const char* side, const char* trans, const int* m, const int* n, const int* k, const double* a,
                       const int* lda, const double* tau, double* c, const int* ldc, double* work, const int* lwork,
                       int* info, int side_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dormqr(capital(*side), capital(*trans), *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, info64.value,
                      side_length, trans_length);
}

NXL_EXPORT void zunmqr(const char* side, const char* trans, const int* m, const int* n, const int* k, const nxl_z* a,
                       const int* lda, const nxl_z* tau, nxl_z* c, const int* ldc, nxl_z* work, const int* lwork,
                       int* info, int side_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zunmqr(capital(*side), capital(*trans), *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, info64.value,
                      side_length, trans_length);
}

NXL_EXPORT void dormlq(const char* side, const char* trans, const int* m, const int* n, const int* k, const double* a,
                       const int* lda, const double* tau, double* c, const int* ldc, double* work, const int* lwork,
                       int* info, int side_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dormlq(capital(*side), capital(*trans), *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, info64.value,
                      side_length, trans_length);
}

NXL_EXPORT void zunmlq(const char* side, const char* trans, const int* m, const int* n, const int* k, const nxl_z* a,
                       const int* lda, const nxl_z* tau, nxl_z* c, const int* ldc, nxl_z* work, const int* lwork,
                       int* info, int side_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zunmlq(capital(*side), capital(*trans), *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork, info64.value,
                      side_length, trans_length);
}

NXL_EXPORT void dorgtr(const char* uplo, const int* n, double* a, const int* lda, const double* tau, double* work,
                       const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dorgtr(capital(*uplo), *n, a, *lda, tau, work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void zungtr(const char* uplo, const int* n, nxl_z* a, const int* lda, const nxl_z* tau, nxl_z* work,
                       const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zungtr(capital(*uplo), *n, a, *lda, tau, work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void dorghr(const int* n, const int* ilo, const int* ihi, double* a, const int* lda, const double* tau,
                       double* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dorghr(*n, *ilo, *ihi, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zunghr(const int* n, const int* ilo, const int* ihi, nxl_z* a, const int* lda, const nxl_z* tau,
                       nxl_z* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zunghr(*n, *ilo, *ihi, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void dorgbr(const char* vect, const int* m, const int* n, const int* k, double* a, const int* lda,
                       const double* tau, double* work, const int* lwork, int* info, int vect_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dorgbr(capital(*vect), *m, *n, *k, a, *lda, tau, work, *lwork, info64.value, vect_length);
}

NXL_EXPORT void zungbr(const char* vect, const int* m, const int* n, const int* k, nxl_z* a, const int* lda,
                       const nxl_z* tau, nxl_z* work, const int* lwork, int* info, int vect_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zungbr(capital(*vect), *m, *n, *k, a, *lda, tau, work, *lwork, info64.value, vect_length);
}

NXL_EXPORT void dormtr(const char* side, const char* uplo, const char* trans, const int* m, const int* n,
                       const double* a, const int* lda, const double* tau, double* c, const int* ldc, double* work,
                       const int* lwork, int* info, int side_length, int uplo_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dormtr(capital(*side), capital(*uplo), capital(*trans), *m, *n, a, *lda, tau, c, *ldc, work, *lwork,
                      info64.value, side_length, uplo_length, trans_length);
}

NXL_EXPORT void zunmtr(const char* side, const char* uplo, const char* trans, const int* m, const int* n,
                       const nxl_z* a, const int* lda, const nxl_z* tau, nxl_z* c, const int* ldc, nxl_z* work,
                       const int* lwork, int* info, int side_length, int uplo_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zunmtr(capital(*side), capital(*uplo), capital(*trans), *m, *n, a, *lda, tau, c, *ldc, work, *lwork,
                      info64.value, side_length, uplo_length, trans_length);
}

NXL_EXPORT void dormbr(const char* vect, const char* side, const char* trans, const int* m, const int* n, const int* k,
                       const double* a, const int* lda, const double* tau, double* c, const int* ldc, double* work,
                       const int* lwork, int* info, int vect_length, int side_length, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dormbr(capital(*vect), capital(*side), capital(*trans), *m, *n, *k, a, *lda, tau, c, *ldc, work, *lwork,
                      info64.value, vect_length, side_length, trans_length);
}

NXL_EXPORT void dgels(const char* trans, const int* m, const int* n, const int* nrhs, double* a, const int* lda,
                      double* b, const int* ldb, double* work, const int* lwork, int* info, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dgels(capital(*trans), *m, *n, *nrhs, a, *lda, b, *ldb, work, *lwork, info64.value, trans_length);
}

NXL_EXPORT void zgels(const char* trans, const int* m, const int* n, const int* nrhs, nxl_z* a, const int* lda,
                      nxl_z* b, const int* ldb, nxl_z* work, const int* lwork, int* info, int trans_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zgels(capital(*trans), *m, *n, *nrhs, a, *lda, b, *ldb, work, *lwork, info64.value, trans_length);
}

} // extern "C"
