// Drivers of the products with a symmetric or Hermitian matrix: the side of C that this matrix does not touch is cut.
#include "blas/kernel/default_em64t/level3/symm_omp.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include "service/slice.hpp"
#include "service/worthwhile_threads.hpp"

namespace nxl {
namespace {

// The symmetric matrix takes part in all of C, and the other side is free:
//
//     side = L    C = A B     columns of B and C are cut: C | C | C = A ( B | B | B )
//     side = R    C = B A     rows are cut
//
// Every thread mirrors and packs all of the symmetric matrix for itself. That costs 1 / (columns of its slice) of its
// arithmetic, and saves waiting.
constexpr i64 slice_unit = 4; // columns of a packed panel

template <class T> struct SymmCall {
    char side, uplo;
    i64 m, n;
    T alpha;
    const T* a;
    i64 lda;
    const T* b;
    i64 ldb;
    T beta;
    T* c;
    i64 ldc;

    bool left() const { return side == 'L'; }
    i64 free_length() const { return left() ? n : m; }
    double flops() const { return flops_of<T>(m, n, left() ? m : n); }

    template <class Kernel> void run(Kernel& kernel, Slice part) const {
        const T* b_part = b + (left() ? part.start * ldb : part.start);
        T* c_part = c + (left() ? part.start * ldc : part.start);
        kernel(side, uplo, left() ? m : part.count, left() ? part.count : n, alpha, a, lda, b_part, ldb, beta, c_part,
               ldc);
    }
};

template <class T> int threads_of(const SymmCall<T>& p) {
    if (p.alpha == T{} || threads_for_work(p.flops(), 2) < 2) return 1;
    const i64 slices = p.free_length() / slice_unit;
    return static_cast<int>(std::min(i64{threads_for_work(p.flops(), max_threads(domain_blas))}, slices));
}

} // namespace

template <class T, auto Kernel>
void symm_driver(const char& side, const char& uplo, const i64& m, const i64& n, const T& alpha, const T* a,
                 const i64& lda, const T* b, const i64& ldb, const T& beta, T* c, const i64& ldc) {
    const SymmCall<T> call{side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc};
    const int threads = threads_of(call);
    if (threads < 2) return call.run(slot<Kernel>, {0, call.free_length()});
    parallel_blocks(threads, threads, [&, threads](int index) {
        call.run(slot<Kernel>, balanced_slice(call.free_length(), slice_unit, index, threads));
    });
}
template decltype(symm_driver<double, &KernelTable::dsymm>) symm_driver<double, &KernelTable::dsymm>;
template decltype(symm_driver<zcomplex, &KernelTable::zsymm>) symm_driver<zcomplex, &KernelTable::zsymm>;
template decltype(symm_driver<zcomplex, &KernelTable::zhemm>) symm_driver<zcomplex, &KernelTable::zhemm>;

} // namespace nxl
