// Independent subtrees of the tree of supernodes, shared out among threads.
#pragma once
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/symbolic_structure.hpp"

namespace nxl::pardiso {

/// Subtrees too small to keep a thread waiting for another, each with one thread that has all of it.
class Subtrees {
    const i32 threads_;
    const Scratch<i32> owner_; ///< by supernode

  public:
    static constexpr i32 above = 0; ///< the owner of a supernode above all subtrees; threads count from 1

    Subtrees(const Supernodes& supernodes, i32 threads);

    bool has_memory() const { return owner_.data() != nullptr; }
    i32 threads() const { return threads_; }
    i32 owner(i32 s) const { return owner_.data()[s - 1]; }
};

} // namespace nxl::pardiso
