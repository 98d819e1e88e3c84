// Runs the cases of a family: every contender on the same data, checked against each other, then timed in turn.
#pragma once
#include "bench/report.hpp"
#include <string>
#include <vector>

namespace nxl::bench {

struct Contender {
    const Library* library;
    int threads;
    std::string label;
    bool peer; // not this library
};

/// Times the cases whose name, such as level1/ddot/1000 or gemm/dgemm-TN/512, matches the regular expression. Returns
/// whether all contenders agreed. A case on which they do not, or whose routine the first contender lacks, is reported
/// and not timed; a peer without the routine is left out of its row.
class Comparison {
    std::string family_;
    std::vector<Contender> contenders_;
    double core_flops_;
    Report report_;

  public:
    /// core_flops: operations per second of one core at its peak.
    Comparison(std::string family, std::vector<Contender> contenders, double core_flops);

    bool run(const std::vector<Case>& cases, const std::string& filter);
    const Report& report() const { return report_; }
};

} // namespace nxl::bench
