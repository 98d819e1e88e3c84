// The second of two stages to tridiagonal form, and all of it for what is a band from the start: bulges are chased.
#pragma once
#include "lapack/kernel/source/eigen/chase_pipeline.hpp"
#include "lapack/kernel/source/eigen/chased_reflectors.hpp"
#include "service/scratch.hpp"

namespace nxl {

/// B = Q T Q^H for a symmetric or Hermitian band of order n with b >= 1 diagonals beside the main one, and, where they
/// are to be kept, the reflectors that Q is the product of. Murata and Horikoshi, Information Processing in Japan 15
/// (1975); Lang, SIAM J. Sci. Comput. 14 (1993).
template <class T> class BandReduction {
    const i64 n_, b_;
    const bool keeps_;
    const ChasePipeline pipeline_;
    const Scratch<T> band_, chased_, vectors_, tau_;

    /// Elements of a column of the band with its bulge, 0 <= i - j < 2 b, and of what parts columns: kernels touch it
    /// beyond the end of one and before the start of the next, maybe on two threads.
    i64 height() const { return 2 * (b_ + chase_rest); }

    ChasedReflectors<T> kept() const { return {n_, b_, {vectors_.data(), n_, n_, n_}, tau_.data()}; }

  public:
    BandReduction(i64 n, i64 b, bool keeps);
    /// False when there was no memory; then nothing else may be called.
    bool is_ready() const {
        return pipeline_.is_ready() && band_.data() && chased_.data() && (!keeps_ || (vectors_.data() && tau_.data()));
    }

    /// Zeros, of which elements (i, j), 0 <= i - j <= b, are to become those of B before `reduce`. Others are no
    /// elements of the matrix.
    Matrix<T> band() const { return {band_.data(), n_, n_, height() - 1}; }
    /// The diagonal of T in d(n), the off-diagonal in e(n-1).
    void reduce(double* d, double* e) const;
    /// C := Q C; false when there was no memory.
    bool multiply(const Matrix<T>& c) const { return apply_chased(kept(), c); }
    /// q := Q; false when there was no memory.
    bool form(const Matrix<T>& q) const { return form_chased(kept(), q); }
};

} // namespace nxl
