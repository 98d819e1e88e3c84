// The peer of the krylov family: Eigen's GMRES, where Eigen was there when nxl-bench was configured.
#pragma once
#include "bench/krylov_system.hpp"
#include <memory>
#include <string>
#include <vector>

namespace nxl::bench {

struct KrylovSettings {
    int restart, max_iterations;
    double tolerance; // of the residual norm, relative to its first value
};

class KrylovPeer {
  public:
    virtual ~KrylovPeer() = default;

    /// From x = 0. Returns the iterations taken.
    virtual int solve(const std::vector<double>& b, std::vector<double>& x) = 0;
};

/// Empty when nxl-bench was built without Eigen.
std::string eigen_version();

/// Null when nxl-bench was built without Eigen. Matrix and factors have to outlive the peer.
std::unique_ptr<KrylovPeer> eigen_gmres(const SparseRows& a, const IncompleteFactors& factors,
                                        const KrylovSettings& settings);

} // namespace nxl::bench
