// Solutions from the factors of sytrf and hetrf, as the drivers of the family share them.
#pragma once
#include "lapack/kernel/source/indefinite/pivots.hpp"
#include "lapack/kernel/source/indefinite/symmetry.hpp"
#include "service/matrix.hpp"
#include "service/scratch.hpp"

namespace nxl {

/// Memory for the solutions of one thread: its size does not depend on n.
template <class T> class SolveSpace {
    const Scratch<T> block_;
    const Scratch<i64> rows_;

  public:
    explicit SolveSpace(i64 right_hand_sides);
    bool there() const { return block_.data() && rows_.data(); }
    T* block() const { return block_.data(); }
    T* kept() const;
    i64* rows() const { return rows_.data(); }
};

/// X := A^-1 X, A being given by its factors. The columns of X are those that the space was made for, at most.
template <class T, Symmetry kind>
void solve_factored(char uplo, const Matrix<const T>& factors, const i64* ipiv, const Matrix<T>& x,
                    const SolveSpace<T>& space);

/// x := A^-1 x, or with op C the adjoint's, which is another matrix when A is complex and symmetric.
template <class T, Symmetry kind>
void solve_factored_one(char op, char uplo, const Matrix<const T>& factors, const i64* ipiv, T* x,
                        const SolveSpace<T>& space) {
    const i64 n = factors.rows;
    const bool conjugate = op == 'C' && kind == Symmetry::symmetric;
    const auto turn = [&] {
        for (i64 i = 0; conjugate && i < n; ++i) x[i] = conj_if(true, x[i]);
    };
    turn();
    solve_factored<T, kind>(uplo, factors, ipiv, Matrix<T>{x, n, 1, n}, space);
    turn();
}

} // namespace nxl
