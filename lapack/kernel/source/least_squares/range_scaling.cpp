// Scaling in steps that are each within the range.
#include "lapack/kernel/source/least_squares/range_scaling.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <cmath>

namespace nxl {
namespace {

constexpr double small = safe_minimum / (2.0 * unit_roundoff), large = 1.0 / small;

/// One factor of to / from, after which the two are nearer to each other.
double next_factor(double& from, double& to) {
    if (const double ratio = to / from; std::fabs(ratio) >= safe_minimum && std::fabs(ratio) <= 1.0 / safe_minimum) {
        to = from;
        return ratio;
    }
    if (std::fabs(to) < std::fabs(from)) {
        from *= small;
        return small;
    }
    to *= small;
    return large;
}

} // namespace

template <class T> void scale_matrix(double from, double to, const Matrix<T>& a) {
    while (from != to) {
        const double factor = next_factor(from, to);
        for (i64 j = 0; j < a.columns; ++j)
            for (i64 i = 0; i < a.rows; ++i) a(i, j) *= factor;
    }
}

template <class T> RangeScaling scale_into_range(double largest, const Matrix<T>& a) {
    RangeScaling scaling;
    if (largest > 0.0 && largest < small) scaling = {largest, small};
    else if (largest > large && std::isfinite(largest)) scaling = {largest, large};
    if (scaling.is_needed()) scale_matrix(scaling.from, scaling.to, a);
    return scaling;
}

#define NXL_INSTANTIATE(T)                                                                                             \
    template void scale_matrix(double, double, const Matrix<T>&);                                                      \
    template RangeScaling scale_into_range(double, const Matrix<T>&)
NXL_INSTANTIATE(double);
NXL_INSTANTIATE(zcomplex);
#undef NXL_INSTANTIATE

} // namespace nxl
