// Drivers of the symmetric and Hermitian updates of rank k and 2k, and of products with such a result. The triangle of
// C is cut into strips of equal area; each is a rectangle, which a matrix product updates, and a triangle on the
// diagonal for the serial kernel.
//
// A lower triangle in 4 strips, of 10, 11, 7 and 8 elements here:
//
//     0
//     0 0                Areas are as equal as whole rows allow, so that the first strips are mostly diagonal, the
//     0 0 0              last ones mostly rectangle. The rectangle is a plain product, at full speed; the piece on the
//     0 0 0 0            diagonal goes to the serial kernel, which computes half of its diagonal tiles in vain.
//     1 1 1 1 1
//     1 1 1 1 1 1        There are two strips for each thread, one of either kind. Strips write disjoint parts of C;
//     2 2 2 2 2 2 2      each packs the rows of A and B that it needs.
//     3 3 3 3 3 3 3 3
#include "blas/kernel/default_em64t/level3/rank_update_omp.hpp"
#include "blas/kernel/default_em64t/level3/gemm_call.hpp"
#include "blas/kernel/default_em64t/level3/level3_rules.hpp"
#include "service/matrix.hpp"
#include "service/parallel.hpp"
#include "service/scalars.hpp"
#include "service/worthwhile_threads.hpp"
#include <type_traits>

namespace nxl {
namespace {

/// op(A) or op(B), n by k: untransposed, or the transposed or conjugated form of what is stored.
template <class T> struct StoredFactor {
    char trans;
    i64 k;
    const T* data;
    i64 ld;

    bool stored_plainly() const { return trans == 'N'; }
    const T* row(i64 i) const { return stored_plainly() ? data + i : data + i * ld; }
};

/// C := alpha op(X) op(Y)' + beta C on the strip's rectangle; `adjoint`, T or C, is what the prime stands for.
template <class T>
void update_rectangle(const Matrix<T>& c, const TriangleStrip& strip, char adjoint, T alpha, const StoredFactor<T>& x,
                      const StoredFactor<T>& y, T beta) {
    if (strip.rows.count < 1 || strip.columns.count < 1) return;
    const char transx = x.stored_plainly() ? 'N' : adjoint, transy = x.stored_plainly() ? adjoint : 'N';
    GemmSlots<T>::serial(transx, transy, strip.rows.count, strip.columns.count, x.k, alpha, x.row(strip.rows.start),
                         x.ld, y.row(strip.columns.start), y.ld, beta, c.at(strip.rows.start, strip.columns.start),
                         c.ld);
}

/// Runs body(strip) over the strips of a triangle of order n; false, and nothing done, where threads do not pay. Two
/// threads are asked about first, since max_threads costs more than that.
template <class Body> bool over_strips(char uplo, i64 n, double flops, const Body& body) {
    if (threads_for_work(flops, 2) < 2) return false;
    const int threads = threads_for_work(flops, max_threads(domain_blas));
    const int strips = strips_for(n, threads);
    if (threads < 2 || strips < 2) return false;
    parallel_blocks(std::min(threads, strips), strips,
                    [&, strips](int index) { body(triangle_strip(uplo == 'L', n, index, strips)); });
    return true;
}

/// What the prime of a product stands for when alpha or beta, of type Scalar, is real beside a C of type T.
template <class T, class Scalar> constexpr char adjoint_letter = std::is_same_v<T, Scalar> ? 'T' : 'C';

} // namespace

template <class T, class Scalar, auto Kernel>
void syrk_driver(const char& uplo, const char& trans, const i64& n, const i64& k, const Scalar& alpha, const T* a,
                 const i64& lda, const Scalar& beta, T* c, const i64& ldc) {
    const Matrix<T> result{c, n, n, ldc};
    const StoredFactor<T> factor{trans, k, a, lda};
    const auto update_diagonal = [&](Slice part) {
        slot<Kernel>(uplo, trans, part.count, k, alpha, factor.row(part.start), lda, beta,
                     result.at(part.start, part.start), ldc);
    };
    const double flops = alpha == Scalar{} ? 0.0 : 0.5 * flops_of<T>(n, n, k);
    const bool done = over_strips(uplo, n, flops, [&](const TriangleStrip& strip) {
        update_rectangle(result, strip, adjoint_letter<T, Scalar>, T{alpha}, factor, factor, T{beta});
        update_diagonal(strip.diagonal);
    });
    if (!done) update_diagonal({0, n});
}
template decltype(syrk_driver<double, double, &KernelTable::dsyrk>) syrk_driver<double, double, &KernelTable::dsyrk>;
template decltype(syrk_driver<zcomplex, zcomplex, &KernelTable::zsyrk>)
    syrk_driver<zcomplex, zcomplex, &KernelTable::zsyrk>;
template decltype(syrk_driver<zcomplex, double, &KernelTable::zherk>)
    syrk_driver<zcomplex, double, &KernelTable::zherk>;

template <class T, class Beta, auto Kernel>
void syr2k_driver(const char& uplo, const char& trans, const i64& n, const i64& k, const T& alpha, const T* a,
                  const i64& lda, const T* b, const i64& ldb, const Beta& beta, T* c, const i64& ldc) {
    constexpr char adjoint = adjoint_letter<T, Beta>;
    const Matrix<T> result{c, n, n, ldc};
    const StoredFactor<T> x{trans, k, a, lda}, y{trans, k, b, ldb};
    const auto update_diagonal = [&](Slice part) {
        slot<Kernel>(uplo, trans, part.count, k, alpha, x.row(part.start), lda, y.row(part.start), ldb, beta,
                     result.at(part.start, part.start), ldc);
    };
    const T other_alpha = conj_if<(adjoint == 'C')>(alpha);
    const double flops = alpha == T{} ? 0.0 : flops_of<T>(n, n, k);
    const bool done = over_strips(uplo, n, flops, [&](const TriangleStrip& strip) {
        update_rectangle(result, strip, adjoint, alpha, x, y, T{beta});
        update_rectangle(result, strip, adjoint, other_alpha, y, x, T{1.0});
        update_diagonal(strip.diagonal);
    });
    if (!done) update_diagonal({0, n});
}
template decltype(syr2k_driver<double, double, &KernelTable::dsyr2k>)
    syr2k_driver<double, double, &KernelTable::dsyr2k>;
template decltype(syr2k_driver<zcomplex, zcomplex, &KernelTable::zsyr2k>)
    syr2k_driver<zcomplex, zcomplex, &KernelTable::zsyr2k>;
template decltype(syr2k_driver<zcomplex, double, &KernelTable::zher2k>)
    syr2k_driver<zcomplex, double, &KernelTable::zher2k>;

template <class T, auto Kernel>
void gemmt_driver(const char& uplo, const char& transa, const char& transb, const i64& n, const i64& k, const T& alpha,
                  const T* a, const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc) {
    const auto row = [&](i64 i) { return transa == 'N' ? a + i : a + i * lda; };
    const auto column = [&](i64 j) { return transb == 'N' ? b + j * ldb : b + j; };
    const Matrix<T> result{c, n, n, ldc};
    const auto update_diagonal = [&](Slice part) {
        slot<Kernel>(uplo, transa, transb, part.count, k, alpha, row(part.start), lda, column(part.start), ldb, beta,
                     result.at(part.start, part.start), ldc);
    };
    const bool done = over_strips(uplo, n, 0.5 * flops_of<T>(n, n, k), [&](const TriangleStrip& strip) {
        if (strip.rows.count > 0 && strip.columns.count > 0)
            GemmSlots<T>::serial(transa, transb, strip.rows.count, strip.columns.count, k, alpha, row(strip.rows.start),
                                 lda, column(strip.columns.start), ldb, beta,
                                 result.at(strip.rows.start, strip.columns.start), ldc);
        update_diagonal(strip.diagonal);
    });
    if (!done) update_diagonal({0, n});
}
template decltype(gemmt_driver<double, &KernelTable::dgemmt>) gemmt_driver<double, &KernelTable::dgemmt>;
template decltype(gemmt_driver<zcomplex, &KernelTable::zgemmt>) gemmt_driver<zcomplex, &KernelTable::zgemmt>;

} // namespace nxl
