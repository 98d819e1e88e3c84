// Packing: rows of A, or columns of B, interleaved along k in panels that a register tile reads at unit stride.
#pragma once
#include "blas/kernels/level3/result.hpp"

namespace nxl::NXL_TARGET {

// A panel holds 4 rows of A, or 4 columns of B, interleaved along k: element (r, p) stands at 4 p + r. With 512 bits
// a panel of A is as high as a vector: 8 rows, packed as two groups of 4 side by side.
//
//     a00 a01 a02 ...
//     a10 a11 a12 ...    ->   a00 a10 a20 a30 | a01 a11 a21 a31 | a02 a12 a22 a32 | ... | 0 0 0 0
//     a20 a21 a22 ...         step 0            step 1            step 2                  up to a multiple of 4 steps
//     a30 a31 a32 ...
//
// A tile then reads at unit stride, one line of the cache for two steps, whatever the leading dimension is, and needs
// few entries of the TLB. The zeros let it run whole rounds of its unrolled loop. A complex panel has 2 rows, re im re
// im: the same 4 doubles. Alpha is multiplied in here, on A alone, so that no tile has to.
/// A matrix as packing sees it: element (r, p), with r a row of A or a column of B, and p a step of k.
template <class T> struct Source {
    const T* data;
    i64 along_r, along_p; // elements between neighbours; one of them is 1
    bool conjugate;

    Source from(i64 r, i64 p) const { return {data + r * along_r + p * along_p, along_r, along_p, conjugate}; }
};

/// op(A) by rows and op(B) by columns. Any letter but N and T conjugates.
template <class T> Source<T> source_of_a(char trans, const T* a, i64 lda) {
    if (trans == 'N') return {a, 1, lda, false};
    return {a, lda, 1, kParts<T> == 2 && trans != 'T'};
}
template <class T> Source<T> source_of_b(char trans, const T* b, i64 ldb) {
    if (trans == 'N') return {b, ldb, 1, false};
    return {b, 1, ldb, kParts<T> == 2 && trans != 'T'};
}

/// What happens to a number on its way into a panel.
template <class T> struct PlainCopy {
    [[gnu::always_inline]] Vec<4> operator()(Vec<4> v) const { return v; }
};
template <class T> struct Scaled {
    Factor<T, 4> factor;
    [[gnu::always_inline]] Vec<4> operator()(Vec<4> v) const { return factor.times(v); }
};
template <class Then> struct Conjugated {
    Then then;
    [[gnu::always_inline]] Vec<4> operator()(Vec<4> v) const { return then(v * alternate<4>(1.0, -1.0)); }
};

/// Calls pack(change) with the change that a copy makes: nothing, a factor, a conjugation, or both.
template <class T, class Pack> [[gnu::always_inline]] inline void with_change(bool conjugate, const T* alpha,
                                                                              Pack&& pack) {
    if constexpr (kParts<T> == 2) {
        if (conjugate && alpha) return pack(Conjugated<Scaled<T>>{{Factor<T, 4>(*alpha)}});
        if (conjugate) return pack(Conjugated<PlainCopy<T>>{});
    }
    if (alpha) return pack(Scaled<T>{Factor<T, 4>(*alpha)});
    pack(PlainCopy<T>{});
}

// Which way is contiguous decides how to read: along the rows, a step of k is a vector load; along k, four rows are
// read as vectors and turned in registers. Either way memory is read as it lies.
/// Where a group of 4 doubles' rows starts in panels of `High` doubles.
template <int High> [[gnu::always_inline]] inline i64 group_offset(i64 group, i64 stride) {
    constexpr int groups = High / kPanel;
    return group / groups * stride + group % groups * kPanel;
}

/// `Groups` full groups whose rows are neighbours in memory, the first of which begins a panel if any does.
template <class T, int High, int Groups, class Change>
[[gnu::always_inline]] inline void pack_neighbours(const Source<T>& from, i64 k, double* to, i64 stride, i64 step,
                                                   Change change) {
    const double* in = parts(from.data);
    const i64 next = from.along_p * kParts<T>;
    for (i64 p = 0; p < k; ++p, in += next, to += step) {
        __builtin_prefetch(in + 2 * Groups * kPanel); // rows of the groups to come
        for (int group = 0; group < Groups; ++group)
            store<4>(to + group_offset<High>(group, stride), change(load<4>(in + group * kPanel)));
    }
}

/// Stores the columns of four rows, `step` doubles apart.
[[gnu::always_inline]] inline void transpose_4x4(Vec<4> r0, Vec<4> r1, Vec<4> r2, Vec<4> r3, double* to, i64 step) {
    const auto even01 = __builtin_shufflevector(r0, r1, 0, 4, 2, 6),
               odd01 = __builtin_shufflevector(r0, r1, 1, 5, 3, 7);
    const auto even23 = __builtin_shufflevector(r2, r3, 0, 4, 2, 6),
               odd23 = __builtin_shufflevector(r2, r3, 1, 5, 3, 7);
    store<4>(to, __builtin_shufflevector(even01, even23, 0, 1, 4, 5));
    store<4>(to + step, __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5));
    store<4>(to + 2 * step, __builtin_shufflevector(even01, even23, 2, 3, 6, 7));
    store<4>(to + 3 * step, __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7));
}

/// One full group whose rows are `along_r` apart, each contiguous along k.
template <class T, class Change>
[[gnu::always_inline]] inline void pack_distant(const Source<T>& from, i64 k, double* to, i64 step, Change change) {
    const double* in[4];
    for (int r = 0; r < kPanelRows<T>; ++r) in[r] = parts(from.data + r * from.along_r);
    i64 p = 0;
    if constexpr (kParts<T> == 1) {
        for (; p + 4 <= k; p += 4, to += 4 * step) {
            transpose_4x4(change(load<4>(in[0])), change(load<4>(in[1])), change(load<4>(in[2])),
                          change(load<4>(in[3])), to, step);
            for (const double*& row : in) {
                __builtin_prefetch(row + 4 * from.along_r); // the panel to come
                row += 4;
            }
        }
        for (; p < k; ++p, to += step) {
            store<4>(to, change(Vec<4>{*in[0], *in[1], *in[2], *in[3]}));
            for (const double*& row : in) ++row;
        }
    } else {
        for (; p < k; ++p, to += step) {
            store<4>(to, change(Vec<4>{in[0][0], in[0][1], in[1][0], in[1][1]}));
            in[0] += 2, in[1] += 2;
        }
    }
}

/// Fewer rows than a group has: `width` of them are stored, those beyond `rows` as zeros.
template <class T, class Change>
[[gnu::noinline]] void pack_ragged(const Source<T>& from, int rows, int width, i64 k, double* to, i64 step,
                                   Change change) {
    for (i64 p = 0; p < k; ++p, to += step) {
        double quad[kPanel] = {};
        for (int r = 0; r < rows; ++r)
            __builtin_memcpy(quad + r * kParts<T>, from.data + r * from.along_r + p * from.along_p, sizeof(T));
        Vec<4> packed = change(load<4>(quad));
        store<4>(quad, packed);
        __builtin_memcpy(to, quad, static_cast<unsigned long>(width) * sizeof(T));
    }
}

/// A copy of `groups` groups of rows by `k` steps into panels `High` doubles high and `stride` apart, a step of k
/// taking `step` doubles.
template <class T, int High = kPanel, class Change>
[[gnu::always_inline]] inline void pack_full_groups(const Source<T>& from, i64 groups, i64 k, double* to, i64 stride,
                                                    i64 step, Change change) {
    constexpr int per_panel = High / kPanel;
    constexpr int together = kWidest == 8 ? 6 : 3 * per_panel; // with the widest registers three lines of the cache
    i64 group = 0;
    const auto source = [&] { return from.from(group * kPanelRows<T>, 0); };
    const auto place = [&] { return to + group_offset<High>(group, stride); };
    if (from.along_r == 1) {
        for (; group + together <= groups; group += together)
            pack_neighbours<T, High, together>(source(), k, place(), stride, step, change);
        if constexpr (per_panel > 1)
            for (; group + per_panel <= groups; group += per_panel)
                pack_neighbours<T, High, per_panel>(source(), k, place(), stride, step, change);
        for (; group < groups; ++group) pack_neighbours<T, High, 1>(source(), k, place(), stride, step, change);
    } else {
        for (; group < groups; ++group) pack_distant<T>(source(), k, place(), step, change);
    }
}

/// The steps of k that a panel has: k rounded up to a multiple of 4, or of 2 for complex numbers.
template <class T> [[gnu::always_inline]] inline i64 padded(i64 k) {
    constexpr i64 unit = kPanelRows<T>;
    return (k + unit - 1) / unit * unit;
}

/// Zeros behind the k steps of a panel.
template <class T> [[gnu::always_inline]] inline void pad_panel(double* panel, i64 k, i64 step) {
    for (double* at = panel + k * step; at < panel + padded<T>(k) * step; ++at) *at = 0.0;
}

/// `rows` rows of op(A) times alpha, by k steps, zeros behind them. The last panel is filled up with rows of zeros.
/// Alpha null: not scaled.
template <class T, int High = kTallPanel>
void pack_a(const Source<T>& from, i64 rows, i64 k, double* to, i64 stride, const T* alpha) {
    constexpr i64 group = kPanelRows<T>, height = High / kParts<T>;
    const i64 whole = rows / group, panels = (rows + height - 1) / height;
    with_change<T>(from.conjugate, alpha, [&](auto change) {
        pack_full_groups<T, High>(from, whole, k, to, stride, High, change);
        for (i64 g = whole; g < panels * (height / group); ++g)
            pack_ragged<T>(from.from(g * group, 0), g > whole ? 0 : static_cast<int>(rows % group), group, k,
                           to + group_offset<High>(g, stride), High, change);
    });
    for (i64 panel = 0; panel < panels; ++panel, to += stride) pad_panel<T>(to, k, High);
}

/// Columns in a panel of B: as a group of A's rows is high, but 4 complex ones on class 3, whose tile takes 8 real
/// columns.
template <class T> constexpr int kPanelColumns = kParts<T> == 2 && kClass != CpuClass::mc3 ? 2 : 4;

/// The panels of B one after the other, in the parts that a register tile reads: pack_part(column, columns, to, step)
/// fills one, `step` doubles per step of k. Columns beyond the last full panel stand in a narrower one: unlike rows of
/// A they are not filled up with zeros, for a tile of fewer columns costs less than one that adds zeros.
template <class T, class PackPart>
[[gnu::always_inline]] inline void for_each_part(i64 k, i64 columns, double* to, i64 stride,
                                                 const PackPart& pack_part) {
    constexpr i64 width = kPanelColumns<T>, part = kPanelRows<T>;
    for (i64 column = 0; column < columns; column += width, to += stride) {
        const i64 here = columns - column < width ? columns - column : width;
        const i64 step = here * kParts<T>;
        for (i64 c = 0; c < here; c += part)
            pack_part(column + c, here - c < part ? here - c : part, to + c * kParts<T>, step);
        pad_panel<T>(to, k, step);
    }
}

/// k steps of `columns` columns of op(B): whole panels some at a time, as those of A, then what is left.
template <class T> void pack_b(const Source<T>& from, i64 k, i64 columns, double* to, i64 stride) {
    constexpr i64 width = kPanelColumns<T>;
    constexpr int high = kPanelColumns<T> * kParts<T>;
    const i64 panels = columns / width, rest = columns % width;
    with_change<T>(from.conjugate, static_cast<const T*>(nullptr), [&](auto change) {
        pack_full_groups<T, high>(from, panels * (high / kPanel), k, to, stride, high, change);
        for (i64 panel = 0; panel < panels; ++panel, to += stride) pad_panel<T>(to, k, high);
        for_each_part<T>(k, rest, to, stride, [&](i64 column, i64 wide, double* at, i64 step) {
            const Source<T> source = from.from(panels * width + column, 0);
            if (wide == kPanelRows<T>) pack_full_groups<T>(source, 1, k, at, stride, step, change);
            else pack_ragged<T>(source, static_cast<int>(wide), static_cast<int>(wide), k, at, step, change);
        });
    });
}

} // namespace nxl::NXL_TARGET
