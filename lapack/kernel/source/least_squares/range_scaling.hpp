// Matrices whose elements come near the limits of the range, moved away from them.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// A := A to / from, without leaving the range on the way where the result lies in it.
template <class T> void scale_matrix(double from, double to, const Matrix<T>& a);

/// What a matrix was scaled by: its largest modulus became `to`. Where it lies well in the range both are 1.
struct RangeScaling {
    double from = 1.0, to = 1.0;
    bool is_needed() const { return from != to; }
};
/// Brings a matrix of this largest modulus into the range in which squares and quotients of its elements stay finite.
template <class T> RangeScaling scale_into_range(double largest, const Matrix<T>& a);

} // namespace nxl
