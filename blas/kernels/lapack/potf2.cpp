// xdpotf2_u, xdpotf2_l, xzpotf2_u, xzpotf2_l: Cholesky factorisation of one triangle in left-looking order, a group of
// columns at a time (Golub and Van Loan, Matrix Computations, 4th edition, section 4.2).
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/potf2_published.hpp"
#include "blas/kernels/level3/pack.hpp"
#include "service/memory.hpp"

namespace nxl::NXL_TARGET {
namespace {

// L is computed a group of columns at a time, 4 real or 2 complex ones, and kept twice: in the caller's triangle and,
// for the products to come, packed by rows:
//
//     l                        group j of panel i:   a_ij - sum over k < j of l_ik l_jk^H, then solved with corner l_jj
//     l l
//     l l [c]                  [c] corner: 4 by 4, factored element by element
//     l l [x]                  [x] tiles below it: up to three panels at once, 12 sums in registers
//     l l [x]
//     panels are rows; each has room for its groups up to the corner, panel i for i + 1 of them
//
// One packed copy serves as both operands: rows i from the left, rows j from the right. That is why panels and groups
// have the same width. The tile is the one of the matrix product; level 3 kernels join blocks of order 128.
/// Columns in a group, and rows in a panel.
template <class T> constexpr int kGroup = kPanelRows<T>;

/// Up to this order a factorisation fails at the same minor as the published one.
constexpr i64 kPublishedOrder = 16;

/// The triangle as the lower one: an upper one is read and written as its conjugate transpose.
template <class T, bool Upper> struct TriangleView {
    T* a;
    i64 lda, n;

    T* at(i64 i, i64 j) const { return Upper ? a + j + i * lda : a + i + j * lda; }
    T read(i64 i, i64 j) const { return conj_if<Upper>(*at(i, j)); }
    void write(i64 i, i64 j, T value) const { *at(i, j) = conj_if<Upper>(value); }
    TriangleView block(i64 first, i64 order) const { return {at(first, first), lda, order}; }
};

/// Rows of L so far, in panels that the register tiles of the matrix product read as either operand. A panel ends with
/// its corner on the diagonal, so that they follow each other in ever longer steps. Rows beyond the last are zero.
template <class T> struct PackedFactor {
    static constexpr i64 kStep = kPanel * kGroup<T>; // doubles of a panel for a group of columns
    double* data;

    double* panel(i64 group) const { return data + group * (group + 1) / 2 * kStep; }
    static constexpr i64 doubles(i64 n) {
        const i64 groups = (n + kGroup<T> - 1) / kGroup<T>;
        return groups * (groups + 1) / 2 * kStep;
    }
};

/// A panel's rows of a group of columns, one register per column at 256 bits, two at 128.
template <class T> struct Block {
    Vec<4> column[kGroup<T>];
};

/// Exchanges rows and columns: of a stored upper triangle columns are contiguous that are rows of L.
template <bool Upper, class T> [[gnu::always_inline]] inline void turn(Block<T>& block) {
    if constexpr (Upper && kParts<T> == 1) {
        double turned[4 * kPanel];
        transpose_4x4(block.column[0], block.column[1], block.column[2], block.column[3], turned, kPanel);
        for (int c = 0; c < 4; ++c) block.column[c] = load<4>(turned + c * kPanel);
    } else if constexpr (Upper) {
        const auto sign = alternate<4>(1.0, -1.0);
        const auto first = block.column[0], second = block.column[1];
        block.column[0] = sign * __builtin_shufflevector(first, second, 0, 1, 4, 5);
        block.column[1] = sign * __builtin_shufflevector(first, second, 2, 3, 6, 7);
    }
}

template <class T, bool Upper>
[[gnu::always_inline]] inline Block<T> load_block(const TriangleView<T, Upper>& view, i64 i, i64 j) {
    Block<T> block;
    for (int c = 0; c < kGroup<T>; ++c) block.column[c] = load<4>(parts(view.at(i, j)) + c * view.lda * kParts<T>);
    turn<Upper>(block);
    return block;
}

template <class T, bool Upper>
[[gnu::always_inline]] inline void store_block(const TriangleView<T, Upper>& view, i64 i, i64 j, Block<T> block) {
    turn<Upper>(block);
    for (int c = 0; c < kGroup<T>; ++c) store<4>(parts(view.at(i, j)) + c * view.lda * kParts<T>, block.column[c]);
}

/// A block of which fewer rows exist, filled up with zeros.
template <class T, bool Upper>
[[gnu::noinline]] Block<T> load_edge(const TriangleView<T, Upper>& view, i64 i, i64 j) {
    T values[kGroup<T>][kGroup<T>] = {};
    for (i64 c = 0; c < kGroup<T>; ++c)
        for (i64 r = 0; r < smaller(kGroup<T>, view.n - i); ++r) values[c][r] = view.read(i + r, j + c);
    Block<T> block;
    for (int c = 0; c < kGroup<T>; ++c) block.column[c] = load<4>(parts(values[c]));
    return block;
}

/// The first columns, of the rows that exist: those behind a pivot that is not positive stay as they were.
template <class T, bool Upper>
[[gnu::noinline]] void store_edge(const TriangleView<T, Upper>& view, i64 i, i64 j, i64 columns,
                                  const Block<T>& block) {
    T values[kGroup<T>];
    for (i64 c = 0; c < columns; ++c) {
        store<4>(parts(values), block.column[c]);
        for (i64 r = 0; r < smaller(kGroup<T>, view.n - i); ++r) view.write(i + r, j + c, values[r]);
    }
}

/// L on the diagonal of a group.
template <class T> struct Corner {
    T l[kGroup<T>][kGroup<T>] = {}; // by columns
    double inverse[kGroup<T>] = {}; // of the diagonal
    i64 columns = 0;                // done: all that exist, or those before the first pivot that is not positive
    bool failed = false;
};

/// The corner at column j from its column c on, where the pivot is so small that a quotient by it could overflow, or is
/// not positive.
template <class T, bool Upper>
[[gnu::noinline]] void finish_corner(const TriangleView<T, Upper>& view, i64 j, i64 c, i64 exist, Corner<T>& corner) {
    for (; c < exist; ++c) {
        T* const column = corner.l[c];
        const double pivot = real_part(column[c]);
        if (!(pivot > 0.0)) { // in this form NaN stops here too
            view.write(j + c, j + c, from_real<T>(pivot));
            corner.failed = true;
            return;
        }
        const double root = __builtin_sqrt(pivot), inverse = 1.0 / root;
        column[c] = from_real<T>(root);
        for (i64 r = c + 1; r < exist; ++r) column[r] = column[r] * inverse;
        for (i64 k = c + 1; k < exist; ++k)
            for (i64 r = k; r < exist; ++r) corner.l[k][r] = corner.l[k][r] - column[r] * conj(column[k]);
        for (i64 r = c; r < exist; ++r) view.write(j + r, j + c, column[r]);
        corner.inverse[c] = inverse;
        corner.columns = c + 1;
    }
}

/// Factors the corner at column j, of which `exist` rows and columns exist; `sums` is what the columns before it take
/// off.
template <class T, bool Upper>
[[gnu::always_inline]] inline void factor_corner(const TriangleView<T, Upper>& view, i64 j, i64 exist,
                                                 const Block<T>& sums, Corner<T>& corner) {
    constexpr int group = kGroup<T>;
    T l[group][group];
    for (int c = 0; c < group; ++c) store<4>(parts(l[c]), sums.column[c]);
    for (i64 c = 0; c < exist; ++c)
        for (i64 r = c; r < exist; ++r) l[c][r] = view.read(j + r, j + c) - l[c][r];
    for (i64 c = 0; c < exist; ++c) {
        const double pivot = real_part(l[c][c]);
        if (!(pivot >= 0x1p-1022)) {
            __builtin_memcpy(corner.l, l, sizeof l);
            return finish_corner(view, j, c, exist, corner);
        }
        // By quotients: the next pivot need not wait for the root.
        for (i64 k = c + 1; k < exist; ++k) {
            const T share = conj(l[c][k] / pivot);
            for (i64 r = k; r < exist; ++r) l[k][r] = l[k][r] - l[c][r] * share;
        }
        const double root = __builtin_sqrt(pivot), inverse = 1.0 / root;
        l[c][c] = from_real<T>(root);
        for (i64 r = c + 1; r < exist; ++r) l[c][r] = l[c][r] * inverse;
        for (i64 r = c; r < exist; ++r) view.write(j + r, j + c, l[c][r]);
        corner.inverse[c] = inverse;
        corner.columns = c + 1;
    }
    __builtin_memcpy(corner.l, l, sizeof l);
}

/// Solves for a panel's rows, b their share of the matrix less what the columns before take off. A column after
/// the other, all rows of the panel at once, with the reciprocals that the corner has found.
template <class T> [[gnu::always_inline]] inline void solve(const Corner<T>& corner, Block<T>& b) {
    for (int c = 0; c < kGroup<T>; ++c) {
        b.column[c] *= splat<4>(corner.inverse[c]);
        for (int k = c + 1; k < kGroup<T>; ++k) Factor<T, 4>(conj(corner.l[c][k])).take_from(b.column[k], b.column[c]);
    }
}

/// The part of a tile's sums that belongs to one panel, as numbers.
template <class T, int Panels>
[[gnu::always_inline]] inline Block<T> block_of(const Sums<Panels, kPanel>& sums, int panel) {
    Block<T> block;
    for (int c = 0; c < kGroup<T>; ++c)
        if constexpr (kWidth == 4) block.column[c] = tile_values<T>(sums, panel, c, -1.0);
        else
            block.column[c] = __builtin_shufflevector(tile_values<T>(sums, 2 * panel, c, -1.0),
                                                      tile_values<T>(sums, 2 * panel + 1, c, -1.0), 0, 1, 2, 3);
    return block;
}

/// What the columns before group `of_b` take off `Panels` panels: products of rows of L and the group's own.
template <class T, int Panels>
[[gnu::always_inline]] inline void multiply(const PackedFactor<T>& l, i64 panel, i64 of_b, Block<T>* products) {
    constexpr int per_panel = kPanel / kWidth;
    const double* rows[Panels];
    for (int k = 0; k < Panels; ++k) rows[k] = l.panel(panel + k);
    PackedB b{l.panel(of_b), kPanel};
    Sums<Panels, kPanel> sums;
#pragma clang loop unroll_count(2)
    for (i64 group = 0; group < of_b; ++group)
#pragma clang loop unroll(full)
        for (int p = 0; p < kGroup<T>; ++p, b.next()) {
            sums.add([&](int v) { return load<kWidth>(rows[v / per_panel] + v % per_panel * kWidth); }, b);
            for (int k = 0; k < Panels; ++k) rows[k] += kPanel;
        }
    for (int k = 0; k < Panels; ++k) products[k] = block_of<T>(sums, k);
}

/// Group j of columns in `Panels` panels, the first of which has the corner when it is panel j itself.
template <int Panels, class T, bool Upper>
[[gnu::noinline]] void factor_tile(const TriangleView<T, Upper>& view, const PackedFactor<T>& l, i64 panel, i64 j,
                                   Corner<T>& corner) {
    constexpr i64 group = kGroup<T>;
    Block<T> taken[Panels];
    multiply<T, Panels>(l, panel, j, taken);
    for (int k = 0; k < Panels; ++k) {
        const i64 i = (panel + k) * group;
        double* const packed = l.panel(panel + k) + j * l.kStep;
        if (panel + k == j) {
            if (i + group <= view.n) factor_corner(view, i, group, taken[k], corner);
            else factor_corner(view, i, view.n - i, taken[k], corner);
            continue;
        }
        const bool whole = i + group <= view.n;
        Block<T> x = whole ? load_block(view, i, j * group) : load_edge(view, i, j * group);
        for (int c = 0; c < group; ++c) x.column[c] -= taken[k].column[c];
        solve(corner, x);
        for (int c = 0; c < group; ++c) store<4>(packed + c * kPanel, x.column[c]);
        if (whole && corner.columns == group) store_block(view, i, j * group, x);
        else store_edge(view, i, j * group, corner.columns, x);
    }
}

/// A triangle whose packed factor fits `buffer`. Left-looking: group j is finished, in all rows, before group j + 1
/// begins, so that all that has been done so far is read, and only one group written. Panels go by threes, as in the
/// macro kernel.
template <class T, bool Upper>
i64 factor_packed(const TriangleView<T, Upper>& view, double* buffer) {
    const PackedFactor<T> l{buffer};
    const i64 panels = (view.n + kGroup<T> - 1) / kGroup<T>;
    for (i64 j = 0; j < panels; ++j) {
        Corner<T> corner;
        i64 panel = j;
        if constexpr (kWidth == 4) {
            for (; panels - panel >= 3 && panels - panel != 4; panel += 3) factor_tile<3>(view, l, panel, j, corner);
            for (; panels - panel >= 2; panel += 2) factor_tile<2>(view, l, panel, j, corner);
        }
        for (; panel < panels; ++panel) factor_tile<1>(view, l, panel, j, corner);
        if (corner.failed) return j * kGroup<T> + corner.columns + 1;
    }
    return 0;
}

// The level 3 kernels that join blocks: c := c - a a^H or a^H a in one triangle, c := c - op(a) op(b), and b := op(a)
// solved for b.

void subtract_square(char uplo, char trans, i64 n, i64 k, const double* a, double* c, i64 lda) {
    dsyrk(uplo, trans, n, k, -1.0, a, lda, 1.0, c, lda);
}
void subtract_square(char uplo, char trans, i64 n, i64 k, const Complex* a, Complex* c, i64 lda) {
    zherk(uplo, trans, n, k, -1.0, numbers(a), lda, 1.0, numbers(c), lda);
}
void subtract_product(char transa, char transb, i64 m, i64 n, i64 k, const double* a, const double* b, double* c,
                      i64 lda) {
    xdgemm(transa, transb, m, n, k, -1.0, a, lda, b, lda, 1.0, c, lda);
}
void subtract_product(char transa, char transb, i64 m, i64 n, i64 k, const Complex* a, const Complex* b, Complex* c,
                      i64 lda) {
    const Complex one{1.0, 0.0}, minus_one{-1.0, 0.0};
    xzgemm(transa, transb, m, n, k, *numbers(&minus_one), numbers(a), lda, numbers(b), lda, *numbers(&one), numbers(c),
           lda);
}
void solve_block(char side, char uplo, i64 m, i64 n, const double* a, double* b, i64 lda) {
    dtrsm(side, uplo, 'C', 'N', m, n, 1.0, a, lda, b, lda);
}
void solve_block(char side, char uplo, i64 m, i64 n, const Complex* a, Complex* b, i64 lda) {
    const Complex one{1.0, 0.0};
    ztrsm(side, uplo, 'C', 'N', m, n, *numbers(&one), numbers(a), lda, numbers(b), lda);
}

/// Any order, by blocks of columns whose packed factor fits `buffer`.
template <class T, bool Upper> i64 factor_blocks(const TriangleView<T, Upper>& view, i64 block, double* buffer) {
    constexpr char uplo = Upper ? 'U' : 'L', trans = Upper ? 'C' : 'N', side = Upper ? 'L' : 'R';
    for (i64 j = 0; j < view.n; j += block) {
        const i64 width = smaller(block, view.n - j), next = j + width, rest = view.n - next;
        if (j > 0) subtract_square(uplo, trans, width, j, view.at(j, 0), view.at(j, j), view.lda);
        const i64 failed = factor_packed(view.block(j, width), buffer);
        if (failed > 0) return j + failed;
        if (rest == 0) break;
        T* const beside = view.at(next, j);
        if (j > 0 && Upper)
            subtract_product('C', 'N', width, rest, j, view.at(j, 0), view.at(next, 0), beside, view.lda);
        else if (j > 0) subtract_product('N', 'C', rest, width, j, view.at(next, 0), view.at(j, 0), beside, view.lda);
        solve_block(side, uplo, Upper ? width : rest, Upper ? rest : width, view.at(j, j), beside, view.lda);
    }
    return 0;
}

/// A small triangle put by, and what tells that roundings decided about the success of its factorisation.
template <class T, bool Upper> class SavedTriangle {
    T values_[kPublishedOrder * kPublishedOrder];

    template <class Copy> static void for_columns(const TriangleView<T, Upper>& view, T* values, const Copy& copy) {
        for (i64 c = 0; c < view.n; ++c) { // in memory
            const i64 first = Upper ? 0 : c, count = Upper ? c + 1 : view.n - c;
            copy(view.a + first + c * view.lda, values + first + c * kPublishedOrder, count);
        }
    }
    /// Whole vectors, the last of them over the one before.
    template <int W = kWidth> static void copy_doubles(const double* from, double* to, i64 count) {
        if (count < W) {
            if constexpr (W > 1) copy_doubles<W / 2>(from, to, count);
            return;
        }
        for (i64 i = 0; i + W < count; i += W) {
            store<W>(to + i, load<W>(from + i));
            asm("" : "+r"(i)); // so that the loop is not taken for memcpy, whose call would cost more than the copy
        }
        store<W>(to + count - W, load<W>(from + count - W));
    }

  public:
    explicit SavedTriangle(const TriangleView<T, Upper>& view) {
        for_columns(view, values_, [](const T* user, T* saved, i64 count) {
            copy_doubles(parts(user), parts(saved), count * kParts<T>);
        });
    }
    void restore(const TriangleView<T, Upper>& view) {
        for_columns(view, values_, [](T* user, const T* saved, i64 count) {
            copy_doubles(parts(saved), parts(user), count * kParts<T>);
        });
    }
    /// Whether a pivot has lost so much to those before it that the roundings of other sums could make it negative:
    /// with a share of 2^-20 left, they come to 2^-29 or so of the whole.
    bool is_near_singular(const TriangleView<T, Upper>& factor) const {
        bool sure = true;
        for (i64 j = 0; j < factor.n; ++j) {
            const double root = real_part(*factor.at(j, j));
            sure = sure && root * root > 0x1p-20 * real_part(values_[j * (kPublishedOrder + 1)]);
        }
        return !sure;
    }
};

/// A small triangle: when it is near to singular, once more in the published way.
template <class T, bool Upper> i64 factor_small(const TriangleView<T, Upper>& view, double* buffer) {
    SavedTriangle<T, Upper> saved(view);
    const i64 failed = factor_packed(view, buffer);
    if (failed == 0 && !saved.is_near_singular(view)) return 0;
    saved.restore(view);
    return PublishedFactor<T, Upper, TriangleView<T, Upper>>(view).factor(view.n);
}

/// Orders up to `few` take a buffer on the stack, and so do blocks when there is no memory. A block of order `most`
/// fills an eighth of a second-level cache of 1 MiB with its packed factor, and needs no other kernel.
template <bool Upper, class T> void potf2(i64 n, T* a, i64 lda, i64& info) {
    constexpr i64 most = 128, few = 32;
    const TriangleView<T, Upper> view{a, lda, n};
    constexpr auto factor_doubles = [](i64 order) { return PackedFactor<T>::doubles(order); };
    double* const buffer =
        n <= few ? nullptr
                 : static_cast<double*>(nxl_buffer_alloc(factor_doubles(smaller(n, most)) * i64{sizeof(double)}, 128));
    if (buffer) {
        info = factor_blocks(view, most, buffer);
        nxl_buffer_free(buffer);
        return;
    }
    alignas(64) double on_stack[factor_doubles(few)];
    info = n <= kPublishedOrder && n > 0 ? factor_small(view, on_stack) : factor_blocks(view, few, on_stack);
}

} // namespace

void xdpotf2_u(const i64& n, double* a, const i64& lda, i64& info) { potf2<true>(n, a, lda, info); }
void xdpotf2_l(const i64& n, double* a, const i64& lda, i64& info) { potf2<false>(n, a, lda, info); }
void xzpotf2_u(const i64& n, zcomplex* a, const i64& lda, i64& info) { potf2<true>(n, scalars(a), lda, info); }
void xzpotf2_l(const i64& n, zcomplex* a, const i64& lda, i64& info) { potf2<false>(n, scalars(a), lda, info); }

} // namespace nxl::NXL_TARGET
