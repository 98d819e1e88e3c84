// FGMRES with ILU(0): how the time is shared between the library and its caller, what bandwidth the library's vector
// work attains, and a peer that solves the same system.
#include "bench/clocks.hpp"
#include "bench/families.hpp"
#include "bench/krylov_peer.hpp"
#include "bench/krylov_system.hpp"
#include "bench/machine.hpp"
#include "bench/peak.hpp"
#include "common/run_program.hpp"
#include "include/nxl.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <regex>
#include <stdexcept>

namespace nxl::bench {
namespace {

constexpr KrylovSettings settings = {.restart = 30, .max_iterations = 1000, .tolerance = 1e-8};
constexpr double residual_allowed = 10.0 * settings.tolerance;
constexpr std::array<int, 3> sides = {22, 46, 100};
constexpr std::size_t least_rounds = 2, most_rounds = 50;
constexpr double enough_seconds = 2.0;

/// The routines of the library under test.
struct Routines {
    decltype(&DFGMRES_INIT) init;
    decltype(&DFGMRES_CHECK) check;
    decltype(&DFGMRES) step;
    decltype(&DFGMRES_GET) get;
    decltype(&DCSRILU0) ilu0;

    explicit Routines(const Library& library) {
        find(library, "DFGMRES_INIT", init);
        find(library, "DFGMRES_CHECK", check);
        find(library, "DFGMRES", step);
        find(library, "DFGMRES_GET", get);
        find(library, "DCSRILU0", ilu0);
    }

  private:
    template <class Function> static void find(const Library& library, const char* name, Function& function) {
        function = reinterpret_cast<Function>(library.symbol(name).address);
        if (!function) throw std::runtime_error(library.name + " has no " + name);
    }
};

std::vector<double> factorise(const Routines& routines, const SparseRows& a) {
    const std::array<int, 128> ipar{};
    const std::array<double, 128> dpar{};
    std::vector<int> start(a.start), column(a.column);
    for (int& k : start) ++k;
    for (int& j : column) ++j;
    std::vector<double> factors(a.value.size());
    int ierr = 0;
    routines.ilu0(&a.n, a.value.data(), start.data(), column.data(), factors.data(), ipar.data(), dpar.data(), &ierr);
    if (ierr != 0) throw std::runtime_error("DCSRILU0 ends with " + std::to_string(ierr));
    return factors;
}

/// What one solution took. Of a peer only the first two are known.
struct Run {
    int iterations = 0;
    double seconds = std::numeric_limits<double>::infinity();
    double caller_seconds = NAN; // products and preconditioning
    double library_bytes = NAN;

    double library_seconds() const { return seconds - caller_seconds; }
    double bandwidth() const { return library_bytes / library_seconds(); }
};

/// Doubles that the vector work of such a run reads and writes, for each element of a vector.
double traffic_per_element(int iterations) {
    double doubles = 1.0; // the start sets a vector to 0
    for (int left = iterations, cycle = 0; left > 0 || cycle == 0; left -= settings.restart, ++cycle) {
        doubles += 4.0 + 3.0 + 1.0 + 2.0; // copies of x and b; the residual; its norm; its scaling
        const int steps = std::min(left, settings.restart);
        for (int k = 1; k <= steps; ++k) doubles += k * (2.0 + 3.0) + 1.0 + 2.0; // dot and axpy; norm; scaling
        doubles += 3.0 * steps;                                                  // the solution moves
    }
    return doubles;
}

/// Solves by DFGMRES. The arrays of a run are kept for the next.
class Fgmres {
    const Routines& routines_;
    const SparseRows& a_;
    const IncompleteFactors& factors_;
    std::array<int, 128> ipar_{};
    std::array<double, 128> dpar_{};
    std::vector<double> tmp_;

    static std::size_t work_size(int rows) {
        const auto n = static_cast<std::size_t>(rows), m = static_cast<std::size_t>(settings.restart);
        return (2 * m + 1) * n + m * (m + 9) / 2 + 1;
    }

    void set_up(const double* x, const double* b) {
        int request = 0;
        routines_.init(&a_.n, x, b, &request, ipar_.data(), dpar_.data(), tmp_.data());
        ipar_[4] = settings.max_iterations;
        ipar_[8] = 1;  // test the residual
        ipar_[9] = 0;  // without asking
        ipar_[10] = 1; // precondition
        ipar_[11] = 1; // test the norm of new vectors
        ipar_[14] = settings.restart;
        dpar_[0] = settings.tolerance;
        dpar_[7] = 0.0; // only a norm of 0 is 0
        ipar_[6] = 0;   // which needs no warning
        routines_.check(&a_.n, x, b, &request, ipar_.data(), dpar_.data(), tmp_.data());
    }

    void answer(int request) {
        const double* from = tmp_.data() + ipar_[21] - 1;
        double* to = tmp_.data() + ipar_[22] - 1;
        if (request == 1) a_.multiply(from, to);
        else factors_.apply(from, to);
    }

  public:
    Fgmres(const Routines& routines, const SparseRows& a, const IncompleteFactors& factors)
        : routines_(routines),
          a_(a),
          factors_(factors),
          tmp_(work_size(a.n)) {}

    Run solve(std::vector<double>& b, std::vector<double>& x) {
        std::ranges::fill(x, 0.0);
        Run run;
        double caller = 0.0;
        const double start = thread_seconds();
        set_up(x.data(), b.data());
        const auto step = [&] {
            int request = 0;
            routines_.step(&a_.n, x.data(), b.data(), &request, ipar_.data(), dpar_.data(), tmp_.data());
            return request;
        };
        int request = step();
        while (request == 1 || request == 3) {
            const double asked = thread_seconds();
            answer(request);
            caller += thread_seconds() - asked;
            request = step();
        }
        int outcome = 0;
        routines_.get(&a_.n, x.data(), b.data(), &outcome, ipar_.data(), dpar_.data(), tmp_.data(), &run.iterations);
        run.seconds = thread_seconds() - start;
        if (request != 0 || outcome != 0) throw std::runtime_error("DFGMRES ends with " + std::to_string(request));
        run.caller_seconds = caller;
        run.library_bytes = sizeof(double) * static_cast<double>(a_.n) * traffic_per_element(run.iterations);
        return run;
    }
};

Run solve_by(KrylovPeer& peer, const std::vector<double>& b, std::vector<double>& x) {
    Run run;
    const double start = thread_seconds();
    run.iterations = peer.solve(b, x);
    run.seconds = thread_seconds() - start;
    return run;
}

/// One contender on one system: its best run, and the true residual of its last, relative to the right-hand side.
struct Result {
    std::string library, version;
    int side;
    Run run;
    double residual = NAN, probe = NAN, speed_of_first = NAN;

    bool solved() const { return residual <= residual_allowed; }
};

void keep_faster(Run& best, const Run& run) {
    if (run.seconds < best.seconds) best = run;
}

void print(const Result& result) {
    std::printf("%-5d %-7s %10d %10.4f", result.side, result.library.c_str(), result.run.iterations,
                result.run.seconds);
    if (std::isnan(result.run.caller_seconds)) std::printf(" %10s %10s %8s %8s %9s", "-", "-", "-", "-", "-");
    else
        std::printf(" %10.4f %10.4f %8.2f %8.2f %8.0f%%", result.run.caller_seconds, result.run.library_seconds(),
                    result.run.bandwidth() * 1e-9, result.probe * 1e-9, 100.0 * result.run.bandwidth() / result.probe);
    std::printf(" %10.1e %8.2f%s\n", result.residual, result.speed_of_first, result.solved() ? "" : "  not solved");
    std::fflush(stdout);
}

/// Both contenders in turn, until the time is worth something.
std::vector<Result> measure(const Library& nxl, const Routines& routines, int side) {
    const SparseRows a = convection_diffusion(side);
    const double start = thread_seconds();
    const IncompleteFactors factors(a, factorise(routines, a));
    std::printf("%-5d DCSRILU0, with what it needs: %.4f s\n", side, thread_seconds() - start);
    std::vector<double> b(static_cast<std::size_t>(a.n), 1.0), x(b), peer_x(b);
    Fgmres ours(routines, a, factors);
    const std::unique_ptr<KrylovPeer> theirs = eigen_gmres(a, factors, settings);

    Run best, peer_best;
    double spent = 0.0;
    for (std::size_t round = 0; round < least_rounds || (round < most_rounds && spent < enough_seconds); ++round) {
        const Run run = ours.solve(b, x);
        spent += run.seconds;
        keep_faster(best, run);
        if (theirs) keep_faster(peer_best, solve_by(*theirs, b, peer_x));
    }
    const double basis_bytes = sizeof(double) * static_cast<double>(a.n) * (settings.restart + 1);
    std::vector<Result> results = {{nxl.name, nxl.version, side, best, relative_residual(a, b, x),
                                    peak_bandwidth(Traffic::stores, basis_bytes, 1), 1.0}};
    if (theirs)
        results.push_back({"Eigen", eigen_version(), side, peer_best, relative_residual(a, b, peer_x), NAN,
                           peer_best.seconds / best.seconds});
    return results;
}

void write_csv(const std::vector<Result>& results, const std::string& file) {
    std::ofstream out(file);
    out << "family,routine,size,threads,library,version,seconds_per_call,rate,unit,speed_of_first,fraction_of_peak,"
           "iterations,caller_seconds,library_seconds,residual\n";
    for (const Result& result : results) {
        out << "krylov,dfgmres," << result.side << ",1," << result.library << ",\"" << result.version << "\","
            << result.run.seconds << ',';
        const bool known = !std::isnan(result.run.caller_seconds);
        if (known) out << result.run.bandwidth() * 1e-9;
        out << ",GB/s," << result.speed_of_first << ',';
        if (known) out << result.run.bandwidth() / result.probe;
        out << ',' << result.run.iterations << ',';
        if (known) out << result.run.caller_seconds;
        out << ',';
        if (known) out << result.run.library_seconds();
        out << ',' << result.residual << '\n';
    }
    out.flush();
    if (!out) throw std::runtime_error("cannot write " + file);
}

void print_heading() {
    if (eigen_version().empty()) std::printf("nxl-bench was built without Eigen: no peer\n");
    else std::printf("%-10s %s\n", "Eigen", eigen_version().c_str());
    std::printf("memory     one core: %.1f GB/s read and stored\n",
                peak_bandwidth(Traffic::stores, memory_bytes, 1) * 1e-9);
    std::printf(
        "\nConvection and diffusion in a cube of side^3 unknowns; restart %d, ILU(0), tolerance %.0e. caller: its "
        "matrix\nproducts and preconditioning; library: the rest, and GB/s of its vectors beside those of a "
        "loop over as much\n\n%-5s %-7s %10s %10s %10s %10s %8s %8s %9s %10s %8s\n",
        settings.restart, settings.tolerance, "side", "", "iterations", "seconds", "caller", "library", "GB/s", "loop",
        "of loop", "residual", "/ this");
}

} // namespace

int run_krylov(const Request& request) {
    const Library nxl = Library::nxl(request.library);
    nxl.set_threads(1);
    const Routines routines(nxl);
    print_machine();
    print_library(nxl);
    print_heading();
    const std::regex filter(request.filter, std::regex::extended);
    std::vector<Result> all;
    for (const int side : sides) {
        if (!std::regex_search("krylov/dfgmres/" + std::to_string(side), filter)) continue;
        for (const Result& result : measure(nxl, routines, side)) {
            print(result);
            all.push_back(result);
        }
    }
    if (all.empty()) throw no_case(request.family, request.filter);
    if (!request.csv.empty()) write_csv(all, request.csv);
    const bool solved = std::ranges::all_of(all, &Result::solved);
    return solved ? common::kDone : common::kNotConverged;
}

} // namespace nxl::bench
