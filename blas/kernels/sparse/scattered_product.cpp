// [dz]scattered_product: a small product, taken off rows and columns that lie anywhere.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {
namespace {

// Supernodes of sparse factors update each other by many small products. Both factors may be read where they lie: a
// step of k takes a stretch of a column of the one and a few neighbours in a column of the other, which is how the
// register tile wants them. But columns of tall supernodes lie in as many pages, so that what is read many times is
// copied together first. The sums go from their registers to their places:
//
//                      right(j .. j + 3, k)          ->  columns column_places[j .. j + 3] of C
//     left(i .., k)    sums, `Vectors` of rows       ->  rows row_places[i ..], by vectors where they are a run
//
// The rows of a tile stay in the cache of first level while all columns go by.

/// Columns that are `ld` apart.
template <class T> struct Strided {
    const T* data;
    i64 ld;
};

/// The right factor as it lies, or its columns in groups, of which each has all its steps of k together.
template <class T> struct RightFactor {
    static constexpr i64 together = 8;
    Strided<T> own;
    i64 columns, depth;
    bool packed;

    Strided<T> from(i64 j) const {
        if (!packed) return {own.data + j, own.ld};
        const i64 group = j / together * together;
        return {own.data + group * depth + (j - group), smaller(together, columns - group)};
    }
};

template <class T> struct View {
    const ScatteredProduct& shape;
    const T* left;
    RightFactor<T> right;
    T* c;
};

/// Whether the rows of a vector follow each other in C.
template <class T, int W> [[gnu::always_inline]] inline bool is_run(const i32* rows) {
    constexpr int count = W / kParts<T>;
    return rows[count - 1] - rows[0] == count - 1;
}

/// Takes a vector of sums off a column. `run`: its rows follow each other there.
template <class T, int W>
[[gnu::always_inline]] inline void take_off(const Vec<W>& sums, bool run, const i32* rows, T* column) {
    constexpr int parts_of_one = kParts<T>, half = W / 2 / parts_of_one;
    if (run) {
        double* const to = parts(column + rows[0]);
        store<W>(to, load<W>(to) - sums);
    } else if constexpr (W == 8) {
        const Vec<4> low = __builtin_shufflevector(sums, sums, 0, 1, 2, 3);
        const Vec<4> high = __builtin_shufflevector(sums, sums, 4, 5, 6, 7);
        take_off<T, 4>(low, is_run<T, 4>(rows), rows, column);
        take_off<T, 4>(high, is_run<T, 4>(rows + half), rows + half, column);
    } else {
        for (int lane = 0; lane < W; ++lane)
            parts(column + rows[lane / parts_of_one])[lane % parts_of_one] -= sums[lane];
    }
}

/// Adds one step of k: the stretch of rows at `left` times each of the numbers at `right`.
template <class T, int W, int Vectors, int Columns, bool Conjugate>
[[gnu::always_inline]] inline void add_step(Vec<W> (&sums)[Vectors][Columns], const T* left, const T* right) {
    Operand<T, W> rows[Vectors];
    repeat<Vectors>([&](auto v) __attribute__((always_inline)) { rows[v] = Operand<T, W>(parts(left) + v * W); });
    repeat<Columns>([&](auto column) __attribute__((always_inline)) {
        const Factor<T, W> factor(conj_if<Conjugate>(right[column]));
        repeat<Vectors>([&](auto v) __attribute__((always_inline)) {
            sums[v][column] = factor.added_to(sums[v][column], rows[v]);
            if constexpr (W > 1) // one factor at a time: all registers are taken
                asm volatile("" : "+v"(sums[v][column]) : : "memory");
        });
    });
}

template <class T, int W, int Vectors, int Columns, bool Conjugate>
void tile(const View<T>& view, const Strided<T>& rows, i64 i, i64 j, const bool* runs) {
    constexpr i64 rows_of_one = W / kParts<T>;
    const ScatteredProduct& shape = view.shape;
    const auto [first, ld_right] = view.right.from(j);
    const T *left = rows.data, *right = first;
    Vec<W> sums[Vectors][Columns] = {};
    for (i64 k = 0; k < shape.depth; ++k, left += rows.ld, right += ld_right)
        add_step<T, W, Vectors, Columns, Conjugate>(sums, left, right);
    repeat<Columns>([&](auto column) __attribute__((always_inline)) {
        T* const to = view.c + shape.column_places[j + column] * shape.ldc;
        repeat<Vectors>([&](auto v) __attribute__((always_inline)) {
            take_off<T, W>(sums[v][column], runs[v], shape.row_places + i + v * rows_of_one, to);
        });
    });
}

/// Asks for the rows that the next tile takes of `left`: columns lie far apart, where no hardware looks ahead. The
/// share of them that goes with columns [j, end) of all.
template <class T, i64 height> void prefetch_next(const View<T>& view, i64 i, i64 j, i64 end, i64 columns) {
    constexpr i64 line = 64 / sizeof(T),
                  least_depth = 32; // of steps; sources that are narrower are close to each other
    const ScatteredProduct& shape = view.shape;
    if (shape.depth < least_depth || i + 2 * height > shape.rows) return;
    for (i64 k = j * shape.depth / columns, to = end * shape.depth / columns; k < to; ++k)
        for (i64 r = 0; r < height; r += line) __builtin_prefetch(view.left + i + height + r + k * shape.ld_left);
}

constexpr i64 most_packed_depth = 128;                        // steps of k: the widest supernode
constexpr i64 left_doubles = 3 * kWidest * most_packed_depth; // one row of tiles
constexpr i64 right_doubles = 8192;                           // half a cache of second level, or less

/// Copies `Vectors` of rows of all steps of k together.
template <class T, int W, int Vectors> Strided<T> pack_rows(const Strided<T>& rows, i64 depth, double* space) {
    double* to = space;
    for (i64 k = 0; k < depth; ++k, to += Vectors * W)
        repeat<Vectors>([&](auto v) __attribute__((always_inline)) {
            store<W>(to + v * W, load<W>(parts(rows.data + k * rows.ld) + v * W));
        });
    return {reinterpret_cast<const T*>(space), Vectors * W / kParts<T>};
}

template <class T> RightFactor<T> pack_right(const RightFactor<T>& right, double* space) {
    constexpr i64 together = RightFactor<T>::together;
    T* to = reinterpret_cast<T*>(space);
    i64 j = 0;
    for (; j + together <= right.columns; j += together)
        for (i64 k = 0; k < right.depth; ++k, to += together)
            for (i64 c = 0; c < together; ++c) to[c] = right.own.data[j + c + k * right.own.ld];
    for (i64 k = 0; j < right.columns && k < right.depth; ++k)
        for (i64 c = j; c < right.columns; ++c) *to++ = right.own.data[c + k * right.own.ld];
    return {{reinterpret_cast<const T*>(space), 0}, right.columns, right.depth, true};
}

/// Rows from i on against all columns; of a trapezoid against those that reach them. `space`: left_doubles.
template <class T, int W, int Vectors, bool Conjugate> void row_of_tiles(const View<T>& view, i64 i, double* space) {
    constexpr i64 least_columns = 3 * RightFactor<T>::together, least_depth = 8; // that repay a copy of the rows
    constexpr i64 rows_of_one = W / kParts<T>;
    const ScatteredProduct& shape = view.shape;
    bool runs[Vectors];
    for (int v = 0; v < Vectors; ++v) runs[v] = is_run<T, W>(shape.row_places + i + v * rows_of_one);
    const i64 columns = shape.lower ? smaller(i + Vectors * rows_of_one, shape.columns) : shape.columns;
    Strided<T> rows{view.left + i, shape.ld_left};
    if (Vectors > 1 && columns >= least_columns && shape.depth >= least_depth && shape.depth <= most_packed_depth)
        rows = pack_rows<T, W, Vectors>(rows, shape.depth, space);
    const auto groups_of = [&]<int Columns>(i64 j) __attribute__((always_inline)) {
        for (; j + Columns <= columns; j += Columns) {
            if constexpr (Columns > 1) prefetch_next<T, Vectors * rows_of_one>(view, i, j, j + Columns, columns);
            tile<T, W, Vectors, Columns, Conjugate>(view, rows, i, j, runs);
        }
        return j;
    };
    i64 j = 0;
    if constexpr (W > kWidth && kParts<T> == 1) j = groups_of.template operator()<8>(j); // twice as many registers
    j = groups_of.template operator()<4>(j);
    groups_of.template operator()<1>(j);
}

template <class T, int W, int Vectors, bool Conjugate>
void rows_of_tiles(const View<T>& view, i64& i, double* space) {
    constexpr i64 height = Vectors * W / kParts<T>;
    for (; i + height <= view.shape.rows; i += height) row_of_tiles<T, W, Vectors, Conjugate>(view, i, space);
}

template <class T, bool Conjugate> void subtract_rows(const View<T>& view, double* space) {
    constexpr int tall = 4 - kParts<T>; // vectors: with the columns of a tile they fill the registers
    i64 i = 0;
    rows_of_tiles<T, kWidest, tall, Conjugate>(view, i, space);
    rows_of_tiles<T, kWidest, 1, Conjugate>(view, i, space);
    if constexpr (kWidest > kWidth) rows_of_tiles<T, kWidth, 1, Conjugate>(view, i, space);
    rows_of_tiles<T, kParts<T>, 1, Conjugate>(view, i, space);
}

template <class T, bool Conjugate>
void subtract(const ScatteredProduct& shape, const T* left, const T* right, T* c) {
    constexpr i64 least_rows = 12 * kWidest / kParts<T>, least_depth = 8; // that repay a copy of the right factor
    alignas(64) double left_space[left_doubles];
    alignas(64) double right_space[right_doubles];
    RightFactor<T> factor{{right, shape.ld_right}, shape.columns, shape.depth, false};
    if (shape.rows >= least_rows && shape.depth >= least_depth &&
        shape.columns * shape.depth * kParts<T> <= right_doubles)
        factor = pack_right(factor, right_space);
    subtract_rows<T, Conjugate>({shape, left, factor, c}, left_space);
}

} // namespace

void dscattered_product(const ScatteredProduct& shape, const double* left, const double* right, double* c) {
    subtract<double, false>(shape, left, right, c);
}

void zscattered_product(const ScatteredProduct& shape, const zcomplex* left, const zcomplex* right, zcomplex* c) {
    if (shape.conjugate) subtract<Complex, true>(shape, scalars(left), scalars(right), scalars(c));
    else subtract<Complex, false>(shape, scalars(left), scalars(right), scalars(c));
}

} // namespace nxl::NXL_TARGET
