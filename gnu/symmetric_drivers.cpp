// LAPACK's drivers for all eigenpairs of full symmetric and Hermitian matrices, and of pairs of these.
#include "gnu/arguments.hpp"
#include "gnu/eigenpairs.hpp"
#include "service/export.hpp"

using namespace nxl::gnu;

namespace {

long squares(const char* jobz, int n, long vectors, long values) {
    if (n <= 1) return 1;
    return is_letter(*jobz, 'V') ? vectors : values;
}

template <class T>
void all_pairs(const char* name, const char* jobz, const char* uplo, const int* n, T* a, const int* lda, double* w,
               const Workspaces<T>& space, int* info) {
    Arguments arguments(name);
    arguments.option(1, *jobz, "NV").triangle(2, *uplo).size(3, *n).leading(5, *lda, *n);
    space.check(arguments);
    if (arguments.refused(info)) return;
    space.tell();
    if (!space.query() && *n > 0) *info = full_pairs(*jobz, *uplo, *n, a, *lda, w);
}

/// A x = lambda B x, A B x = lambda x, or B A x = lambda x.
template <class T>
void generalised(const char* name, const int* itype, const char* jobz, const char* uplo, const int* n, T* a,
                 const int* lda, T* b, const int* ldb, double* w, const Workspaces<T>& space, int* info) {
    using Routines = Symmetric<T>;
    Arguments arguments(name);
    arguments.expect(1, *itype >= 1 && *itype <= 3).option(2, *jobz, "NV").triangle(3, *uplo).size(4, *n);
    space.check(arguments.leading(6, *lda, *n).leading(8, *ldb, *n));
    if (arguments.refused(info)) return;
    space.tell();
    if (space.query() || *n == 0) return;
    Routines::potrf(uplo, n, b, ldb, info, 1);
    if (*info != 0) {
        *info += *n;
        return;
    }
    Routines::sygst(itype, uplo, n, a, lda, b, ldb, info, 1);
    *info = full_pairs(*jobz, *uplo, *n, a, *lda, w);
    if (!is_letter(*jobz, 'V') || *info < 0) return;
    const bool solves = *itype < 3, upper = is_letter(*uplo, 'U');
    const T one = 1.0;
    const auto turn_back = solves ? Routines::trsm : Routines::trmm;
    turn_back("L", uplo, solves == upper ? "N" : "C", "N", n, n, &one, b, ldb, a, lda);
}

Workspaces<double> qr_space(const int* n, double* work, const int* lwork, int position) {
    return {work, {position, lwork, std::max(3L * *n - 1, 1L)}, nullptr, {}, nullptr, {}};
}
Workspaces<nxl_z> qr_space(const int* n, nxl_z* work, const int* lwork, int position) {
    return {work, {position, lwork, std::max(2L * *n - 1, 1L)}, nullptr, {}, nullptr, {}};
}
Workspaces<double> divide_space(const char* jobz, const int* n, double* work, const int* lwork, int* iwork,
                                const int* liwork, int position) {
    const long size = *n;
    return {work,    {position, lwork, squares(jobz, *n, 1 + 6 * size + 2 * size * size, 2 * size + 1)},
            nullptr, {},
            iwork,   {position + 2, liwork, squares(jobz, *n, 3 + 5 * size, 1)}};
}
Workspaces<nxl_z> divide_space(const char* jobz, const int* n, nxl_z* work, const int* lwork, double* rwork,
                               const int* lrwork, int* iwork, const int* liwork, int position) {
    const long size = *n;
    return {work,  {position, lwork, squares(jobz, *n, 2 * size + size * size, size + 1)},
            rwork, {position + 2, lrwork, squares(jobz, *n, 1 + 5 * size + 2 * size * size, size)},
            iwork, {position + 4, liwork, squares(jobz, *n, 3 + 5 * size, 1)}};
}

} // namespace

extern "C" {

NXL_EXPORT void dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
                       double* work, const int* lwork, int* info) noexcept {
    all_pairs("DSYEV ", jobz, uplo, n, a, lda, w, qr_space(n, work, lwork, 8), info);
}
NXL_EXPORT void zheev_(const char* jobz, const char* uplo, const int* n, nxl_z* a, const int* lda, double* w,
                       nxl_z* work, const int* lwork, double*, int* info) noexcept {
    all_pairs("ZHEEV ", jobz, uplo, n, a, lda, w, qr_space(n, work, lwork, 8), info);
}

NXL_EXPORT void dsyevd_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
                        double* work, const int* lwork, int* iwork, const int* liwork, int* info) noexcept {
    all_pairs("DSYEVD", jobz, uplo, n, a, lda, w, divide_space(jobz, n, work, lwork, iwork, liwork, 8), info);
}
NXL_EXPORT void zheevd_(const char* jobz, const char* uplo, const int* n, nxl_z* a, const int* lda, double* w,
                        nxl_z* work, const int* lwork, double* rwork, const int* lrwork, int* iwork, const int* liwork,
                        int* info) noexcept {
    const auto space = divide_space(jobz, n, work, lwork, rwork, lrwork, iwork, liwork, 8);
    all_pairs("ZHEEVD", jobz, uplo, n, a, lda, w, space, info);
}

NXL_EXPORT void dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n, double* a, const int* lda,
                       double* b, const int* ldb, double* w, double* work, const int* lwork, int* info) noexcept {
    generalised("DSYGV ", itype, jobz, uplo, n, a, lda, b, ldb, w, qr_space(n, work, lwork, 11), info);
}
NXL_EXPORT void zhegv_(const int* itype, const char* jobz, const char* uplo, const int* n, nxl_z* a, const int* lda,
                       nxl_z* b, const int* ldb, double* w, nxl_z* work, const int* lwork, double*,
                       int* info) noexcept {
    generalised("ZHEGV ", itype, jobz, uplo, n, a, lda, b, ldb, w, qr_space(n, work, lwork, 11), info);
}

NXL_EXPORT void dsygvd_(const int* itype, const char* jobz, const char* uplo, const int* n, double* a, const int* lda,
                        double* b, const int* ldb, double* w, double* work, const int* lwork, int* iwork,
                        const int* liwork, int* info) noexcept {
    const auto space = divide_space(jobz, n, work, lwork, iwork, liwork, 11);
    generalised("DSYGVD", itype, jobz, uplo, n, a, lda, b, ldb, w, space, info);
}
NXL_EXPORT void zhegvd_(const int* itype, const char* jobz, const char* uplo, const int* n, nxl_z* a, const int* lda,
                        nxl_z* b, const int* ldb, double* w, nxl_z* work, const int* lwork, double* rwork,
                        const int* lrwork, int* iwork, const int* liwork, int* info) noexcept {
    const auto space = divide_space(jobz, n, work, lwork, rwork, lrwork, iwork, liwork, 11);
    generalised("ZHEGVD", itype, jobz, uplo, n, a, lda, b, ldb, w, space, info);
}

} // extern "C"
