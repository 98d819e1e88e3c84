// The factorisations of the library on virtual cores: its own queues, tables and schedules decide, tasks take the time
// that their kernels are known to take.
#pragma once
#include "bench/scaling/virtual_team.hpp"
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::bench {

/// What all plays need to know.
struct PlayedMachine {
    SyncTimes sync;
    DecisionClock decide;
};

/// Seconds of the steps of an LU factorisation with blocks of one width.
struct LuCosts {
    std::function<double(i64 rows, i64 columns)> panel; ///< to factor it
    std::function<double(i64 rows, i64 columns)> apply; ///< a panel of so many rows to so many columns
    double interchange;                                 ///< of two elements
};

/// Seconds of the steps of a Cholesky factorisation by tiles, all of one order.
struct CholeskyCosts {
    double factor, solve;
    std::function<double(i64 levels, bool diagonal)> update; ///< of a tile by so many products
};

/// Seconds of the steps of a supernodal factorisation.
struct SparseCosts {
    std::function<double(i64 rows, i64 width)> assemble, factor; ///< of a supernode
    std::function<double(i64 rows, i64 columns, i64 depth)> update;
};

/// Columns of a block of the queue, which one core is given as if it were two.
i64 lu_block_of(i64 n, int cores);
i64 cholesky_block_of(i64 n, int cores);

PlayedRun play_lu(i64 n, int cores, const LuCosts& costs, const PlayedMachine& machine);
PlayedRun play_cholesky(i64 n, int cores, const CholeskyCosts& costs, const PlayedMachine& machine);
PlayedRun play_sparse(const pardiso::Supernodes& supernodes, int cores, const SparseCosts& costs,
                      const PlayedMachine& machine);

/// How long a thread that finds nothing to do stays away: as IdleWait does.
class PlayedIdleWait {
    int pauses_ = 1;

  public:
    double wait(const SyncTimes& sync);
    void found_work() { pauses_ = 1; }
};

} // namespace nxl::bench
