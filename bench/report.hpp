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
    bool peer; // a library other than the one in the first column
};

struct Timing {
    Case which;
    Work work;
    std::vector<double> seconds; // per call, by column; NaN where a library lacks the routine
    double least_seconds;        // that the machine's measured peak allows
};

class Report {
    std::string family_;
    std::vector<Column> columns_;
    double peak_flops_;
    std::vector<Timing> timings_;

    void print_means(const std::string& label) const;
    void print_least() const;

  public:
    /// peak_flops: operations per second that all threads of the first column together reach at best.
    Report(std::string family, std::vector<Column> columns, double peak_flops);

    const std::string& family() const { return family_; }
    double peak_flops() const { return peak_flops_; }

    const std::vector<Column>& columns() const { return columns_; }
    const std::vector<Timing>& timings() const { return timings_; }

    /// How many times as fast the first column is as the fastest peer; NaN when either is missing.
    double ratio_to_best(const Timing& timing) const;

    void print_heading() const;
    void add(const Timing& timing); // prints its line
    void print_summary() const;
    void write_csv(const std::string& file) const;
};

/// "1 thread", "2 threads".
std::string threads_text(int threads);

/// How many times as fast the first column is as another; NaN when either is missing.
double ratio(const Timing& timing, std::size_t column);

/// Operations per second in units of 1e9; bytes for routines that only move or compare.
double rate(const Timing& timing, std::size_t column);

} // namespace nxl::bench
