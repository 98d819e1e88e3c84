// The peer of the sparse family: CHOLMOD, where its header was there when nxl-bench was configured and its library is
// there when it runs.
#pragma once
#include "bench/direct_solver.hpp"
#include <memory>
#include <string>
#include <vector>

namespace nxl::bench {

/// What the analysis of a symmetric positive definite pattern comes to.
struct Analysis {
    double seconds = 0.0;
    double entries = 0.0; // of L, diagonal included
    double peak_bytes = 0.0;
};

class SparsePeer {
  public:
    virtual ~SparsePeer() = default;
    virtual std::string version() const = 0;
    /// The pattern that is analysed from now on: that of the problem, or of A + A^T.
    virtual void set(const nxl_test::SparseProblem& problem) = 0;
    virtual Analysis analyse(SparseOrdering ordering) = 0;
    /// Entries of L in an order of the caller, new to old, from 1.
    virtual double entries(const std::vector<int>& perm) = 0;
};

/// Null where CHOLMOD is not there.
std::unique_ptr<SparsePeer> cholmod_peer();

} // namespace nxl::bench
