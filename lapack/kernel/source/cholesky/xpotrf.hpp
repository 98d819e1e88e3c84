// The blocked Cholesky factorisation on the caller's thread, and what the factorisations of the two types differ in.
#pragma once
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/kernel_slot.hpp"
#include "service/types.hpp"
#include <type_traits>

namespace nxl {

/// A = U^H U or L L^H, uplo being U or L. `info`: 0, or the order of the first leading minor that is not positive. The
/// host hears of each finished block of columns: `thread` is doing them, `offset` columns of its matrix lie before a.
/// Returns 1 when the host asks to stop, with the matrix left as it is then, else 0.
i64 xdpotrf(char uplo, i64 n, double* a, i64 lda, i64& info, i64 thread, i64 offset);
i64 xzpotrf(char uplo, i64 n, zcomplex* a, i64 lda, i64& info, i64 thread, i64 offset);

template <class T> constexpr const char* potrf_name() { return std::is_same_v<T, double> ? "DPOTRF" : "ZPOTRF"; }

/// The unblocked factorisation.
template <class T> void potf2(char uplo, i64 n, T* a, i64 lda, i64& info) {
    if constexpr (std::is_same_v<T, double>)
        uplo == 'U' ? slot<&KernelTable::xdpotf2_u>(n, a, lda, info) : slot<&KernelTable::xdpotf2_l>(n, a, lda, info);
    else uplo == 'U' ? slot<&KernelTable::xzpotf2_u>(n, a, lda, info) : slot<&KernelTable::xzpotf2_l>(n, a, lda, info);
}

template <class T> i64 potrf_serial(char uplo, i64 n, T* a, i64 lda, i64& info, i64 thread, i64 offset) {
    if constexpr (std::is_same_v<T, double>) return xdpotrf(uplo, n, a, lda, info, thread, offset);
    else return xzpotrf(uplo, n, a, lda, info, thread, offset);
}

/// What ILAENV says of the factorisation of order n; the team stands where the published routine has a size.
template <class T> i64 potrf_tuning(TuningQuery query, char uplo, i64 n, i64 threads = -1, i64 n3 = -1) {
    return tuning(query, potrf_name<T>(), &uplo, n, threads, n3, -1);
}

} // namespace nxl
