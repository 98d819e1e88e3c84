// The updates that a supernode receives from those before it: products of blocks, added to its columns by the places
// of their rows.
#pragma once
#include "blas/calls.hpp"
#include "service/kernel_slot.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/pivots.hpp"
#include <algorithm>

namespace nxl::pardiso {

/// Work memory of one thread.
template <class T> struct UpdateWork {
    i32* indmap; ///< n: the place of a row in the list of the target
    i32* relind; ///< n: the places of the rows of an update
    T* temp;     ///< the product
    i64 temp_size;
    T* scaled; ///< of the LDL^T members: rows of L times D, widest^2
};

/// y := x D by supernode: `rows` rows of L, ldl apart.
template <class M, class T = typename M::T>
void multiply_by_d(const FactorBlock<T>& block, const T* l, i64 ldl, i64 rows, T* y, i64 ldy) {
    for (i32 k = 0; k < block.width; ++k) {
        const T d = block.d[2 * k], off = block.d[2 * k + 1];
        const T *const x = l + k * ldl, *const beside = block.row_interchanges[k] > 0 ? nullptr : l + (k + 1) * ldl;
        T* const to = y + k * ldy;
        if (!beside) {
            for (i64 i = 0; i < rows; ++i) to[i] = x[i] * d;
            continue;
        }
        // the pivot is (d, conj(off); off, last)
        const T last = block.d[2 * (k + 1)], across = conj_if<M::hermitian>(off);
        T* const to_last = to + ldy;
        for (i64 i = 0; i < rows; ++i) {
            to[i] = x[i] * d + beside[i] * off;
            to_last[i] = x[i] * across + beside[i] * last;
        }
        ++k;
    }
}

template <class M> class Updater {
    using T = typename M::T;

    const UpdateWork<T> work_;
    FactorBlock<T> target_{};

    /// c := beta c - a b^T, or b^H.
    static void product(i64 m, i64 n, i64 k, const T* a, i64 lda, const T* b, i64 ldb, T beta, T* c, i64 ldc) {
        gemm('N', M::transposition, m, n, k, T(-1.0), a, lda, b, ldb, beta, c, ldc);
    }

    /// The same, of a triangle without what is above its diagonal: by blocks of columns.
    static void product(bool triangle, i64 m, i64 n, i64 k, const T* a, i64 lda, const T* b, i64 ldb, T beta, T* c,
                        i64 ldc) {
        constexpr i64 together = 32; // columns: above the diagonal stays half a block of them
        const i64 step = triangle ? together : n;
        for (i64 j = 0; j < n; j += step)
            product(triangle ? m - j : m, std::min(step, n - j), k, triangle ? a + j : a, lda, b + j, ldb, beta,
                    c + j * ldc + (triangle ? j : 0), ldc);
    }

    /// Rows of an update, one block of them, and the rows that stand for its columns.
    struct Operands {
        const T* left;
        i64 ld_left;
        const T* right;
        i64 ld_right;
    };

    /// Where an update goes: rows `places`, which are contiguous or not, of columns relind[0 .. columns - 1] of c.
    /// `shift` is the place of the first row of c.
    struct Place {
        const i32* places;
        bool contiguous;
        i64 shift;
        T* c;
        i64 ldc;
    };

    /// Without packing and without a buffer: what pays while one factor stays in the cache of first level.
    void small(const Operands& x, i64 rows, i64 columns, i64 depth, bool triangle, const Place& to) {
        const ScatteredProduct shape{.rows = rows,
                                     .columns = columns,
                                     .depth = depth,
                                     .ld_left = x.ld_left,
                                     .ld_right = x.ld_right,
                                     .ldc = to.ldc,
                                     .row_places = to.places,
                                     .column_places = work_.relind,
                                     .lower = triangle,
                                     .conjugate = M::hermitian};
        slot_of<T, &KernelTable::dscattered_product, &KernelTable::zscattered_product>()(shape, x.left, x.right,
                                                                                         to.c - to.shift);
    }

    void add(i64 rows, i64 columns, bool triangle, const Place& to) {
        for (i64 j = 0; j < columns; ++j) {
            const T* const from = work_.temp + j * rows;
            T* const column = to.c + work_.relind[j] * to.ldc - to.shift;
            for (i64 i = triangle ? j : 0; i < rows; ++i) column[to.places[i]] += from[i];
        }
    }

    bool apply(const Operands& x, i64 rows, i64 columns, i64 depth, bool triangle, const Place& to) {
        constexpr i64 few = 8192 * sizeof(double) / sizeof(T); // numbers of the right factor
        if (rows == 0) return true;
        if (!to.contiguous && depth > 1 && rows * columns > work_.temp_size) return false;
        if (columns * depth <= few) {
            small(x, rows, columns, depth, triangle, to);
        } else if (to.contiguous) {
            T* const c = to.c + (to.places[0] - to.shift) + work_.relind[0] * to.ldc;
            product(triangle, rows, columns, depth, x.left, x.ld_left, x.right, x.ld_right, T(1.0), c, to.ldc);
        } else {
            product(triangle, rows, columns, depth, x.left, x.ld_left, x.right, x.ld_right, T(0.0), work_.temp, rows);
            add(rows, columns, triangle, to);
        }
        return true;
    }

  public:
    explicit Updater(const UpdateWork<T>& work) : work_(work) {}

    void aim(const FactorBlock<T>& target) {
        target_ = target;
        for (i32 k = 0; k < target.rows; ++k) work_.indmap[target.list[k] - 1] = k;
    }

    /// How many rows of a source from `offset` on are columns of the target.
    i32 columns_from(const Supernodes& supernodes, i32 source, i32 offset) const {
        const i32 *const list = supernodes.list(source) + offset, rows = supernodes.rows(source) - offset;
        const i32 limit = target_.first + target_.width;
        if (rows <= 8)
            return static_cast<i32>(std::find_if(list, list + rows, [=](i32 row) { return row >= limit; }) - list);
        return static_cast<i32>(std::lower_bound(list, list + rows, limit) - list);
    }

    /// The update of the rows of `source` from `offset` on. False when it does not fit into the buffer.
    bool update(const FactorBlock<T>& source, i32 offset, i32 columns) {
        const i64 rows = source.rows - offset, depth = source.width, ldl = source.rows;
        const i32* const list = source.list + offset;
        i32* const places = work_.relind;
        for (i64 i = 0; i < rows; ++i) places[i] = work_.indmap[list[i] - 1];
        const bool contiguous = places[rows - 1] - places[0] == rows - 1;
        const T *const l = source.l + offset, *right = l;
        i64 ld_right = ldl;
        if constexpr (M::has_d) {
            right = work_.scaled;
            ld_right = columns;
            multiply_by_d<M>(source, l, ldl, columns, work_.scaled, columns);
        }
        if constexpr (!M::has_u)
            return apply({l, ldl, right, ld_right}, rows, columns, depth, true,
                         {places, contiguous, 0, target_.l, target_.rows});
        else {
            const i64 ldu = source.below(), rest = rows - columns;
            const T* const u = source.u + (offset - source.width);
            return apply({l, ldl, u, ldu}, rows, columns, depth, false,
                         {places, contiguous, 0, target_.l, target_.rows}) &&
                   apply({u + columns, ldu, l, ldl}, rest, columns, depth, false,
                         {places + columns, contiguous, target_.width, target_.u, target_.below()});
        }
    }
};

} // namespace nxl::pardiso
