// LAPACK's functions for norms of matrices. Like all of its auxiliary routines they check nothing; whatever is empty
// has the norm 0. `work` is used for row sums alone, and for those of symmetric matrices.
#include "lapack/kernel/source/common/norms.hpp"
#include "nxl.h"
#include "service/export.hpp"
#include "service/letters.hpp"

using nxl::capital;
using nxl::Columns;
using nxl::Matrix;

namespace {

template <class T> Matrix<const T> matrix(const int* m, const int* n, const T* a, const int* lda) {
    return {a, *m, *n, *lda};
}

template <class T> double norm(const char* norm, const Columns<const T>& a, char diag, double* work) {
    return a.a.steps() > 0 ? nxl::matrix_norm(capital(*norm), a, diag, work) : 0.0;
}
template <class T> double symmetric(const char* norm, const Columns<const T>& triangle, bool hermitian, double* work) {
    return triangle.a.rows > 0 ? nxl::symmetric_norm(capital(*norm), triangle, hermitian, work) : 0.0;
}

template <class T>
Columns<const T> triangle(const char* uplo, const int* m, const int* n, const T* a, const int* lda) {
    return nxl::triangle_of(capital(*uplo), matrix(m, n, a, lda));
}
template <class T>
Columns<const T> triangular_band(const char* uplo, const int* n, const int* k, const T* ab, const int* ldab) {
    return nxl::triangular_band_of(capital(*uplo), ab, *ldab, *n, *k);
}
template <class T>
Columns<const T> band(const int* n, const int* kl, const int* ku, const T* ab, const int* ldab) {
    return nxl::band_of(ab, *ldab, *n, *n, *kl, *ku);
}

} // namespace

extern "C" {

NXL_EXPORT double dlange_(const char* letter, const int* m, const int* n, const double* a, const int* lda,
                          double* work) noexcept {
    return norm(letter, nxl::all_of(matrix(m, n, a, lda)), 'N', work);
}
NXL_EXPORT double zlange_(const char* letter, const int* m, const int* n, const nxl_z* a, const int* lda,
                          double* work) noexcept {
    return norm(letter, nxl::all_of(matrix(m, n, a, lda)), 'N', work);
}

NXL_EXPORT double dlantr_(const char* letter, const char* uplo, const char* diag, const int* m, const int* n,
                          const double* a, const int* lda, double* work) noexcept {
    return norm(letter, triangle(uplo, m, n, a, lda), capital(*diag), work);
}
NXL_EXPORT double zlantr_(const char* letter, const char* uplo, const char* diag, const int* m, const int* n,
                          const nxl_z* a, const int* lda, double* work) noexcept {
    return norm(letter, triangle(uplo, m, n, a, lda), capital(*diag), work);
}

NXL_EXPORT double dlangb_(const char* letter, const int* n, const int* kl, const int* ku, const double* ab,
                          const int* ldab, double* work) noexcept {
    return norm(letter, band(n, kl, ku, ab, ldab), 'N', work);
}
NXL_EXPORT double zlangb_(const char* letter, const int* n, const int* kl, const int* ku, const nxl_z* ab,
                          const int* ldab, double* work) noexcept {
    return norm(letter, band(n, kl, ku, ab, ldab), 'N', work);
}

NXL_EXPORT double dlansy_(const char* letter, const char* uplo, const int* n, const double* a, const int* lda,
                          double* work) noexcept {
    return symmetric(letter, triangle(uplo, n, n, a, lda), false, work);
}
NXL_EXPORT double zlansy_(const char* letter, const char* uplo, const int* n, const nxl_z* a, const int* lda,
                          double* work) noexcept {
    return symmetric(letter, triangle(uplo, n, n, a, lda), false, work);
}
NXL_EXPORT double zlanhe_(const char* letter, const char* uplo, const int* n, const nxl_z* a, const int* lda,
                          double* work) noexcept {
    return symmetric(letter, triangle(uplo, n, n, a, lda), true, work);
}

NXL_EXPORT double dlansb_(const char* letter, const char* uplo, const int* n, const int* k, const double* ab,
                          const int* ldab, double* work) noexcept {
    return symmetric(letter, triangular_band(uplo, n, k, ab, ldab), false, work);
}
NXL_EXPORT double zlansb_(const char* letter, const char* uplo, const int* n, const int* k, const nxl_z* ab,
                          const int* ldab, double* work) noexcept {
    return symmetric(letter, triangular_band(uplo, n, k, ab, ldab), false, work);
}
NXL_EXPORT double zlanhb_(const char* letter, const char* uplo, const int* n, const int* k, const nxl_z* ab,
                          const int* ldab, double* work) noexcept {
    return symmetric(letter, triangular_band(uplo, n, k, ab, ldab), true, work);
}

} // extern "C"
