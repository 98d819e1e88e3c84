#include "solvers_ds/kernel/default/pardiso/numeric/pivots.hpp"
#include <tuple>
#include <utility>

namespace nxl::pardiso {
namespace {

/// The lower triangle of a block as its columns are eliminated; indices count from 0.
template <class T, bool Hermitian> class SymmetricBlock {
    const i64 n_, ld_;
    T* const a_;

  public:
    SymmetricBlock(i64 n, T* a, i64 ld) : n_(n), ld_(ld), a_(a) {}

    i64 order() const { return n_; }
    T& at(i64 i, i64 j) const { return a_[i + j * ld_]; }

    double diagonal(i64 j) const { return Hermitian ? std::fabs(real_part(at(j, j))) : abs1(at(j, j)); }

    /// Rows and columns k and p, k < p, with the rows of L before them.
    void interchange(i64 k, i64 p) const {
        if (p == k) return;
        for (i64 j = 0; j < k; ++j) std::swap(at(k, j), at(p, j));
        std::swap(at(k, k), at(p, p));
        for (i64 j = k + 1; j < p; ++j) {
            const T moved = at(j, k);
            at(j, k) = conj_if<Hermitian>(at(p, j));
            at(p, j) = conj_if<Hermitian>(moved);
        }
        at(p, k) = conj_if<Hermitian>(at(p, k));
        for (i64 i = p + 1; i < n_; ++i) std::swap(at(i, k), at(i, p));
    }

    /// Row below k of the largest entry of column k; k itself when there is none.
    i64 largest_below(i64 k) const {
        i64 row = k;
        double most = -1.0;
        for (i64 i = k + 1; i < n_; ++i)
            if (abs1(at(i, k)) > most) most = abs1(at(row = i, k));
        return row;
    }

    /// The largest entry of row p of what is left from k on, beside the diagonal.
    double largest_in_row(i64 p, i64 k) const {
        double most = 0.0;
        for (i64 j = k; j < p; ++j) most = std::fmax(most, abs1(at(p, j)));
        for (i64 i = p + 1; i < n_; ++i) most = std::fmax(most, abs1(at(i, p)));
        return most;
    }

    /// Divides column k by its pivot and takes the product off the columns behind it.
    void eliminate(i64 k) const {
        if constexpr (Hermitian) at(k, k) = real_part(at(k, k));
        const T pivot = at(k, k);
        T* const column = &at(0, k);
        for (i64 j = k + 1; j < n_; ++j) {
            const T factor = conj_if<Hermitian>(column[j] / pivot);
            T* const target = &at(0, j);
            for (i64 i = j; i < n_; ++i) target[i] -= column[i] * factor;
        }
        for (i64 i = k + 1; i < n_; ++i) column[i] /= pivot;
    }

    /// The same for the columns k and k + 1 of a pivot of order 2.
    void eliminate_pair(i64 k, const InversePair<T, Hermitian>& inverse) const {
        T *const first = &at(0, k), *const second = &at(0, k + 1);
        const auto quotient = [&](i64 i) {
            return std::pair{first[i] * inverse.i11 + second[i] * inverse.i21,
                             first[i] * inverse.i12() + second[i] * inverse.i22};
        };
        for (i64 j = k + 2; j < n_; ++j) {
            const auto [l1, l2] = quotient(j);
            const T f1 = conj_if<Hermitian>(l1), f2 = conj_if<Hermitian>(l2);
            T* const target = &at(0, j);
            for (i64 i = j; i < n_; ++i) target[i] -= first[i] * f1 + second[i] * f2;
        }
        for (i64 i = k + 2; i < n_; ++i) std::tie(first[i], second[i]) = quotient(i);
    }
};

/// What Bunch and Kaufman's test says of column k.
struct Choice {
    i64 row; ///< that is brought to the place of the pivot, or of its second column
    bool pair;
};

template <class Block> Choice choose(const Block& block, i64 k) {
    constexpr double alpha = 0.6403882032022076; // (1 + sqrt(17)) / 8
    const i64 p = block.largest_below(k);
    const double d = block.diagonal(k), g = p == k ? 0.0 : abs1(block.at(p, k));
    if (p == k || alpha * g <= d) return {k, false};
    const double h = block.largest_in_row(p, k);
    if (alpha * g * (g / h) <= d) return {k, false};
    if (alpha * h <= block.diagonal(p)) return {p, false};
    return {p, true};
}

template <class T, bool Hermitian>
void count_pair(const T& a, const T& c, const InversePair<T, Hermitian>& inverse, PivotCounts& counts) {
    if (inverse.determinant_sign <= 0.0) {
        ++counts.positive;
        ++counts.negative;
    } else {
        (real_part(a) <= 0.0 || real_part(c) <= 0.0 ? counts.negative : counts.positive) += 2;
    }
}

} // namespace

template <class T, bool Hermitian>
void ldl_pivot_1x1(i64 n, T* a, i64 ld, i32* ipiv, const Perturbation& perturbation, PivotCounts& counts) {
    const SymmetricBlock<T, Hermitian> block(n, a, ld);
    for (i64 k = 0; k < n; ++k) {
        i64 largest = k;
        for (i64 j = k + 1; j < n; ++j)
            if (block.diagonal(j) >= block.diagonal(largest)) largest = j;
        block.interchange(k, largest);
        ipiv[k] = static_cast<i32>(largest + 1);
        T& pivot = block.at(k, k);
        if (perturbation.threshold >= block.diagonal(k)) {
            pivot = perturbation.replaced(pivot);
            ++counts.perturbed;
        }
        counts.count_sign(real_part(pivot));
        block.eliminate(k);
    }
}

template <class T, bool Hermitian>
void ldl_pivot_bk(i64 n, T* a, i64 ld, i32* ipiv, const Perturbation& perturbation, PivotCounts& counts) {
    const SymmetricBlock<T, Hermitian> block(n, a, ld);
    for (i64 k = 0; k < n; ++k) {
        const i64 p = block.largest_below(k);
        const double off = p == k ? 0.0 : abs1(block.at(p, k));
        const bool tiny = std::fmax(block.diagonal(k), off) <= perturbation.threshold;
        if (tiny) {
            block.at(k, k) = perturbation.replaced(block.at(k, k));
            ++counts.perturbed;
        }
        const Choice choice = tiny ? Choice{k, false} : choose(block, k);
        if (!choice.pair) {
            block.interchange(k, choice.row);
            ipiv[k] = static_cast<i32>(choice.row + 1);
            counts.count_sign(real_part(block.at(k, k)));
            block.eliminate(k);
            continue;
        }
        block.interchange(k + 1, choice.row);
        ipiv[k] = ipiv[k + 1] = -static_cast<i32>(choice.row + 1);
        const T first = block.at(k, k), last = block.at(k + 1, k + 1);
        const InversePair<T, Hermitian> inverse(first, block.at(k + 1, k), last);
        count_pair(first, last, inverse, counts);
        block.eliminate_pair(k++, inverse);
    }
}

template void ldl_pivot_1x1<double, false>(i64, double*, i64, i32*, const Perturbation&, PivotCounts&);
template void ldl_pivot_1x1<zcomplex, false>(i64, zcomplex*, i64, i32*, const Perturbation&, PivotCounts&);
template void ldl_pivot_1x1<zcomplex, true>(i64, zcomplex*, i64, i32*, const Perturbation&, PivotCounts&);
template void ldl_pivot_bk<double, false>(i64, double*, i64, i32*, const Perturbation&, PivotCounts&);
template void ldl_pivot_bk<zcomplex, false>(i64, zcomplex*, i64, i32*, const Perturbation&, PivotCounts&);
template void ldl_pivot_bk<zcomplex, true>(i64, zcomplex*, i64, i32*, const Perturbation&, PivotCounts&);

} // namespace nxl::pardiso
