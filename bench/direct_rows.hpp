// Sparse systems solved by every solver in turn: numeric factorisation, solution, and everything together.
#pragma once
#include "bench/direct_solver.hpp"
#include "bench/sparse_cases.hpp"
#include <string>
#include <vector>

namespace nxl::bench {

struct DirectRow {
    std::string problem, size, group, phase;
    int n;
    std::vector<double> figures; // seconds, or bytes in the phase "memory", by contender; NaN for those that are out
    double flops = 0.0;          // of the first contender's factorisation, in its phase
};

/// Figures of the first contender, its other forms and its peers, in this order.
class DirectComparison {
    std::vector<DirectContender> contenders_;
    std::size_t own_; // contenders of this library
    int threads_;
    std::vector<DirectRow> rows_;
    bool agreed_ = true;

    double ratio(const DirectRow& row) const; // of the least figure of the peers to the least of this library
    void print(const DirectRow& row) const;

  public:
    DirectComparison(std::vector<DirectContender> contenders, std::size_t own, int threads);

    void print_heading() const;
    /// Measures the phases whose name, such as sparse/poisson2d/700/numeric, passes the filter.
    void run(const SparseCase& which, const std::function<bool(const std::string&)>& passes);
    void print_summary() const; // geometric means of the ratios

    bool empty() const { return rows_.empty(); }
    bool agreed() const { return agreed_; } // every solver solved what it takes
    const std::vector<DirectRow>& rows() const { return rows_; }
    const std::vector<DirectContender>& contenders() const { return contenders_; }
};

} // namespace nxl::bench
