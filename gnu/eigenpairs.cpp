// All eigenpairs by divide and conquer, which libnxl.so does for bands: of a tridiagonal matrix, and of a full one that
// has been brought to that form.
#include "gnu/eigenpairs.hpp"
#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace nxl::gnu {
namespace {

template <class T> double size_of(const T& x) {
    if constexpr (std::is_same_v<T, double>) return std::fabs(x);
    else return std::fabs(x.real()) + std::fabs(x.imag());
}

/// A triangle, rows first(j) .. end(j) - 1 of column j.
template <class T> struct Triangle {
    bool upper;
    int n;
    std::ptrdiff_t lda;
    T* a;

    template <class Body> void each(const Body& body) const {
        for (int j = 0; j < n; ++j)
            for (int i = upper ? 0 : j; i < (upper ? j + 1 : n); ++i) body(a[i + j * lda]);
    }
    /// Multiplies by a power of two that keeps squares in the range; returns its exponent.
    int bring_into_range() const {
        constexpr double least = 1e-120, most = 1e120;
        double largest = 0.0;
        each([&](const T& x) { largest = std::max(largest, size_of(x)); });
        if (largest == 0.0 || !std::isfinite(largest) || (largest > least && largest < most)) return 0;
        const int power = -std::clamp(std::ilogb(largest), -1000, 1000);
        each([&](T& x) { x *= std::ldexp(1.0, power); });
        return power;
    }
};

} // namespace

int tridiagonal_pairs(int n, const double* d, const double* e, double* w, double* z, int ldz) {
    const auto order = static_cast<std::size_t>(n);
    const int kd = 1, ldab = 2;
    const double longest = 1.0 + 5.0 * n + 2.0 * n * n; // of a workspace that is not used
    int info = 0;
    if (longest > std::numeric_limits<int>::max()) { // then its length cannot be told
        const Array<double> off(order), unused(2 * order);
        if (!off || !unused) return no_memory;
        std::copy(d, d + order, w);
        std::copy(e, e + order - 1, off.data());
        dsteqr("I", &n, w, off.data(), z, &ldz, unused.data(), &info, 1);
        return info;
    }
    const int lwork = static_cast<int>(longest), liwork = 3 + 5 * n;
    const Array<double> ab(2 * order);
    const Array<int> iwork(order * 5 + 3);
    double work = 0.0;
    if (!ab || !iwork) return no_memory;
    for (std::size_t j = 0; j < order; ++j) {
        ab.data()[2 * j] = d[j];
        if (j + 1 < order) ab.data()[2 * j + 1] = e[j];
    }
    dsbevd("V", "L", &n, &kd, ab.data(), &ldab, w, z, &ldz, &work, &lwork, iwork.data(), &liwork, &info, 1, 1);
    return info;
}

namespace {

/// Values alone, of which the library knows the faster way for large matrices.
template <class T> int full_values(char uplo, int n, T* a, int lda, double* w) {
    constexpr int block = 64;
    const auto order = static_cast<std::size_t>(n);
    const Array<T> work(block * order);
    const Array<double> reals(block * order);
    const Array<int> integers(block * order);
    if (!work || !reals || !integers) return no_memory;
    const int length = std::max(block * n, 1), one = 1;
    const double unused = 0.0;
    int found = 0, info = 0;
    const auto solve = [&](auto... real_space) {
        T z;
        Symmetric<T>::syevr("N", "A", &uplo, &n, a, &lda, &unused, &unused, &one, &n, &unused, &found, w, &z, &one,
                            nullptr, work.data(), &length, real_space..., integers.data(), &length, &info, 1, 1, 1);
    };
    if constexpr (std::is_same_v<T, double>) solve();
    else solve(reals.data(), &length);
    return info;
}

} // namespace

template <class T> int full_pairs(char jobz, char uplo, int n, T* a, int lda, double* w) {
    if (!is_letter(jobz, 'V')) return full_values(uplo, n, a, lda, w);
    const auto order = static_cast<std::size_t>(n);
    constexpr int block = 64;
    const Triangle<T> triangle{is_letter(uplo, 'U'), n, lda, a};
    const Array<double> e(order), values(order), of_t(order * order);
    const Array<T> tau(order), work(block * order), z(order * order);
    if (!e || !values || !of_t || !tau || !work || !z) return no_memory;
    const int lwork = std::max(block * n, 1), ldz = std::max(n, 1), power = triangle.bring_into_range();
    int info = 0, status = 0;
    Symmetric<T>::sytrd(&uplo, &n, a, &lda, w, e.data(), tau.data(), work.data(), &lwork, &info, 1);
    info = tridiagonal_pairs(n, w, e.data(), values.data(), of_t.data(), ldz);
    std::copy(values.data(), values.data() + order, w);
    std::copy(of_t.data(), of_t.data() + order * order, z.data());
    Symmetric<T>::ormtr("L", &uplo, "N", &n, &n, a, &lda, tau.data(), z.data(), &ldz, work.data(), &lwork, &status, 1,
                        1, 1);
    for (std::size_t j = 0; j < order; ++j)
        std::copy(z.data() + j * order, z.data() + (j + 1) * order, a + j * static_cast<std::size_t>(lda));
    for (std::size_t i = 0; i < order && power != 0; ++i) w[i] = std::ldexp(w[i], -power);
    return info;
}

template int full_pairs(char, char, int, double*, int, double*);
template int full_pairs(char, char, int, nxl_z*, int, double*);

} // namespace nxl::gnu
