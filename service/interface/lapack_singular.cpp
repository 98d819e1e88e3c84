// LAPACK, singular values and the least squares on them: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/least_squares/gelss.hpp"
#include "lapack/kernel/source/singular/bdsqr.hpp"
#include "lapack/kernel/source/singular/gebrd.hpp"
#include "lapack/kernel/source/singular/gesvd.hpp"
#include "lapack/kernel/source/tuning/ilaenv.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"
#include <algorithm>

using namespace nxl;

namespace {

/// Elements of the integer workspace of dgelsd and zgelsd, whose levels are counted for n, not min(m, n).
i64 integers_of_division(const char* name, i64 m, i64 n) {
    const i64 smallest_part = 9, none = 0, order = std::min(m, n);
    const i64 part = ILAENV(&smallest_part, name, " ", &none, &none, &none, &none, 6, 1);
    const double parts = static_cast<double>(n) / static_cast<double>(part + 1);
    i64 levels = 1;
    if (parts > 2.0) do
            ++levels;
        while (static_cast<double>(i64{1} << levels) < parts);
    return 11 * order + 3 * order * levels;
}

} // namespace

extern "C" {

NXL_EXPORT void dgebrd(const int* m, const int* n, double* a, const int* lda, double* d, double* e, double* tauq,
                       double* taup, double* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dgebrd(*m, *n, a, *lda, d, e, tauq, taup, work, *lwork, info64.value);
}

NXL_EXPORT void zgebrd(const int* m, const int* n, nxl_z* a, const int* lda, double* d, double* e, nxl_z* tauq,
                       nxl_z* taup, nxl_z* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zgebrd(*m, *n, a, *lda, d, e, tauq, taup, work, *lwork, info64.value);
}

NXL_EXPORT void dbdsqr(const char* uplo, const int* n, const int* ncvt, const int* nru, const int* ncc, double* d,
                       double* e, double* vt, const int* ldvt, double* u, const int* ldu, double* c, const int* ldc,
                       double* work, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dbdsqr(capital(*uplo), *n, *ncvt, *nru, *ncc, d, e, vt, *ldvt, u, *ldu, c, *ldc, work, info64.value,
                      uplo_length);
}

NXL_EXPORT void zbdsqr(const char* uplo, const int* n, const int* ncvt, const int* nru, const int* ncc, double* d,
                       double* e, nxl_z* vt, const int* ldvt, nxl_z* u, const int* ldu, nxl_z* c, const int* ldc,
                       double* work, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zbdsqr(capital(*uplo), *n, *ncvt, *nru, *ncc, d, e, vt, *ldvt, u, *ldu, c, *ldc, work, info64.value,
                      uplo_length);
}

NXL_EXPORT void dgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda,
                       double* s, double* u, const int* ldu, double* vt, const int* ldvt, double* work,
                       const int* lwork, int* info, int jobu_length, int jobvt_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dgesvd(capital(*jobu), capital(*jobvt), *m, *n, a, *lda, s, u, *ldu, vt, *ldvt, work, *lwork,
                      info64.value, jobu_length, jobvt_length);
}

NXL_EXPORT void zgesvd(const char* jobu, const char* jobvt, const int* m, const int* n, nxl_z* a, const int* lda,
                       double* s, nxl_z* u, const int* ldu, nxl_z* vt, const int* ldvt, nxl_z* work, const int* lwork,
                       double* rwork, int* info, int jobu_length, int jobvt_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zgesvd(capital(*jobu), capital(*jobvt), *m, *n, a, *lda, s, u, *ldu, vt, *ldvt, work, *lwork, rwork,
                      info64.value, jobu_length, jobvt_length);
}

NXL_EXPORT void dgesdd(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s, double* u,
                       const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int* iwork,
                       int* info, int) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, unless_query(8 * i64{std::min(*m, *n)}, *lwork), Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DGESDD", info64.value);
    nxl_lapack_dgesdd(capital(*jobz), *m, *n, a, *lda, s, u, *ldu, vt, *ldvt, work, *lwork, info64.value);
}

NXL_EXPORT void zgesdd(const char* jobz, const int* m, const int* n, nxl_z* a, const int* lda, double* s, nxl_z* u,
                       const int* ldu, nxl_z* vt, const int* ldvt, nxl_z* work, const int* lwork, double*, int* iwork,
                       int* info, int) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, unless_query(8 * i64{std::min(*m, *n)}, *lwork), Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("ZGESDD", info64.value);
    nxl_lapack_zgesdd(capital(*jobz), *m, *n, a, *lda, s, u, *ldu, vt, *ldvt, work, *lwork, info64.value);
}

NXL_EXPORT void dgelss(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
                       const int* ldb, double* s, const double* rcond, int* rank, double* work, const int* lwork,
                       int* info) noexcept {
    OutInt info64(info), rank64(rank);
    rank64.value = *rank; // it stays where an argument is bad
    nxl_lapack_dgelss(*m, *n, *nrhs, a, *lda, b, *ldb, s, *rcond, rank64.value, work, *lwork, info64.value);
}

NXL_EXPORT void zgelss(const int* m, const int* n, const int* nrhs, nxl_z* a, const int* lda, nxl_z* b, const int* ldb,
                       double* s, const double* rcond, int* rank, nxl_z* work, const int* lwork, double*,
                       int* info) noexcept {
    OutInt info64(info), rank64(rank);
    rank64.value = *rank; // it stays where an argument is bad
    nxl_lapack_zgelss(*m, *n, *nrhs, a, *lda, b, *ldb, s, *rcond, rank64.value, work, *lwork, info64.value);
}

NXL_EXPORT void dgelsd(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
                       const int* ldb, double* s, const double* rcond, int* rank, double* work, const int* lwork,
                       int* iwork, int* info) noexcept {
    OutInt info64(info), rank64(rank);
    rank64.value = *rank; // it stays where an argument is bad
    const WideInts integers(iwork, integers_of_division("DGELSD", *m, *n), Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DGELSD", info64.value);
    nxl_lapack_dgelsd(*m, *n, *nrhs, a, *lda, b, *ldb, s, *rcond, rank64.value, work, *lwork, integers.data(),
                      info64.value);
}

NXL_EXPORT void zgelsd(const int* m, const int* n, const int* nrhs, nxl_z* a, const int* lda, nxl_z* b, const int* ldb,
                       double* s, const double* rcond, int* rank, nxl_z* work, const int* lwork, double* rwork,
                       int* iwork, int* info) noexcept {
    OutInt info64(info), rank64(rank);
    rank64.value = *rank; // it stays where an argument is bad
    const WideInts integers(iwork, integers_of_division("ZGELSD", *m, *n), Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("ZGELSD", info64.value);
    nxl_lapack_zgelsd(*m, *n, *nrhs, a, *lda, b, *ldb, s, *rcond, rank64.value, work, *lwork, rwork, integers.data(),
                      info64.value);
}

} // extern "C"
