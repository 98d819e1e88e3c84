// dgetri, zgetri: inverse of a general matrix from its LU factors.
#include "lapack/kernel/source/lu/getri.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/trtri.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/arguments.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/slice.hpp"
#include "service/threads.hpp"
#include <algorithm>
#include <cstring>
#include <utility>

namespace nxl {
namespace {

/// Columns at once where there is memory: products with fewer read the matrix too often for their work.
constexpr i64 wide_block = 256;

/// Calls body(start, length) for parts of n on a thread each.
template <class Body> void over_blocks(i64 n, const Body& body) {
    constexpr i64 least = 256; // rows that pay for a thread
    const i64 blocks = std::clamp(n / least, i64{1}, i64{max_threads(domain_blas)});
    if (blocks == 1) return body(i64{0}, n);
    parallel_blocks(static_cast<int>(blocks), static_cast<int>(blocks), [=, &body](int block) {
        const Slice own = balanced_slice(n, 1, block, blocks);
        body(own.start, own.count);
    });
}

/// Moves the columns of L from column j on, below the diagonal, to `work`, and leaves zeros for them. What stands in
/// `work` above them stays as it is: nobody looks there.
template <class T> void take_lower(const Matrix<T>& a, i64 j, const Matrix<T>& work) {
    over_blocks(a.rows, [=](i64 start, i64 rows) {
        for (i64 k = j; k < j + work.columns; ++k) {
            T* const column = a.at(0, k);
            T* const taken = work.at(0, k - j);
            for (i64 i = std::max(start, k + 1); i < start + rows; ++i) {
                taken[i] = column[i];
                column[i] = T{};
            }
        }
    });
}

/// X L = U^-1 for X, from the last columns to the first: U^-1 - X2 L21 in the product's place, then a solution with
/// L11. `work`: as many rows, and the columns that are taken at once.
template <class T> void solve_by_blocks(const Matrix<T>& a, const Matrix<T>& work) {
    const i64 n = a.rows, width = work.columns;
    for (i64 j = (n - 1) / width * width; j >= 0; j -= width) {
        const i64 columns = std::min(width, n - j), next = j + columns, rest = n - next;
        const Matrix<T> lower = work.columns_from(0, columns), x = a.columns_from(j, columns);
        take_lower(a, j, lower);
        if (rest > 0) gemm('N', 'N', -1.0, a.columns_from(next, rest), lower.rows_from(next, rest), 1.0, x);
        trsm('R', 'L', 'N', 'U', 1.0, lower.from(j, 0), x);
    }
}

/// Column moves that do all interchanges at once, each column moved once: cycle by cycle, what the first of a cycle
/// holds waits in a place of its own until the last one takes it.
struct ColumnMoves {
    struct Move {
        i64 to, from;
    };
    static constexpr i64 waiting = -1; // in place of a column
    Scratch<i64> source;               // of each column, then itself once it has been dealt with
    Scratch<Move> moves;
    i64 count = 0;

    explicit ColumnMoves(i64 n) : source(n), moves(2 * n) {}
    bool there() const { return source.data() && moves.data(); }

    /// The interchanges of the rows of A, undone as interchanges of columns from the last to the first.
    void find(i64 n, const i64* ipiv) {
        i64* const from = source.data();
        for (i64 j = 0; j < n; ++j) from[j] = j;
        for (i64 j = n - 2; j >= 0; --j) std::swap(from[j], from[ipiv[j] - 1]);
        for (i64 first = 0; first < n; ++first)
            if (from[first] != first) add_cycle(first);
    }

  private:
    void add(i64 to, i64 from) { moves.data()[count++] = {to, from}; }
    void add_cycle(i64 first) {
        add(waiting, first);
        i64 column = first;
        for (i64 next = source.data()[column]; next != first; next = source.data()[column]) {
            add(column, next);
            source.data()[column] = column;
            column = next;
        }
        source.data()[column] = column;
        add(column, waiting);
    }
};

/// A^-1 = X P. Every thread has rows of its own, and their part of `work`, n elements.
template <class T> void move_columns(i64 n, T* a, i64 lda, const ColumnMoves& plan, T* work) {
    over_blocks(n, [=, &plan](i64 start, i64 rows) {
        const auto column = [=](i64 j) { return (j == ColumnMoves::waiting ? work : a + j * lda) + start; };
        for (i64 i = 0; i < plan.count; ++i) {
            const auto& [to, from] = plan.moves.data()[i];
            std::memcpy(column(to), column(from), static_cast<std::size_t>(rows) * sizeof(T));
        }
    });
}

/// The same one by one: for columns in the first cache, and where there is no memory for a plan.
template <class T> void interchange_columns(i64 n, T* a, i64 lda, const i64* ipiv) {
    for (i64 j = n - 2; j >= 0; --j)
        if (ipiv[j] != j + 1) swap(n, a + j * lda, 1, a + (ipiv[j] - 1) * lda, 1);
}

template <class T> void undo_interchanges(i64 n, T* a, i64 lda, const i64* ipiv, T* work) {
    constexpr i64 small = 64;
    if (n <= small) return interchange_columns(n, a, lda, ipiv);
    ColumnMoves plan(n);
    if (!plan.there()) return interchange_columns(n, a, lda, ipiv);
    plan.find(n, ipiv);
    move_columns(n, a, lda, plan, work);
}

/// In the caller's workspace if it holds a wide block, else in memory of our own, else in what there is.
template <class T> void solve_with_lower(const Matrix<T>& a, const Workspace<T>& space) {
    const i64 n = a.rows, wide = std::min(n, wide_block), given = space.length() / n;
    const auto solve = [&](T* work, i64 width) { solve_by_blocks(a, {work, n, width, n}); };
    if (given >= wide) return solve(space.data(), wide);
    const Scratch<T> own(n * wide);
    if (own.data()) solve(own.data(), wide);
    else solve(space.data(), given);
}

} // namespace

template <class T>
void getri(const i64& n, T* a, const i64& lda, const i64* ipiv, T* work, const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GETRI");
    const Workspace<T> space(work, lwork, std::max(n, i64{1}), std::max(n * block_of(name), i64{1}));
    if (Arguments(name).size(1, n).leading(3, lda, n).workspace(6, space).refused(info)) return;
    if (space.is_query() || n == 0) return;
    trtri('U', 'N', n, a, lda, info);
    if (info != 0) return;
    solve_with_lower({a, n, n, lda}, space);
    undo_interchanges(n, a, lda, ipiv, work);
}
template decltype(getri<double>) getri<double>;
template decltype(getri<zcomplex>) getri<zcomplex>;

} // namespace nxl
