// A few columns of the lower triangle of a band side by side, for interchanges on the way: most of their elements are a
// rectangle, which one product takes in a single pass over the vector.
//
//     \ . . .
//     o \ . .   edge
//     o o \ .
//     o o o \
//     * * * *
//     * * * *   rectangle
//     . # # #
//     . . # #   edge
//     . . . #
#pragma once
#include "lapack/kernel/source/band/narrow_columns.hpp"
#include "lapack/kernel/source/common/columns.hpp"
#include "lapack/kernel/source/common/vector_product.hpp"
#include "service/slice.hpp"

namespace nxl {

template <class T> class Strip {
    const Columns<const T> off_; // without the diagonal

    /// Calls body(first row, count) for the elements of column c that are not in the rectangle.
    template <class Body> void for_edges(i64 c, const Body& body) const {
        const i64 first = off_.first(c), end = off_.end(c);
        const i64 before = std::min(rectangle.start, end), after = std::max(rectangle.end(), first);
        if (before > first) body(first, before - first);
        if (end > after) body(after, end - after);
    }

  public:
    static constexpr i64 most = 8;   // columns that the product takes at once
    static constexpr i64 least = 96; // diagonals beside the main one from which on a strip beats its columns one by one

    const Slice columns, rectangle; // the rectangle's rows

    Strip(const Columns<const T>& off, const Slice& of) : off_(off), columns(of), rectangle(rows_of_rectangle()) {}

    /// x := x - column c times x(c)
    void subtract_edges(i64 c, T* x) const {
        for_edges(c, [&](i64 row, i64 count) { subtract_multiple(count, x[c], off_.a.at(row, c), x + row); });
    }
    T edge_dot(bool conjugate, i64 c, const T* x) const {
        T sum{};
        for_edges(c, [&](i64 row, i64 count) { sum += column_dot(conjugate, count, off_.a.at(row, c), x + row); });
        return sum;
    }
    /// The rectangle's rows of x, for N, or the columns' own.
    void subtract_rectangle(char trans, T* x) const {
        if (rectangle.count == 0) return;
        const Matrix<const T> part = off_.a.block(rectangle.start, columns.start, rectangle.count, columns.count);
        if (trans == 'N') subtract_vector_product('N', part, x + columns.start, x + rectangle.start);
        else subtract_vector_product(trans, part, x + rectangle.start, x + columns.start);
    }

  private:
    /// What all columns have, beyond their own rows.
    Slice rows_of_rectangle() const {
        return {columns.end(), std::max(off_.end(columns.start) - columns.end(), i64{0})};
    }
};

/// Calls body(columns) for strips of n columns, from the first on or from the last.
template <class T, class Body> void for_strips(i64 n, bool ascending, const Body& body) {
    const i64 strips = (n + Strip<T>::most - 1) / Strip<T>::most;
    for (i64 step = 0; step < strips; ++step) {
        const i64 j = (ascending ? step : strips - 1 - step) * Strip<T>::most;
        body(Slice{j, std::min(Strip<T>::most, n - j)});
    }
}

} // namespace nxl
