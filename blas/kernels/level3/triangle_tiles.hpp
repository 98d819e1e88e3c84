// Register tiles on the diagonal of a triangular problem: packed right-hand sides against a group of columns of the
// packed triangle, solved or multiplied.
#pragma once
#include "blas/kernels/level3/triangle.hpp"

namespace nxl::NXL_TARGET {

// A tile is a group of 4 real entries, or 2 complex ones, of up to three panels of right-hand sides. It is the tile of
// the matrix product, with a triangle behind:
//
//     panels of right-hand sides                       packed group of t
//     | x x x x x x x x | b b b b | . . . |            steps 0 .. j - 1, then the corner
//       known             group j   not yet
//
//     1. sums := b, for a solver; 0, for a product        12 registers
//     2. sums += x t over the known entries               the loop of the product
//     3. the corner: 4 entries solved by substitution, or multiplied, in registers
//     4. stored in B, and by a solver in the panels too
//
// A solver packs t negated, so that step 2 adds as in the product, and the diagonal inverted, so that step 3 does not
// wait for divisions. Going backward, the known entries are those behind the group.
/// Packed right-hand sides, kTallRows in a panel, and where in B their results go: right-hand side `r` and the ones
/// after it, entries from `p` on.
template <class T> struct PackedRhs {
    double* panels;
    i64 stride; // doubles between panels
    i64 r, count;
    i64 p, length;
};

/// The values of a tile: a group of entries of the right-hand sides in some panels.
template <class T, int Panels, int W = kWidest, int High = kTallPanel> struct Entries {
    static constexpr int group = kGroup<T>, per_panel = High / W, vectors = Panels * per_panel;
    Vec<W> of[vectors][group];

    /// Where vector v of entry c stands in panels.
    static i64 offset(int v, int c, i64 stride) { return v / per_panel * stride + c * High + v % per_panel * W; }
    [[gnu::always_inline]] void store_panels(double* panels, i64 stride) const {
        for (int c = 0; c < group; ++c)
            for (int v = 0; v < vectors; ++v) store<W>(panels + offset(v, c, stride), of[v][c]);
    }
    /// To rows of B: entries are `step` doubles apart.
    [[gnu::always_inline]] void store_rows(double* to, i64 step) const {
        for (int c = 0; c < group; ++c)
            for (int v = 0; v < vectors; ++v) store<W>(to + c * step + v * W, of[v][c]);
    }
    /// To columns of B: right-hand sides are `step` doubles apart.
    [[gnu::always_inline]] void store_columns(double* to, i64 step) const {
        for (int quad = 0; quad < vectors * W / 4; ++quad, to += kPanelRows<T> * step) {
            const auto column = [&](int c) { return four_rows(quad, c); };
            if constexpr (kParts<T> == 1) {
                transpose_4x4(column(0), column(1), column(2), column(3), to, step);
            } else {
                store<4>(to, __builtin_shufflevector(column(0), column(1), 0, 1, 4, 5));
                store<4>(to + step, __builtin_shufflevector(column(0), column(1), 2, 3, 6, 7));
            }
        }
    }

  private:
    [[gnu::always_inline]] Vec<4> four_rows(int quad, int c) const {
        if constexpr (W == 2) return __builtin_shufflevector(of[2 * quad][c], of[2 * quad + 1][c], 0, 1, 2, 3);
        else if constexpr (W == 4) return of[quad][c];
        else {
            const auto pair = of[quad / 2][c];
            return quad % 2 == 0 ? __builtin_shufflevector(pair, pair, 0, 1, 2, 3)
                                 : __builtin_shufflevector(pair, pair, 4, 5, 6, 7);
        }
    }
};

/// Entries that reach over an edge of B, as a panel holds them: `rows` right-hand sides, `columns` entries exist.
template <int High, class T>
[[gnu::noinline]] void place_edge(const double* panels, const TriangularProblem<T>& problem, i64 r, i64 rows, i64 p,
                                  i64 columns) {
    constexpr i64 height = High / kParts<T>, panel_doubles = High * kGroup<T>;
    for (i64 row = 0; row < rows; ++row)
        for (i64 c = 0; c < columns; ++c)
            __builtin_memcpy(problem.at(r + row, p + c),
                             panels + row / height * panel_doubles + c * High + row % height * kParts<T>, sizeof(T));
}

template <int Panels> using TallSums = Sums<Panels, kPanel, kWidest, kTallPanel>;

/// Solves for a group of entries; t comes negated, the inverses of its diagonal do not. The panels take what is solved:
/// they are the known entries of all later groups, and an operand of the product that follows the block.
struct Solve {
    static constexpr bool inverts = true;

    /// b, to which the products are to be added.
    template <class T, int Panels>
    [[gnu::always_inline]] static inline TallSums<Panels> start(const double* panels, i64 stride) {
        TallSums<Panels> sums;
        for (int c = 0; c < kGroup<T>; ++c)
            for (int v = 0; v < sums.vectors; ++v)
                sums.of[v][c * kParts<T>] = load<kWidest>(panels + Entries<T, Panels>::offset(v, c, stride));
        return sums;
    }

    template <class T, bool Forward, int Panels>
    [[gnu::always_inline]] static inline Entries<T, Panels> finish(const TallSums<Panels>& sums, double* panels,
                                                                   i64 stride, const double* corner) {
        constexpr int group = kGroup<T>;
        Entries<T, Panels> x;
        for (int c = 0; c < group; ++c)
            for (int v = 0; v < x.vectors; ++v) x.of[v][c] = tile_values<T>(sums, v, c, 1.0);
        for (int step = 0; step < group; ++step) {
            const int c = Forward ? step : group - 1 - step;
            const auto inverse = element<T>(corner, c, c);
            for (int v = 0; v < x.vectors; ++v) x.of[v][c] = inverse.times(x.of[v][c]);
            for (int later = step + 1; later < group; ++later) {
                const int to = Forward ? later : group - 1 - later;
                const auto factor = element<T>(corner, c, to);
                for (int v = 0; v < x.vectors; ++v) factor.add_to(x.of[v][to], x.of[v][c]);
            }
        }
        x.store_panels(panels, stride);
        return x;
    }

    /// One entry on its own: x, of its b, the sum of x t over the other entries, and the diagonal.
    template <class T> static T entry(T alpha, T sum, T diagonal, T b) {
        return plus_product(-sum, alpha, b) / diagonal;
    }

  private:
    template <class T> [[gnu::always_inline]] static inline Factor<T, kWidest> element(const double* corner, int p,
                                                                                       int c) {
        return Factor<T, kWidest>(*scalars<T>(corner + p * kPanel + c * kParts<T>));
    }
};

/// Multiplies a group of entries; the panels keep the factors, which later groups need as they were. So the order of
/// the groups does not matter, and results go to B alone.
struct Multiply {
    static constexpr bool inverts = false;

    template <class T, int Panels>
    [[gnu::always_inline]] static inline TallSums<Panels> start(const double*, i64) {
        return {};
    }

    template <class T, bool Forward, int Panels>
    [[gnu::always_inline]] static inline Entries<T, Panels> finish(TallSums<Panels>& sums, const double* panels,
                                                                   i64 stride, const double* corner) {
        Entries<T, Panels> result;
        for (int p = 0; p < kGroup<T>; ++p)
            for (int column = Forward ? p * kParts<T> : 0; column < (Forward ? kPanel : (p + 1) * kParts<T>);
                 ++column) {
                const auto factor = splat<kWidest>(corner[p * kPanel + column]);
                for (int v = 0; v < sums.vectors; ++v)
                    sums.of[v][column] += load<kWidest>(panels + result.offset(v, p, stride)) * factor;
            }
        for (int c = 0; c < kGroup<T>; ++c)
            for (int v = 0; v < sums.vectors; ++v) result.of[v][c] = tile_values<T>(sums, v, c, 1.0);
        return result;
    }

    /// One entry on its own: alpha times x t, of which the diagonal's share is missing in the sum.
    template <class T> static T entry(T alpha, T sum, T diagonal, T x) {
        return plus_product(from_real<T>(0.0), alpha, plus_product(sum, x, diagonal));
    }
};

/// The results of one group of columns, from column j of the block on, for `Panels` panels.
template <class T, class Work, bool Forward, int Panels>
[[gnu::always_inline]] inline void group_tile(const TriangularProblem<T>& problem, const PackedTriangle& triangle,
                                              const PackedRhs<T>& rhs, i64 panel, i64 j) {
    const double* const columns = triangle.groups + j / kGroup<T> * triangle.stride;
    double* const panels = rhs.panels + panel * rhs.stride;
    double* const here = panels + j * kTallPanel;
    const i64 size = least(kGroup<T>, rhs.length - j);
    const i64 p = Forward ? 0 : j + size, steps = Forward ? j : rhs.length - p;
    auto sums = Work::template start<T, Panels>(here, rhs.stride);
    add_products(sums, steps, panels + p * kTallPanel, rhs.stride, PackedB{columns + p * kPanel, kPanel});
    const auto results = Work::template finish<T, Forward, Panels>(sums, here, rhs.stride, columns + j * kPanel);
    const i64 row = panel * kTallRows<T>, rows = least(Panels * kTallRows<T>, rhs.count - row);
    if (rows == Panels * kTallRows<T> && size == kGroup<T>) {
        double* const to = parts(problem.at(rhs.r + row, rhs.p + j));
        if (problem.left) results.store_columns(to, problem.ldb * kParts<T>);
        else results.store_rows(to, problem.ldb * kParts<T>);
        return;
    }
    double edge[Panels * kTallPanel * kGroup<T>];
    results.store_panels(edge, kTallPanel * kGroup<T>);
    place_edge<kTallPanel>(edge, problem, rhs.r + row, rows, rhs.p + j, size);
}

/// One group of columns for all panels: the group, 6 KiB at most, stays in the first cache while the panels pass. Four
/// panels that are left go two by two, for a single one has too few sums.
template <class T, class Work, bool Forward>
[[gnu::noinline]] void group_column(const TriangularProblem<T>& problem, const PackedTriangle& triangle,
                                    const PackedRhs<T>& rhs, i64 j) {
    const i64 count = (rhs.count + kTallRows<T> - 1) / kTallRows<T>;
    i64 panel = 0;
    if constexpr (kWidest >= 4) {
        for (; count - panel >= 3 && count - panel != 4; panel += 3)
            group_tile<T, Work, Forward, 3>(problem, triangle, rhs, panel, j);
        for (; count - panel >= 2; panel += 2) group_tile<T, Work, Forward, 2>(problem, triangle, rhs, panel, j);
    }
    for (; panel < count; ++panel) group_tile<T, Work, Forward, 1>(problem, triangle, rhs, panel, j);
}

/// A diagonal block: all its groups, in the order in which their unknowns become known. For a product, which keeps its
/// panels, any order will do.
template <class T, class Work>
void diagonal_block(const TriangularProblem<T>& problem, const PackedTriangle& triangle, const PackedRhs<T>& rhs) {
    constexpr i64 width = kGroup<T>;
    if (problem.forward)
        for (i64 j = 0; j < rhs.length; j += width) group_column<T, Work, true>(problem, triangle, rhs, j);
    else
        for (i64 j = (rhs.length - 1) / width * width; j >= 0; j -= width)
            group_column<T, Work, false>(problem, triangle, rhs, j);
}

} // namespace nxl::NXL_TARGET
