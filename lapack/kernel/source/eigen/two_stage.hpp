// Reduction to tridiagonal form in two stages, by way of a band: nearly all of the first is matrix products, where half
// of sytrd is products with a vector, at the speed of memory. In return, vectors have to be multiplied twice.
#pragma once
#include "lapack/kernel/source/eigen/band_to_tridiagonal.hpp"
#include "lapack/kernel/source/eigen/full_to_band.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"

namespace nxl {

/// Diagonals beside the main one of the band in between. With fewer, products are slower; with more, bulges are longer.
inline constexpr i64 two_stage_width = 32;

/// The order from which values alone are found sooner this way. On one thread of a Xeon with 512-bit registers the
/// reduction takes as long as the other way for n = 500, 0.9 of that for 700, 0.6 for 1000, 0.5 for 2000.
inline constexpr i64 two_stage_order = 600;
/// The same with vectors, of which each is multiplied twice, and one in how many is the most: reduction and products of
/// a tenth of them take 1.1 of the other way's time for n = 700, 0.75 for 1000, 0.65 for 2000; of a quarter, 1.0 for
/// 1000.
inline constexpr i64 two_stage_order_for_vectors = 900, two_stage_share = 6;

/// A = Q T Q^H of a symmetric or Hermitian matrix of which triangle `uplo` is stored. With `keeps` that keeps a part of
/// Q, otherwise it is destroyed.
template <class T> class TwoStageReduction {
    const char uplo_;
    const Matrix<T> a_;
    const i64 b_;
    const BandReduction<T> band_;
    const Scratch<T> tau_;

  public:
    /// b >= 1
    TwoStageReduction(char uplo, const Matrix<T>& a, i64 b, bool keeps)
        : uplo_(uplo),
          a_(a),
          b_(b),
          band_(a.rows, b, keeps),
          tau_(a.rows) {}

    /// The diagonal of T in d(n), the off-diagonal in e(n-1). False when there was no memory, with A as it was.
    bool reduce(double* d, double* e) const {
        if (!band_.is_ready() || !tau_.data() || !full_to_band(uplo_, a_, b_, tau_.data(), band_.band())) return false;
        band_.reduce(d, e);
        return true;
    }
    /// C := Q C; false when there was no memory.
    bool multiply(const Matrix<T>& c) const {
        const i64 rest = a_.rows - b_;
        if (!band_.multiply(c)) return false;
        return rest <= 0 ||
               apply_reflectors('L', false, band_reflectors(uplo_, a_, b_), tau_.data(), c.rows_from(b_, rest));
    }
};

} // namespace nxl
