// dlauu2, zlauu2: U U^H or L^H L of a small triangle, in its place, a tile at a time and without other blocks.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/small_tiles.hpp"

namespace nxl::NXL_TARGET {
namespace {

// U U^H by block columns of 8 real numbers, from the left. J stands for the rows and for the columns of one block:
//
//          J
//     . .  x  u u      tile x, rows I above J:    u of rows I times the conjugate transpose of p, columns from J on
//       .  x  u u      panel p, rows J:           copied, with zeros left of the diagonal
//          p  p p      tile on the diagonal:      p times its own conjugate transpose
//             . .
//               .      Column block J alone is written. Later ones read only what stands right of it.
//
// The sums of a tile stay in registers; the triangle, 16 KiB of real numbers at order 64, in the first cache.
constexpr i64 kLargest = 64; // order of a triangle

/// Rows first .. first + size - 1 of U, or of L^H, from the diagonal on: kTile rows, zeros left of the diagonal and
/// below the last row. The diagonal of a factor is real.
template <class T> struct Panel {
    T element[kTile<T> * kLargest];

    [[gnu::always_inline]] T& at(i64 row, i64 column) { return element[row + column * kTile<T>]; }

    template <bool Upper> void read(i64 n, const T* a, i64 lda, i64 first, i64 size) {
        const T* const corner = a + first * (lda + 1);
        for (i64 k = 0; k < n - first; ++k)
            for (i64 r = 0; r < kTile<T>; ++r) {
                if (r >= size || r > k) at(r, k) = from_real<T>(0.0);
                else if (r == k) at(r, k) = from_real<T>(real_part(corner[r * (lda + 1)]));
                else at(r, k) = Upper ? corner[r + k * lda] : conj(corner[k + r * lda]);
            }
    }
};

/// The panel times its own conjugate transpose: the block on the diagonal.
template <bool Upper, class T> void write_diagonal(i64 steps, i64 size, Panel<T>& panel, T* corner, i64 lda) {
    Tile<T> tile;
    add_tile<true>(steps, size, TileRows<T>{panel.element, kTile<T>}, TileFactors<T>{panel.element, kTile<T>, 1}, tile);
    for (i64 j = 0; j < size; ++j) {
        for (i64 i = Upper ? 0 : j + 1; i < (Upper ? j : size); ++i) corner[i + j * lda] = tile.at(i, j);
        corner[j * (lda + 1)] = from_real<T>(real_part(tile.at(j, j)));
    }
}

/// Block columns of U U^H from the left, or block rows of L^H L from the top: each takes the place of what none of the
/// later ones needs. Its panel is one factor of all its tiles.
template <bool Upper, class T> void lauu2(i64 n, T* a, i64 lda) {
    constexpr i64 width = kTile<T>;
    Panel<T> panel;
    for (i64 first = 0; first < n; first += width) {
        const i64 size = smaller(width, n - first), steps = n - first;
        panel.template read<Upper>(n, a, lda, first, size);
        for (i64 other = 0; other < first; other += width) {
            Tile<T> tile;
            if constexpr (Upper)
                add_tile<true>(steps, size, TileRows<T>{a + other + first * lda, lda},
                               TileFactors<T>{panel.element, width, 1}, tile);
            else
                add_tile(steps, width, TileRows<T>{panel.element, width},
                         TileFactors<T>{a + first + other * lda, 1, lda}, tile);
            const i64 rows = Upper ? width : size, columns = Upper ? size : width;
            T* const to = Upper ? a + other + first * lda : a + first + other * lda;
            for (i64 c = 0; c < columns; ++c)
                for (i64 r = 0; r < rows; ++r) to[r + c * lda] = tile.at(r, c);
        }
        write_diagonal<Upper>(steps, size, panel, a + first * (lda + 1), lda);
    }
}

template <class T> void multiply_triangle(char uplo, i64 n, T* a, i64 lda) {
    if (uplo == 'U') lauu2<true>(n, a, lda);
    else lauu2<false>(n, a, lda);
}

} // namespace

void dlauu2(const char& uplo, const i64& n, double* a, const i64& lda) { multiply_triangle(uplo, n, a, lda); }
void zlauu2(const char& uplo, const i64& n, zcomplex* a, const i64& lda) {
    multiply_triangle(uplo, n, scalars(a), lda);
}

} // namespace nxl::NXL_TARGET
