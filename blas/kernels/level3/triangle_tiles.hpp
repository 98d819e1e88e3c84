// Register tiles on the diagonal of a triangular problem: packed right-hand sides against a group of columns of the
// packed triangle, solved or multiplied.
#pragma once
#include "blas/kernels/level3/triangle.hpp"

namespace nxl::NXL_TARGET {

/// Packed right-hand sides, kPanelRows in a panel, and where in B their results go: right-hand side `r` and the ones
/// after it, entries from `p` on.
template <class T> struct PackedRhs {
    double* panels;
    i64 stride; // doubles between panels
    i64 r, count;
    i64 p, length;
};

/// A panel's share of a group's results, entries of all its right-hand sides step after step.
using Share = double[kPanel * kPanel];

/// A share that lies in B altogether.
template <class T> [[gnu::always_inline]] inline void place_share(const double* share, bool left, T* b, i64 ldb) {
    double* const to = reinterpret_cast<double*>(b);
    const i64 step = ldb * kParts<T>;
    if (!left) {
        for (int c = 0; c < kGroup<T>; ++c) store<4>(to + c * step, load<4>(share + c * kPanel));
    } else if constexpr (kParts<T> == 1) {
        const double* const in[4] = {share, share + kPanel, share + 2 * kPanel, share + 3 * kPanel};
        transpose_4x4(in, to, step, PlainCopy<T>{});
    } else {
        const auto first = load<4>(share), second = load<4>(share + kPanel);
        store<4>(to, __builtin_shufflevector(first, second, 0, 1, 4, 5));
        store<4>(to + step, __builtin_shufflevector(first, second, 2, 3, 6, 7));
    }
}

/// A share of which `rows` right-hand sides and `columns` entries exist.
template <class T>
[[gnu::noinline]] void place_part(const double* share, const TriangularProblem<T>& problem, i64 r, i64 rows, i64 p,
                                  i64 columns) {
    for (i64 c = 0; c < columns; ++c)
        for (i64 row = 0; row < rows; ++row)
            __builtin_memcpy(problem.at(r + row, p + c), share + c * kPanel + row * kParts<T>, sizeof(T));
}

/// x := (b - x t) / corner for a group of columns; sums hold -x t, as the panels hold -x once it is known.
struct Solve {
    static constexpr bool inverts = true;

    template <class T, bool Forward, int Panels>
    [[gnu::always_inline]] static inline void corner(const Sums<Panels, kPanel>& sums, double* panel, i64 stride,
                                                     const double* t, Share* out) {
        constexpr int group = kGroup<T>, vectors = Sums<Panels, kPanel>::vectors, per_panel = kPanel / kWidth;
        Vec<kWidth> x[vectors][group];
        for (int c = 0; c < group; ++c)
            for (int v = 0; v < vectors; ++v)
                x[v][c] = load<kWidth>(panel + v / per_panel * stride + c * kPanel + v % per_panel * kWidth) +
                          tile_values<T>(sums, v, c, 1.0);
        for (int step = 0; step < group; ++step) {
            const int c = Forward ? step : group - 1 - step;
            const Factor<T, kWidth> inverse(element<T>(t, c, c));
            for (int v = 0; v < vectors; ++v) x[v][c] = inverse(x[v][c]);
            for (int later = step + 1; later < group; ++later) {
                const int to = Forward ? later : group - 1 - later;
                const Factor<T, kWidth> factor(element<T>(t, c, to));
                for (int v = 0; v < vectors; ++v) x[v][to] -= factor(x[v][c]);
            }
        }
        for (int c = 0; c < group; ++c)
            for (int v = 0; v < vectors; ++v) {
                const i64 at = c * kPanel + v % per_panel * kWidth;
                store<kWidth>(panel + v / per_panel * stride + at, -x[v][c]);
                store<kWidth>(out[v / per_panel] + at, x[v][c]);
            }
    }

    /// One entry on its own: b at `entry`, the sum x t and the inverse of the diagonal become x.
    template <class T> static void entry(const T& alpha, const double* sum, const double* inverse, double* entry) {
        double rest[2] = {-sum[0], -sum[1]}, x[2] = {0.0, 0.0};
        add_product(rest, parts_of(&alpha), entry, T{});
        add_product(x, rest, inverse, T{});
        __builtin_memcpy(entry, x, sizeof(T));
    }

  private:
    template <class T> [[gnu::always_inline]] static inline T element(const double* corner, int p, int c) {
        T value;
        __builtin_memcpy(&value, corner + p * kPanel + c * kParts<T>, sizeof(T));
        return value;
    }
};

/// x t for a group of columns; the panels keep x.
struct Multiply {
    static constexpr bool inverts = false;

    template <class T, bool Forward, int Panels>
    [[gnu::always_inline]] static inline void corner(Sums<Panels, kPanel>& sums, const double* panel, i64 stride,
                                                     const double* t, Share* out) {
        constexpr int group = kGroup<T>, vectors = Sums<Panels, kPanel>::vectors, per_panel = kPanel / kWidth;
        for (int p = 0; p < group; ++p)
            for (int column = Forward ? p * kParts<T> : 0; column < (Forward ? kPanel : (p + 1) * kParts<T>);
                 ++column) {
                const auto factor = splat<kWidth>(t[p * kPanel + column]);
                for (int v = 0; v < vectors; ++v)
                    sums.of[v][column] +=
                        load<kWidth>(panel + v / per_panel * stride + p * kPanel + v % per_panel * kWidth) * factor;
            }
        for (int c = 0; c < group; ++c)
            for (int v = 0; v < vectors; ++v)
                store<kWidth>(out[v / per_panel] + c * kPanel + v % per_panel * kWidth,
                              tile_values<T>(sums, v, c, 1.0));
    }

    /// One entry on its own: x at `entry` becomes alpha times x t, of which the diagonal's share is missing in the sum.
    template <class T> static void entry(const T& alpha, double* sum, const double* diagonal, double* entry) {
        double result[2] = {0.0, 0.0};
        add_product(sum, entry, diagonal, T{});
        add_product(result, parts_of(&alpha), sum, T{});
        __builtin_memcpy(entry, result, sizeof(T));
    }
};

/// The results of one group of columns, from column j of the block on, for `Panels` panels.
template <class T, class Work, bool Forward, int Panels>
[[gnu::always_inline]] inline void group_tile(const TriangularProblem<T>& problem, const PackedTriangle& triangle,
                                              const PackedRhs<T>& rhs, i64 panel, i64 j) {
    const double* const columns = triangle.groups + j / kGroup<T> * triangle.stride;
    double* const panels = rhs.panels + panel * rhs.stride;
    const i64 size = least(kGroup<T>, rhs.length - j);
    const i64 p = Forward ? 0 : j + size, steps = Forward ? j : rhs.length - p;
    auto sums = multiply_panels<Sums<Panels, kPanel>>(steps, panels + p * kPanel, rhs.stride,
                                                      PackedB{columns + p * kPanel, kPanel});
    alignas(32) Share results[Panels];
    Work::template corner<T, Forward, Panels>(sums, panels + j * kPanel, rhs.stride, columns + j * kPanel, results);
    for (int q = 0; q < Panels; ++q) {
        const i64 row = (panel + q) * kPanelRows<T>, rows = least(kPanelRows<T>, rhs.count - row);
        if (rows == kPanelRows<T> && size == kGroup<T>)
            place_share(results[q], problem.left, problem.at(rhs.r + row, rhs.p + j), problem.ldb);
        else place_part(results[q], problem, rhs.r + row, rows, rhs.p + j, size);
    }
}

/// One group of columns for all panels.
template <class T, class Work, bool Forward>
[[gnu::noinline]] void group_column(const TriangularProblem<T>& problem, const PackedTriangle& triangle,
                                    const PackedRhs<T>& rhs, i64 j) {
    const i64 count = (rhs.count + kPanelRows<T> - 1) / kPanelRows<T>;
    i64 panel = 0;
    if constexpr (kWidth == 4) {
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
