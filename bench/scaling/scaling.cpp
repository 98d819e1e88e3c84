// The family that runs nothing on many cores: factorisations are played on 1 to 128 virtual ones, with the times of
// their steps on this machine; where that is soon done, the same is run on the cores that are there, to check the play.
#include "bench/clocks.hpp"
#include "bench/families.hpp"
#include "bench/machine.hpp"
#include "bench/scaling/rates.hpp"
#include "common/gnuplot.hpp"
#include "common/run_program.hpp"
#include "include/nxl.h"
#include "service/physical_cores.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis.hpp"
#include "tests/support/sparse_problems.hpp"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <omp.h>
#include <random>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace nxl::bench {
namespace {

constexpr int core_counts[] = {1, 2, 4, 8, 16, 32, 64, 128};
constexpr double worth_running = 3.0; // seconds on one core, at most

/// A factorisation of one size, to be played on cores, and to be run.
struct Subject {
    std::function<PlayedRun(int cores)> play;
    std::function<void()> prepare, run;
};

struct Row {
    std::string name;
    int size;
    PlayedRun played;
    double speedup, measured; // NaN where it was not run
};

std::vector<double> random_values(i64 count) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> values(static_cast<std::size_t>(count));
    for (double& value : values) value = uniform(random);
    return values;
}

Subject lu(int n, const PlayedMachine& machine) {
    const auto costs = std::make_shared<std::map<i64, LuCosts>>();
    const auto a = std::make_shared<std::vector<double>>();
    const auto play = [=, &machine](int cores) {
        const i64 nb = lu_block_of(n, cores);
        if (!costs->contains(nb)) costs->emplace(nb, measured_lu_costs(n, nb));
        return play_lu(n, cores, costs->at(nb), machine);
    };
    const auto run = [=] {
        std::vector<int> pivots(static_cast<std::size_t>(n));
        int info = 0;
        dgetrf(&n, &n, a->data(), &n, pivots.data(), &info);
    };
    return {play, [=] { *a = random_values(i64{n} * n); }, run};
}

Subject cholesky(int n, const PlayedMachine& machine) {
    const auto costs = std::make_shared<std::map<i64, CholeskyCosts>>();
    const auto a = std::make_shared<std::vector<double>>();
    const auto play = [=, &machine](int cores) {
        const i64 nb = cholesky_block_of(n, cores);
        if (!costs->contains(nb)) costs->emplace(nb, measured_cholesky_costs(n, nb));
        return play_cholesky(n, cores, costs->at(nb), machine);
    };
    const auto prepare = [=] {
        *a = random_values(i64{n} * n);
        for (std::size_t i = 0; i < a->size(); i += static_cast<std::size_t>(n) + 1) (*a)[i] = 2.0 * n;
    };
    const auto run = [=] {
        int info = 0;
        dpotrf("L", &n, a->data(), &n, &info, 1);
    };
    return {play, prepare, run};
}

/// The analysis of a problem by the solver itself, and its factorisations.
class SparseSystem {
    nxl_test::SparseProblem problem_;
    std::array<std::int64_t, 64> handle_{};
    std::array<int, 64> iparam_{};

    void call(int ido) {
        const int one = 1, silent = 0;
        int error = 0;
        double none = 0.0;
        PARDISO(handle_.data(), &one, &one, &problem_.mtype, &ido, &problem_.n, problem_.a.data(), problem_.ia.data(),
                problem_.ja.data(), nullptr, &one, iparam_.data(), &silent, &none, &none, &error);
        if (error != 0) throw std::runtime_error("PARDISO ends with " + std::to_string(error));
    }

  public:
    explicit SparseSystem(int side) : problem_(nxl_test::poisson3d(side)) {
        iparam_[0] = 1;
        iparam_[1] = 2;
        analyse();
    }
    SparseSystem(const SparseSystem&) = delete;
    SparseSystem& operator=(const SparseSystem&) = delete;
    ~SparseSystem() { call(-1); }

    void analyse() {
        iparam_[2] = NXL_Get_Max_Threads(); // the schedule is for so many
        call(11);
    }
    pardiso::Supernodes supernodes() { return pardiso::supernodes_of(pardiso::Handle(handle_.data())); }
    void factorise() { call(22); }
};

Subject sparse(int side, const PlayedMachine& machine) {
    static const SparseCosts costs = measured_sparse_costs();
    const auto system = std::make_shared<SparseSystem>(side);
    return {[system, &machine](int cores) { return play_sparse(system->supernodes(), cores, costs, machine); },
            [system] { system->analyse(); }, [system] { system->factorise(); }};
}

struct Kind {
    const char* name;
    Subject (*subject)(int size, const PlayedMachine& machine);
    int least; // size
    std::vector<int> sizes;
};

const std::vector<Kind> kinds = {{"lu", lu, 1, {1000, 4000, 12000}},
                                 {"cholesky", cholesky, 1, {1000, 4000, 12000}},
                                 {"poisson3d", sparse, 2, {24, 40, 56}}}; // one point has nothing to factor

struct PlayedCase {
    const Kind* kind;
    int size;
};

std::vector<PlayedCase> cases_of(const Request& request) {
    const std::regex filter(request.filter);
    std::vector<PlayedCase> cases;
    for (const Kind& kind : kinds)
        for (const int size : request.sizes.empty() ? kind.sizes : request.sizes)
            if (std::regex_search("scaling/" + std::string(kind.name) + '/' + std::to_string(size), filter)) {
                if (size < kind.least)
                    throw common::UsageError("--sizes: the least for " + std::string(kind.name) + " is " +
                                             std::to_string(kind.least));
                cases.push_back({&kind, size});
            }
    if (cases.empty()) throw common::UsageError("--filter: no case of scaling matches '" + request.filter + "'");
    return cases;
}

std::vector<double> clocks_of(int threads) {
    std::vector<double> clocks(static_cast<std::size_t>(threads));
#pragma omp parallel num_threads(threads)
    clocks[static_cast<std::size_t>(omp_get_thread_num())] = thread_seconds();
    return clocks;
}

/// What the busiest of so many threads has had of its processor, in the fastest of several runs: other programs count
/// little, and where each thread has a processor it is the time of the run.
double run_on(int threads, const Subject& subject) {
    constexpr double enough = 1.0;
    NXL_Set_Num_Threads(threads);
    double best = HUGE_VAL;
    const double start = wall_seconds();
    for (int round = 0; round < 3 || (round < 50 && wall_seconds() - start < enough); ++round) {
        subject.prepare();
        const std::vector<double> before = clocks_of(threads);
        subject.run();
        const std::vector<double> after = clocks_of(threads);
        double longest = 0.0;
        for (std::size_t t = 0; t < before.size(); ++t) longest = std::max(longest, after[t] - before[t]);
        best = std::min(best, longest);
    }
    NXL_Set_Num_Threads(1);
    return best;
}

void print(const Row& row) {
    const PlayedRun& p = row.played;
    std::printf("%-10s %6d %5d %11.4g %8.2f %6.0f%% %6.0f%% %6.0f%%", row.name.c_str(), row.size, p.cores, p.seconds,
                row.speedup, 100.0 * p.share(p.work), 100.0 * p.share(p.locked), 100.0 * p.idle());
    if (!std::isnan(row.measured)) std::printf(" %11.4g %8.2f", row.measured, p.seconds / row.measured);
    std::printf("\n");
    std::fflush(stdout);
}

void play_all(const Kind& kind, int size, const PlayedMachine& machine, std::vector<Row>& rows) {
    NXL_Set_Num_Threads(1);
    const Subject subject = kind.subject(size, machine);
    double alone = 0.0;
    for (const int cores : core_counts) {
        const PlayedRun played = subject.play(cores);
        if (cores == 1) alone = played.seconds;
        const bool is_run = cores <= nxl_count_physical_cores() && alone < worth_running;
        rows.push_back(
            {kind.name, size, played, alone / played.seconds, is_run ? run_on(cores, subject) : std::nan("")});
        print(rows.back());
    }
}

void write_csv(const std::vector<Row>& rows, const std::string& file) {
    std::ofstream out(file);
    out << "family,case,size,cores,seconds,speedup,work,lock,idle,measured\n";
    for (const Row& r : rows)
        out << "scaling," << r.name << ',' << r.size << ',' << r.played.cores << ',' << r.played.seconds << ','
            << r.speedup << ',' << r.played.share(r.played.work) << ',' << r.played.share(r.played.locked) << ','
            << r.played.idle() << ',' << r.measured << '\n';
}

std::string label_of(const Row& row) { return row.name + " " + std::to_string(row.size); }

/// A curve for each case.
std::string panel(const std::vector<Row>& rows, const std::string& title, double (*figure)(const Row&)) {
    std::ostringstream data, plot;
    plot << "set title \"" << title << "\"\nplot ";
    int curves = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i == 0 || label_of(rows[i]) != label_of(rows[i - 1])) {
            data << (i == 0 ? "" : "EOD\n") << "$curve" << curves << " << EOD\n";
            plot << (i == 0 ? "" : ", ") << "$curve" << curves << " title \"" << label_of(rows[i])
                 << "\" with linespoints pt 7 ps 0.5 lw 1.5 lc " << curves + 1;
            ++curves;
        }
        data << rows[i].played.cores << ' ' << figure(rows[i]) << '\n';
    }
    return data.str() + "EOD\n" + plot.str() + '\n';
}

void draw(const std::vector<Row>& rows, const std::string& file) {
    const std::string script =
        "set logscale x 2\nset grid\nset key left top\nset xlabel \"virtual cores\"\nset xrange [1:128]\n"
        "set multiplot layout 1,2\nset logscale y 2\nset yrange [1:128]\n" +
        panel(rows, "Speed-up", [](const Row& row) { return row.speedup; }) + "unset logscale y\nset yrange [0:100]\n" +
        panel(rows, "Idle, per cent of the cores' time", [](const Row& row) { return 100.0 * row.played.idle(); }) +
        "unset multiplot\n";
    common::draw(file, "", [&](std::FILE* gnuplot) { std::fputs(script.c_str(), gnuplot); },
                 {.width = 1100, .height = 460});
}

} // namespace

int run_scaling(const Request& request) {
    const std::vector<PlayedCase> cases = cases_of(request);
    let_idle_threads_sleep(1);
    NXL_Set_Dynamic(0);
    NXL_Set_Num_Threads(1);
    const PlayedMachine machine = {measured_sync_times(), measured_decisions()};
    print_machine();
    std::printf("lock       %.0f ns alone, %.0f ns from core to core; fork %.1f us; pause %.0f ns\n\n"
                "%-10s %6s %5s %11s %8s %7s %7s %7s %11s %8s\n",
                machine.sync.lock * 1e9, machine.sync.contended_lock * 1e9, machine.sync.fork * 1e6,
                machine.sync.pause * 1e9, "case", "size", "cores", "seconds", "speed-up", "work", "lock", "idle",
                "measured, s", "played /");
    std::vector<Row> rows;
    for (const PlayedCase& each : cases) play_all(*each.kind, each.size, machine, rows);
    if (!request.csv.empty()) write_csv(rows, request.csv);
    if (!request.plot.empty()) draw(rows, request.plot);
    return common::kDone;
}

} // namespace nxl::bench
