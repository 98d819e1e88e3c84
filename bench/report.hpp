// What was measured, as a table on standard output while it grows, and as CSV.
#pragma once
#include "bench/routines.hpp"
#include <string>
#include <vector>

namespace nxl::bench {

struct Column {
    std::string label;
    std::string version;
    int threads;
};

struct Timing {
    std::string routine;
    int n;
    Work work;
    std::vector<double> seconds; // per call, by column; NaN where a library lacks the routine
    double least_seconds;        // that the machine's measured peak allows
};

class Report {
    std::string family_;
    std::vector<Column> columns_;
    std::vector<Timing> timings_;

    void print_means(const std::string& routine) const;

  public:
    Report(std::string family, std::vector<Column> columns);

    const std::vector<Column>& columns() const { return columns_; }
    const std::vector<Timing>& timings() const { return timings_; }

    void print_heading() const;
    void add(const Timing& timing); // prints its line
    void print_summary() const;
    void write_csv(const std::string& file) const;
};

/// How many times as fast the first column is as another; NaN when either is missing.
double ratio(const Timing& timing, std::size_t column);

} // namespace nxl::bench
