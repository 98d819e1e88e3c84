// Block sizes and crossover points of LAPACK, for callers that know the routine and the type. ILAENV answers by name
// from the same records, see ilaenv.hpp; the numbers are in tuning_tables.hpp, those of eigenproblems in
// eigen_tuning.hpp.
#pragma once
#include "lapack/kernel/source/tuning/tuning_tables.hpp"
#include "service/arguments.hpp"
#include <algorithm>

namespace nxl {

/// Sizes of the LU factorisation of n columns, for a type letter S, D, C or Z.
struct LuSizes {
    char type;

    /// Columns of a block on one thread: half the next power of two, so that the factorisation calls itself for half of
    /// the columns, until so few are left that they need no blocks.
    constexpr i64 recursion_block(i64 n) const { return type == 'D' ? lu_recursion_block.at(n) : lone_block; }
    /// Columns of a panel that the others look ahead to.
    constexpr i64 panel_block(i64 n) const { return type == 'D' ? lu_panel_block.at(n) : lone_block; }
    /// Columns of a block in the task queue.
    constexpr i64 block(i64 n, i64 threads) const {
        return threads < 2 && type == 'D' ? 1 : lu_block.at(threads, type, n);
    }
    /// Column blocks in one thread's strip of the queue, and those kept for any thread.
    constexpr i64 strip(i64 n, i64 threads) const { return lu_strip.at(threads, type, n); }
    constexpr i64 pool(i64 n, i64 threads) const { return lu_pool.at(threads, type, n); }
    /// Up to so many columns a simpler way is faster.
    constexpr i64 crossover(i64 n, i64 threads) const { return type == 'D' && threads == 8 && n > 2800 ? 4000 : 64; }
    /// What a panel costs, in 32nds of a column update.
    static constexpr i64 panel_share = 16;

  private:
    static constexpr i64 lone_block = lu_block.alone.otherwise;
};
template <class T> inline constexpr LuSizes lu_sizes{type_letter<T>};

/// Sizes of the Cholesky factorisation of order n, the same for all types.
struct CholeskySizes {
    static constexpr i64 crossover = 128;

    /// Columns of a block, or of a tile.
    static constexpr i64 block(i64 n, i64 threads) {
        if (threads < 2) return lone_cholesky_block.at(n);
        return n < 129 ? 128 : team_block(n, threads);
    }
    /// Levels that one task may apply to a tile at once.
    static constexpr i64 level_limit(char uplo, i64 n) { return uplo == 'L' ? 2 : n; }

  private:
    static constexpr i64 team_block(i64 n, i64 threads) {
        const auto team = static_cast<double>(std::min(threads, i64{32}));
        const auto columns = static_cast<i64>((0.078 - team * 0.002) * static_cast<double>(n) + 16.0);
        const i64 block = columns / 8 * 8;
        return block > 512 && threads <= 8 ? 512 : std::min(block, i64{256});
    }
};
inline constexpr CholeskySizes cholesky_sizes;

/// Band factorisations and solutions.
struct BandSizes {
    /// Columns of a block: so many that products of level 3 pay, and the zeros that blocks hold outside of the band do
    /// not.
    static constexpr i64 panel = 32;
    /// Up to so many diagonals beside the main one, columns are worked on one by one, without kernels and blocks: their
    /// calls would cost more than the arithmetic.
    static constexpr i64 narrow = 12;
    /// The published block, by which callers of ILAENV size their own arrays.
    static constexpr i64 published(i64 bandwidth) { return bandwidth <= 64 ? 1 : panel; }
};

/// Columns of a panel of a symmetric indefinite matrix of order n. Each column is brought up to date by a product with
/// those before it: small matrices spend more time on that than wider products save.
constexpr i64 indefinite_panel(i64 n) { return n < 1500 ? 48 : 64; }

/// Columns of a panel of QR, or reflectors that are applied at once, `steps` in all.
constexpr i64 qr_panel(i64 steps) {
    if (steps < 600) return steps < 300 ? 32 : 64;
    return steps < 1500 ? 96 : 128;
}

/// Columns that a panel of QR costs, in 32nds of a column update.
constexpr i64 qr_panel_cost(i64 n) { return qr_panel_share.at(n); }

/// Columns, and rows, of a panel of the reduction of n columns to bidiagonal form. Each step is brought up to date by
/// products with the steps before it.
constexpr i64 bidiagonal_panel(i64 n) { return n < 600 ? 16 : 32; }

/// More rows than columns, or the other way about, by this much: reduced to a triangle first.
constexpr i64 svd_crossover(i64 m, i64 n) { return static_cast<i64>(static_cast<float>(std::min(m, n)) * 1.6F); }

/// Columns of a block of a routine that has no sizes of its own: `block_of(routine<T>("GETRI"))`.
consteval i64 block_of(const RoutineLetters& name) { return defaults_of(RoutineName(name, 6)).block; }

} // namespace nxl
