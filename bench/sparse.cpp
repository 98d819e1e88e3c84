// The analysis of sparse systems: its time, the entries of the factor in its order, and its memory, beside a peer's.
#include "bench/cholmod_peer.hpp"
#include "bench/clocks.hpp"
#include "bench/families.hpp"
#include "bench/machine.hpp"
#include "common/run_program.hpp"
#include "include/nxl.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <regex>
#include <stdexcept>

namespace nxl::bench {
namespace {

struct Problem {
    const char* name;
    int side;
};
constexpr std::array<Problem, 5> problems = {
    {{"poisson2d", 700}, {"poisson3d", 50}, {"elasticity3d", 20}, {"convection3d", 28}, {"saddle", 200}}};

constexpr std::size_t least_rounds = 3, most_rounds = 20;
constexpr double enough_seconds = 2.0;

const char* name_of(SparseOrdering ordering) { return ordering == SparseOrdering::metis ? "metis" : "mindegree"; }

/// PARDISO on one problem.
class Analyser {
    decltype(&PARDISO) pardiso_;
    nxl_test::SparseProblem problem_;
    std::array<int, 64> iparam_{};
    std::vector<int> perm_;

    void call(int ido, std::array<std::int64_t, 64>& handle) {
        const int one = 1, silent = 0;
        double none = 0.0;
        int error = 0;
        pardiso_(handle.data(), &one, &one, &problem_.mtype, &ido, &problem_.n, problem_.a.data(), problem_.ia.data(),
                 problem_.ja.data(), perm_.data(), &one, iparam_.data(), &silent, &none, &none, &error);
        if (error != 0) throw std::runtime_error("PARDISO ends with " + std::to_string(error));
    }

    /// The defaults of the type, but for the ordering, which is also to be told.
    void set_options(SparseOrdering ordering) {
        const bool symmetric = problem_.mtype == -2, unsymmetric = problem_.mtype == 11;
        iparam_ = {};
        iparam_[0] = 1;
        iparam_[1] = ordering == SparseOrdering::metis ? 2 : 0;
        iparam_[4] = 2;
        iparam_[9] = symmetric ? 8 : 13;
        iparam_[10] = iparam_[12] = unsymmetric ? 1 : 0;
        iparam_[17] = -1;
        iparam_[20] = symmetric ? 1 : 0;
    }

  public:
    Analyser(const Library& library, nxl_test::SparseProblem problem)
        : pardiso_(reinterpret_cast<decltype(&PARDISO)>(library.symbol("PARDISO").address)),
          problem_(std::move(problem)),
          perm_(static_cast<std::size_t>(problem_.n)) {
        if (!pardiso_) throw std::runtime_error(library.name + " has no PARDISO");
    }

    Analysis analyse(SparseOrdering ordering) {
        std::array<std::int64_t, 64> handle{};
        set_options(ordering);
        const double start = wall_seconds();
        call(11, handle);
        const double seconds = wall_seconds() - start;
        const Analysis analysis = {
            .seconds = seconds, .entries = static_cast<double>(iparam_[17]), .peak_bytes = 1024.0 * iparam_[14]};
        call(-1, handle);
        return analysis;
    }

    const nxl_test::SparseProblem& problem() const { return problem_; }
    const std::vector<int>& perm() const { return perm_; } // of the last analysis
};

struct Result {
    std::string problem, ordering;
    int n;
    Analysis ours, theirs;
    double entries; // of L in our order, as the peer counts them; NaN without one
};

void keep_faster(Analysis& best, const Analysis& analysis) {
    if (best.seconds == 0.0 || analysis.seconds < best.seconds) best = analysis;
}

/// Both in turn, until the time is worth something.
Result measure(Analyser& ours, SparsePeer* theirs, const char* problem, SparseOrdering ordering) {
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    Result result = {.problem = problem,
                     .ordering = name_of(ordering),
                     .n = ours.problem().n,
                     .ours = {},
                     .theirs = {},
                     .entries = unknown};
    double spent = 0.0;
    for (std::size_t round = 0; round < least_rounds || (round < most_rounds && spent < enough_seconds); ++round) {
        const Analysis analysis = ours.analyse(ordering);
        spent += analysis.seconds;
        keep_faster(result.ours, analysis);
        if (theirs) keep_faster(result.theirs, theirs->analyse(ordering));
    }
    if (theirs) result.entries = theirs->entries(ours.perm());
    else result.theirs = {.seconds = unknown, .entries = unknown, .peak_bytes = unknown};
    return result;
}

void print(const Result& r) {
    std::printf("%-13s %-10s %8d %10.4f %10.4f %8.2f %12.4g %12.4g %8.3f %8.1f %8.1f\n", r.problem.c_str(),
                r.ordering.c_str(), r.n, r.ours.seconds, r.theirs.seconds, r.theirs.seconds / r.ours.seconds, r.entries,
                r.theirs.entries, r.entries / r.theirs.entries, r.ours.peak_bytes * 1e-6, r.theirs.peak_bytes * 1e-6);
    std::fflush(stdout);
}

void print_heading(const SparsePeer* peer) {
    if (peer) std::printf("%-10s %s\n", "CHOLMOD", peer->version().c_str());
    else std::printf("no CHOLMOD: no peer\n");
    std::printf(
        "\nAnalysis, from the matrix to what a factorisation needs; entries of L in the order of each, counted by "
        "CHOLMOD;\npeak memory as each tells it, MB: not with that of METIS, nor with the scratch memory of "
        "nxl\n\n%-13s %-10s %8s %10s %10s %8s %12s "
        "%12s %8s %8s %8s\n",
        "problem", "ordering", "n", "nxl, s", "CHOLMOD, s", "speed", "nxl, L", "CHOLMOD, L", "ratio", "nxl, MB",
        "CHOLMOD");
}

void write_csv(const std::vector<Result>& results, const std::string& version, const std::string& file) {
    std::ofstream out(file);
    out << "family,problem,ordering,n,library,version,seconds,entries_of_factor,peak_bytes\n";
    for (const Result& r : results) {
        const std::string row = "sparse," + r.problem + ',' + r.ordering + ',' + std::to_string(r.n) + ',';
        out << row << "nxl," NXL_BENCH_VERSION "," << r.ours.seconds << ',' << r.entries << ',' << r.ours.peak_bytes
            << '\n';
        if (std::isnan(r.theirs.seconds)) continue;
        out << row << "CHOLMOD," << version << ',' << r.theirs.seconds << ',' << r.theirs.entries << ','
            << r.theirs.peak_bytes << '\n';
    }
    out.flush();
    if (!out) throw std::runtime_error("cannot write " + file);
}

} // namespace

int run_sparse(const Request& request) {
    const Library nxl = Library::nxl(request.library);
    nxl.set_threads(request.threads > 0 ? request.threads : 1);
    const std::unique_ptr<SparsePeer> peer = cholmod_peer();
    print_machine();
    print_library(nxl);
    print_heading(peer.get());
    const std::regex filter(request.filter, std::regex::extended);
    std::vector<Result> all;
    for (const auto& [name, side] : problems)
        for (const auto ordering : {SparseOrdering::metis, SparseOrdering::minimum_degree}) {
            if (!std::regex_search(std::string("sparse/") + name + '/' + name_of(ordering), filter)) continue;
            Analyser analyser(nxl,
                              nxl_test::sparse_problem(name, request.sizes.empty() ? side : request.sizes.front()));
            if (peer) peer->set(analyser.problem());
            all.push_back(measure(analyser, peer.get(), name, ordering));
            print(all.back());
        }
    if (all.empty()) throw no_case(request.family, request.filter);
    if (!request.csv.empty()) write_csv(all, peer ? peer->version() : "", request.csv);
    return common::kDone;
}

} // namespace nxl::bench
