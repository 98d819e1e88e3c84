// dsbtrd, zhbtrd. Column after column is annihilated beyond its off-diagonal by a reflector, which leaves a bulge below
// the band:
//
//     s        columns s .. s + kd - 1 turn: the block D on the diagonal from both sides, the block C below it from
//     D        the right, which fills its lower triangle. Of that, only the first column is annihilated, by the next
//     C D      reflector, which chases what follows kd rows further; the rest makes room for the bulge of the next
//       C D    sweep.
//
// Murata and Horikoshi, Information Processing in Japan 15 (1975); Lang, SIAM J. Sci. Comput. 14 (1993).
#include "lapack/kernel/source/eigen/sbtrd.hpp"
#include "lapack/kernel/source/common/norms.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/eigen/two_sided.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/threads.hpp"

namespace nxl {

template <class T> double HermitianBand<T>::largest() const {
    return symmetric_norm<T>('M', triangular_band_of(uplo, ab, ldab, n, kd), true, nullptr);
}

namespace {

/// The reflectors: those of sweep j share its rows j + 1 .. n - 1, b each but for the last one.
template <class T> struct Sweeps {
    i64 n, b;
    Matrix<T> vectors; // of sweep j in column j; ones are stored
    T* tau;

    i64 steps_of(i64 j) const { return (n - 1 - j + b - 1) / b; }
    Slice rows(i64 j, i64 step) const {
        const i64 start = j + 1 + step * b;
        return {start, std::min(b, n - start)};
    }
    T& scalar(i64 j, i64 step) const { return tau[step * n + j]; }
};

/// The band, with room for bulges: element (i, j) for 0 <= i - j < 2 b.
template <class T> class BandReduction {
    const i64 n_, b_;
    const Matrix<T> a_;
    T* const work_; // 2 b
    T* const vector_;
    const Sweeps<T>* const kept_;

    /// Annihilates column `column` of rows beyond the first; v becomes the reflector.
    T annihilate(const Slice& rows, i64 column, T* v) const {
        T* const x = a_.at(rows.start, column);
        const T tau = make_reflector(rows.count - 1, x[0], x + 1, 1);
        v[0] = 1.0;
        std::copy(x + 1, x + rows.count, v + 1);
        std::fill(x + 1, x + rows.count, T{});
        return tau;
    }
    void keep(i64 sweep, i64 step, const Slice& rows, const T* v, const T& tau) const {
        if (!kept_) return;
        std::copy(v, v + rows.count, kept_->vectors.at(rows.start, sweep));
        kept_->scalar(sweep, step) = tau;
    }

  public:
    BandReduction(i64 n, i64 b, T* band, T* work, const Sweeps<T>* kept)
        : n_(n),
          b_(b),
          a_{band, n, n, 2 * b},
          work_(work),
          vector_(work + 2 * b),
          kept_(kept) {}
    static constexpr i64 room(i64 b) { return 3 * b; }

    void sweep(i64 j) const {
        const Sweeps<T> shape{n_, b_, {}, nullptr};
        Slice rows = shape.rows(j, 0);
        T tau = annihilate(rows, j, vector_);
        for (i64 step = 0;; ++step) {
            keep(j, step, rows, vector_, tau);
            reflect_both_sides('L', a_.block(rows.start, rows.start, rows.count, rows.count), vector_, tau, work_);
            const i64 below = std::min(b_, n_ - rows.end());
            if (below == 0) return;
            const Matrix<T> c = a_.block(rows.end(), rows.start, below, rows.count);
            apply_reflector('R', vector_, 1, tau, c, work_);
            const Slice next{rows.end(), below};
            tau = annihilate(next, rows.start, vector_);
            apply_reflector('L', vector_, 1, conj_if(true, tau), c.columns_from(1, rows.count - 1), work_);
            rows = next;
        }
    }
};

/// Q := I, turned by all reflectors in their order; rows are independent of each other.
template <class T> bool accumulate(const Sweeps<T>& sweeps, const Matrix<T>& q) {
    constexpr i64 chunk = 64 * i64{sizeof(double)} / i64{sizeof(T)}; // rows whose columns stay in a cache
    const i64 n = q.rows, chunks = (n + chunk - 1) / chunk;
    const Scratch<T> work(chunks * chunk);
    if (!work.data()) return false;
    const int threads = region_would_be_serial() || chunks < 4 ? 1 : max_threads(domain_all);
    parallel_blocks(threads, static_cast<int>(chunks), [&](int part) {
        const Matrix<T> mine = q.rows_from(part * chunk, std::min(chunk, n - part * chunk));
        for (i64 j = 0; j < n; ++j) {
            std::fill(mine.at(0, j), mine.at(0, j) + mine.rows, T{});
            if (j >= part * chunk && j < part * chunk + mine.rows) mine(j - part * chunk, j) = T(1.0);
        }
        for (i64 j = 0; j + 1 < n; ++j)
            for (i64 step = 0; step < sweeps.steps_of(j); ++step) {
                const Slice columns = sweeps.rows(j, step);
                const T tau = sweeps.scalar(j, step);
                if (tau == T{}) continue;
                apply_reflector('R', sweeps.vectors.at(columns.start, j), 1, tau,
                                mine.columns_from(columns.start, columns.count), work.data() + part * chunk);
            }
    });
    return true;
}

} // namespace

template <class T> void tridiagonal_band(const HermitianBand<T>& a, double scale, double* d, double* e, T* q) {
    for (i64 j = 0; j < a.n; ++j) d[j] = scale * real_part(a.lower(j, j));
    q[0] = 1.0;
    for (i64 j = 0; j + 1 < a.n; ++j) {
        const T off = a.kd < 1 ? T{} : scale * a.lower(j + 1, j);
        q[j + 1] = q[j] * (is_complex_scalar<T> ? sign_of(off) : T(1.0));
        e[j] = real_part(conj_if(true, q[j + 1]) * off * q[j]);
    }
}

template <class T>
bool sbtrd(const HermitianBand<T>& a, double scale, double* d, double* e, bool wants_q, const Matrix<T>& q) {
    const i64 n = a.n, b = std::clamp(a.kd, i64{1}, std::max(n - 1, i64{1})), height = 2 * b + 1;
    if (b == 1) {
        const Scratch<T> diagonal(n);
        if (!diagonal.data()) return false;
        tridiagonal_band(a, scale, d, e, diagonal.data());
        for (i64 j = 0; j < n && wants_q; ++j) {
            std::fill(q.at(0, j), q.at(0, j) + n, T{});
            q(j, j) = diagonal.data()[j];
        }
        return true;
    }
    const Scratch<T> band(n * height), work(BandReduction<T>::room(b));
    const Scratch<T> vectors(wants_q ? n * n : 0), tau(wants_q ? n * ((n - 1) / b + 1) : 0);
    if (!band.data() || !work.data() || (wants_q && (!vectors.data() || !tau.data()))) return false;
    for (i64 j = 0; j < n; ++j) {
        T* const column = band.data() + j * height;
        std::fill(column, column + height, T{});
        for (i64 i = j; i < std::min(n, j + std::min(a.kd, b) + 1); ++i) column[i - j] = scale * a.lower(i, j);
        column[0] = real_part(column[0]);
    }
    const Sweeps<T> sweeps{n, b, {vectors.data(), n, n, n}, tau.data()};
    const BandReduction<T> reduction(n, b, band.data(), work.data(), wants_q ? &sweeps : nullptr);
    for (i64 j = 0; j + 1 < n; ++j) reduction.sweep(j);
    for (i64 j = 0; j < n; ++j) {
        d[j] = real_part(band.data()[j * height]);
        if (j + 1 < n) e[j] = real_part(band.data()[j * height + 1]);
    }
    return !wants_q || accumulate(sweeps, q);
}

template void tridiagonal_band<double>(const HermitianBand<double>&, double, double*, double*, double*);
template void tridiagonal_band<zcomplex>(const HermitianBand<zcomplex>&, double, double*, double*, zcomplex*);
template struct HermitianBand<double>;
template struct HermitianBand<zcomplex>;
template bool sbtrd<double>(const HermitianBand<double>&, double, double*, double*, bool, const Matrix<double>&);
template bool sbtrd<zcomplex>(const HermitianBand<zcomplex>&, double, double*, double*, bool, const Matrix<zcomplex>&);

} // namespace nxl
