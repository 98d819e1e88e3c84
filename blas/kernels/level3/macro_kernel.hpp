// A packed block of A times a panel of B, packed or in place: what all products of level 3 come to.
#pragma once
#include "blas/kernels/level3/pack.hpp"
#include "blas/kernels/level3/result.hpp"

namespace nxl::NXL_TARGET {

/// A block of A in panels, alpha included.
struct BlockA {
    const double* panels;
    i64 stride; // doubles between panels
    i64 rows;   // of the matrix
    i64 k;
};

/// A packed panel of B.
template <class T> struct PanelB {
    const double* panels;
    i64 stride;
    i64 columns;

    static i64 steps(i64 k) { return padded<T>(k); }

    /// From column c on, where a panel or half a panel starts.
    [[gnu::always_inline]] PackedB operator()(i64 c) const {
        constexpr i64 width = kPanelColumns<T>;
        const i64 panel = c / width, first = panel * width;
        const i64 here = columns - first < width ? columns - first : width;
        return {panels + panel * stride + (c - first) * kParts<T>, here * kParts<T>};
    }
    /// The panels that follow column c, or the first ones: one of `shares` parts of `wide` columns.
    [[gnu::always_inline]] LinesAhead ahead(i64 c, i64 wide, i64 shares) const {
        const i64 panel = c < columns ? c / kPanelColumns<T> : 0;
        const i64 lines = wide * stride / (kPanelColumns<T> * LinesAhead::line);
        return {panels + panel * stride, lines / shares + 1};
    }
    /// 8 real columns from column c on.
    static constexpr int pair_step = kPanelColumns<T> * kParts<T>;
    [[gnu::always_inline]] PackedPairs<pair_step> pairs(i64 c) const {
        const double* const at = panels + c / kPanelColumns<T> * stride;
        return {at, pair_step == 8 ? at + kPanel : at + stride};
    }
};

/// Panels packed as those of a first operand, as the second operand of a product. Unlike those of a packed B, the last
/// one is as wide as the others.
template <class T> struct PanelsAsB {
    const double* panels;
    i64 stride;
    i64 columns;

    static i64 steps(i64 k) { return k; }
    [[gnu::always_inline]] PackedB operator()(i64 c) const {
        return {panels + group_offset<kTallPanel>(c / kPanelRows<T>, stride), kTallPanel};
    }
    [[gnu::always_inline]] PackedPairs<kPanel> pairs(i64 c) const {
        const double* const at = panels + c / kPanelRows<T> * stride;
        return {at, at + stride};
    }
};

/// B in place, contiguous along k.
template <class T> struct ColumnsInPlace {
    Source<T> from;
    i64 columns;

    static i64 steps(i64 k) { return k; }

    [[gnu::always_inline]] PlacedB<T> operator()(i64 c) const {
        return {parts(from.data + c * from.along_r), from.along_r * kParts<T>};
    }
};

/// B in place, transposed: the columns of a step of k are neighbours, as in a packed panel.
template <class T> struct RowsInPlace {
    Source<T> from;
    i64 columns;

    static i64 steps(i64 k) { return k; }

    [[gnu::always_inline]] PackedB operator()(i64 c) const { return {parts(from.data + c), from.along_p * kParts<T>}; }
};

/// Where in C, in rows and columns, and how many of them.
struct Place {
    i64 i, rows, j, columns;
};

/// C from row i and column j on takes the product of a block of A and all columns of B. `strip`: 64 bytes per step of
/// k, for narrow registers alone. Compiled once, in macro_kernel.cpp, for all four kinds of B.
template <class T, class ColumnsB>
void multiply_block(const BlockA& a, const ColumnsB& b, double* strip, const Result<T>& to, i64 i, i64 j);

/// The same with B in place.
template <class T>
void multiply_in_place(const BlockA& a, const Source<T>& b, i64 columns, double* strip, const Result<T>& to, i64 i,
                       i64 j) {
    if (b.along_p == 1) multiply_block<T>(a, ColumnsInPlace<T>{b, columns}, strip, to, i, j);
    else multiply_block<T>(a, RowsInPlace<T>{b, columns}, strip, to, i, j);
}

} // namespace nxl::NXL_TARGET
