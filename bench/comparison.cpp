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
#include <utility>

namespace nxl::bench {
namespace {

constexpr double beyond_caches = 32e6;      // bytes: what memory gives varies more from round to round
constexpr double long_flops = 2e9;          // a good part of a second
constexpr double thread_clock_from = 30e-6; // seconds: a hundred times what reading that clock costs
constexpr std::size_t least_rounds = 3;     // also of cases where a single one takes long enough

/// One case: a routine at a size, its operands, and those contenders that have it.
class CaseRun {
    const std::vector<Contender>& contenders_;
    const Routine& routine_;
    Case case_;
    double core_flops_;
    Work work_;
    Operands operands_;
    std::vector<std::size_t> present_;
    std::optional<Interleaved> rounds_;

    void start_rounds() {
        std::vector<Batch> batches;
        for (const std::size_t i : present_) batches.push_back(batch(i));
        Preparation prepare;
        if (operands_.need_restoring()) prepare = [this] { operands_.restore(); };
        rounds_.emplace(std::move(batches), least_seconds(), clock(), std::move(prepare));
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

  public:
    CaseRun(const std::vector<Contender>& contenders, const Case& which, double core_flops)
        : contenders_(contenders),
          routine_(routine(which.routine)),
          case_(which),
          core_flops_(core_flops),
          work_(routine_.work(which)),
          operands_(which, work_.layout) {
        for (std::size_t i = 0; i < contenders_.size(); ++i)
            if (symbol_of(i).address) present_.push_back(i);
    }

    /// The first contender that disagrees with the one in the first column; null when there is none.
    const Contender* first_to_disagree() {
        // Sums of n terms in another order differ by as much as n roundings of values up to the root of n.
        const double terms = std::max(16, work_.terms);
        const double tolerance = std::numeric_limits<double>::epsilon() * terms * std::sqrt(terms);
        const bool once = operands_.need_restoring() || work_.flops >= long_flops;
        const int calls = once ? 1 : 3; // an odd number, as every second call undoes one
        run(present_.front(), operands_, calls);
        Operands theirs(case_, work_.layout);
        for (const std::size_t i : present_) {
            if (i == present_.front()) continue;
            theirs.refill();
            run(i, theirs, calls);
            if (!(theirs.difference(operands_) <= tolerance)) return &contenders_[i];
        }
        return nullptr;
    }

    /// More rounds at each call: Google Benchmark calls again until they have taken the time that it wants.
    Timing time(benchmark::State& state) {
        if (!rounds_) start_rounds();
        for (auto _ : state) state.SetIterationTime(rounds_->round());
        while (rounds_->rounds() < least_rounds) rounds_->round();

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
        return std::max(work_.flops / (core_flops_ * threads),
                        work_.bytes() / peak_bandwidth(kind, footprint, threads));
    }
};

/// What the benchmark of a case hands over to the reporter, and keeps between its calls.
struct Current {
    std::unique_ptr<CaseRun> run;
    std::optional<Timing> timing;
};

void run_case(benchmark::State& state, Current& current, const std::vector<Contender>& contenders, const Case& which,
              double core_flops) {
    if (!current.run) {
        if (!contenders[0].library->symbol(which.routine).address)
            return state.SkipWithError((contenders[0].label + " has no " + which.routine).c_str());
        current.run = std::make_unique<CaseRun>(contenders, which, core_flops);
        if (const Contender* odd = current.run->first_to_disagree())
            return state.SkipWithError((odd->label + " has another result than " + contenders[0].label).c_str());
    }
    current.timing = current.run->time(state);
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
                std::printf("%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
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

Comparison::Comparison(std::string family, std::vector<Contender> contenders, double core_flops)
    : family_(std::move(family)),
      contenders_(std::move(contenders)),
      core_flops_(core_flops),
      report_(family_, columns_of(contenders_), core_flops * contenders_.front().threads) {}

bool Comparison::run(const std::vector<Case>& cases, const std::string& filter) {
    Current current;
    for (const Case& which : cases) {
        const std::string name = family_ + "/" + which.label() + "/" + which.size.text();
        const double seconds = routine(which.routine).work(which).bytes() > beyond_caches ? 1.5 : 0.3;
        benchmark::RegisterBenchmark(name.c_str(), run_case, std::ref(current), std::cref(contenders_), which,
                                     core_flops_)
            ->UseManualTime()
            ->MinTime(seconds);
    }
    LineReporter reporter(report_, current);
    const bool any = benchmark::RunSpecifiedBenchmarks(&reporter, filter) > 0;
    if (any) report_.print_summary();
    return any && reporter.all_agreed;
}

} // namespace nxl::bench
