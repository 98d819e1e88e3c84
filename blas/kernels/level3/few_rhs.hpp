// Triangular systems with few right-hand sides: t is read where it stands, once for all of them. The right-hand sides
// stand in panels while they are solved for; what they are, and t, is triangle.hpp's.
#pragma once
#include "blas/kernels/level3/triangle_tiles.hpp"

namespace nxl::NXL_TARGET {

// With few right-hand sides each element of t meets only a few multiply-adds: reading t is what takes the time. So t is
// not copied. The problem is halved again and again, down to triangles of 32 that are solved by groups in registers:
//
//     +-----+                 1  solve the first half
//     |\  1 |                 2  take what it gives off the second half: the rectangle, by the loop of the product
//     | \   |                 3  solve the second half
//     +-----+-----+
//     |     |\    |           All right-hand sides, in panels, go through each step together: an element of t is
//     |  2  | \ 3 |           spread over a register once and meets all of them.
//     +-----+-----+
//
// Across stand the entries that are known, down those that are solved for. Rectangles are as large as the halves, so
// that t is read in long runs.
/// Right-hand sides of a problem up to which packing t costs more than it gives.
constexpr i64 kFewRhs = 8;

/// Panels that a tile takes at once, and the real columns of t that it takes then: their sums are as many as hide the
/// latency of the multiply-add.
constexpr int kMostPanels = kWidth;
template <int Panels> constexpr int kColumns = Panels == 3 ? 4 : 2 * kWidth / Panels;

/// Lengths, in entries, that suit the caches.
struct SubstitutionBlocks {
    i64 diagonal = 32; ///< of a block on the diagonal, solved by groups
    i64 unit = 8;      ///< the problem is halved at multiples of it: whole groups of columns
    i64 run = 2048;    ///< of t's contiguous direction: long streams, while these right-hand sides stay in cache 2
    i64 across = 16;   ///< of the other one, where it is summed over: as many streams as are prefetched
};
constexpr SubstitutionBlocks kSubstitutionBlocks;

/// A problem whose right-hand sides, alpha included, stand in panels `stride` doubles apart, kPanel in each per entry.
/// Passed by value: what is stored in the panels cannot change a local copy, so that it stays in registers.
template <class T> struct Substitution {
    Source<T> t;
    bool forward, unit;
    double* panels;
    i64 stride;

    double* entry(i64 p) const { return panels + p * kPanel; }
};

/// Columns of t in place, `column` doubles apart, and `step` from one entry to the next.
template <class T> struct ColumnsOfT {
    const double* at;
    i64 column, step;

    explicit ColumnsOfT(const Source<T>& from)
        : at(parts(from.data)),
          column(from.along_r * kParts<T>),
          step(from.along_p * kParts<T>) {}
    template <int W> [[gnu::always_inline]] Vec<W> value(int c) const {
        return splat<W>(at[c / kParts<T> * column + c % kParts<T>]);
    }
    [[gnu::always_inline]] void next() {
        at += step;
        asm("" : "+r"(at)); // one pointer for all columns: the compiler would keep one for each, and each unrolled step
    }
};

/// x / d for a vector of right-hand sides; complex by Smith's quotient, or where that would leave the range by the
/// scaled one, number by number.
template <class T> [[gnu::always_inline]] inline Vec<kWidth> quotient(Vec<kWidth> x, T d) {
    if constexpr (kParts<T> == 1) {
        return x / splat<kWidth>(d);
    } else {
        const double size = larger_part(d), most = __builtin_reduce_max(__builtin_elementwise_abs(x));
        if (!(size >= 0x1p-1000 && size <= 0x1p1000 && most <= 0x1p1000)) [[unlikely]] {
            for (int lane = 0; lane < kWidth; lane += 2) {
                const Complex one = Complex{x[lane], x[lane + 1]} / d;
                x[lane] = one.re, x[lane + 1] = one.im;
            }
            return x;
        }
        if (__builtin_fabs(d.re) >= __builtin_fabs(d.im)) {
            const double ratio = d.im / d.re;
            return (x + alternate<kWidth>(ratio, -ratio) * swap_parts<kWidth>(x)) / splat<kWidth>(d.re + d.im * ratio);
        }
        const double ratio = d.re / d.im;
        return (x * splat<kWidth>(ratio) + alternate<kWidth>(1.0, -1.0) * swap_parts<kWidth>(x)) /
               splat<kWidth>(d.im + d.re * ratio);
    }
}

/// A group of entries of all right-hand sides: started from the panels, less what is known; solved; put back.
template <class T, int Panels, int Columns> struct Group {
    static constexpr int size = Columns / kParts<T>, per_panel = kPanel / kWidth, vectors = Panels * per_panel;
    Vec<kWidth> of[vectors][size];

    [[gnu::always_inline]] static double* place(const Substitution<T>& s, i64 j, int v, int c) {
        return s.entry(j + c) + v / per_panel * s.stride + v % per_panel * kWidth;
    }

    /// Entries from j on, less t times `count` known ones from `known` on.
    [[gnu::always_inline]] inline void start(const Substitution<T>& s, i64 j, i64 known, i64 count) {
        const Source<T>& t = s.t;
        Sums<Panels, Columns> sums;
        add_products(sums, count, s.entry(known), s.stride, ColumnsOfT<T>(t.from(j, known)));
        for (int c = 0; c < size; ++c)
            for (int v = 0; v < vectors; ++v)
                of[v][c] = load<kWidth>(place(s, j, v, c)) - tile_values<T>(sums, v, c, t.conjugate ? -1.0 : 1.0);
    }

    /// Solves with the corner of t on its diagonal.
    template <bool Forward> [[gnu::always_inline]] inline void solve(const Substitution<T>& s, i64 j) {
        for (int step = 0; step < size; ++step) {
            const int c = Forward ? step : size - 1 - step;
            if (!s.unit) {
                const T pivot = read_element(s.t, j + c, j + c);
                for (int v = 0; v < vectors; ++v) of[v][c] = quotient<T>(of[v][c], pivot);
            }
            for (int later = step + 1; later < size; ++later) {
                const int to = Forward ? later : size - 1 - later;
                const Factor<T, kWidth> element(read_element(s.t, j + to, j + c));
                for (int v = 0; v < vectors; ++v) element.take_from(of[v][to], of[v][c]);
            }
        }
    }

    [[gnu::always_inline]] inline void finish(const Substitution<T>& s, i64 j) const {
        for (int c = 0; c < size; ++c)
            for (int v = 0; v < vectors; ++v) store<kWidth>(place(s, j, v, c), of[v][c]);
    }
};

/// Entries j .. end, less t times `count` known ones. What is left of a group goes by ever smaller ones.
template <class T, int Panels, int Columns = kColumns<Panels>>
[[gnu::noinline]] void subtract_known(Substitution<T> s, i64 j, i64 end, i64 known, i64 count) {
    using Entries = Group<T, Panels, Columns>;
    for (; j + Entries::size <= end; j += Entries::size) {
        Entries entries;
        entries.start(s, j, known, count);
        entries.finish(s, j);
    }
    if constexpr (Entries::size > 1)
        if (j < end) subtract_known<T, Panels, Columns / 2>(s, j, end, known, count);
}

/// A block on the diagonal, entries `begin` .. `end`, from entry j on: those on its other side are known.
template <class T, int Panels, bool Forward, int Columns = kColumns<Panels>>
[[gnu::noinline]] void solve_block(Substitution<T> s, i64 begin, i64 end, i64 j) {
    using Entries = Group<T, Panels, Columns>;
    constexpr i64 size = Entries::size;
    for (; Forward ? j + size <= end : j - size >= begin; j += Forward ? size : -size) {
        const i64 first = Forward ? j : j - size;
        Entries entries;
        if (Forward) entries.start(s, first, begin, j - begin);
        else entries.start(s, first, j, end - j);
        entries.template solve<Forward>(s, first);
        entries.finish(s, first);
    }
    if constexpr (size > 1)
        if (Forward ? j < end : j > begin) solve_block<T, Panels, Forward, Columns / 2>(s, begin, end, j);
}

/// What `count` known entries give to entries j .. end, by pieces of t that are long where it is contiguous.
template <class T, int Panels>
void subtract_rectangle(Substitution<T> s, i64 j, i64 end, i64 known, i64 count) {
    constexpr SubstitutionBlocks blocks = kSubstitutionBlocks;
    const bool summed_along = s.t.along_p == 1;
    const i64 columns = summed_along ? end - j : blocks.run, steps = summed_along ? blocks.run : blocks.across;
    for (; j < end; j += columns)
        for (i64 p = 0; p < count; p += steps)
            subtract_known<T, Panels>(s, j, least(j + columns, end), known + p, least(steps, count - p));
}

/// Entries `begin` .. `end`: one half, what it gives to the other, and that.
template <class T, int Panels> void solve_entries(Substitution<T> s, i64 begin, i64 end) {
    constexpr SubstitutionBlocks blocks = kSubstitutionBlocks;
    const bool forward = s.forward;
    if (end - begin <= blocks.diagonal) {
        if (forward) solve_block<T, Panels, true>(s, begin, end, begin);
        else solve_block<T, Panels, false>(s, begin, end, end);
        return;
    }
    const i64 middle = begin + up_to((end - begin) / 2, blocks.unit);
    if (forward) {
        solve_entries<T, Panels>(s, begin, middle);
        subtract_rectangle<T, Panels>(s, middle, end, begin, middle - begin);
        solve_entries<T, Panels>(s, middle, end);
    } else {
        solve_entries<T, Panels>(s, middle, end);
        subtract_rectangle<T, Panels>(s, begin, middle, middle, end - middle);
        solve_entries<T, Panels>(s, begin, middle);
    }
}

/// Right-hand sides from r on: out of the panels into B.
template <class T>
void place_panels(const TriangularProblem<T>& problem, const double* panel, i64 stride, i64 r, i64 count) {
    using Quad = Entries<T, 1, kWidth, kPanel>;
    for (; count > 0; count -= kPanelRows<T>, r += kPanelRows<T>, panel += stride)
        for (i64 p = 0; p < problem.order; p += kGroup<T>) {
            const double* const from = panel + p * kPanel;
            if (count < kPanelRows<T> || problem.order - p < kGroup<T>) {
                place_edge<kPanel>(from, problem, r, least(count, kPanelRows<T>), p,
                                   least(kGroup<T>, problem.order - p));
                continue;
            }
            Quad entries;
            for (int c = 0; c < Quad::group; ++c)
                for (int v = 0; v < Quad::vectors; ++v) entries.of[v][c] = load<kWidth>(from + Quad::offset(v, c, 0));
            double* const to = parts(problem.at(r, p));
            if (problem.left) entries.store_columns(to, problem.ldb * kParts<T>);
            else entries.store_rows(to, problem.ldb * kParts<T>);
        }
}

template <class T, int Panels = 1> void solve_in_panels(Substitution<T> s, i64 panels, i64 order) {
    if constexpr (Panels < kMostPanels)
        if (panels > Panels) return solve_in_panels<T, Panels + 1>(s, panels, order);
    solve_entries<T, Panels>(s, 0, order);
}

/// The whole problem. False when there is no memory; nothing has been done then.
template <class T> bool solve_few(const TriangularProblem<T>& problem) {
    constexpr i64 height = kPanelRows<T>, at_once = kMostPanels * height, near = 1024, line = 8;
    const i64 stride = group_stride<T>(problem.order) + line; // panels are not a power of two apart
    const i64 most = (least(at_once, problem.count) + height - 1) / height;
    alignas(64) double on_stack[near];
    double* const allocated = most * stride <= near
                                  ? nullptr
                                  : static_cast<double*>(nxl_buffer_alloc(most * stride * i64{sizeof(double)}, 64));
    if (!allocated && most * stride > near) return false;
    const Substitution<T> s{problem.t, problem.forward, problem.unit, allocated ? allocated : on_stack, stride};
    const T* const alpha = is_one(problem.alpha) ? nullptr : &problem.alpha;
    for (i64 r = 0; r < problem.count; r += at_once) {
        const i64 count = least(at_once, problem.count - r);
        pack_a<T, kPanel>(problem.rhs().from(r, 0), count, problem.order, s.panels, stride, alpha);
        solve_in_panels(s, (count + height - 1) / height, problem.order);
        place_panels(problem, s.panels, stride, r, count);
    }
    nxl_buffer_free(allocated);
    return true;
}

} // namespace nxl::NXL_TARGET
