// perm: a permutation, and its cycles.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"
#include <memory>

namespace nxl::pardiso {

/// Index i goes to p[i]; both count from 0.
struct Perm {
    i32 n;
    i32* p;
};

/// The images are unset. Null when there is no memory, as of the other functions that return a record.
Perm* perm_create(i32 n);
/// A permutation whose images are yet to be told: all 0.
Perm* perm_create_zero(i32 n);
Perm* perm_create_identity(i32 n);
Perm* perm_copy(const Perm* src);
void perm_free(Perm* perm);

/// First `first`, then `second`: i goes to second(first(i)).
Perm* perm_compose(const Perm* first, const Perm* second);
Perm* perm_invert(const Perm* perm);

/// Whether it is a bijection; if not, prints what is wrong with it.
bool perm_check(const Perm* perm);

/// Cycle c has the entries element[start[c]] .. element[start[c + 1] - 1], each the image of the one before it.
struct Cycles {
    i32* element;
    i32 elements;
    i32 cycles;
    i32* start; // cycles + 1
};

/// Cycles ascend by their least entry, with which they begin.
Cycles* perm_cycles(const Perm* perm);
void cycles_free(Cycles* cycles);

struct FreePerm {
    void operator()(Perm* perm) const { perm_free(perm); }
};
struct FreeCycles {
    void operator()(Cycles* cycles) const { cycles_free(cycles); }
};
using OwnedPerm = std::unique_ptr<Perm, FreePerm>;
using OwnedCycles = std::unique_ptr<Cycles, FreeCycles>;

} // namespace nxl::pardiso
