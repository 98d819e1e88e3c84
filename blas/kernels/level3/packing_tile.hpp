// Small real products on wide registers: the tiles of the first columns take A from where the caller has it and pack it
// for the columns that follow, in place of a pass over A before.
#pragma once
#include "blas/kernels/level3/macro_tiles.hpp"
#include "blas/kernels/level3/plain_gemm.hpp"

namespace nxl::NXL_TARGET {

// In a product of order 50 a pass that does nothing but pack A is a share of the time that shows. Here the tile that
// needs a column of A anyway stores it, scaled, into the panel:
//
//     columns of B      0 .. 3        4 .. n - 1
//     rows of A      load, scale,     load from the panel
//                    store, use
//
// From the second group of columns on, all is as in the macro kernel.
template <class T> constexpr bool packs_on_the_way = kWidest == 4 && kParts<T> == 1;

/// The sums of `Panels` panels, with A scaled by alpha and stored as panels on the way.
template <int Panels, class B>
[[gnu::always_inline]] inline Sums<Panels, kPanel> multiply_and_pack(i64 k, const double* a, i64 lda, double alpha,
                                                                     double* panels, i64 stride, B b) {
    Sums<Panels, kPanel> sums;
    alignas(32) double factor[kPanel] = {alpha, alpha, alpha, alpha}; // in memory, for all registers are taken
    asm volatile("" : : "r"(factor) : "memory");
#pragma clang loop unroll_count(2)
    for (i64 p = 0; p < k; ++p, a += lda, panels += kPanel, b.next())
        sums.add(
            [&](int v) __attribute__((always_inline)) {
                const auto row = load<kWidth>(a + v * kPanel) * load<kWidth>(factor);
                store<kWidth>(panels + v * stride, row);
                return row;
            },
            b);
    return sums;
}

/// A row of tiles: the first four columns pack, the others take what they packed.
template <int Panels, class ColumnsB>
[[gnu::noinline]] void packing_row(const GeneralProduct<double>& g, double* panels, i64 stride, i64 panel,
                                   const ColumnsB& b) {
    const i64 i = panel * kPanel;
    double* const here = panels + panel * stride;
    tile<double, Sums<Panels, kPanel>>(
        {i, Panels * kPanel, 0, kPanel}, g.to, [&](ColumnsAhead) __attribute__((always_inline)) {
            return multiply_and_pack<Panels>(g.k, g.a.data + i, g.a.along_p, g.alpha, here, stride, b(0));
        });
    tile_row<double, Panels>({panels, stride, g.m, g.k}, panel, b, kPanel, g.n, g.to, 0, 0);
}

/// All of a product whose panels fit `panels`; A is not transposed. Rows beyond the last whole panel are packed before.
template <class ColumnsB>
void multiply_packing_rows(const GeneralProduct<double>& g, double* panels, const ColumnsB& b) {
    const i64 stride = panel_stride_a<double>(g.k), whole = g.m / kPanel, rest = g.m % kPanel;
    i64 panel = 0;
    for (; whole - panel >= 3 && whole - panel != 4; panel += 3) packing_row<3>(g, panels, stride, panel, b);
    for (; whole - panel >= 2; panel += 2) packing_row<2>(g, panels, stride, panel, b);
    for (; panel < whole; ++panel) packing_row<1>(g, panels, stride, panel, b);
    if (rest == 0) return;
    pack_a(g.a.from(whole * kPanel, 0), rest, g.k, panels + whole * stride, stride, &g.alpha);
    tile_row<double, 1>({panels, stride, g.m, g.k}, whole, b, 0, g.n, g.to, 0, 0);
}

inline void multiply_packing(const GeneralProduct<double>& g, double* panels) {
    if (g.b.along_p == 1) multiply_packing_rows(g, panels, ColumnsInPlace<double>{g.b, g.n});
    else multiply_packing_rows(g, panels, RowsInPlace<double>{g.b, g.n});
}

} // namespace nxl::NXL_TARGET
