// drotations: sequences of plane rotations applied to neighbouring columns of a matrix, several sequences at once.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/scalar.hpp"

namespace nxl::NXL_TARGET {
namespace {

// Rotation j of a sequence turns columns j and j + 1, and those of a sequence follow each other by j. Sequence s may do
// its rotation j when s - 1 has done its j + 1: rotations with the same s + j, a wave, follow each other by s.
//
//     wave 3:  (s 0, j 3) turns columns 3 and 4, (1, 2) columns 2 and 3, (2, 1) ...
//
// Within a wave a column goes from one rotation to the next in registers, and the columns of a few waves stay in the
// cache of first level. Van Zee, van de Geijn and Quintana-Orti, ACM Trans. Math. Software 40 (2014).
struct Waves {
    i64 columns, sequences;
    const double* turns; // cosine and sine of rotation j of sequence s at 2 (s (columns - 1) + j)

    const double* turn(i64 s, i64 j) const { return turns + 2 * (s * (columns - 1) + j); }
};

/// Count vectors of rows, from `a` on.
template <int W, int Count> void apply_waves(const Waves& waves, double* a, i64 lda) {
    const i64 last = waves.columns - 1; // rotations of a sequence
    for (i64 wave = 0; wave < last + waves.sequences - 1; ++wave) {
        const i64 first = wave < last ? 0 : wave - last + 1, end = smaller(wave + 1, waves.sequences);
        double* far = a + (wave - first + 1) * lda;
        Vec<W> carried[Count];
        for (int v = 0; v < Count; ++v) carried[v] = load<W>(far + v * W);
        for (i64 s = first; s < end; ++s, far -= lda) {
            const double* const turn = waves.turn(s, wave - s);
            const Vec<W> cosine = splat<W>(turn[0]), sine = splat<W>(turn[1]);
            for (int v = 0; v < Count; ++v) {
                const Vec<W> near = load<W>(far - lda + v * W);
                store<W>(far + v * W, cosine * carried[v] - sine * near);
                carried[v] = cosine * near + sine * carried[v];
            }
        }
        for (int v = 0; v < Count; ++v) store<W>(far + v * W, carried[v]);
    }
}

/// Rows from `row` on, as many as there are whole groups of them.
template <int W, int Count> void apply_groups(const Waves& waves, i64 rows, i64& row, double* a, i64 lda) {
    for (; row + W * Count <= rows; row += W * Count) apply_waves<W, Count>(waves, a + row, lda);
}

} // namespace

void drotations(const i64& rows, const i64& columns, const i64& sequences, const double* turns, double* a,
                const i64& lda) {
    if (columns < 2 || sequences < 1) return;
    const Waves waves{columns, sequences, turns};
    i64 row = 0;
    apply_groups<kWidest, 8>(waves, rows, row, a, lda);
    apply_groups<kWidest, 2>(waves, rows, row, a, lda);
    apply_groups<kWidest, 1>(waves, rows, row, a, lda);
    apply_groups<1, 1>(waves, rows, row, a, lda);
}

} // namespace nxl::NXL_TARGET
