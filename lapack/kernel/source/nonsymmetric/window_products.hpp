// What a window on the diagonal has been turned by, applied to all that is beside it.
#pragma once
#include "blas/calls.hpp"
#include "lapack/kernel/source/nonsymmetric/schur.hpp"
#include <algorithm>

namespace nxl {

template <class T> class WindowProducts {
    const SchurIteration<T>& s_;
    T* const buffer_; // as many elements as H, or Z, has in the rows or columns of a window

    void put_back(const Matrix<T>& c) const {
        for (i64 j = 0; j < c.columns; ++j) std::copy_n(buffer_ + j * c.rows, c.rows, c.at(0, j));
    }
    /// C := C U
    void turn_columns(const Matrix<T>& c, const Operand<T>& u) const {
        if (c.rows == 0) return;
        gemm('N', 'N', 1.0, c, u, 0.0, Matrix<T>{buffer_, c.rows, c.columns, c.rows});
        put_back(c);
    }
    /// C := U^H C
    void turn_rows(const Matrix<T>& c, const Operand<T>& u) const {
        if (c.columns == 0) return;
        gemm('C', 'N', 1.0, u, c, 0.0, Matrix<T>{buffer_, c.rows, c.columns, c.rows});
        put_back(c);
    }

  public:
    WindowProducts(const SchurIteration<T>& s, T* buffer) : s_(s), buffer_(buffer) {}

    /// The window begins at row `at` of the active block first .. end - 1 and is of U's order.
    void apply(i64 first, i64 end, i64 at, const Operand<T>& u) const {
        const i64 order = u.columns, next = at + order, top = s_.start_of_rows(first);
        turn_rows(s_.h.block(at, next, order, s_.end_of_columns(end) - next), u);
        turn_columns(s_.h.block(top, at, at - top, order), u);
        turn_columns(s_.z.columns_from(at, order), u);
    }
};

} // namespace nxl
