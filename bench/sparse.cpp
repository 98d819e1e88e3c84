// Sparse systems: here their analysis, with its time, the entries of the factor in its order, and its memory, beside a
// peer's; factorisations and solutions are direct_rows.cpp's.
#include "bench/cholmod_peer.hpp"
#include "bench/clocks.hpp"
#include "bench/direct_rows.hpp"
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
#include <functional>
#include <limits>
#include <regex>
#include <stdexcept>

namespace nxl::bench {
namespace {

constexpr std::size_t least_rounds = 3, most_rounds = 20;
constexpr double enough_seconds = 2.0;

const char* name_of(SparseOrdering ordering) { return ordering == SparseOrdering::metis ? "metis" : "mindegree"; }

/// PARDISO on one problem.
class Analyser {
    decltype(&PARDISO) pardiso_;
    nxl_test::SparseProblem problem_;
    Clock now_; // of the calling thread where that does all, so that other programs do not count
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
        const bool symmetric = problem_.mtype == -2 || problem_.mtype == 6, unsymmetric = problem_.mtype > 10;
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
    Analyser(const Library& library, nxl_test::SparseProblem problem, int threads)
        : pardiso_(reinterpret_cast<decltype(&PARDISO)>(library.symbol("PARDISO").address)),
          problem_(std::move(problem)),
          now_(threads == 1 ? thread_seconds : wall_seconds),
          perm_(static_cast<std::size_t>(problem_.n)) {
        if (!pardiso_) throw std::runtime_error(library.name + " has no PARDISO");
    }

    Analysis analyse(SparseOrdering ordering) {
        std::array<std::int64_t, 64> handle{};
        set_options(ordering);
        const double start = now_();
        call(11, handle);
        const double seconds = now_() - start;
        const Analysis analysis = {
            .seconds = seconds, .entries = static_cast<double>(iparam_[17]), .peak_bytes = 1024.0 * iparam_[14]};
        call(-1, handle);
        return analysis;
    }

    const nxl_test::SparseProblem& problem() const { return problem_; }
    const std::vector<int>& perm() const { return perm_; } // of the last analysis
};

struct Result {
    std::string problem, size, ordering;
    int n;
    Analysis ours, theirs;
    double entries; // of L in our order, as the peer counts them; NaN without one
};

void keep_faster(Analysis& best, const Analysis& analysis) {
    if (best.seconds == 0.0 || analysis.seconds < best.seconds) best = analysis;
}

/// Both in turn, until the time is worth something.
Result measure(Analyser& ours, SparsePeer* theirs, const SparseCase& problem, SparseOrdering ordering) {
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    Result result = {.problem = problem.name,
                     .size = problem.size,
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
    std::printf("%-13s %-5s %-10s %8d %10.4f %10.4f %8.2f %12.4g %12.4g %8.3f %8.1f %8.1f\n", r.problem.c_str(),
                r.size.c_str(), r.ordering.c_str(), r.n, r.ours.seconds, r.theirs.seconds,
                r.theirs.seconds / r.ours.seconds, r.entries, r.theirs.entries, r.entries / r.theirs.entries,
                r.ours.peak_bytes * 1e-6, r.theirs.peak_bytes * 1e-6);
    std::fflush(stdout);
}

void print_heading(const SparsePeer* peer) {
    if (!peer) std::printf("no CHOLMOD: no peer\n");
    std::printf(
        "\nAnalysis, from the matrix to what a factorisation needs; entries of L in the order of each, counted by "
        "CHOLMOD;\npeak memory as each tells it, MB: not with that of METIS, nor with the scratch memory of "
        "nxl\n\n%-13s %-5s %-10s %8s %10s %10s %8s %12s "
        "%12s %8s %8s %8s\n",
        "problem", "size", "ordering", "n", "nxl, s", "CHOLMOD, s", "speed", "nxl, L", "CHOLMOD, L", "ratio", "nxl, MB",
        "CHOLMOD");
}

/// One line for each library and case: phase is an analysis by one of the orderings, or one of direct_rows.cpp.
void write_csv(const std::vector<Result>& analyses, const std::string& version, const DirectComparison& direct,
               const std::string& file) {
    std::ofstream out(file);
    out << "family,problem,size,phase,n,library,version,seconds,entries_of_factor,peak_bytes\n";
    for (const Result& r : analyses) {
        const std::string row =
            "sparse," + r.problem + ',' + r.size + ',' + r.ordering + ',' + std::to_string(r.n) + ',';
        out << row << "nxl," NXL_BENCH_VERSION "," << r.ours.seconds << ',' << r.entries << ',' << r.ours.peak_bytes
            << '\n';
        if (std::isnan(r.theirs.seconds)) continue;
        out << row << "CHOLMOD," << version << ',' << r.theirs.seconds << ',' << r.theirs.entries << ','
            << r.theirs.peak_bytes << '\n';
    }
    for (const DirectRow& r : direct.rows())
        for (std::size_t i = 0; i < r.figures.size(); ++i) {
            if (std::isnan(r.figures[i])) continue;
            const DirectContender& contender = direct.contenders()[i];
            out << "sparse," << r.problem << ',' << r.size << ',' << r.phase << ',' << r.n << ',' << contender.name
                << ",\"" << contender.version << "\"," << (r.phase == "memory" ? ",," : "") << r.figures[i]
                << (r.phase == "memory" ? "" : ",,") << '\n';
        }
    out.flush();
    if (!out) throw std::runtime_error("cannot write " + file);
}

std::vector<Result> compare_analyses(const Library& nxl, int threads, SparsePeer* peer,
                                     const std::vector<SparseCase>& cases,
                                     const std::function<bool(const std::string&)>& passes) {
    std::vector<Result> all;
    for (const SparseCase& which : cases)
        for (const auto ordering : {SparseOrdering::metis, SparseOrdering::minimum_degree}) {
            if (!which.analysed || !passes("sparse/" + which.name + '/' + which.size + '/' + name_of(ordering)))
                continue;
            if (all.empty()) print_heading(peer);
            Analyser analyser(nxl, which.make(), threads);
            if (peer) peer->set(analyser.problem());
            all.push_back(measure(analyser, peer, which, ordering));
            print(all.back());
        }
    return all;
}

DirectComparison direct_comparison(const Library& nxl, int threads) {
    std::vector<DirectContender> contenders = {nxl_direct(nxl, "nxl", SparseOrdering::metis),
                                               nxl_direct(nxl, "nxl/M", SparseOrdering::minimum_degree)};
    const std::size_t own = contenders.size();
    for (const auto peers : {cholmod_direct, mumps_direct, umfpack_direct, superlu_direct})
        for (DirectContender& peer : peers()) contenders.push_back(std::move(peer));
    return {std::move(contenders), own, threads};
}

} // namespace

int run_sparse(const Request& request) {
    const int threads = request.threads > 0 ? request.threads : 1;
    let_idle_threads_sleep(threads);
    const Library nxl = Library::nxl(request.library);
    nxl.set_threads(threads);
    const std::unique_ptr<SparsePeer> peer = cholmod_peer();
    print_machine();
    print_library(nxl);
    const std::regex filter(request.filter, std::regex::extended);
    const auto passes = [&](const std::string& name) { return std::regex_search(name, filter); };
    const std::vector<SparseCase> cases = sparse_cases(request.sizes, request.matrices);
    DirectComparison direct = direct_comparison(nxl, threads);
    for (std::size_t i = 1; i < direct.contenders().size(); ++i)
        std::printf("%-10s %s\n", direct.contenders()[i].name.c_str(), direct.contenders()[i].version.c_str());
    const std::vector<Result> analyses = compare_analyses(nxl, threads, peer.get(), cases, passes);
    direct.print_heading();
    for (const SparseCase& which : cases) direct.run(which, passes);
    if (analyses.empty() && direct.empty()) throw no_case(request.family, request.filter);
    if (!direct.empty()) direct.print_summary();
    if (!request.csv.empty()) write_csv(analyses, peer ? peer->version() : "", direct, request.csv);
    return direct.agreed() ? common::kDone : common::kNotConverged;
}

} // namespace nxl::bench
