// Solution of L D L^T X = B by blocks of pivots: down with L, divided by D, and up with L^T, or the other way round for
// U D U^T. Published routines go pivot by pivot; here a block's columns, with all its interchanges made, are one
// triangle and one product.
//
//     L_k:    x1 := P x1,   x1 := corner^-1 x1,   x2 := x2 - rest x1
//     L_k^T:  x1 := x1 - rest^T x2,   x1 := corner^-T x1,   x1 := P^T x1
//
// The product runs over the rest of A as it stands. For the few rows whose elements have been moved by interchanges the
// product is made apart, and what A's own rows do there is kept off.
#include "lapack/kernel/source/indefinite/solve.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/vector_product.hpp"
#include "lapack/kernel/source/indefinite/pivot_block.hpp"

namespace nxl {

template <class T>
SolveSpace<T>::SolveSpace(i64 right_hand_sides)
    : block_(PivotBlock<T>::room_needed + PivotBlock<T>::most * right_hand_sides),
      rows_(PivotBlock<T>::most) {}
template <class T> T* SolveSpace<T>::kept() const { return block_.data() + PivotBlock<T>::room_needed; }
template class SolveSpace<double>;
template class SolveSpace<zcomplex>;

namespace {

/// C := C - op(A) B; with one column by the product that is made for vectors.
template <class T> void subtract_product(char op, const Operand<T>& a, const Operand<T>& b, const Matrix<T>& c) {
    if (a.rows == 0 || a.columns == 0) return;
    if (c.columns == 1) subtract_vector_product(op, a, b.data, c.data);
    else gemm(op, 'N', -1.0, a, b, 1.0, c);
}
template <class T> void solve_triangle(char uplo, char op, const Operand<T>& a, const Matrix<T>& x) {
    if (x.columns == 1) trsv(uplo, op, 'U', a, x.data);
    else trsm('L', uplo, op, 'U', 1.0, a, x);
}

template <class T, Symmetry kind> class Solver {
    static constexpr char transposed = adjoint_letter<T, kind>;
    const char uplo_;
    const PivotOrder order_;
    const Matrix<const T> a_;
    const i64* const ipiv_;
    const Matrix<T> x_;
    const SolveSpace<T>& space_;

    using Block = PivotBlock<T>;

    Block block_of_steps(const Slice& steps) const {
        return Block(order_, steps, a_, ipiv_, space_.block(), space_.rows());
    }
    Matrix<T> rows(const Slice& of) const { return x_.rows_from(of.start, of.count); }
    Matrix<const T> rest_of_a(const Block& block) const {
        const Slice rest = block.rest(), columns = block.columns();
        return a_.block(rest.start, columns.start, rest.count, columns.count);
    }
    Matrix<T> kept(const Block& block) const { return {space_.kept(), block.moved().rows, x_.columns, Block::most}; }

    /// Rows of X that interchanges have moved elements of, to or from `kept`.
    void keep(const Block& block) const {
        const Matrix<T> to = kept(block);
        for (i64 j = 0; j < to.columns; ++j)
            for (i64 i = 0; i < to.rows; ++i) to(i, j) = x_(block.moved_row(i), j);
    }
    void put_back(const Block& block) const {
        const Matrix<T> from = kept(block);
        for (i64 j = 0; j < from.columns; ++j)
            for (i64 i = 0; i < from.rows; ++i) x_(block.moved_row(i), j) = from(i, j);
    }
    void clear(const Block& block) const {
        for (i64 j = 0; j < x_.columns; ++j)
            for (i64 i = 0; i < block.moved().rows; ++i) x_(block.moved_row(i), j) = T{};
    }

    void interchange(i64 k, i64 p) const {
        if (k != p) swap(x_.columns, x_.at(k, 0), x_.ld, x_.at(p, 0), x_.ld);
    }

    void eliminate(const Slice& steps) const {
        for_pivots(order_, steps, ipiv_,
                   [&](i64 step, i64 size, i64 p) { interchange(order_.at(step + size - 1), p); });
        const Block block = block_of_steps(steps);
        const Matrix<T> own = rows(block.columns());
        solve_triangle(uplo_, 'N', block.corner(), own);
        keep(block);
        subtract_product('N', block.moved(), own, kept(block));
        subtract_product('N', rest_of_a(block), own, rows(block.rest()));
        put_back(block);
    }

    void substitute_back(const Slice& steps) const {
        const Block block = block_of_steps(steps);
        const Matrix<T> own = rows(block.columns());
        keep(block);
        clear(block);
        subtract_product(transposed, rest_of_a(block), rows(block.rest()), own);
        put_back(block);
        subtract_product(transposed, block.moved(), kept(block), own);
        solve_triangle(uplo_, transposed, block.corner(), own);
        for_pivots_backward(order_, steps, ipiv_,
                            [&](i64 step, i64 size, i64 p) { interchange(order_.at(step + size - 1), p); });
    }

    void divide_by_one(i64 j) const {
        const T d = on_diagonal<kind>(a_(j, j));
        for (i64 c = 0; c < x_.columns; ++c) x_(j, c) /= d;
    }
    void divide_by_two(i64 j, i64 k) const {
        const PivotPair<T, kind> pair(a_(j, j), a_(k, j), a_(k, k));
        for (i64 c = 0; c < x_.columns; ++c) pair.divide(x_(j, c), x_(k, c));
    }

  public:
    Solver(char uplo, const Matrix<const T>& a, const i64* ipiv, const Matrix<T>& x, const SolveSpace<T>& space)
        : uplo_(uplo),
          order_{uplo == 'U', a.rows},
          a_(a),
          ipiv_(ipiv),
          x_(x),
          space_(space) {}

    /// Pivots in a block: with few right-hand sides the copies that a block makes weigh more than wider products gain.
    i64 width() const { return x_.columns < 8 ? Block::width * 3 / 8 : Block::width; }

    void run() const {
        for (Slice steps{}; steps.end() < order_.n;) {
            steps = pivots_after(order_, ipiv_, steps.end(), width());
            eliminate(steps);
        }
        for_pivots(order_, {0, order_.n}, ipiv_, [&](i64 step, i64 size, i64) {
            if (size == 1) divide_by_one(order_.at(step));
            else divide_by_two(order_.at(step), order_.at(step + 1));
        });
        for (Slice steps{order_.n, 0}; steps.start > 0;) {
            steps = pivots_before(order_, ipiv_, steps.start, width());
            substitute_back(steps);
        }
    }
};

} // namespace

template <class T, Symmetry kind>
void solve_factored(char uplo, const Matrix<const T>& factors, const i64* ipiv, const Matrix<T>& x,
                    const SolveSpace<T>& space) {
    Solver<T, kind>(uplo, factors, ipiv, x, space).run();
}
template void solve_factored<double, Symmetry::symmetric>(char, const Matrix<const double>&, const i64*,
                                                          const Matrix<double>&, const SolveSpace<double>&);
template void solve_factored<zcomplex, Symmetry::symmetric>(char, const Matrix<const zcomplex>&, const i64*,
                                                            const Matrix<zcomplex>&, const SolveSpace<zcomplex>&);
template void solve_factored<zcomplex, Symmetry::hermitian>(char, const Matrix<const zcomplex>&, const i64*,
                                                            const Matrix<zcomplex>&, const SolveSpace<zcomplex>&);

} // namespace nxl
