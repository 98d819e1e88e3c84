// dstein, zstein: groups of close eigenvalues, whose vectors have to be made orthogonal, are independent of each other
// and spread over threads. Peters and Wilkinson, in Handbook for Automatic Computation II, Springer 1971; Jessup and
// Ipsen, SIAM J. Sci. Stat. Comput. 13 (1992).
#include "lapack/kernel/source/eigen/stein.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/eigen/shifted_tridiagonal.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"

namespace nxl {
namespace {

/// Values first .. end - 1 of rows start .. start + n - 1.
struct Group {
    i64 first, end, start, n;
};

double one_norm(const double* d, const double* e, i64 n, double scale) {
    double largest = 0.0;
    for (i64 i = 0; i < n; ++i) {
        const double before = i > 0 ? std::fabs(e[i - 1]) : 0.0, after = i + 1 < n ? std::fabs(e[i]) : 0.0;
        const double sum = scale * std::fabs(d[i]) + scale * before + scale * after;
        if (!(sum <= largest)) largest = sum;
    }
    return largest;
}

/// Numbers in [-1, 1) that look random; a start vector for each eigenvalue, whatever thread works on it.
void fill_with_noise(i64 n, i64 seed, double* x) {
    auto state = static_cast<std::uint64_t>(seed + 1) * 0x9e3779b97f4a7c15;
    for (i64 i = 0; i < n; ++i) {
        state = state * 6364136223846793005 + 1442695040888963407;
        x[i] = static_cast<double>(static_cast<std::int64_t>(state)) * 0x1p-63;
    }
}

/// A real column of z: its elements, the real parts of complex ones, are `step` doubles apart.
struct Column {
    double* data;
    i64 step;
};

/// The vectors of one block, one after the other. The space is its own.
class InverseIteration {
    const i64 n_;
    const double *const d_, *const e_;
    const double scale_, norm_; // scale, and the norm of the scaled block
    ShiftedTridiagonal factors_;
    double* const x_;

  public:
    InverseIteration(i64 n, const double* d, const double* e, double* space, bool* flags)
        : n_(n),
          d_(d),
          e_(e),
          scale_(block_scale(d, e, n)),
          norm_(one_norm(d, e, n, scale_)),
          factors_(n, space, flags),
          x_(space + ShiftedTridiagonal::room(n)) {}
    static constexpr i64 room(i64 n) { return ShiftedTridiagonal::room(n) + n; }

    /// The vector, of length 1, stays in x. It is made orthogonal to `count` columns from `found` on, `ld` doubles
    /// apart. False when it has not grown as it should in so many steps.
    bool find(double value, i64 seed, Column found, i64 ld, i64 count) {
        constexpr int tries = 3, steps_of_try = 5, steps_after_growth = 2;
        constexpr double roundoff = 2.0 * unit_roundoff;
        const double size = static_cast<double>(n_), growth = std::sqrt(0.1 / size);
        factors_.factor(d_, e_, value, scale_, std::max(roundoff * norm_, safe_minimum));
        int grown = 0;
        for (int step = 0; step < tries * steps_of_try && grown <= steps_after_growth; ++step) {
            if (step % steps_of_try == 0) { // another start, should the others have had too little of the vector
                fill_with_noise(n_, seed + step * n_, x_);
                grown = 0;
            }
            const double target = size * std::max(roundoff * norm_, std::fabs(factors_.last_pivot()));
            scal(n_, target / largest_abs1(n_, x_), x_, 1);
            factors_.solve(x_);
            for (i64 k = 0; k < count; ++k) {
                const double* const other = found.data + k * ld;
                axpy(n_, -dot(n_, other, found.step, x_, 1), other, found.step, x_, 1);
            }
            grown += largest_abs1(n_, x_) >= growth ? 1 : 0;
        }
        const double largest = x_[iamax(n_, x_, 1) - 1];
        scal(n_, 1.0 / largest, x_, 1); // so that the squares stay in the range
        scal(n_, 1.0 / nrm2(n_, x_, 1), x_, 1);
        return grown > steps_after_growth;
    }
    const double* vector() const { return x_; }
};

template <class T> struct VectorSearch {
    const double *d, *e, *w;
    Matrix<T> z;
    i64* failed; // by value: 0, or its number from 1

    void find(const Group& group, double* space, bool* flags) const {
        constexpr i64 step = sizeof(T) / sizeof(double);
        const double *const diagonal = d + group.start, *const off = e + group.start;
        InverseIteration iteration(group.n, diagonal, off, space, flags);
        const Column first{reinterpret_cast<double*>(z.at(group.start, group.first)), step};
        double before = 0.0;
        for (i64 j = group.first; j < group.end; ++j) {
            std::fill(z.at(0, j), z.at(0, j) + z.rows, T{});
            failed[j] = 0;
            if (group.n == 1) {
                z(group.start, j) = T(1.0);
                continue;
            }
            double value = w[j]; // equal eigenvalues are moved apart
            const double least_gap = 10.0 * std::fabs(2.0 * unit_roundoff * value);
            if (j > group.first && value - before < least_gap) value = before + least_gap;
            before = value;
            if (!iteration.find(value, j, first, step * z.ld, j - group.first)) failed[j] = j + 1;
            std::copy(iteration.vector(), iteration.vector() + group.n, z.at(group.start, j));
        }
    }
};

/// Values follow each other in a group while their distances are below a thousandth of the block's norm.
i64 find_groups(const double* d, const double* e, i64 m, const double* w, const i64* iblock, const i64* isplit,
                Group* groups) {
    i64 count = 0;
    double tolerance = 0.0;
    for (i64 j = 0; j < m; ++j) {
        const i64 block = iblock[j] - 1, start = block > 0 ? isplit[block - 1] : 0, n = isplit[block] - start;
        const bool new_block = j == 0 || iblock[j] != iblock[j - 1];
        if (new_block) tolerance = one_norm(d + start, e + start, n, 1e-3);
        if (new_block || w[j] - w[j - 1] > tolerance) groups[count++] = {j, j, start, n};
        groups[count - 1].end = j + 1;
    }
    return count;
}

bool in_order(i64 m, const double* w, const i64* iblock, bool of_blocks) {
    for (i64 j = 1; j < m; ++j)
        if (of_blocks ? iblock[j] < iblock[j - 1] : iblock[j] == iblock[j - 1] && w[j] < w[j - 1]) return false;
    return true;
}

} // namespace

template <class T>
void stein(const i64& n, const double* d, const double* e, const i64& m, const double* w, const i64* iblock,
           const i64* isplit, T* z, const i64& ldz, double*, i64*, i64* ifail, i64& info) {
    Arguments arguments(routine<T>("STEIN"));
    arguments.size(1, n).expect(4, m >= 0 && m <= n).leading(9, ldz, n);
    if (arguments.refused(info)) return;
    arguments.expect(6, in_order(m, w, iblock, true)).expect(5, in_order(m, w, iblock, false));
    if (arguments.refused(info) || m == 0) return;
    const Scratch<Group> groups(m);
    if (!groups.data()) return refuse_for_memory(routine<T>("STEIN"), info);
    const i64 count = find_groups(d, e, m, w, iblock, isplit, groups.data());
    constexpr double least = 1e4; // elements of vectors that are worth a thread
    const double work = static_cast<double>(n) * static_cast<double>(m) / least;
    const i64 team = region_would_be_serial() || work < 2.0 ? 1 : max_threads(domain_all);
    const i64 parts = std::min({team, count, static_cast<i64>(work) + 1}), room = InverseIteration::room(n);
    const Scratch<double> space(parts * room);
    const Scratch<bool> flags(parts * n);
    if (!space.data() || !flags.data()) return refuse_for_memory(routine<T>("STEIN"), info);
    const VectorSearch<T> search{d, e, w, {z, n, m, ldz}, ifail};
    parallel_blocks(static_cast<int>(parts), static_cast<int>(parts), [&](int part) {
        for (i64 k = part; k < count; k += parts)
            search.find(groups.data()[k], space.data() + part * room, flags.data() + part * n);
    });
    for (i64 j = 0; j < m; ++j) {
        const i64 number = ifail[j];
        ifail[j] = 0;
        if (number > 0) ifail[info++] = number;
    }
}

template void stein<double>(const i64&, const double*, const double*, const i64&, const double*, const i64*, const i64*,
                            double*, const i64&, double*, i64*, i64*, i64&);
template void stein<zcomplex>(const i64&, const double*, const double*, const i64&, const double*, const i64*,
                              const i64*, zcomplex*, const i64&, double*, i64*, i64*, i64&);

} // namespace nxl
