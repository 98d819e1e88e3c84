#include "bench/families.hpp"
#include "bench/family_cases.hpp"
#include "bench/machine.hpp"
#include "bench/peak.hpp"
#include "bench/plot.hpp"
#include "common/run_program.hpp"
#include <cstdio>
#include <cstdlib>

namespace nxl::bench {
namespace {

/// This library against peers on the same number of threads, and against itself on one where that is another number.
struct Plan {
    std::vector<Case> cases;
    int threads = 1;
    std::vector<Library> (*peers)() = Library::peers;
    double (*core_flops)() = peak_flops_per_second;
    void (*plot)(const Report& report, const std::string& file) = plot_ratios;
};

void print_peaks(double core_flops, int threads) {
    std::printf("peak       %.1f GFLOP/s a core; memory, %d core%s: %.1f GB/s read, %.1f GB/s read and stored\n",
                core_flops * 1e-9, threads, threads == 1 ? "" : "s",
                peak_bandwidth(Traffic::reads, memory_bytes, threads) * 1e-9,
                peak_bandwidth(Traffic::stores, memory_bytes, threads) * 1e-9);
}

int run_contest(const Request& request, const Plan& plan) {
    const int threads = request.threads > 0 ? request.threads : plan.threads;
    let_idle_threads_sleep(threads);
    const Library nxl = Library::nxl(request.library);
    std::vector<Library> peers = plan.peers();
    for (const std::string& file : request.peers) peers.push_back(Library::peer(file));
    const double core_flops = plan.core_flops();
    print_machine();
    print_libraries(nxl, peers);
    print_peaks(core_flops, threads);

    std::vector<Contender> contenders = {{&nxl, threads, nxl.name, false}};
    if (threads > 1) contenders.push_back({&nxl, 1, nxl.name + " alone", false});
    for (const Library& peer : peers) contenders.push_back({&peer, threads, peer.name, true});
    Comparison comparison({request.family, contenders, core_flops, request.self_check});
    const bool agreed = comparison.run(with_sizes(plan.cases, request.sizes), request.filter);
    if (!request.csv.empty()) comparison.report().write_csv(request.csv);
    if (!request.plot.empty()) plan.plot(comparison.report(), request.plot);
    return agreed ? common::kDone : common::kNotConverged;
}

int run_level1(const Request& request) { return run_contest(request, {.cases = level1_cases()}); }

int run_level2(const Request& request) { return run_contest(request, {.cases = level2_cases()}); }

int run_level3(const Request& request) { return run_contest(request, {.cases = level3_cases(), .plot = plot_rates}); }

int run_gemm(const Request& request) { return run_contest(request, {.cases = gemm_cases(), .plot = plot_rates}); }

/// The plain 128-bit kernels of one class, 0 unless NXL_DEBUG_CPU_TYPE names another, against a peer held to SSE3.
int run_narrow(const Request& request) {
    setenv("NXL_VECTOR_BITS", "128", 1);
    setenv("NXL_DEBUG_CPU_TYPE", "0", 0);
    setenv("OPENBLAS_CORETYPE", "Prescott", 1);
    return run_contest(request, {.cases = narrow_cases(),
                                 .peers = Library::openblas,
                                 .core_flops = peak_sse2_flops_per_second,
                                 .plot = plot_rates});
}

/// Classes 0 and 1 do not thread level 1.
int run_threads(const Request& request) {
    setenv("NXL_DEBUG_CPU_TYPE", "3", 0);
    return run_contest(request, {.cases = level1_threads_cases(), .threads = 2});
}

int run_threads3(const Request& request) {
    return run_contest(request, {.cases = level3_threads_cases(), .threads = 2});
}

int run_factor(const Request& request) {
    return run_contest(request, {.cases = factor_cases(), .peers = Library::openblas, .plot = plot_rates});
}

int run_factor2(const Request& request) {
    return run_contest(request,
                       {.cases = factor_cases(), .threads = 2, .peers = Library::openblas, .plot = plot_rates});
}

int run_lapack(const Request& request) {
    return run_contest(request, {.cases = lapack_cases(), .peers = Library::openblas});
}

int run_lapack2(const Request& request) {
    return run_contest(request, {.cases = lapack_cases(), .threads = 2, .peers = Library::openblas});
}

int run_svd(const Request& request) { return run_contest(request, {.cases = svd_cases(), .peers = Library::openblas}); }

int run_svd2(const Request& request) {
    return run_contest(request, {.cases = svd_cases(), .threads = 2, .peers = Library::openblas});
}

int run_eigen(const Request& request) {
    return run_contest(request, {.cases = eigen_cases(), .peers = Library::openblas});
}

int run_eigen2(const Request& request) {
    return run_contest(request, {.cases = eigen_cases(), .threads = 2, .peers = Library::openblas});
}

int run_nonsym(const Request& request) {
    return run_contest(request, {.cases = nonsymmetric_cases(), .peers = Library::openblas});
}

int run_nonsym2(const Request& request) {
    return run_contest(request, {.cases = nonsymmetric_cases(), .threads = 2, .peers = Library::openblas});
}

int run_primitives(const Request& request) {
    return run_contest(request, {.cases = primitive_cases(), .peers = Library::hand_loops});
}

int run_bandwidth(const Request&) {
    print_machine();
    std::printf("peak       %.1f GFLOP/s a core, %.1f by 128-bit multiplications and additions\n\n"
                "%-8s %14s %14s   GB/s, loads and stores each counted once\n",
                peak_flops_per_second() * 1e-9, peak_sse2_flops_per_second() * 1e-9, "memory", "one core", "two cores");
    for (const Traffic& traffic : traffic_patterns)
        std::printf("%-8s %14.1f %14.1f\n", traffic.name, bandwidth(traffic, memory_bytes, 1) * 1e-9,
                    bandwidth(traffic, memory_bytes, 2) * 1e-9);
    return common::kDone;
}

} // namespace

void let_idle_threads_sleep(int threads) { // libraries read these when they are loaded or first called
    setenv("KMP_BLOCKTIME", "0", 0);
    setenv("OPENBLAS_THREAD_TIMEOUT", "4", 0);
    limit_threads_of_peers(threads);
}

const std::vector<Family>& families() {
    static const std::vector<std::string> comparison = {"--library", "--peer", "--filter", "--sizes",
                                                        "--threads", "--csv",  "--plot",   "--self-check"};
    static const std::vector<Family> all = {
        {"level1", "vector operations, one thread, against each peer", run_level1, comparison},
        {"level2", "matrix-vector operations, one thread, against each peer", run_level2, comparison},
        {"gemm", "matrix products, one thread, against each peer", run_gemm, comparison},
        {"level3", "other matrix-matrix operations, one thread, against each peer", run_level3, comparison},
        {"narrow", "matrix products by 128-bit vectors, of class NXL_DEBUG_CPU_TYPE (0)", run_narrow, comparison},
        {"threads", "vector operations of class 3 on two threads", run_threads, comparison},
        {"threads3", "matrix-matrix operations on two threads", run_threads3, comparison},
        {"factor", "factorisations, solutions and inverses, one thread, against a peer", run_factor, comparison},
        {"factor2", "the same on two threads", run_factor2, comparison},
        {"lapack",
         "indefinite and band systems, condition, refinement, QR, tridiagonal matrices; one thread, against a peer",
         run_lapack, comparison},
        {"lapack2", "the same on two threads", run_lapack2, comparison},
        {"eigen", "symmetric eigenproblems, one thread, against a peer", run_eigen, comparison},
        {"eigen2", "the same on two threads", run_eigen2, comparison},
        {"nonsym", "eigenproblems without symmetry, Sylvester equations, one thread, against a peer", run_nonsym,
         comparison},
        {"nonsym2", "the same on two threads", run_nonsym2, comparison},
        {"svd", "singular values and least squares on them, one thread, against a peer", run_svd, comparison},
        {"svd2", "the same on two threads", run_svd2, comparison},
        {"primitives", "vector and matrix primitives against loops written by hand, one thread", run_primitives,
         comparison},
        {"krylov",
         "FGMRES with ILU(0) on up to a million unknowns, one thread, against a peer",
         run_krylov,
         {"--library", "--filter", "--csv"}},
        {"sparse",
         "sparse systems: analysis, factorisation, solution, one thread, against the peers that take each",
         run_sparse,
         {"--library", "--filter", "--sizes", "--threads", "--matrices", "--csv"}},
        {"scaling",
         "factorisations played on 1 to 128 virtual cores, with the times of their steps here",
         run_scaling,
         {"--filter", "--sizes", "--csv", "--plot"}},
        {"overhead", "what a call costs before its kernel starts", run_overhead, {"--library"}},
        {"bandwidth", "what the machine's memory gives, one core and two", run_bandwidth, {}},
    };
    return all;
}

} // namespace nxl::bench
