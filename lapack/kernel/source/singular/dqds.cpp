// The differential quotient difference algorithm with shifts. Fernando and Parlett, Numer. Math. 67 (1994); shifts by
// the last Rayleigh quotient and its residual, and what to do when they are too large: Parlett and Marques, Linear
// Algebra Appl. 309 (2000).
#include "lapack/kernel/source/singular/dqds.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

/// An array q(first), e(first), ..., q(last): squares of a bidiagonal whose B^T B, plus `shifted`, has the eigenvalues
/// wanted.
struct QdArray {
    double *q, *e;
};

/// What a transformation tells of the block it made: its last three pivots d, the last one first, and with each of them
/// the smallest of all up to it. Where the last elements have been taken off, those of the others still hold.
struct Pivots {
    static constexpr int kept = 3;
    double least[kept] = {}, last[kept] = {};
    int taken_off = kept;

    bool is_valid() const { return least[0] >= 0.0; } // NaN is not
};

/// The array of the matrix less `shift`, in `to`. The block has three elements at least.
Pivots transform(const QdArray& from, const QdArray& to, i64 first, i64 last, double shift) {
    Pivots pivots{.taken_off = 0};
    double d = from.q[first] - shift, least = d;
    const auto keep = [&](int place) {
        pivots.least[place] = least;
        pivots.last[place] = d;
    };
    const auto step = [&](i64 k) {
        const double pivot = d + from.e[k], ratio = from.q[k + 1] / pivot;
        to.q[k] = pivot;
        to.e[k] = from.e[k] * ratio;
        d = d * ratio - shift;
        least = least <= d ? least : d; // NaN stays
    };
    for (i64 k = first; k < last - 2; ++k) step(k);
    keep(2);
    step(last - 2);
    keep(1);
    step(last - 1);
    keep(0);
    to.q[last] = d;
    if (std::isnan(d)) pivots.least[0] = d;
    return pivots;
}

class Dqds {
    static constexpr double tolerance = 4.0 * unit_roundoff, negligible = tolerance * tolerance;
    static constexpr double border = -1.0; // in the place of an e between parts

    const i64 n_;
    QdArray now_, next_;                   // which agree outside of the block that is worked on
    double *const values_, *const shifts_; // shifts_[k]: what has been subtracted from the block that ends at k
    static constexpr double coupled = 0.56, least_part = 0.25;
    Pivots pivots_;
    double part_ = least_part;
    i64 passes_left_;

    /// The part before element k becomes a block of its own.
    void leave_for_later(i64 k, double shifted) const {
        now_.e[k - 1] = next_.e[k - 1] = border;
        shifts_[k - 1] = shifted;
        next_.q[k - 1] = now_.q[k - 1];
        for (i64 i = k - 2; i >= 0 && now_.e[i] != border; --i) {
            next_.q[i] = now_.q[i];
            next_.e[i] = now_.e[i];
        }
    }
    /// The first element of the block that ends at `last`: what couples it to the one before is nothing beside any
    /// eigenvalue.
    i64 start_of_block(i64 last) const {
        const double threshold = negligible * shifts_[last];
        i64 k = last;
        if (k > 0 && now_.e[k - 1] != border) --k; // the last coupling is looked at by itself
        while (k > 0 && now_.e[k - 1] > threshold) --k;
        if (k > 0 && now_.e[k - 1] != border) leave_for_later(k, shifts_[last]);
        return k;
    }
    bool is_negligible(i64 k, double shifted) const { return now_.e[k] <= negligible * (shifted + now_.q[k + 1]); }
    /// In B B^T e stands in the sum with the element before, and its product with the last one beside that: both may be
    /// nothing long before e is by itself.
    bool parts_from_product(i64 k, double shifted) const {
        const double small = 0.125 * unit_roundoff * shifted, e = now_.e[k];
        return e <= small && std::sqrt(e) * std::sqrt(now_.q[k + 1]) <= small;
    }

    /// Both eigenvalues of two rows, without cancellation.
    void split_two(i64 k, double shifted) const {
        const double size = std::max({now_.q[k], now_.e[k], now_.q[k + 1]});
        if (size == 0.0) {
            values_[k] = values_[k + 1] = shifted;
            return;
        }
        const double q = now_.q[k] / size, e = now_.e[k] / size, r = now_.q[k + 1] / size;
        const double larger = 0.5 * (q + e + r + std::sqrt((q + e - r) * (q + e - r) + 4.0 * r * e));
        values_[k] = larger * size + shifted;
        values_[k + 1] = now_.q[k] * (r / larger) + shifted;
    }
    /// How many elements at the end of a block are done, 0 to 2.
    i64 take_off(i64 first, i64 last) const {
        const double shifted = shifts_[last];
        if (first == last || is_negligible(last - 1, shifted) || parts_from_product(last - 1, shifted)) {
            values_[last] = now_.q[last] + shifted;
            return 1;
        }
        if (last - first > 1 && !is_negligible(last - 2, shifted)) return 0;
        split_two(last - 1, shifted);
        return 2;
    }

    /// The squares of the other elements of the vector z with z(last) = 1 whose product with the matrix has one element
    /// alone, q(last): small where the end of the block has come apart from the rest.
    double rest_of_vector(i64 first, i64 last) const {
        double square = 1.0, sum = 0.0;
        for (i64 k = last - 1; k >= first && sum < coupled && square > 0.01 * sum; --k) {
            square *= now_.e[k] / now_.q[k];
            sum += square;
        }
        return 1.05 * sum;
    }
    /// A shift that is hardly above the smallest eigenvalue. At the end of a block the Rayleigh quotient of z less the
    /// norm of its residual is a bound, less the square of that over the distance of the next eigenvalue a better one;
    /// elsewhere a part of the smallest pivot, which grows as long as it serves.
    double next_shift(i64 first, i64 last) const {
        const int at = pivots_.taken_off;
        if (at >= Pivots::kept || pivots_.least[at] <= 0.0) return 0.0;
        const double least = pivots_.least[at], rest = rest_of_vector(first, last);
        if (pivots_.last[at] > least || !(rest < coupled)) return part_ * least;
        const double quotient = now_.q[last] / (1.0 + rest), bound = quotient * (1.0 - std::sqrt(rest));
        if (at + 1 == Pivots::kept) return bound;
        const double gap = 0.75 * pivots_.least[at + 1] - quotient;
        return gap > 0.0 ? std::max(bound, quotient - quotient * rest * (quotient / gap)) : bound;
    }
    /// One transformation, by a smaller shift where the first one was too large. False when nothing helps.
    bool advance(i64 first, i64 last) {
        double shift = next_shift(first, last);
        for (int attempt = 0; passes_left_-- > 0; ++attempt) {
            const Pivots pivots = transform(now_, next_, first, last, shift);
            if (pivots.is_valid()) {
                std::swap(now_, next_);
                shifts_[last] += shift;
                if (attempt == 0) part_ += (1.0 - part_) / 3.0;
                pivots_ = pivots;
                return true;
            }
            if (shift == 0.0) return false;
            part_ = least_part;
            // Where the last pivot alone fell below zero, it tells by how much the shift was too large.
            const bool late = attempt == 0 && pivots.least[1] > 0.0 && shift + pivots.last[0] > 0.0;
            if (late) shift = (shift + pivots.last[0]) * (1.0 - 4.0 * unit_roundoff);
            else shift = attempt < 3 ? 0.25 * shift : 0.0;
        }
        return false;
    }
    /// Large elements first: the smallest eigenvalues come out at the end.
    void turn_block(i64 first, i64 last) const {
        if (1.5 * now_.q[first] >= now_.q[last]) return;
        std::reverse(now_.q + first, now_.q + last + 1);
        std::reverse(now_.e + first, now_.e + last);
    }

  public:
    Dqds(i64 n, const QdArray& z, const QdArray& spare, double* values, double* shifts)
        : n_(n),
          now_(z),
          next_(spare),
          values_(values),
          shifts_(shifts),
          passes_left_(40 * n) {}

    bool run() {
        std::fill_n(shifts_, n_, 0.0);
        std::copy_n(now_.q, n_, next_.q);
        std::copy_n(now_.e, n_ - 1, next_.e);
        i64 before = -1; // where the last block began
        for (i64 last = n_ - 1; last >= 0;) {
            const i64 first = start_of_block(last);
            if (first != before || pivots_.taken_off >= Pivots::kept) {
                pivots_.taken_off = Pivots::kept;
                turn_block(first, last);
            }
            before = first;
            if (const i64 done = take_off(first, last); done > 0) {
                if (last - done >= first) shifts_[last - done] = shifts_[last];
                last -= done;
                pivots_.taken_off += static_cast<int>(done);
            } else if (!advance(first, last)) {
                return false;
            }
        }
        return true;
    }
};

/// Squares of the elements times `scale`. An e that is nothing beside the singular values becomes 0: Demmel and Kahan,
/// SIAM J. Sci. Stat. Comput. 11 (1990).
void make_array(i64 n, const double* d, const double* e, double scale, const QdArray& z) {
    constexpr double tolerance = unit_roundoff * unit_roundoff;
    const auto square = [&](double x) { return (x * scale) * (x * scale); };
    double least = z.q[0] = square(d[0]);
    for (i64 k = 0; k + 1 < n; ++k) {
        z.q[k + 1] = square(d[k + 1]);
        z.e[k] = square(e[k]);
        if (z.e[k] <= tolerance * least) z.e[k] = 0.0;
        least = z.q[k + 1] * (least == 0.0 ? 0.0 : least / (least + z.e[k]));
    }
}

/// A power of two by which the squares of all elements lie in the range; 0 when there is none.
double scale_for_squares(i64 n, const double* d, const double* e) {
    const double largest = std::max(largest_abs1(n, d), largest_abs1(n - 1, e));
    if (!std::isfinite(largest) || std::isnan(largest_abs1(n - 1, e)) || largest == 0.0) return 0.0;
    for (i64 k = 0; k < n; ++k)
        if (d[k] != 0.0 && std::fabs(d[k]) < largest * 0x1p-900) return 0.0;
    return std::ldexp(1.0, std::clamp(480 - std::ilogb(largest), -1000, 1000));
}

} // namespace

bool values_by_dqds(i64 n, double* d, const double* e) {
    const double scale = scale_for_squares(n, d, e);
    const Scratch<double> memory(6 * n);
    if (scale == 0.0 || !memory.data()) return false;
    Sections<double> sections(memory.data());
    const auto take = [&] { return sections.take(n); };
    const QdArray z{take(), take()}, spare{take(), take()};
    double *const values = take(), *const shifts = take();
    make_array(n, d, e, scale, z);
    if (!Dqds(n, z, spare, values, shifts).run()) return false;
    std::sort(values, values + n, [](double x, double y) { return x > y; });
    for (i64 k = 0; k < n; ++k) d[k] = std::sqrt(values[k]) / scale;
    return true;
}

} // namespace nxl
