// Products with the reflectors by which bulges have been chased along a band.
#pragma once
#include "service/matrix.hpp"
#include "service/slice.hpp"
#include <algorithm>

namespace nxl {

/// Sweep j, 0 <= j < n - 1, has reflectors step = 0, 1, ..., b elements each but for the last one, which share rows
/// j + 1 .. n - 1. Q is their product, sweep by sweep.
template <class T> struct ChasedReflectors {
    i64 n, b;
    Matrix<T> vectors; // n by n: column j has those of sweep j in their rows, ones stored
    T* tau;

    /// Empty from where on there are no more.
    Slice rows(i64 j, i64 step) const {
        const i64 start = std::min(j + 1 + step * b, n);
        return {start, std::min(b, n - start)};
    }
    /// Those of one step and sweeps j, j + 1, ...
    T* scalars(i64 j, i64 step) const { return tau + step * n + j; }
};

/// C := Q C on all threads, each with columns of its own. False when there was no memory, with nothing changed.
template <class T> bool apply_chased(const ChasedReflectors<T>& q, const Matrix<T>& c);
/// to := Q
template <class T> bool form_chased(const ChasedReflectors<T>& q, const Matrix<T>& to);

} // namespace nxl
