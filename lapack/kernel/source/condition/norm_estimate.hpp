// An estimate of the 1-norm of a matrix that is only known by its products with vectors, such as an inverse.
// Hager, SIAM J. Sci. Stat. Comput. 5 (1984); Higham, ACM Trans. Math. Software 14 (1988), algorithm 4.1.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Climbs over the columns of B: the gradient of the norm of B x at the best x so far names the column to try next. A
/// last product with a vector of alternating signs catches what the climb misses by cancellation.
///
///     NormEstimate<T> estimate(n, v, x);
///     while (const auto wanted = estimate.step()) multiply x by B, or by its adjoint;
///     use estimate.value();
template <class T> class NormEstimate {
  public:
    enum Wanted : int { nothing = 0, product = 1, adjoint_product = 2 };

    /// `v` and `x`: n elements each; v becomes a vector with the norm of B w over that of w being the estimate.
    NormEstimate(i64 n, T* v, T* x) : n_(n), v_(v), x_(x) {}

    /// What the caller is to do to x before the next step.
    Wanted step();
    double value() const { return value_; }

  private:
    enum class Stage { start, mean, gradient, column, other_gradient, alternating, finished };

    Wanted take_signs();
    Wanted try_column(i64 j);
    Wanted try_alternating();
    Wanted judge_column();
    i64 largest() const;

    const i64 n_;
    T* const v_;
    T* const x_;
    Stage stage_ = Stage::start;
    i64 column_ = 0, tried_ = 0;
    double value_ = 0.0;
};

} // namespace nxl
