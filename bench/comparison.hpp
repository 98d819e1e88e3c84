// Runs the cases of a family: every contender on the same data, checked against each other, then timed in turn.
#pragma once
#include "bench/report.hpp"
#include "common/input_error.hpp"
#include <string>
#include <vector>

namespace nxl::bench {

struct Contender {
    const Library* library;
    int threads;
    std::string label;
    bool peer; // not this library
};

struct Contest {
    std::string family;
    std::vector<Contender> contenders;
    double core_flops; // operations per second of one core at its peak
    bool self_check;   // each timed batch starts from fresh operands and counts when its results are a peer's
};

/// Times the cases whose name, such as level1/ddot/1000 or gemm/dgemm-TN/512, matches the regular expression; throws
/// when none does. Returns whether all contenders agreed. Before a case is timed, all of them have to agree on one run.
/// A case on which they do not, whose routine the first contender lacks, or which is to be self-checked without a peer,
/// is reported and has no figure; a peer without the routine is left out of its row.
class Comparison {
    Contest contest_;
    Report report_;

  public:
    explicit Comparison(Contest contest);

    bool run(const std::vector<Case>& cases, const std::string& filter);
    const Report& report() const { return report_; }
};

/// A filter that leaves nothing to run.
common::UsageError no_case(const std::string& family, const std::string& filter);

} // namespace nxl::bench
