// What nxl-bench can time, a row per routine: its name, the work in a call, and how it is called.
#pragma once
#include "bench/library.hpp"
#include "bench/operands.hpp"
#include <functional>
#include <string>
#include <vector>

namespace nxl::bench {

/// Work of one call: operations, bytes that have to be loaded and stored, each operand once, and the operands.
struct Work {
    double flops;
    double loaded;
    double stored;
    int terms; // of the longest sum behind an element of the result
    Layout layout;
    bool copies = false; // to be measured against a copy, not against whatever loop stores fastest

    double bytes() const { return loaded + stored; }
};

struct Routine {
    std::string name;
    Work (*work)(const Case& which);
    std::function<void(Symbol symbol, Operands& operands, i64 calls)> run;
};

/// The rows of each level, of the factorisations, of other LAPACK, of eigenproblems and of the primitives, in a file of
/// its own.
const std::vector<Routine>& level1_routines();
const std::vector<Routine>& level2_routines();
const std::vector<Routine>& level3_routines();
const std::vector<Routine>& factor_routines();
const std::vector<Routine>& lapack_routines();
const std::vector<Routine>& eigen_routines();
const std::vector<Routine>& nonsymmetric_routines();
const std::vector<Routine>& primitive_routines();

/// The routine of that name; throws when there is none.
const Routine& routine(const std::string& name);

} // namespace nxl::bench
