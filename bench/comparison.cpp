// Google Benchmark selects the cases and runs the rounds; times are taken by Interleaved and lines printed by Report.
#include "bench/comparison.hpp"
#include "bench/interleaved.hpp"
#include "bench/peak.hpp"
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>

namespace nxl::bench {
namespace {

constexpr double beyond_caches = 32e6;      // bytes: what memory gives varies more from round to round
constexpr double long_flops = 2e9;          // a good part of a second
constexpr double thread_clock_from = 30e-6; // seconds: a hundred times what reading that clock costs
constexpr std::size_t least_rounds = 3;     // also of cases where a single one takes long enough

/// One case: a routine at a size, its operands, and those contenders that have it.
class CaseRun {
    const Contest& contest_;
    const std::vector<Contender>& contenders_;
    const Routine& routine_;
    Case case_;
    Work work_;
    Operands operands_, reference_;
    std::vector<std::size_t> present_;
    std::optional<Interleaved> rounds_;
    const Contender* odd_ = nullptr; // the first to disagree

    void start_rounds() {
        std::vector<Batch> batches;
        for (const std::size_t i : present_) batches.push_back(batch(i));
        Untimed untimed;
        if (operands_.need_restoring()) untimed.before_call = [this] { operands_.restore(); };
        if (contest_.self_check) {
            untimed.before_batch = [this] { operands_.refill(); };
            untimed.after_batch = [this](std::size_t place, i64 calls) {
                compare(present_[place], operands_.need_restoring() ? 1 : calls);
            };
        }
        rounds_.emplace(std::move(batches), least_seconds(), clock(), std::move(untimed));
    }

    /// Long calls on a busy machine are never left alone, so those of one thread are timed by its own clock.
    Clock clock() const {
        const bool one_thread = std::ranges::all_of(contenders_, [](const Contender& c) { return c.threads == 1; });
        return one_thread && least_seconds() > thread_clock_from ? thread_seconds : wall_seconds;
    }

    Symbol symbol_of(std::size_t i) const { return contenders_[i].library->symbol(routine_.name); }

    void run(std::size_t i, Operands& operands, i64 calls) const {
        contenders_[i].library->set_threads(contenders_[i].threads);
        routine_.run(symbol_of(i), operands, calls);
    }

    Batch batch(std::size_t i) {
        return [this, symbol = symbol_of(i), contender = &contenders_[i]](i64 calls) {
            contender->library->set_threads(contender->threads);
            routine_.run(symbol, operands_, calls);
        };
    }

    /// Sums of n terms in another order differ by as much as n roundings of values up to the root of n; what a call
    /// leaves is the next one's input.
    double tolerance(i64 calls) const {
        const double terms = std::max(16, work_.terms);
        return std::numeric_limits<double>::epsilon() * terms * std::sqrt(terms) * static_cast<double>(calls);
    }

    /// Whose results are to be those of contender i: the library's own for a peer, a peer's for the others.
    std::optional<std::size_t> judge_of(std::size_t i) const {
        for (const std::size_t other : present_)
            if (contenders_[other].peer != contenders_[i].peer) return other;
        return std::nullopt;
    }

    /// Compares what contender i has made of the operands, by so many calls, with its judge's work.
    void compare(std::size_t i, i64 calls) {
        reference_.refill();
        run(*judge_of(i), reference_, calls);
        if (!odd_ && !(reference_.difference(operands_) <= tolerance(calls))) odd_ = &contenders_[i];
    }

  public:
    CaseRun(const Contest& contest, const Case& which)
        : contest_(contest),
          contenders_(contest.contenders),
          routine_(routine(which.routine)),
          case_(which),
          work_(routine_.work(which)),
          operands_(which, work_.layout),
          reference_(which, work_.layout) {
        for (std::size_t i = 0; i < contenders_.size(); ++i)
            if (symbol_of(i).address) present_.push_back(i);
    }

    bool judged() const { return judge_of(present_.front()).has_value(); }

    /// Runs every contender once, or as often as is quick, and compares it with the one in the first column.
    void compare_all() {
        const bool once = operands_.need_restoring() || work_.flops >= long_flops;
        const int calls = once ? 1 : 3; // an odd number, as every second call undoes one
        run(present_.front(), operands_, calls);
        for (const std::size_t i : present_) {
            if (i == present_.front()) continue;
            reference_.refill();
            run(i, reference_, calls);
            if (!odd_ && !(reference_.difference(operands_) <= tolerance(1))) odd_ = &contenders_[i];
        }
    }

    /// Null while all agree.
    const Contender* odd() const { return odd_; }

    /// More rounds at each call: Google Benchmark calls again until they have taken the time that it wants.
    Timing time(benchmark::State& state) {
        if (!rounds_) start_rounds();
        for (auto _ : state) state.SetIterationTime(rounds_->round());
        while (rounds_->rounds() < least_rounds && !odd_) rounds_->round();

        Timing timing{case_, work_, std::vector<double>(contenders_.size(), NAN), least_seconds()};
        const std::vector<double> seconds = rounds_->seconds();
        for (std::size_t i = 0; i < present_.size(); ++i) timing.seconds[present_[i]] = seconds[i];
        return timing;
    }

    /// Whichever takes longer at the machine's peak: the arithmetic, or the traffic with the level of memory that holds
    /// the operands.
    double least_seconds() const {
        const int threads = contenders_.front().threads;
        const double footprint = std::min(work_.bytes(), sizeof(double) * static_cast<double>(work_.layout.doubles()));
        const auto kind = work_.copies                        ? Traffic::copies
                          : work_.stored > 0.1 * work_.loaded ? Traffic::stores
                                                              : Traffic::reads;
        return std::max(work_.flops / (contest_.core_flops * threads),
                        work_.bytes() / peak_bandwidth(kind, footprint, threads));
    }
};

/// What the benchmark of a case hands over to the reporter, and keeps between its calls.
struct Current {
    std::unique_ptr<CaseRun> run;
    std::optional<Timing> timing;
};

void run_case(benchmark::State& state, Current& current, const Contest& contest, const Case& which) {
    const std::string& first = contest.contenders[0].label;
    if (!current.run) {
        if (!contest.contenders[0].library->symbol(which.routine).address)
            return state.SkipWithError((first + " has no " + which.routine).c_str());
        current.run = std::make_unique<CaseRun>(contest, which);
        if (contest.self_check && !current.run->judged())
            return state.SkipWithError(("no peer here has " + which.routine + " to check it against").c_str());
        current.run->compare_all();
    }
    if (!current.run->odd()) current.timing = current.run->time(state);
    if (const Contender* odd = current.run->odd()) {
        current.timing.reset();
        state.SkipWithError((odd->peer ? odd->label + " has another result than " + first
                                       : odd->label + " has another result than its peer")
                                .c_str());
    }
}

/// Prints the line of a case when its benchmark has ended.
class LineReporter : public benchmark::BenchmarkReporter {
    Report& report_;
    Current& current_;

  public:
    bool all_agreed = true;

    LineReporter(Report& report, Current& current) : report_(report), current_(current) {}

    bool ReportContext(const Context&) override {
        report_.print_heading();
        return true;
    }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.error_occurred) {
                all_agreed = false;
                std::fprintf(stderr, "nxl-bench: %s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
            }
        if (current_.timing) report_.add(*current_.timing);
        current_ = {};
    }
};

std::vector<Column> columns_of(const std::vector<Contender>& contenders) {
    std::vector<Column> columns;
    for (const Contender& contender : contenders)
        columns.push_back({contender.label, contender.library->version, contender.threads, contender.peer});
    return columns;
}

} // namespace

Comparison::Comparison(Contest contest)
    : contest_(std::move(contest)),
      report_(contest_.family, columns_of(contest_.contenders),
              contest_.core_flops * contest_.contenders.front().threads) {}

bool Comparison::run(const std::vector<Case>& cases, const std::string& filter) {
    Current current;
    for (const Case& which : cases) {
        const std::string name = contest_.family + "/" + which.label() + "/" + which.size.text();
        const double seconds = routine(which.routine).work(which).bytes() > beyond_caches ? 1.5 : 0.3;
        benchmark::RegisterBenchmark(name.c_str(), run_case, std::ref(current), std::cref(contest_), which)
            ->UseManualTime()
            ->MinTime(seconds);
    }
    LineReporter reporter(report_, current);
    std::ostream nowhere(nullptr); // what has to be said is said here
    reporter.SetErrorStream(&nowhere);
    if (benchmark::RunSpecifiedBenchmarks(&reporter, filter) == 0) throw no_case(contest_.family, filter);
    if (!report_.timings().empty()) report_.print_summary();
    return reporter.all_agreed;
}

common::UsageError no_case(const std::string& family, const std::string& filter) {
    return common::UsageError("--filter: no case of " + family + " matches '" + filter + "'");
}

} // namespace nxl::bench
