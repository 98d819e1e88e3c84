// How much memory out-of-core work takes, and whether it is worth it: arithmetic alone.
#pragma once
#include "solvers_ds/kernel/default/pardiso/names.hpp"

namespace nxl::pardiso {

/// Memory of an analysis, in kilobytes but for the first.
struct OocDemand {
    i64 structure_bytes; ///< with the row lists
    i64 reduced;         ///< the structure without them
    i64 peak;            ///< of the analysis
    i64 numeric;         ///< of factors in memory, and the work beside them

    i64 structure() const { return structure_bytes >> 10; }
    i64 total_megabytes() const { return ((numeric + structure()) >> 10) + 1; }
    /// What iparam(61) to (63) tell.
    i64 peak_megabytes() const { return ((structure() + peak) >> 10) + 1; }
    i64 structure_megabytes() const { return (structure_bytes >> 20) + 1; }
    i64 numeric_megabytes() const { return (numeric >> 10) + 1; }
    /// What out-of-core work needs before its window.
    i64 least_megabytes() const { return ((reduced + peak) >> 10) + 1; }
};

/// The mode that an analysis ends in.
inline OocMode decided_mode(OocMode asked, const OocDemand& demand, i64 max_core) {
    if (asked != OocMode::decide) return asked;
    return demand.total_megabytes() >= max_core ? OocMode::out_of_core : OocMode::in_core;
}

/// What a window is cut for. Counts of scalars and of integers.
struct WindowNeed {
    i64 scalar_words;                 ///< doubles of a scalar
    i64 tallest, widest;              ///< rows and columns of a supernode
    i64 largest_block, largest_upper; ///< entries of L, and of U, of a supernode
    i64 factor;                       ///< entries of L and U
    i64 lists;                        ///< integers of the row lists
    i64 permanent, index_arrays;      ///< kilobytes that stay beside it

    i64 list_bytes() const { return (lists + 1) * 4; }
    i64 factor_bytes() const { return factor * 8 * scalar_words; }
    /// Two supernodes: one that is factored, and one that updates it.
    i64 lower_bytes() const { return (tallest + largest_block + widest + 2) * 16 * scalar_words; }
    i64 upper_bytes() const { return (2 * largest_upper + 4) * 8 * scalar_words; }
    i64 least_list_bytes() const { return (2 * tallest + 2) * 4; }
};

struct OocWindow {
    bool fits = false;
    bool whole = false;
    i64 words = 0;      ///< of L and U, 8 bytes each
    i64 list_words = 0; ///< of the row lists, 4 bytes each
};

/// The window within `max_core` megabytes: all of the factor where that fits, else factor and row lists in proportion.
OocWindow window_for(const WindowNeed& need, i64 max_core);

} // namespace nxl::pardiso
