// LAPACK's simple drivers for packed symmetric and Hermitian systems: unpacked, so that they have the speed of full
// ones, and packed again. A singular matrix leaves B as it was.
#include "gnu/arguments.hpp"
#include "gnu/array.hpp"
#include "service/export.hpp"

using namespace nxl::gnu;

namespace {

/// body(from, packed, count) for the stored run of each column of a full matrix, and its place in the packed one.
template <class T, class Body> void for_runs(char uplo, int n, T* a, T* ap, const Body& body) {
    const bool upper = uplo == 'U' || uplo == 'u';
    for (int j = 0; j < n; ++j) {
        const int first = upper ? 0 : j, count = upper ? j + 1 : n - j;
        body(a + first + static_cast<std::ptrdiff_t>(j) * n, ap, count);
        ap += count;
    }
}

template <auto Factor, auto Solve, class T>
void packed(const char* name, const char* uplo, const int* n, const int* nrhs, T* ap, int* ipiv, T* b, const int* ldb,
            int* info) {
    if (Arguments(name).triangle(1, *uplo).size(2, *n).size(3, *nrhs).leading(7, *ldb, *n).refused(info)) return;
    if (*n == 0) return;
    constexpr int block = 64;
    const auto order = static_cast<std::size_t>(*n);
    const int lwork = static_cast<int>(std::min(order, std::size_t{1} << 24)) * block;
    const Array<T> a(order * order), work(static_cast<std::size_t>(lwork));
    if (!a || !work) {
        *info = no_memory;
        return;
    }
    for_runs(*uplo, *n, a.data(), ap, [](T* run, const T* stored, int count) { std::copy_n(stored, count, run); });
    Factor(uplo, n, a.data(), n, ipiv, work.data(), &lwork, info, 1);
    for_runs(*uplo, *n, a.data(), ap, [](const T* run, T* stored, int count) { std::copy_n(run, count, stored); });
    if (*info == 0) Solve(uplo, n, nrhs, a.data(), n, ipiv, b, ldb, info, 1);
}

} // namespace

extern "C" {

NXL_EXPORT void dspsv_(const char* uplo, const int* n, const int* nrhs, double* ap, int* ipiv, double* b,
                       const int* ldb, int* info) noexcept {
    packed<dsytrf, dsytrs>("DSPSV ", uplo, n, nrhs, ap, ipiv, b, ldb, info);
}
NXL_EXPORT void zspsv_(const char* uplo, const int* n, const int* nrhs, nxl_z* ap, int* ipiv, nxl_z* b, const int* ldb,
                       int* info) noexcept {
    packed<zsytrf, zsytrs>("ZSPSV ", uplo, n, nrhs, ap, ipiv, b, ldb, info);
}
NXL_EXPORT void zhpsv_(const char* uplo, const int* n, const int* nrhs, nxl_z* ap, int* ipiv, nxl_z* b, const int* ldb,
                       int* info) noexcept {
    packed<zhetrf, zhetrs>("ZHPSV ", uplo, n, nrhs, ap, ipiv, b, ldb, info);
}

} // extern "C"
