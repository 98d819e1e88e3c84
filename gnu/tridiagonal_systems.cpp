// LAPACK's simple drivers for tridiagonal systems. Elimination row by row is one long chain; the solutions go through
// it some at a time, so that their chains overlap. A singular or indefinite matrix leaves B as it was.
#include "gnu/arguments.hpp"
#include "gnu/array.hpp"
#include "service/export.hpp"
#include "service/scalars.hpp"
#include <cstddef>
#include <type_traits>
#include <utility>

using namespace nxl::gnu;
using nxl::abs1;
using nxl::conj_if;

namespace {

/// body(columns, count): right-hand sides four at a time, the last ones one by one; the count is known at compile time.
template <class T, class Body> void for_columns(int nrhs, T* b, std::ptrdiff_t ldb, const Body& body) {
    int k = 0;
    for (; k + 4 <= nrhs; k += 4) body(b + k * ldb, std::integral_constant<int, 4>());
    for (; k < nrhs; ++k) body(b + k * ldb, std::integral_constant<int, 1>());
}

/// P A = L U with rows interchanged where the element below is the larger one. U has d, du and, in the place of dl, a
/// second superdiagonal.
template <class T> class TridiagonalLu {
    const int n_;
    T *const second_, *const d_, *const du_;
    const Array<T> multipliers_;
    const Array<bool> swapped_;

    void eliminate(int i) {
        const T below = second_[i];
        if (below == T{}) return; // the multiplier is 0
        second_[i] = T{};
        if (abs1(d_[i]) >= abs1(below)) {
            const T multiplier = below / d_[i];
            multipliers_.data()[i] = multiplier;
            d_[i + 1] -= multiplier * du_[i];
            return;
        }
        swapped_.data()[i] = true;
        const T multiplier = d_[i] / below, right = d_[i + 1];
        multipliers_.data()[i] = multiplier;
        d_[i] = below;
        d_[i + 1] = du_[i] - multiplier * right;
        du_[i] = right;
        if (i + 2 < n_) {
            second_[i] = du_[i + 1];
            du_[i + 1] = -multiplier * second_[i];
        }
    }

  public:
    TridiagonalLu(int n, T* dl, T* d, T* du)
        : n_(n),
          second_(dl),
          d_(d),
          du_(du),
          multipliers_(static_cast<std::size_t>(n)),
          swapped_(static_cast<std::size_t>(n)) {}

    /// Returns info: the first element of U's diagonal, from 1, that is zero.
    int factorise() {
        if (!multipliers_ || !swapped_) return no_memory;
        for (int i = 0; i < n_; ++i) {
            if (i + 1 < n_) eliminate(i);
            if (d_[i] == T{}) return i + 1;
        }
        return 0;
    }

    template <int Count> void solve(T* x, std::ptrdiff_t ld) const {
        for (int i = 0; i + 1 < n_; ++i)
            for (int k = 0; k < Count; ++k) {
                T* const y = x + k * ld + i;
                if (swapped_.data()[i]) std::swap(y[0], y[1]);
                y[1] -= multipliers_.data()[i] * y[0];
            }
        for (int i = n_ - 1; i >= 0; --i)
            for (int k = 0; k < Count; ++k) {
                T* const y = x + k * ld + i;
                if (i + 1 < n_) y[0] -= du_[i] * y[1];
                if (i + 2 < n_) y[0] -= second_[i] * y[2];
                y[0] /= d_[i];
            }
    }
};

/// A = L D L^H, with D in d and the subdiagonal of L in e. Returns info: the order of the first leading minor, from 1,
/// that is not positive.
template <class T> int factorise_definite(int n, double* d, T* e) {
    for (int i = 0; i < n; ++i) {
        if (!(d[i] > 0.0)) return i + 1;
        if (i + 1 == n) break;
        const T off = e[i];
        e[i] = off / d[i];
        d[i + 1] -= nxl::real_part(e[i] * conj_if(true, off));
    }
    return 0;
}

template <int Count, class T>
void solve_definite(int n, const double* d, const T* e, T* x, std::ptrdiff_t ld) {
    for (int i = 0; i + 1 < n; ++i)
        for (int k = 0; k < Count; ++k) x[k * ld + i + 1] -= e[i] * x[k * ld + i];
    for (int i = n - 1; i >= 0; --i)
        for (int k = 0; k < Count; ++k) {
            T* const y = x + k * ld + i;
            y[0] /= d[i];
            if (i + 1 < n) y[0] -= conj_if(true, e[i]) * y[1];
        }
}

template <class T>
void general(const char* name, const int* n, const int* nrhs, T* dl, T* d, T* du, T* b, const int* ldb, int* info) {
    if (Arguments(name).size(1, *n).size(2, *nrhs).leading(7, *ldb, *n).refused(info)) return;
    TridiagonalLu<T> factors(*n, dl, d, du);
    *info = factors.factorise();
    if (*info != 0) return;
    for_columns(*nrhs, b, *ldb, [&](T* x, auto count) { factors.template solve<count>(x, *ldb); });
}

template <class T>
void definite(const char* name, const int* n, const int* nrhs, double* d, T* e, T* b, const int* ldb, int* info) {
    if (Arguments(name).size(1, *n).size(2, *nrhs).leading(6, *ldb, *n).refused(info)) return;
    *info = factorise_definite(*n, d, e);
    if (*info != 0) return;
    for_columns(*nrhs, b, *ldb, [&](T* x, auto count) { solve_definite<count>(*n, d, e, x, *ldb); });
}

} // namespace

extern "C" {

NXL_EXPORT void dgtsv_(const int* n, const int* nrhs, double* dl, double* d, double* du, double* b, const int* ldb,
                       int* info) noexcept {
    general("DGTSV ", n, nrhs, dl, d, du, b, ldb, info);
}
NXL_EXPORT void zgtsv_(const int* n, const int* nrhs, nxl_z* dl, nxl_z* d, nxl_z* du, nxl_z* b, const int* ldb,
                       int* info) noexcept {
    general("ZGTSV ", n, nrhs, dl, d, du, b, ldb, info);
}

NXL_EXPORT void dptsv_(const int* n, const int* nrhs, double* d, double* e, double* b, const int* ldb,
                       int* info) noexcept {
    definite("DPTSV ", n, nrhs, d, e, b, ldb, info);
}
NXL_EXPORT void zptsv_(const int* n, const int* nrhs, double* d, nxl_z* e, nxl_z* b, const int* ldb,
                       int* info) noexcept {
    definite("ZPTSV ", n, nrhs, d, e, b, ldb, info);
}

} // extern "C"
