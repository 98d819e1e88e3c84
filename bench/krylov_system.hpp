// The system that the krylov family solves, and the caller's part of an iteration: the matrix product and the
// application of incomplete factors. Every contender works on these arrays.
#pragma once
#include <vector>

namespace nxl::bench {

/// Compressed sparse rows, counted from 0; columns ascend.
struct SparseRows {
    int n = 0;
    std::vector<int> start, column;
    std::vector<double> value;

    void multiply(const double* x, double* y) const;
};

/// -div grad u + c . grad u on the unit cube with u = 0 around it: seven points, differences of c against the wind,
/// side^3 unknowns, times the square of the mesh width.
SparseRows convection_diffusion(int side);

/// L without its diagonal of ones and U, in the pattern of the matrix.
class IncompleteFactors {
    const SparseRows& pattern_; // has to outlive this
    std::vector<double> value_, inverse_pivots_;
    std::vector<int> diagonal_; // positions in value_

  public:
    /// factors: as long as the values of the pattern.
    IncompleteFactors(const SparseRows& pattern, std::vector<double> factors);

    int order() const { return pattern_.n; }

    /// z := U^-1 L^-1 r
    void apply(const double* r, double* z) const;
};

/// ||b - A x|| / ||b||
double relative_residual(const SparseRows& a, const std::vector<double>& b, const std::vector<double>& x);

} // namespace nxl::bench
