// Block sizes and crossover points of LAPACK, by the name of a routine.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The published ILAENV, with private queries and with answers that depend on the team: the factorisations pass their
/// thread count where the published routine has a size. `name` is read in either case and to its sixth letter, blanks
/// after `name_length`; of `opts` only the first letter counts, in either case. A size that is a null pointer counts as
/// -1. A query by name gives 1 for names that do not begin with S, D, C or Z; an unknown query gives -1.
i64 ILAENV(const i64* ispec, const char* name, const char* opts, const i64* n1, const i64* n2, const i64* n3,
           const i64* n4, int name_length, int opts_length);

/// What ILAENV is asked for by name. The factorisations' sizes: GETRF has n in n2 and the thread count in n3; POTRF has
/// n in n1, the thread count in n2, and asks with -2 in n3 for the levels that one task may apply. No count, or -1, is
/// one thread.
enum TuningQuery : i64 {
    block_size = 1,
    least_block_size = 2,
    crossover = 3,
    panel_share = 12,  ///< private: what a panel costs, in 32nds of a column update
    strip_blocks = 17, ///< private: column blocks in one thread's strip of the LU queue
    pool_blocks = 18   ///< private: column blocks of the LU queue kept for any thread
};

} // namespace nxl
