// LAPACK, eigenproblems: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/eigen/laev2.hpp"
#include "lapack/kernel/source/eigen/pteqr.hpp"
#include "lapack/kernel/source/eigen/sbev.hpp"
#include "lapack/kernel/source/eigen/stebz.hpp"
#include "lapack/kernel/source/eigen/stein.hpp"
#include "lapack/kernel/source/eigen/steqr.hpp"
#include "lapack/kernel/source/eigen/sterf.hpp"
#include "lapack/kernel/source/eigen/syevx.hpp"
#include "lapack/kernel/source/eigen/sygst.hpp"
#include "lapack/kernel/source/eigen/xsytrd_omp.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dpteqr(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz, double* work,
                       int* info, int compz_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dpteqr(capital(*compz), *n, d, e, z, *ldz, work, info64.value, compz_length);
}

NXL_EXPORT void dsbev(const char* jobz, const char* uplo, const int* n, const int* kd, const double* ab,
                      const int* ldab, double* w, double* z, const int* ldz, double* work, int* info, int jobz_length,
                      int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dsbev(capital(*jobz), capital(*uplo), *n, *kd, ab, *ldab, w, z, *ldz, work, info64.value, jobz_length,
                     uplo_length);
}

NXL_EXPORT void dsbevd(const char* jobz, const char* uplo, const int* n, const int* kd, const double* ab,
                       const int* ldab, double* w, double* z, const int* ldz, double* work, const int* lwork,
                       int* iwork, const int* liwork, int* info, int jobz_length, int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *liwork, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("DSBEVD", info64.value);
    nxl_lapack_dsbevd(capital(*jobz), capital(*uplo), *n, *kd, ab, *ldab, w, z, *ldz, work, *lwork, integers.data(),
                      *liwork, info64.value, jobz_length, uplo_length);
}

NXL_EXPORT void dsbevx(const char* jobz, const char* range, const char* uplo, const int* n, const int* kd,
                       const double* ab, const int* ldab, double* q, const int* ldq, const double* vl, const double* vu,
                       const int* il, const int* iu, const double* abstol, int* m, double* w, double* z, const int* ldz,
                       double*, int* iwork, int* ifail, int* info, int, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const WideInts failed(ifail, *jobz == 'N' ? 0 : *n, Transfer::out),
        integers(iwork, 5 * i64{*n}, Transfer::first_out);
    if (!failed.data() || !integers.data()) return refuse_for_memory("DSBEVX", info64.value);
    nxl_lapack_dsbevx(capital(*jobz), capital(*range), capital(*uplo), *n, *kd, ab, *ldab, q, *ldq, *vl, *vu, *il, *iu,
                      *abstol, m64.value, w, z, *ldz, failed.data(), info64.value);
}

NXL_EXPORT void dstebz(const char* range, const char* order, const int* n, const double* vl, const double* vu,
                       const int* il, const int* iu, const double* abstol, const double* d, const double* e, int* m,
                       int* nsplit, double* w, int* iblock, int* isplit, double* work, int* iwork, int* info,
                       int range_length, int order_length) noexcept {
    OutInt info64(info), nsplit64(nsplit), m64(m);
    nsplit64.value = *nsplit; // they stay where an argument is bad
    m64.value = *m;
    const WideInts blocks(iblock, *n, Transfer::out), ends(isplit, *n, Transfer::out);
    const WideInts integers(iwork, 3 * i64{*n}, Transfer::first_out);
    if (!blocks.data() || !ends.data() || !integers.data()) return refuse_for_memory("DSTEBZ", info64.value);
    nxl_lapack_dstebz(capital(*range), capital(*order), *n, *vl, *vu, *il, *iu, *abstol, d, e, m64.value,
                      nsplit64.value, w, blocks.data(), ends.data(), work, integers.data(), info64.value, range_length,
                      order_length);
}

NXL_EXPORT void dstein(const int* n, const double* d, const double* e, const int* m, const double* w, const int* iblock,
                       const int* isplit, double* z, const int* ldz, double* work, int* iwork, int* ifail,
                       int* info) noexcept {
    OutInt info64(info);
    const WideInts blocks(iblock, *n), ends(isplit, *n);
    const WideInts failed(ifail, *m, Transfer::out), integers(iwork, *n, Transfer::first_out);
    if (!blocks.data() || !ends.data() || !failed.data() || !integers.data())
        return refuse_for_memory("DSTEIN", info64.value);
    nxl_lapack_dstein(*n, d, e, *m, w, blocks.data(), ends.data(), z, *ldz, work, integers.data(), failed.data(),
                      info64.value);
}

NXL_EXPORT void dsteqr(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz, double* work,
                       int* info, int compz_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dsteqr(capital(*compz), *n, d, e, z, *ldz, work, info64.value, compz_length);
}

NXL_EXPORT void dsterf(const int* n, double* d, double* e, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dsterf(*n, d, e, info64.value);
}

NXL_EXPORT void dsyevr(const char* jobz, const char* range, const char* uplo, const int* n, double* a, const int* lda,
                       const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m,
                       double* w, double* z, const int* ldz, int* isuppz, double* work, const int* lwork, int* iwork,
                       const int* liwork, int* info, int, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const bool all = *range == 'A' || (*range == 'I' && *il == 1 && *iu == *n), supports = *jobz == 'V' && all;
    const WideInts support(isuppz, supports ? unless_query(2 * std::max(i64{*n}, i64{1}), *lwork, *liwork) : 0,
                           Transfer::out),
        integers(iwork, *liwork, Transfer::first_out);
    if (!support.data() || !integers.data()) return refuse_for_memory("DSYEVR", info64.value);
    nxl_lapack_dsyevr(capital(*jobz), capital(*range), capital(*uplo), *n, a, *lda, *vl, *vu, *il, *iu, *abstol,
                      m64.value, w, z, *ldz, supports ? support.data() : nullptr, work, *lwork, {}, integers.data(),
                      *liwork, info64.value);
}

NXL_EXPORT void dsyevx(const char* jobz, const char* range, const char* uplo, const int* n, double* a, const int* lda,
                       const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m,
                       double* w, double* z, const int* ldz, double* work, const int* lwork, int* iwork, int* ifail,
                       int* info, int, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const i64 count = unless_query(*n, *lwork);
    const WideInts failed(ifail, *jobz == 'N' ? 0 : count, Transfer::out),
        integers(iwork, 5 * count, Transfer::first_out);
    if (!failed.data() || !integers.data()) return refuse_for_memory("DSYEVX", info64.value);
    nxl_lapack_dsyevx(capital(*jobz), capital(*range), capital(*uplo), *n, a, *lda, *vl, *vu, *il, *iu, *abstol,
                      m64.value, w, z, *ldz, work, *lwork, failed.data(), info64.value);
}

NXL_EXPORT void dsygst(const int* itype, const char* uplo, const int* n, double* a, const int* lda, const double* b,
                       const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dsygst(*itype, capital(*uplo), *n, a, *lda, b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void dsytrd(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e, double* tau,
                       double* work, const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dsytrd(capital(*uplo), *n, a, *lda, d, e, tau, work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void zhbev(const char* jobz, const char* uplo, const int* n, const int* kd, const nxl_z* ab, const int* ldab,
                      double* w, nxl_z* z, const int* ldz, nxl_z* work, double* rwork, int* info, int jobz_length,
                      int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zhbev(capital(*jobz), capital(*uplo), *n, *kd, ab, *ldab, w, z, *ldz, work, rwork, info64.value,
                     jobz_length, uplo_length);
}

NXL_EXPORT void zhbevd(const char* jobz, const char* uplo, const int* n, const int* kd, const nxl_z* ab,
                       const int* ldab, double* w, nxl_z* z, const int* ldz, nxl_z* work, const int* lwork,
                       double* rwork, const int* lrwork, int* iwork, const int* liwork, int* info, int jobz_length,
                       int uplo_length) noexcept {
    OutInt info64(info);
    const WideInts integers(iwork, *liwork, Transfer::first_out);
    if (!integers.data()) return refuse_for_memory("ZHBEVD", info64.value);
    nxl_lapack_zhbevd(capital(*jobz), capital(*uplo), *n, *kd, ab, *ldab, w, z, *ldz, work, *lwork, rwork, *lrwork,
                      integers.data(), *liwork, info64.value, jobz_length, uplo_length);
}

NXL_EXPORT void zhbevx(const char* jobz, const char* range, const char* uplo, const int* n, const int* kd,
                       const nxl_z* ab, const int* ldab, nxl_z* q, const int* ldq, const double* vl, const double* vu,
                       const int* il, const int* iu, const double* abstol, int* m, double* w, nxl_z* z, const int* ldz,
                       nxl_z*, double*, int* iwork, int* ifail, int* info, int, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const WideInts failed(ifail, *jobz == 'N' ? 0 : *n, Transfer::out),
        integers(iwork, 5 * i64{*n}, Transfer::first_out);
    if (!failed.data() || !integers.data()) return refuse_for_memory("ZHBEVX", info64.value);
    nxl_lapack_zhbevx(capital(*jobz), capital(*range), capital(*uplo), *n, *kd, ab, *ldab, q, *ldq, *vl, *vu, *il, *iu,
                      *abstol, m64.value, w, z, *ldz, failed.data(), info64.value);
}

NXL_EXPORT void zheevr(const char* jobz, const char* range, const char* uplo, const int* n, nxl_z* a, const int* lda,
                       const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m,
                       double* w, nxl_z* z, const int* ldz, int* isuppz, nxl_z* work, const int* lwork, double* rwork,
                       const int* lrwork, int* iwork, const int* liwork, int* info, int, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const bool all = *range == 'A' || (*range == 'I' && *il == 1 && *iu == *n), supports = *jobz == 'V' && all;
    const WideInts support(isuppz, supports ? unless_query(2 * std::max(i64{*n}, i64{1}), *lwork, *lrwork, *liwork) : 0,
                           Transfer::out),
        integers(iwork, *liwork, Transfer::first_out);
    if (!support.data() || !integers.data()) return refuse_for_memory("ZHEEVR", info64.value);
    nxl_lapack_zheevr(capital(*jobz), capital(*range), capital(*uplo), *n, a, *lda, *vl, *vu, *il, *iu, *abstol,
                      m64.value, w, z, *ldz, supports ? support.data() : nullptr, work, *lwork, {rwork, *lrwork},
                      integers.data(), *liwork, info64.value);
}

NXL_EXPORT void zheevx(const char* jobz, const char* range, const char* uplo, const int* n, nxl_z* a, const int* lda,
                       const double* vl, const double* vu, const int* il, const int* iu, const double* abstol, int* m,
                       double* w, nxl_z* z, const int* ldz, nxl_z* work, const int* lwork, double*, int* iwork,
                       int* ifail, int* info, int, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const i64 count = unless_query(*n, *lwork);
    const WideInts failed(ifail, *jobz == 'N' ? 0 : count, Transfer::out),
        integers(iwork, 5 * count, Transfer::first_out);
    if (!failed.data() || !integers.data()) return refuse_for_memory("ZHEEVX", info64.value);
    nxl_lapack_zheevx(capital(*jobz), capital(*range), capital(*uplo), *n, a, *lda, *vl, *vu, *il, *iu, *abstol,
                      m64.value, w, z, *ldz, work, *lwork, failed.data(), info64.value);
}

NXL_EXPORT void zhegst(const int* itype, const char* uplo, const int* n, nxl_z* a, const int* lda, const nxl_z* b,
                       const int* ldb, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zhegst(*itype, capital(*uplo), *n, a, *lda, b, *ldb, info64.value, uplo_length);
}

NXL_EXPORT void zhetrd(const char* uplo, const int* n, nxl_z* a, const int* lda, double* d, double* e, nxl_z* tau,
                       nxl_z* work, const int* lwork, int* info, int uplo_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zhetrd(capital(*uplo), *n, a, *lda, d, e, tau, work, *lwork, info64.value, uplo_length);
}

NXL_EXPORT void zpteqr(const char* compz, const int* n, double* d, double* e, nxl_z* z, const int* ldz, double* work,
                       int* info, int compz_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zpteqr(capital(*compz), *n, d, e, z, *ldz, work, info64.value, compz_length);
}

NXL_EXPORT void zstein(const int* n, const double* d, const double* e, const int* m, const double* w, const int* iblock,
                       const int* isplit, nxl_z* z, const int* ldz, double* work, int* iwork, int* ifail,
                       int* info) noexcept {
    OutInt info64(info);
    const WideInts blocks(iblock, *n), ends(isplit, *n);
    const WideInts failed(ifail, *m, Transfer::out), integers(iwork, *n, Transfer::first_out);
    if (!blocks.data() || !ends.data() || !failed.data() || !integers.data())
        return refuse_for_memory("ZSTEIN", info64.value);
    nxl_lapack_zstein(*n, d, e, *m, w, blocks.data(), ends.data(), z, *ldz, work, integers.data(), failed.data(),
                      info64.value);
}

NXL_EXPORT void zsteqr(const char* compz, const int* n, double* d, double* e, nxl_z* z, const int* ldz, double* work,
                       int* info, int compz_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zsteqr(capital(*compz), *n, d, e, z, *ldz, work, info64.value, compz_length);
}

NXL_EXPORT void ZLAEV2(const nxl_z* a, const nxl_z* b, const nxl_z* c, double* rt1, double* rt2, double* cs1,
                       nxl_z* sn1) noexcept {
    nxl_lapack_zlaev2(*a, *b, *c, *rt1, *rt2, *cs1, *sn1);
}

} // extern "C"
