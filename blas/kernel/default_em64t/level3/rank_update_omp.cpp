// Drivers of the symmetric and Hermitian updates of rank k and 2k. The triangle of C is cut into strips of equal area;
// each is a rectangle, which a matrix product updates, and a triangle on the diagonal for the serial kernel.
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "blas/kernel/default_em64t/level3/level3_omp.hpp"
#include "blas/kernel/default_em64t/level3/level3_rules.hpp"
#include "service/parallel.hpp"
#include "service/threads.hpp"

namespace nxl {
namespace {

double conjugate(double value) { return value; }
zcomplex conjugate(zcomplex value) { return std::conj(value); }

/// C, of which one triangle is updated.
template <class T> struct Triangle {
    char uplo;
    i64 n;
    T* c;
    i64 ldc;

    bool lower() const { return uplo == 'L' || uplo == 'l'; }
    T* at(i64 row, i64 column) const { return c + row + column * ldc; }
};

/// op(A) or op(B), n by k: untransposed, or the transposed or conjugated form of what is stored.
template <class T> struct Factor {
    char trans;
    i64 k;
    const T* data;
    i64 ld;

    bool stored_plainly() const { return trans == 'N' || trans == 'n'; }
    const T* row(i64 i) const { return stored_plainly() ? data + i : data + i * ld; }
};

/// C := alpha op(X) op(Y)' + beta C on the strip's rectangle; `adjoint`, T or C, is what the prime stands for.
template <class T>
void update_rectangle(const Triangle<T>& c, const TriangleStrip& strip, char adjoint, T alpha, const Factor<T>& x,
                      const Factor<T>& y, T beta) {
    if (strip.rows.count < 1 || strip.columns.count < 1) return;
    const char transx = x.stored_plainly() ? 'N' : adjoint, transy = x.stored_plainly() ? adjoint : 'N';
    GemmSlots<T>::serial(transx, transy, strip.rows.count, strip.columns.count, x.k, alpha, x.row(strip.rows.start),
                         x.ld, y.row(strip.columns.start), y.ld, beta, c.at(strip.rows.start, strip.columns.start),
                         c.ldc);
}

/// Runs body(strip) over the strips of the triangle; false, and nothing done, where threads do not pay.
template <class T, class Body> bool over_strips(const Triangle<T>& c, double flops, const Body& body) {
    if (threads_for_work(flops, 2) < 2) return false;
    const int threads = threads_for_work(flops, max_threads(domain_blas));
    const int strips = strips_for(c.n, threads);
    if (threads < 2 || strips < 2) return false;
    parallel_blocks(std::min(threads, strips), strips,
                    [&, strips](int index) { body(triangle_strip(c.lower(), c.n, index, strips)); });
    return true;
}

/// C := alpha op(A) op(A)' + beta C. alpha and beta are real where C is Hermitian.
template <class T, class Scalar, class Kernel>
void update_rank_k(const Triangle<T>& c, char adjoint, Scalar alpha, const Factor<T>& a, Scalar beta, Kernel& kernel) {
    const auto update_diagonal = [&](Slice part) {
        kernel(c.uplo, a.trans, part.count, a.k, alpha, a.row(part.start), a.ld, beta, c.at(part.start, part.start),
               c.ldc);
    };
    const double flops = alpha == Scalar{} ? 0.0 : 0.5 * flops_of<T>(c.n, c.n, a.k);
    const bool done = over_strips(c, flops, [&](const TriangleStrip& strip) {
        update_rectangle(c, strip, adjoint, T{alpha}, a, a, T{beta});
        update_diagonal(strip.diagonal);
    });
    if (!done) update_diagonal({0, c.n});
}

/// C := alpha op(A) op(B)' + alpha' op(B) op(A)' + beta C, where alpha' is conjugated if C is Hermitian.
template <class T, class Beta, class Kernel>
void update_rank_2k(const Triangle<T>& c, char adjoint, T alpha, const Factor<T>& a, const Factor<T>& b, Beta beta,
                    Kernel& kernel) {
    const auto update_diagonal = [&](Slice part) {
        kernel(c.uplo, a.trans, part.count, a.k, alpha, a.row(part.start), a.ld, b.row(part.start), b.ld, beta,
               c.at(part.start, part.start), c.ldc);
    };
    const T other_alpha = adjoint == 'C' ? conjugate(alpha) : alpha;
    const double flops = alpha == T{} ? 0.0 : flops_of<T>(c.n, c.n, a.k);
    const bool done = over_strips(c, flops, [&](const TriangleStrip& strip) {
        update_rectangle(c, strip, adjoint, alpha, a, b, T{beta});
        update_rectangle(c, strip, adjoint, other_alpha, b, a, T{1.0});
        update_diagonal(strip.diagonal);
    });
    if (!done) update_diagonal({0, c.n});
}

} // namespace

void nxl_blas_dsyrk(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                    const double* a, const i64* lda, const double* beta, double* c, const i64* ldc) {
    update_rank_k<double>({*uplo, *n, c, *ldc}, 'T', *alpha, {*trans, *k, a, *lda}, *beta, dsyrk_slot);
}

void nxl_blas_zsyrk(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                    const zcomplex* a, const i64* lda, const zcomplex* beta, zcomplex* c, const i64* ldc) {
    update_rank_k<zcomplex>({*uplo, *n, c, *ldc}, 'T', *alpha, {*trans, *k, a, *lda}, *beta, zsyrk_slot);
}

void nxl_blas_zherk(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                    const zcomplex* a, const i64* lda, const double* beta, zcomplex* c, const i64* ldc) {
    update_rank_k<zcomplex>({*uplo, *n, c, *ldc}, 'C', *alpha, {*trans, *k, a, *lda}, *beta, zherk_slot);
}

void nxl_blas_dsyr2k(const char* uplo, const char* trans, const i64* n, const i64* k, const double* alpha,
                     const double* a, const i64* lda, const double* b, const i64* ldb, const double* beta, double* c,
                     const i64* ldc) {
    update_rank_2k<double>({*uplo, *n, c, *ldc}, 'T', *alpha, {*trans, *k, a, *lda}, {*trans, *k, b, *ldb}, *beta,
                           dsyr2k_slot);
}

void nxl_blas_zsyr2k(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                     const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const zcomplex* beta,
                     zcomplex* c, const i64* ldc) {
    update_rank_2k<zcomplex>({*uplo, *n, c, *ldc}, 'T', *alpha, {*trans, *k, a, *lda}, {*trans, *k, b, *ldb}, *beta,
                             zsyr2k_slot);
}

void nxl_blas_zher2k(const char* uplo, const char* trans, const i64* n, const i64* k, const zcomplex* alpha,
                     const zcomplex* a, const i64* lda, const zcomplex* b, const i64* ldb, const double* beta,
                     zcomplex* c, const i64* ldc) {
    update_rank_2k<zcomplex>({*uplo, *n, c, *ldc}, 'C', *alpha, {*trans, *k, a, *lda}, {*trans, *k, b, *ldb}, *beta,
                             zher2k_slot);
}

} // namespace nxl
