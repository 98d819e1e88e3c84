// A view of a matrix: columns one after the other, `ld` elements apart. Positions are from 0.
//
//          j     j + c
//     +----+-----+----+
//     |    |     |    |      block(i, j, r, c) is the middle,
//   i +----+-----+----+      from(i, j) all from its first element on, right and below,
//     |    |  #  |    |      columns_from(j, c) its columns in full, rows_from(i, r) its rows.
//     +----+-----+----+ i + r
#pragma once
#include "service/types.hpp"
#include <type_traits>

namespace nxl {

template <class T> struct Matrix {
    T* data;
    i64 rows, columns, ld;

    T* at(i64 i, i64 j) const { return data + i + j * ld; }
    T& operator()(i64 i, i64 j) const { return *at(i, j); }
    i64 steps() const { return rows < columns ? rows : columns; } // elements on the diagonal

    Matrix block(i64 i, i64 j, i64 block_rows, i64 block_columns) const {
        return {at(i, j), block_rows, block_columns, ld};
    }
    Matrix from(i64 i, i64 j) const { return block(i, j, rows - i, columns - j); }
    Matrix columns_from(i64 j, i64 count) const { return block(0, j, rows, count); }
    Matrix rows_from(i64 i, i64 count) const { return block(i, 0, count, columns); }

    operator Matrix<const T>() const
        requires(!std::is_const_v<T>)
    {
        return {data, rows, columns, ld};
    }
};

/// An operand that is read, and does not decide what T is.
template <class T> using Operand = std::type_identity_t<Matrix<const T>>;

} // namespace nxl
