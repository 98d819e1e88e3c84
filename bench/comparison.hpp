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
};

struct Case {
    std::string routine;
    int n;
};

/// Times the cases whose name, such as level1/ddot/1000, matches the regular expression. Returns whether all contenders
/// agreed; a case on which they do not is reported and not timed.
class Comparison {
    std::string family_;
    std::vector<Contender> contenders_;
    Report report_;

  public:
    Comparison(std::string family, std::vector<Contender> contenders);

    bool run(const std::vector<Case>& cases, const std::string& filter);
    const Report& report() const { return report_; }
};

} // namespace nxl::bench
