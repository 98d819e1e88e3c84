// What nxl-bench can time, a row per routine: its name, the work in a call, and how it is called.
#pragma once
#include "bench/library.hpp"
#include "bench/operands.hpp"
#include <string>
#include <vector>

namespace nxl::bench {

/// Work of one call: operations, bytes that have to be loaded and stored, each operand once, and doubles per operand.
struct Work {
    double flops;
    double loaded;
    double stored;
    i64 doubles;

    double bytes() const { return loaded + stored; }
};

struct Routine {
    std::string name;
    Work (*work)(int n);
    void (*run)(Symbol symbol, Operands& operands, i64 calls);
};

/// The routine of that name; throws when there is none.
const Routine& routine(const std::string& name);

} // namespace nxl::bench
