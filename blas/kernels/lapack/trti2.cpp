// dtrti2, ztrti2: inverse of a small triangle, a tile at a time and without other blocks.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/small_tiles.hpp"

namespace nxl::NXL_TARGET {
namespace {

// The inverse X of an upper triangle, by block columns of 8 real numbers from the left:
//
//     X X | a        each tile above the diagonal becomes  - X a D
//       X | a            X: inverse of the blocks before, done     a: what stands above the diagonal
//     ----+---           D: inverse of the block on the diagonal, of this block column
//         | D
//
// Tiles go from the top: tile r reads a from its own rows on downward, which are still to come. Each is a product in
// registers; nothing is allocated and no other kernel called.
/// A triangle in place. What is outside it, and a unit diagonal, is neither read nor written.
template <bool Upper, class T> struct Triangle {
    T* a;
    i64 lda;
    bool unit;

    T* at(i64 row, i64 column) const { return a + row + column * lda; }

    /// A block on the diagonal with zeros beside the triangle.
    void read_diagonal(i64 first, i64 size, Tile<T>& to) const {
        for (i64 j = 0; j < size; ++j) {
            for (i64 i = Upper ? 0 : j + 1; i < (Upper ? j : size); ++i) to.at(i, j) = *at(first + i, first + j);
            to.at(j, j) = unit ? from_real<T>(1.0) : *at(first + j, first + j);
        }
    }
    void write_diagonal(i64 first, i64 size, Tile<T>& from) const {
        for (i64 j = 0; j < size; ++j) {
            for (i64 i = Upper ? 0 : j + 1; i < (Upper ? j : size); ++i) *at(first + i, first + j) = from.at(i, j);
            if (!unit) *at(first + j, first + j) = from.at(j, j);
        }
    }
};

/// Column j of the inverse of an upper triangle is -X a / a(j, j), where X is the inverse so far and a what stands
/// above a(j, j). A lower triangle is an upper one with rows and columns counted from the end.
template <bool Upper, class T> void invert_tile(i64 size, Tile<T>& tile) {
    const auto at = [&](i64 i, i64 j) -> T& { return Upper ? tile.at(i, j) : tile.at(size - 1 - i, size - 1 - j); };
    for (i64 j = 0; j < size; ++j) {
        const T inverse = reciprocal(at(j, j));
        at(j, j) = inverse;
        for (i64 i = 0; i < j; ++i) {
            T sum = at(i, i) * at(i, j);
            for (i64 p = i + 1; p < j; ++p) sum = sum + at(i, p) * at(p, j);
            at(i, j) = -(sum * inverse);
        }
    }
}

/// The tile from (row, column) on becomes -X a D. X is what has been inverted of its rows: a block on the diagonal and
/// `steps` columns from `step` on; a is what stands in the same columns of the triangle; D, `diagonal`, is the inverse
/// of the block on the diagonal that the tile's columns have.
template <bool Upper, class T>
void invert_beside(const Triangle<Upper, T>& triangle, i64 row, i64 step, i64 steps, i64 column, i64 columns,
                   const Tile<T>& diagonal) {
    Tile<T> own, product, result;
    triangle.read_diagonal(row, kTile<T>, own);
    add_tile(kTile<T>, columns, TileRows<T>{own.element, kTile<T>},
             TileFactors<T>{triangle.at(row, column), 1, triangle.lda}, product);
    add_tile(steps, columns, TileRows<T>{triangle.at(row, step), triangle.lda},
             TileFactors<T>{triangle.at(step, column), 1, triangle.lda}, product);
    add_tile(columns, columns, TileRows<T>{product.element, kTile<T>}, TileFactors<T>{diagonal.element, 1, kTile<T>},
             result);
    for (i64 c = 0; c < columns; ++c)
        for (i64 r = 0; r < kTile<T>; ++r) *triangle.at(row + r, column + c) = -result.at(r, c);
}

/// Blocks of columns from the corner where they are shortest; of those, only the last is narrower than a tile.
template <bool Upper, class T> void trti2(i64 n, const Triangle<Upper, T>& triangle) {
    constexpr i64 width = kTile<T>;
    for (i64 done = 0; done < n; done += width) {
        const i64 columns = smaller(width, n - done), column = Upper ? done : n - done - columns;
        Tile<T> diagonal;
        triangle.read_diagonal(column, columns, diagonal);
        invert_tile<Upper>(columns, diagonal);
        for (i64 r = 0; r < done; r += width) { // each tile needs those that are still to come
            const i64 row = Upper ? r : n - r - width;
            if constexpr (Upper)
                invert_beside(triangle, row, row + width, done - row - width, column, columns, diagonal);
            else invert_beside(triangle, row, column + columns, row - column - columns, column, columns, diagonal);
        }
        triangle.write_diagonal(column, columns, diagonal);
    }
}

/// The same for a diagonal that is to be divided by, row by row: x_ij is -(a_ij / a_ii + sum of x_ik a_kj) / a_jj, the
/// sum over the columns between them. A lower triangle again counts from the end.
template <bool Upper, class T> void invert_by_quotients(i64 n, const Triangle<Upper, T>& triangle) {
    const auto at = [&](i64 i, i64 j) -> T& {
        return *(Upper ? triangle.at(i, j) : triangle.at(n - 1 - i, n - 1 - j));
    };
    for (i64 i = 0; i < n; ++i) {
        const T own = at(i, i);
        at(i, i) = from_real<T>(1.0) / own;
        for (i64 j = i + 1; j < n; ++j) {
            T sum = at(i, j) / own;
            for (i64 k = i + 1; k < j; ++k) sum = sum + at(i, k) * at(k, j);
            at(i, j) = -(sum / at(j, j));
        }
    }
}

template <bool Upper, class T> void invert(i64 n, const Triangle<Upper, T>& triangle) {
    bool invertible = true;
    for (i64 j = 0; j < n && !triangle.unit; ++j) invertible = invertible && has_reciprocal(*triangle.at(j, j));
    if (invertible) trti2(n, triangle);
    else invert_by_quotients(n, triangle);
}

template <class T> void invert_triangle(char uplo, char diag, i64 n, T* a, i64 lda) {
    const bool unit = diag == 'U';
    if (uplo == 'U') invert(n, Triangle<true, T>{a, lda, unit});
    else invert(n, Triangle<false, T>{a, lda, unit});
}

} // namespace

void dtrti2(const char& uplo, const char& diag, const i64& n, double* a, const i64& lda) {
    invert_triangle(uplo, diag, n, a, lda);
}

void ztrti2(const char& uplo, const char& diag, const i64& n, zcomplex* a, const i64& lda) {
    invert_triangle(uplo, diag, n, scalars(a), lda);
}

} // namespace nxl::NXL_TARGET
