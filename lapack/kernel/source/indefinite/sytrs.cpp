// dsytrs, zsytrs, zhetrs: each thread takes some of the right-hand sides.
#include "lapack/kernel/source/indefinite/sytrs.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/indefinite/solve.hpp"
#include "service/parallel.hpp"
#include "service/threads.hpp"
#include <algorithm>
#include <atomic>

namespace nxl {
namespace {

/// Parts of the right-hand sides, for a thread each.
template <class T> i64 parts_of(i64 n, i64 nrhs) {
    constexpr i64 least = 8; // columns that pay for reading the factors
    if (nrhs < 2 * least || stays_here<T>(n, n, nrhs, 1.0)) return 1;
    return std::min(nrhs / least, i64{max_threads(domain_blas)});
}

} // namespace

template <class T, Symmetry kind>
void sytrs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, const i64* ipiv, T* b,
           const i64& ldb, i64& info, int) {
    constexpr RoutineLetters name = routine_of<T, kind>("TRS");
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).size(3, nrhs).leading(5, lda, n).leading(8, ldb, n);
    if (arguments.refused(info) || n == 0 || nrhs == 0) return;
    const Matrix<const T> factors{a, n, n, lda};
    const Matrix<T> x{b, n, nrhs, ldb};
    std::atomic<bool> starved{false};
    const auto solve = [&](const Slice& part) {
        const SolveSpace<T> space(part.count);
        if (space.there()) solve_factored<T, kind>(uplo, factors, ipiv, x.columns_from(part.start, part.count), space);
        else starved = true;
    };
    const int parts = static_cast<int>(parts_of<T>(n, nrhs));
    if (parts == 1) solve({0, nrhs});
    else parallel_blocks(parts, parts, [&](int part) { solve(balanced_slice(nrhs, 4, part, parts)); });
    if (starved) refuse_for_memory(name, info);
}
template decltype(sytrs<double, Symmetry::symmetric>) sytrs<double, Symmetry::symmetric>;
template decltype(sytrs<zcomplex, Symmetry::symmetric>) sytrs<zcomplex, Symmetry::symmetric>;
template decltype(sytrs<zcomplex, Symmetry::hermitian>) sytrs<zcomplex, Symmetry::hermitian>;

} // namespace nxl
