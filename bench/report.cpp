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

std::string threads_text(int threads) { return std::to_string(threads) + (threads == 1 ? " thread" : " threads"); }

double rate(const Timing& timing, std::size_t column) {
    const double amount = timing.work.flops > 0.0 ? timing.work.flops : timing.work.bytes();
    return amount / timing.seconds[column] * 1e-9;
}

double ratio(const Timing& timing, std::size_t column) { return timing.seconds[column] / timing.seconds[0]; }

Report::Report(std::string family, std::vector<Column> columns, double peak_flops)
    : family_(std::move(family)),
      columns_(std::move(columns)),
      peak_flops_(peak_flops) {}

double Report::ratio_to_best(const Timing& timing) const {
    double least = NAN;
    for (std::size_t i = 1; i < columns_.size(); ++i)
        if (columns_[i].peer) least = std::fmin(least, ratio(timing, i)); // fmin passes over NaN
    return least;
}

void Report::print_heading() const {
    std::printf("\n%-24s %13s %-7s", "routine", "size", "unit");
    for (const Column& column : columns_) std::printf(" %11s", column.label.c_str());
    for (std::size_t i = 1; i < columns_.size(); ++i) std::printf(" %14s", ("/ " + columns_[i].label).c_str());
    std::printf(" %11s %8s\n%-24s %13s %-7s", "/ best peer", "of peak", "", "", "");
    for (const Column& column : columns_) std::printf(" %11s", threads_text(column.threads).c_str());
    std::printf("\n");
}

void Report::add(const Timing& timing) {
    timings_.push_back(timing);
    std::printf("%-24s %13s %-7s", timing.which.label().c_str(), timing.which.size.text().c_str(), unit(timing));
    for (std::size_t i = 0; i < columns_.size(); ++i) print_number(11, 2, rate(timing, i));
    for (std::size_t i = 1; i < columns_.size(); ++i) print_number(14, 2, ratio(timing, i));
    print_number(11, 2, ratio_to_best(timing));
    print_number(7, 0, 100.0 * timing.least_seconds / timing.seconds[0]);
    std::printf("%%\n");
    std::fflush(stdout);
}

/// Over the sizes of one routine, or over everything when the label is empty.
void Report::print_means(const std::string& label) const {
    std::vector<Mean> means(columns_.size());
    Mean to_best;
    for (const Timing& timing : timings_) {
        if (!label.empty() && label != timing.which.label()) continue;
        for (std::size_t i = 1; i < columns_.size(); ++i) means[i].add(ratio(timing, i));
        to_best.add(ratio_to_best(timing));
    }
    means.push_back(to_best);
    if (std::ranges::all_of(means, [](const Mean& mean) { return mean.count == 0; })) return;
    std::printf("%-24s", label.empty() ? "all" : label.c_str());
    for (std::size_t i = 1; i < means.size(); ++i) {
        print_number(16, 2, means[i].geometric());
        print_number(10, 2, means[i].least());
    }
    std::printf("\n");
}

/// The case that is furthest behind the better peer.
void Report::print_least() const {
    const Timing* least = nullptr;
    for (const Timing& timing : timings_)
        if (const double value = ratio_to_best(timing); !std::isnan(value) && (!least || value < ratio_to_best(*least)))
            least = &timing;
    if (least)
        std::printf("least ratio to the better peer: %.2f, %s/%s/%s\n", ratio_to_best(*least), family_.c_str(),
                    least->which.label().c_str(), least->which.size.text().c_str());
}

void Report::print_summary() const {
    std::printf("\nSpeed of %s, geometric mean of the ratios and the least of them\n%-24s", columns_[0].label.c_str(),
                "");
    for (std::size_t i = 1; i < columns_.size(); ++i)
        std::printf(" %16s %10s", ("/ " + columns_[i].label).c_str(), "least");
    std::printf(" %16s %10s\n", "/ best peer", "least");
    std::vector<std::string> seen;
    for (const Timing& timing : timings_)
        if (std::ranges::find(seen, timing.which.label()) == seen.end()) {
            seen.push_back(timing.which.label());
            print_means(seen.back());
        }
    print_means("");
    print_least();
}

void Report::write_csv(const std::string& file) const {
    std::ofstream out(file);
    out << "family,routine,size,threads,library,version,seconds_per_call,rate,unit,speed_of_first,fraction_of_peak\n";
    for (const Timing& timing : timings_)
        for (std::size_t i = 0; i < columns_.size(); ++i)
            if (!std::isnan(timing.seconds[i]))
                out << family_ << ',' << timing.which.label() << ',' << timing.which.size.text() << ','
                    << columns_[i].threads << ',' << columns_[i].label << ",\"" << columns_[i].version << "\","
                    << timing.seconds[i] << ',' << rate(timing, i) << ',' << unit(timing) << ',' << ratio(timing, i)
                    << ',' << timing.least_seconds / timing.seconds[i] << '\n';
    out.flush();
    if (!out) throw std::runtime_error("cannot write " + file);
}

} // namespace nxl::bench
