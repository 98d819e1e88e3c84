// The steps of the estimate. For real matrices v keeps the signs of the last product, and the climb ends when they come
// again.
#include "lapack/kernel/source/condition/norm_estimate.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <algorithm>

namespace nxl {
namespace {

constexpr i64 most_columns = 5; // tried by the climb; it hardly ever takes more than three

template <class T> double sum_of_sizes(i64 n, const T* x) {
    double sum = 0.0;
    for (i64 i = 0; i < n; ++i) sum += std::abs(x[i]);
    return sum;
}

} // namespace

/// The column with the largest gradient; a NaN is never larger.
template <class T> i64 NormEstimate<T>::largest() const {
    i64 best = 0;
    for (i64 i = 1; i < n_; ++i)
        if (std::abs(x_[i]) > std::abs(x_[best])) best = i;
    return best;
}

template <class T> auto NormEstimate<T>::take_signs() -> Wanted {
    for (i64 i = 0; i < n_; ++i) x_[i] = sign_of(x_[i]);
    return adjoint_product;
}

template <class T> auto NormEstimate<T>::try_column(i64 j) -> Wanted {
    stage_ = Stage::column;
    column_ = j;
    ++tried_;
    std::fill_n(x_, n_, T{});
    x_[j] = 1.0;
    return product;
}

template <class T> auto NormEstimate<T>::try_alternating() -> Wanted {
    stage_ = Stage::alternating;
    double sign = 1.0;
    for (i64 i = 0; i < n_; ++i, sign = -sign)
        x_[i] = sign * (1.0 + static_cast<double>(i) / static_cast<double>(n_ - 1));
    return product;
}

/// x is a column of B, and v the best product so far.
template <class T> auto NormEstimate<T>::judge_column() -> Wanted {
    bool same_signs = sizeof(T) == sizeof(double);
    for (i64 i = 0; i < n_ && same_signs; ++i) same_signs = sign_of(x_[i]) == sign_of(v_[i]);
    const double found = sum_of_sizes(n_, x_);
    const bool climbed = found > value_;
    if (climbed) {
        std::copy_n(x_, n_, v_);
        value_ = found;
    }
    if (same_signs || !climbed) return try_alternating();
    stage_ = Stage::other_gradient;
    return take_signs();
}

template <class T> auto NormEstimate<T>::step() -> Wanted {
    switch (stage_) {
    case Stage::start:
        std::fill_n(x_, n_, T(1.0 / static_cast<double>(n_)));
        stage_ = Stage::mean;
        return product;
    case Stage::mean:
        std::copy_n(x_, n_, v_);
        value_ = sum_of_sizes(n_, x_);
        if (n_ == 1) break;
        stage_ = Stage::gradient;
        return take_signs();
    case Stage::gradient: return try_column(largest());
    case Stage::column: return judge_column();
    case Stage::other_gradient: {
        const i64 next = largest();
        if (tried_ < most_columns && std::abs(x_[column_]) != std::abs(x_[next])) return try_column(next);
        return try_alternating();
    }
    case Stage::alternating: {
        const double alternative = 2.0 * (sum_of_sizes(n_, x_) / (3.0 * static_cast<double>(n_)));
        if (!(alternative > value_)) break;
        std::copy_n(x_, n_, v_);
        value_ = alternative;
        break;
    }
    case Stage::finished: break;
    }
    stage_ = Stage::finished;
    return nothing;
}

template class NormEstimate<double>;
template class NormEstimate<zcomplex>;

} // namespace nxl
