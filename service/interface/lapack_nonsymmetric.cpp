// LAPACK, nonsymmetric eigenproblems: entries.
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/nonsymmetric/balance.hpp"
#include "lapack/kernel/source/nonsymmetric/geev.hpp"
#include "lapack/kernel/source/nonsymmetric/gehrd.hpp"
#include "lapack/kernel/source/nonsymmetric/hseqr.hpp"
#include "lapack/kernel/source/nonsymmetric/trevc.hpp"
#include "lapack/kernel/source/nonsymmetric/trsna.hpp"
#include "lapack/kernel/source/nonsymmetric/trsyl.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/interface/integers.hpp"
#include "service/letters.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void dgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                       const double* scale, const int* m, double* v, const int* ldv, int* info, int job_length,
                       int side_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dgebak(capital(*job), capital(*side), *n, *ilo, *ihi, scale, *m, v, *ldv, info64.value, job_length,
                      side_length);
}

NXL_EXPORT void dgebal(const char* job, const int* n, double* a, const int* lda, int* ilo, int* ihi, double* scale,
                       int* info, int job_length) noexcept {
    OutInt info64(info), ihi64(ihi), ilo64(ilo);
    ihi64.value = *ihi; // they stay where an argument is bad
    ilo64.value = *ilo;
    nxl_lapack_dgebal(capital(*job), *n, a, *lda, ilo64.value, ihi64.value, scale, info64.value, job_length);
}

NXL_EXPORT void dgeev(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda, double* wr,
                      double* wi, double* vl, const int* ldvl, double* vr, const int* ldvr, double* work,
                      const int* lwork, int* info, int, int) noexcept {
    OutInt info64(info);
    nxl_lapack_dgeev(capital(*jobvl), capital(*jobvr), *n, a, *lda, wr, wi, vl, *ldvl, vr, *ldvr, work, *lwork,
                     info64.value);
}

NXL_EXPORT void dgehrd(const int* n, const int* ilo, const int* ihi, double* a, const int* lda, double* tau,
                       double* work, const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_dgehrd(*n, *ilo, *ihi, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void dhseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi, double* h,
                       const int* ldh, double* wr, double* wi, double* z, const int* ldz, double* work,
                       const int* lwork, int* info, int job_length, int compz_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dhseqr(capital(*job), capital(*compz), *n, *ilo, *ihi, h, *ldh, wr, wi, z, *ldz, work, *lwork,
                      info64.value, job_length, compz_length);
}

NXL_EXPORT void dtrevc(const char* side, const char* howmny, int* select, const int* n, const double* t, const int* ldt,
                       double* vl, const int* ldvl, double* vr, const int* ldvr, const int* mm, int* m, double*,
                       int* info, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const bool all = *howmny == 'A' || *howmny == 'B';
    const WideInts selected(select, all ? 0 : *n, Transfer::in_out);
    if (!selected.data()) return refuse_for_memory("DTREVC", info64.value);
    nxl_lapack_dtrevc(capital(*side), capital(*howmny), selected.data(), *n, t, *ldt, vl, *ldvl, vr, *ldvr, *mm,
                      m64.value, info64.value);
}

NXL_EXPORT void dtrsna(const char* job, const char* howmny, const int* select, const int* n, const double* t,
                       const int* ldt, const double* vl, const int* ldvl, const double* vr, const int* ldvr, double* s,
                       double* sep, const int* mm, int* m, double*, const int* ldwork, int* iwork, int* info, int,
                       int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const WideInts selected(select, *howmny == 'A' ? 0 : *n);
    const WideInts integers(iwork, *job == 'E' ? 0 : 2 * i64{*n} - 2,
                            *job == 'E' ? Transfer::none : Transfer::first_out);
    if (!selected.data() || !integers.data()) return refuse_for_memory("DTRSNA", info64.value);
    nxl_lapack_dtrsna(capital(*job), capital(*howmny), selected.data(), *n, t, *ldt, vl, *ldvl, vr, *ldvr, s, sep, *mm,
                      m64.value, *ldwork, info64.value);
}

NXL_EXPORT void dtrsyl(const char* trana, const char* tranb, const int* isgn, const int* m, const int* n,
                       const double* a, const int* lda, const double* b, const int* ldb, double* c, const int* ldc,
                       double* scale, int* info, int trana_length, int tranb_length) noexcept {
    OutInt info64(info);
    nxl_lapack_dtrsyl(capital(*trana), capital(*tranb), *isgn, *m, *n, a, *lda, b, *ldb, c, *ldc, *scale, info64.value,
                      trana_length, tranb_length);
}

NXL_EXPORT void zgebak(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                       const double* scale, const int* m, nxl_z* v, const int* ldv, int* info, int job_length,
                       int side_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zgebak(capital(*job), capital(*side), *n, *ilo, *ihi, scale, *m, v, *ldv, info64.value, job_length,
                      side_length);
}

NXL_EXPORT void zgebal(const char* job, const int* n, nxl_z* a, const int* lda, int* ilo, int* ihi, double* scale,
                       int* info, int job_length) noexcept {
    OutInt info64(info), ihi64(ihi), ilo64(ilo);
    ihi64.value = *ihi; // they stay where an argument is bad
    ilo64.value = *ilo;
    nxl_lapack_zgebal(capital(*job), *n, a, *lda, ilo64.value, ihi64.value, scale, info64.value, job_length);
}

NXL_EXPORT void zgeev(const char* jobvl, const char* jobvr, const int* n, nxl_z* a, const int* lda, nxl_z* w, nxl_z* vl,
                      const int* ldvl, nxl_z* vr, const int* ldvr, nxl_z* work, const int* lwork, double*, int* info,
                      int, int) noexcept {
    OutInt info64(info);
    nxl_lapack_zgeev(capital(*jobvl), capital(*jobvr), *n, a, *lda, w, vl, *ldvl, vr, *ldvr, work, *lwork,
                     info64.value);
}

NXL_EXPORT void zgehrd(const int* n, const int* ilo, const int* ihi, nxl_z* a, const int* lda, nxl_z* tau, nxl_z* work,
                       const int* lwork, int* info) noexcept {
    OutInt info64(info);
    nxl_lapack_zgehrd(*n, *ilo, *ihi, a, *lda, tau, work, *lwork, info64.value);
}

NXL_EXPORT void zhseqr(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi, nxl_z* h,
                       const int* ldh, nxl_z* w, nxl_z* z, const int* ldz, nxl_z* work, const int* lwork, int* info,
                       int job_length, int compz_length) noexcept {
    OutInt info64(info);
    nxl_lapack_zhseqr(capital(*job), capital(*compz), *n, *ilo, *ihi, h, *ldh, w, z, *ldz, work, *lwork, info64.value,
                      job_length, compz_length);
}

NXL_EXPORT void ztrevc(const char* side, const char* howmny, const int* select, const int* n, const nxl_z* t,
                       const int* ldt, nxl_z* vl, const int* ldvl, nxl_z* vr, const int* ldvr, const int* mm, int* m,
                       nxl_z*, double*, int* info, int, int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const bool all = *howmny == 'A' || *howmny == 'B';
    const WideInts selected(select, all ? 0 : *n);
    if (!selected.data()) return refuse_for_memory("ZTREVC", info64.value);
    nxl_lapack_ztrevc(capital(*side), capital(*howmny), selected.data(), *n, t, *ldt, vl, *ldvl, vr, *ldvr, *mm,
                      m64.value, info64.value);
}

NXL_EXPORT void ztrsna(const char* job, const char* howmny, const int* select, const int* n, const nxl_z* t,
                       const int* ldt, const nxl_z* vl, const int* ldvl, const nxl_z* vr, const int* ldvr, double* s,
                       double* sep, const int* mm, int* m, nxl_z*, const int* ldwork, double*, int* info, int,
                       int) noexcept {
    OutInt info64(info), m64(m);
    m64.value = *m; // it stays where an argument is bad
    const WideInts selected(select, *howmny == 'A' ? 0 : *n);
    if (!selected.data()) return refuse_for_memory("ZTRSNA", info64.value);
    nxl_lapack_ztrsna(capital(*job), capital(*howmny), selected.data(), *n, t, *ldt, vl, *ldvl, vr, *ldvr, s, sep, *mm,
                      m64.value, *ldwork, info64.value);
}

NXL_EXPORT void ztrsyl(const char* trana, const char* tranb, const int* isgn, const int* m, const int* n,
                       const nxl_z* a, const int* lda, const nxl_z* b, const int* ldb, nxl_z* c, const int* ldc,
                       double* scale, int* info, int trana_length, int tranb_length) noexcept {
    OutInt info64(info);
    nxl_lapack_ztrsyl(capital(*trana), capital(*tranb), *isgn, *m, *n, a, *lda, b, *ldb, c, *ldc, *scale, info64.value,
                      trana_length, tranb_length);
}

} // extern "C"
