#include "bench/report.hpp"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace nxl::bench {
namespace {

/// Routines that only move or compare are rated by their traffic.
const char* unit(const Timing& timing) { return timing.work.flops > 0.0 ? "GFLOP/s" : "GB/s"; }

double rate(const Timing& timing, std::size_t column) {
    const double amount = timing.work.flops > 0.0 ? timing.work.flops : timing.work.bytes();
    return amount / timing.seconds[column] * 1e-9;
}

void print_number(int width, int decimals, double value) {
    if (std::isnan(value)) std::printf(" %*s", width, "-");
    else std::printf(" %*.*f", width, decimals, value);
}

struct Mean {
    double log_sum = 0.0, smallest = INFINITY;
    int count = 0;

    void add(double value) {
        if (std::isnan(value)) return;
        log_sum += std::log(value);
        smallest = std::min(smallest, value);
        ++count;
    }
    double geometric() const { return count > 0 ? std::exp(log_sum / count) : NAN; }
    double least() const { return count > 0 ? smallest : NAN; }
};

} // namespace

double ratio(const Timing& timing, std::size_t column) { return timing.seconds[column] / timing.seconds[0]; }

Report::Report(std::string family, std::vector<Column> columns)
    : family_(std::move(family)),
      columns_(std::move(columns)) {}

void Report::print_heading() const {
    std::printf("\n%-8s %9s %-7s", "routine", "n", "unit");
    for (const Column& column : columns_) std::printf(" %11s", column.label.c_str());
    for (std::size_t i = 1; i < columns_.size(); ++i) std::printf(" %14s", ("/ " + columns_[i].label).c_str());
    std::printf(" %8s\n%-8s %9s %-7s", "of peak", "", "", "");
    for (const Column& column : columns_)
        std::printf(" %11s", (std::to_string(column.threads) + (column.threads == 1 ? " thread" : " threads")).c_str());
    std::printf("\n");
}

void Report::add(const Timing& timing) {
    timings_.push_back(timing);
    std::printf("%-8s %9d %-7s", timing.routine.c_str(), timing.n, unit(timing));
    for (std::size_t i = 0; i < columns_.size(); ++i) print_number(11, 2, rate(timing, i));
    for (std::size_t i = 1; i < columns_.size(); ++i) print_number(14, 2, ratio(timing, i));
    std::printf(" %7.0f%%\n", 100.0 * timing.least_seconds / timing.seconds[0]);
    std::fflush(stdout);
}

/// Over the sizes of one routine, or over everything when the name is empty.
void Report::print_means(const std::string& routine) const {
    std::vector<Mean> means(columns_.size());
    for (const Timing& timing : timings_)
        for (std::size_t i = 1; i < columns_.size(); ++i)
            if (routine.empty() || routine == timing.routine) means[i].add(ratio(timing, i));
    std::printf("%-12s", routine.empty() ? "all" : routine.c_str());
    for (std::size_t i = 1; i < columns_.size(); ++i) {
        print_number(16, 2, means[i].geometric());
        print_number(10, 2, means[i].least());
    }
    std::printf("\n");
}

void Report::print_summary() const {
    std::printf("\nSpeed of %s, geometric mean of the ratios and the least of them\n%-12s", columns_[0].label.c_str(),
                "");
    for (std::size_t i = 1; i < columns_.size(); ++i)
        std::printf(" %16s %10s", ("/ " + columns_[i].label).c_str(), "least");
    std::printf("\n");
    std::vector<std::string> seen;
    for (const Timing& timing : timings_)
        if (std::ranges::find(seen, timing.routine) == seen.end()) {
            seen.push_back(timing.routine);
            print_means(timing.routine);
        }
    print_means("");
}

void Report::write_csv(const std::string& file) const {
    std::ofstream out(file);
    out << "family,routine,n,threads,library,version,seconds_per_call,rate,unit,speed_of_first,fraction_of_peak\n";
    for (const Timing& timing : timings_)
        for (std::size_t i = 0; i < columns_.size(); ++i)
            if (!std::isnan(timing.seconds[i]))
                out << family_ << ',' << timing.routine << ',' << timing.n << ',' << columns_[i].threads << ','
                    << columns_[i].label << ",\"" << columns_[i].version << "\"," << timing.seconds[i] << ','
                    << rate(timing, i) << ',' << unit(timing) << ',' << ratio(timing, i) << ','
                    << timing.least_seconds / timing.seconds[i] << '\n';
    out.flush();
    if (!out) throw std::runtime_error("cannot write " + file);
}

} // namespace nxl::bench
