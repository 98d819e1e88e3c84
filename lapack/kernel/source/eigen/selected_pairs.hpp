// Selected eigenvalues and vectors of a matrix that has been brought to tridiagonal form.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/eigen/stebz.hpp"
#include "lapack/kernel/source/eigen/stein.hpp"
#include "lapack/kernel/source/eigen/stemr.hpp"
#include "lapack/kernel/source/eigen/steqr.hpp"
#include "lapack/kernel/source/eigen/sterf.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"

namespace nxl {

/// What an expert driver is asked for; options are capitals.
struct PairSelection {
    char jobz, range;
    i64 n;
    double vl, vu;
    i64 il, iu;
    double abstol;
    bool represented = false; // all pairs come by representations, whatever abstol

    bool vectors() const { return jobz == 'V'; }
    bool all() const { return range == 'A' || (range == 'I' && il == 1 && iu == n); }
    /// The checks of vl and vu, il, iu, at positions `first` to first + 2.
    void check(Arguments& arguments, int first) const {
        arguments.expect(first, range != 'V' || n <= 0 || vl < vu);
        arguments.expect(first + 1, range != 'I' || (il >= 1 && il <= std::max(n, i64{1})));
        arguments.expect(first + 2, range != 'I' || (iu >= std::min(n, il) && iu <= n));
    }
};

/// What comes back: m values, ascending, their vectors, and the numbers of those that have not converged.
template <class T> struct Pairs {
    i64& m;
    double* w;
    Matrix<T> z; // n by n
    i64* ifail;
    i64* isuppz = nullptr; // of vectors by representations; may be null
};

/// All pairs of T: by representations, or by QL, for which z is the matrix that has brought T about. Returns info.
template <class T> i64 find_all_pairs(const PairSelection& wanted, double* d, double* e, const Pairs<T>& pairs) {
    i64 info = 0;
    if (wanted.vectors() && wanted.represented) return stemr(wanted.n, d, e, pairs.w, pairs.z, pairs.isuppz);
    const Scratch<double> off(wanted.n);
    if (!off.data()) return -1000;
    std::copy(d, d + wanted.n, pairs.w);
    std::copy(e, e + wanted.n - 1, off.data());
    if (!wanted.vectors()) nxl_lapack_dsterf(wanted.n, pairs.w, off.data(), info);
    else steqr<T>('V', wanted.n, pairs.w, off.data(), pairs.z.data, pairs.z.ld, nullptr, info, 1);
    return info;
}

/// Of Q T Q^H, where T has diagonal d(n) and off-diagonal e(n-1), both destroyed: form_q(z) puts Q into z, multiply(z)
/// makes Q z of the vectors z of T. `scale`: by what the matrix has been multiplied. Returns info, or -1000 when there
/// was no memory. All pairs to full accuracy come by QL or representations, others, and those that these have not
/// found, by bisection and inverse iteration.
template <class T, class FormQ, class Multiply>
i64 find_pairs(const PairSelection& wanted, double scale, double* d, double* e, const Pairs<T>& pairs,
               const FormQ& form_q, const Multiply& multiply) {
    const i64 n = wanted.n;
    i64 info = 0, blocks = 0;
    const Scratch<double> work(4 * n);
    const Scratch<i64> integers(2 * n);
    if (!work.data() || !integers.data()) return -1000;
    i64 *const iblock = integers.data(), *const isplit = iblock + n;
    const auto finish = [&](i64 found) {
        pairs.m = found;
        for (i64 i = 0; i < found; ++i) pairs.w[i] /= scale;
    };
    if (wanted.all() && (wanted.represented || wanted.abstol <= 0.0)) {
        const bool turned_on = wanted.vectors() && !wanted.represented; // QL goes on from Q
        if (turned_on && !form_q(pairs.z)) return -1000;
        info = find_all_pairs(wanted, d, e, pairs);
        if (info == 0 && wanted.vectors() && !turned_on && !multiply(pairs.z)) return -1000;
        if (info == 0 && wanted.vectors() && pairs.ifail != nullptr) std::fill(pairs.ifail, pairs.ifail + n, 0);
        if (info <= 0) finish(info == 0 ? n : 0);
        if (info <= 0) return info;
    }
    nxl_lapack_dstebz(wanted.range, wanted.vectors() ? 'B' : 'E', n, scale * wanted.vl, scale * wanted.vu, wanted.il,
                      wanted.iu, scale * wanted.abstol, d, e, pairs.m, blocks, pairs.w, iblock, isplit, work.data(),
                      nullptr, info, 1, 1);
    if (wanted.vectors() && pairs.m > 0) {
        const Scratch<i64> own_failures(n);
        i64* const ifail = pairs.ifail != nullptr ? pairs.ifail : own_failures.data();
        if (!ifail) return -1000;
        for (i64 i = 0; i < pairs.m; ++i) iblock[i] = std::abs(iblock[i]);
        stein<T>(n, d, e, pairs.m, pairs.w, iblock, isplit, pairs.z.data, pairs.z.ld, nullptr, nullptr, ifail, info);
        if (info < 0 || !multiply(pairs.z.columns_from(0, pairs.m))) return -1000;
        // ifail(k) is the number of a column: while columns are exchanged, mark them instead.
        std::fill(iblock, iblock + pairs.m, 0);
        for (i64 k = 0; k < info; ++k) iblock[ifail[k] - 1] = 1;
        sort_ascending(pairs.m, pairs.w, [&](i64 i, i64 j) {
            swap(n, pairs.z.at(0, i), 1, pairs.z.at(0, j), 1);
            std::swap(iblock[i], iblock[j]);
        });
        i64 failed = 0;
        std::fill(ifail, ifail + pairs.m, 0);
        for (i64 i = 0; i < pairs.m; ++i)
            if (iblock[i] != 0) ifail[failed++] = i + 1;
    }
    finish(pairs.m);
    return info;
}

} // namespace nxl
