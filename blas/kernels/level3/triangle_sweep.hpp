// The blocked form of triangular problems: diagonal blocks one after the other, each followed by the product that adds
// what its unknowns give to all entries that depend on them.
#pragma once
#include "blas/kernels/level3/triangle_tiles.hpp"
#include "service/page_buffer.hpp"

namespace nxl::NXL_TARGET {

// A solution with an upper t of three blocks; D is a triangle on the diagonal, R the rectangle beside it:
//
//         x0   x1   x2
//       [ D0 | R0 . R0 ]     pack D0; x0 by tiles; then b1, b2 += x0 (-R0)
//       [      D1 | R1 ]     pack D1; x1 by tiles; then b2     += x1 (-R1)
//       [           D2 ]     pack D2; x2 by tiles
//
// The panels that the tiles leave behind are the operand of the product: right-hand sides are packed once for both. A
// product takes the same steps in the opposite order, last block first, for an entry may change only when all that it
// contributes to have taken it. With n / 192 blocks, all but 192 / n of the work is in the products.
/// Block lengths. Panels of right-hand sides and blocks of t serve as operands of the matrix product, each in the place
/// that suits the side, and their sizes follow its own.
struct TriangleBlocks {
    i64 order = 192;   ///< of a diagonal block at most: the stretch of k of the product
    i64 together = 24; ///< real right-hand sides packed and solved at once, which stay in the first cache
    i64 chunk = 4992;  ///< real right-hand sides that go through the whole triangle
    i64 piece = 192;   ///< real columns of t beside a diagonal block that are packed at once
    i64 rows = 512;    ///< real right-hand sides that are the product's first operand at once
};
constexpr TriangleBlocks kTriangleBlocks;

/// Where a problem keeps its packed operands: one allocation, each part on pages of its own. At full lengths and for
/// real numbers D takes 288 KiB, a piece of R as much, and the panels of 4992 right-hand sides 7.3 MiB.
template <class T> class TriangleBuffers {
    const i64 triangle_bytes_, piece_bytes_, strip_bytes_, panel_bytes_;
    const PageBuffer<char> memory_;

    static constexpr i64 pages(i64 doubles) { return up_to(doubles * i64{sizeof(double)}, page_bytes); }

  public:
    /// `order`: of a diagonal block; `piece` columns of t; `count` right-hand sides.
    TriangleBuffers(i64 order, i64 piece, i64 count)
        : triangle_bytes_(pages(up_to(order, 4) * up_to(order, 4) * kParts<T>)),
          piece_bytes_(pages(up_to(order, 4) * up_to(piece, kTallRows<T>) * kParts<T>)),
          strip_bytes_(pages(StripB::step * up_to(order, 4))),
          panel_bytes_(pages(up_to(order, 4) * up_to(count, kTallRows<T>) * kParts<T>)),
          memory_(triangle_bytes_ + piece_bytes_ + strip_bytes_ + panel_bytes_ + page_bytes) {}

    bool there() const { return memory_.raw() != nullptr; }
    double* triangle() const { return place(0); }
    double* piece() const { return place(triangle_bytes_); }
    double* strip() const { return place(triangle_bytes_ + piece_bytes_); }
    double* panels() const { return place(triangle_bytes_ + piece_bytes_ + strip_bytes_); }

  private:
    double* place(i64 offset) const { return reinterpret_cast<double*>(memory_.data() + offset); }
};

/// A diagonal block on its way through the right-hand sides.
struct DiagonalStep {
    i64 first, length;     // entries of the block
    i64 rest, rest_length; // entries that depend on them
    bool opens;            // first of all blocks
};

/// Entries first .. first + length - 1 of one right-hand side, in place, from each other alone. A solution starts at
/// the entry that depends on no other, a product at the one that no other depends on.
template <class T, class Work>
void plain_rhs(const TriangularProblem<T>& problem, const T& alpha, i64 r, i64 first, i64 length) {
    const bool ascending = problem.forward == Work::inverts;
    const i64 end = first + length;
    for (i64 done = 0; done < length; ++done) {
        const i64 j = ascending ? first + done : end - 1 - done;
        T sum = from_real<T>(0.0);
        for (i64 p = problem.forward ? first : j + 1; p < (problem.forward ? j : end); ++p)
            sum = plus_product(sum, *problem.at(r, p), read_element(problem.t, j, p));
        T& entry = *problem.at(r, j);
        entry = Work::entry(alpha, sum, read_diagonal(problem, j), entry);
    }
}

/// finish_diagonal where the diagonal has no reciprocals: divides by it in B, then packs.
template <class T, class Work>
void finish_by_division(const TriangularProblem<T>& problem, const DiagonalStep& step, i64 r, i64 count, const T& alpha,
                        const TriangleBuffers<T>& buffers) {
    for (i64 k = r; k < r + count; ++k) plain_rhs<T, Work>(problem, alpha, k, step.first, step.length);
    pack_a(problem.rhs().from(r, step.first), count, step.length, buffers.panels(), panel_stride_a<T>(step.length),
           static_cast<const T*>(nullptr));
}

/// Packs right-hand sides r .. r + count for a block and writes their entries of it.
template <class T, class Work>
void finish_diagonal(const TriangularProblem<T>& problem, const DiagonalStep& step, i64 r, i64 count,
                     const TriangleBuffers<T>& buffers) {
    constexpr i64 together = kTriangleBlocks.together / kParts<T>;
    const i64 stride = panel_stride_a<T>(step.length);
    const PackedTriangle triangle{buffers.triangle(), group_stride<T>(step.length), step.first, step.length};
    const bool scaled = (step.opens || !Work::inverts) && !is_one(problem.alpha);
    const T* const alpha = scaled ? &problem.alpha : nullptr;
    if (Work::inverts && !has_reciprocals(problem, step.first, step.length)) {
        const T by = scaled ? problem.alpha : from_real<T>(1.0);
        return finish_by_division<T, Work>(problem, step, r, count, by, buffers);
    }
    for (i64 done = 0; done < count; done += together) {
        const i64 here = least(together, count - done);
        double* const panels = buffers.panels() + done / kTallRows<T> * stride;
        pack_a(problem.rhs().from(r + done, step.first), here, step.length, panels, stride, alpha);
        diagonal_block<T, Work>(problem, triangle,
                                PackedRhs<T>{panels, stride, r + done, here, step.first, step.length});
    }
}

/// Adds the product of the packed right-hand sides and t, or of x and -t for a solution, to the entries that depend on
/// the block.
template <class T, class Work>
void update_rest(const TriangularProblem<T>& problem, const DiagonalStep& step, i64 r, i64 count,
                 const TriangleBuffers<T>& buffers) {
    constexpr i64 most = kTriangleBlocks.piece / kParts<T>, rows_at_once = kTriangleBlocks.rows / kParts<T>;
    const i64 stride = panel_stride_a<T>(step.length);
    const T* const factor = factor_of_t<T>(Work::inverts);
    Result<T> to{problem.b, problem.ldb, problem.alpha, Before::keep};
    if (Work::inverts && step.opens) to.before = before_of(problem.alpha);
    for (i64 done = 0; done < step.rest_length; done += most) {
        const i64 j = step.rest + done, columns = least(most, step.rest_length - done);
        double* const piece = buffers.piece();
        pack_a(problem.t.from(j, step.first), columns, step.length, piece, stride, factor);
        if (problem.left) {
            multiply_block<T>(BlockA{piece, stride, columns, step.length},
                              PanelsAsB<T>{buffers.panels(), stride, count}, buffers.strip(), to, j, r);
            continue;
        }
        for (i64 row = 0; row < count; row += rows_at_once)
            multiply_block<T>(BlockA{buffers.panels() + row / kTallRows<T> * stride, stride,
                                     least(rows_at_once, count - row), step.length},
                              PanelsAsB<T>{piece, stride, columns}, buffers.strip(), to, r + row, j);
    }
}

/// A solution starts with the block that depends on no other; a product ends with it, for the entries of a block are
/// needed until all that depend on them have been added to.
template <class T, class Work>
void sweep(const TriangularProblem<T>& problem, i64 block, const TriangleBuffers<T>& buffers, i64 r, i64 count) {
    const i64 n = problem.order, blocks = (n + block - 1) / block;
    const bool ascending = problem.forward == Work::inverts;
    for (i64 done = 0; done < blocks; ++done) {
        const i64 first = (ascending ? done : blocks - 1 - done) * block, length = least(block, n - first);
        const i64 rest = problem.forward ? first + length : 0, rest_length = problem.forward ? n - rest : first;
        const DiagonalStep step{first, length, rest, rest_length, done == 0};
        pack_triangle(problem, Work::inverts,
                      PackedTriangle{buffers.triangle(), group_stride<T>(length), first, length});
        finish_diagonal<T, Work>(problem, step, r, count, buffers);
        update_rest<T, Work>(problem, step, r, count, buffers);
    }
}

/// All of a problem. False when there is no memory; nothing has been done then.
template <class T, class Work> bool blocked_triangle(const TriangularProblem<T>& problem) {
    const i64 n = problem.order, at_once = least(kTriangleBlocks.chunk / kParts<T>, problem.count);
    const i64 blocks = (n + kTriangleBlocks.order - 1) / kTriangleBlocks.order;
    const i64 block = up_to((n + blocks - 1) / blocks, 4); // all alike but the last
    const TriangleBuffers<T> buffers(block, least(kTriangleBlocks.piece / kParts<T>, n), at_once);
    if (!buffers.there()) return false;
    for (i64 r = 0; r < problem.count; r += at_once)
        sweep<T, Work>(problem, block, buffers, r, least(at_once, problem.count - r));
    return true;
}

/// The whole problem in place, one right-hand side after the other: what is done without memory.
template <class T, class Work> void plain_triangle(const TriangularProblem<T>& problem) {
    for (i64 r = 0; r < problem.count; ++r) plain_rhs<T, Work>(problem, problem.alpha, r, 0, problem.order);
}

template <class T, class Work> void run_triangular(const TriangularProblem<T>& problem) {
    if (!blocked_triangle<T, Work>(problem)) plain_triangle<T, Work>(problem);
}

} // namespace nxl::NXL_TARGET
