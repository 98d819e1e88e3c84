// Dense kernels on the diagonal blocks of supernodes: pivots inside the block, and tiny ones replaced.
#pragma once
#include "service/scalars.hpp"
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// What a factorisation counts.
struct PivotCounts {
    i32 perturbed = 0, positive = 0, negative = 0;

    void count_sign(double pivot) { ++(pivot > 0.0 ? positive : negative); }
    PivotCounts& operator+=(const PivotCounts& other) {
        perturbed += other.perturbed;
        positive += other.positive;
        negative += other.negative;
        return *this;
    }
};

/// How tiny pivots are replaced: one that is not above the threshold becomes +-replacement, with its own sign.
struct Perturbation {
    double threshold, replacement;

    /// Without a value of the caller's, exact zeros alone are replaced.
    static Perturbation of(double eps, double least) {
        return eps == 0.0 ? Perturbation{0.0, least} : Perturbation{eps, eps};
    }

    template <class T> T replaced(const T& pivot) const {
        return real_part(pivot) >= 0.0 ? std::fabs(replacement) : -std::fabs(replacement);
    }
};
inline constexpr double least_ldl_pivot = 1e-8, least_lu_pivot = 1e-13;

/// P A P^T = L D L^T, or L D L^H, by the largest entry of the diagonal that is left; of equal ones the last. The lower
/// triangle of the n by n block is read and becomes L, with D for its unit diagonal. Interchange k is of k and ipiv(k),
/// which count from 1; rows of L are interchanged with it.
template <class T, bool Hermitian>
void ldl_pivot_1x1(i64 n, T* a, i64 ld, i32* ipiv, const Perturbation& perturbation, PivotCounts& counts);

/// The same with pivots of order 1 and 2: where ipiv(k) and ipiv(k + 1) are both -p, D has the block of k and k + 1,
/// its entry (k + 1, k) in the place of L's, and the interchange was of k + 1 and p. J. R. Bunch and L. Kaufman, Math.
/// Comp. 31 (1977) 163-179.
template <class T, bool Hermitian>
void ldl_pivot_bk(i64 n, T* a, i64 ld, i32* ipiv, const Perturbation& perturbation, PivotCounts& counts);

/// P A Q = L U by the largest entry that is left; of equal ones the one in the last column, and there in the last row.
template <class T>
void lu_perturb(i64 m, T* a, i64 ld, i32* rowpiv, i32* colpiv, const Perturbation& perturbation, PivotCounts& counts);

/// The inverse of a pivot of order 2, (a, conj(b); b, c), by quotients of its entries, which do not overflow.
template <class T, bool Hermitian> struct InversePair {
    T i11, i21, i22;
    double determinant_sign; ///< of (a / b)(c / b) - 1

    InversePair(const T& a, const T& b, const T& c) {
        const T scale = Hermitian ? T(std::abs(b)) : b;
        const T first = a / scale, last = c / scale, determinant = first * last - T(1.0),
                t = T(1.0) / determinant / scale;
        i11 = last * t;
        i22 = first * t;
        i21 = Hermitian ? -(b / scale) * t : -t;
        determinant_sign = real_part(determinant);
    }
    T i12() const { return conj_if<Hermitian>(i21); }
};

} // namespace nxl::pardiso
