#include "bench/families.hpp"
#include "bench/machine.hpp"
#include "bench/peak.hpp"
#include "bench/plot.hpp"
#include <cstdio>
#include <cstdlib>

namespace nxl::bench {
namespace {

/// A routine with the option letters to time it with.
struct Variants {
    const char* routine;
    std::vector<const char*> options = {""};
};

std::vector<Case> cases_of(const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
    std::vector<Case> cases;
    for (const Variants& variants : routines)
        for (const char* options : variants.options)
            for (const Size& size : sizes) cases.push_back({variants.routine, options, size});
    return cases;
}

int compare(const Request& request, const std::vector<Contender>& contenders, const std::vector<Case>& cases) {
    Comparison comparison(request.family, contenders, peak_flops_per_second());
    const bool agreed = comparison.run(cases, request.filter);
    if (!request.csv.empty()) comparison.report().write_csv(request.csv);
    if (!request.plot.empty()) plot_ratios(comparison.report(), request.plot);
    return agreed ? EXIT_SUCCESS : EXIT_FAILURE;
}

void print_peaks(int threads) {
    std::printf("peak       %.1f GFLOP/s a core; memory, %d core%s: %.1f GB/s read, %.1f GB/s read and stored\n",
                peak_flops_per_second() * 1e-9, threads, threads == 1 ? "" : "s",
                peak_bandwidth(Traffic::reads, memory_bytes, threads) * 1e-9,
                peak_bandwidth(Traffic::stores, memory_bytes, threads) * 1e-9);
}

/// This library against each peer, all of them on one thread.
int compare_on_one_thread(const Request& request, const std::vector<Case>& cases) {
    limit_threads_of_peers(1);
    const Library nxl = Library::nxl(request.library);
    const std::vector<Library> peers = Library::peers();
    print_machine();
    print_libraries(nxl, peers);
    print_peaks(1);
    std::vector<Contender> contenders = {{&nxl, 1, nxl.name, false}};
    for (const Library& peer : peers) contenders.push_back({&peer, 1, peer.name, true});
    return compare(request, contenders, cases);
}

int run_level1(const Request& request) {
    static const std::vector<Variants> routines = {{"ddot"},  {"daxpy"},  {"dscal"},  {"dcopy"},  {"dswap"},
                                                   {"dasum"}, {"idamax"}, {"drot"},   {"dnrm2"},  {"zdotc"},
                                                   {"zdotu"}, {"zaxpy"},  {"zscal"},  {"zdscal"}, {"zcopy"},
                                                   {"zswap"}, {"dzasum"}, {"izamax"}, {"zdrot"},  {"dznrm2"}};
    return compare_on_one_thread(request, cases_of(routines, {100, 1'000, 10'000, 10'000'000}));
}

int run_gemm(const Request& request) {
    static const std::vector<Variants> routines = {{"dgemm", {"NN", "TN", "NT", "TT"}},
                                                   {"zgemm", {"NN", "TN", "NT", "TT", "NC"}}};
    static const std::vector<Size> sizes = {16,
                                            32,
                                            64,
                                            128,
                                            256,
                                            512,
                                            1000,
                                            1001,
                                            2000,
                                            {2000, 2000, 32},
                                            {2000, 8, 2000},
                                            {8, 2000, 2000},
                                            {100'000, 16, 16}};
    return compare_on_one_thread(request, cases_of(routines, sizes));
}

/// This library on two threads against itself on one, and against peers on two. Classes 0 and 1 do not thread level 1.
int run_threads(const Request& request) {
    setenv("NXL_DEBUG_CPU_TYPE", "3", 0);
    // Idle threads sleep at once: while one contender runs, those of the others would be on its cores.
    setenv("KMP_BLOCKTIME", "0", 0);
    setenv("OPENBLAS_THREAD_TIMEOUT", "4", 0);
    limit_threads_of_peers(2);
    const Library nxl = Library::nxl(request.library);
    const std::vector<Library> peers = Library::peers();
    print_machine();
    print_libraries(nxl, peers);
    print_peaks(2);
    std::vector<Contender> contenders = {{&nxl, 2, nxl.name, false}, {&nxl, 1, nxl.name + " alone", false}};
    for (const Library& peer : peers) contenders.push_back({&peer, 2, peer.name, true});
    return compare(request, contenders, cases_of({{"ddot"}, {"daxpy"}}, {10'000'000}));
}

int run_bandwidth(const Request&) {
    print_machine();
    std::printf("peak       %.1f GFLOP/s a core\n\n%-8s %14s %14s   GB/s, loads and stores each counted once\n",
                peak_flops_per_second() * 1e-9, "memory", "one core", "two cores");
    for (const Traffic& traffic : traffic_patterns)
        std::printf("%-8s %14.1f %14.1f\n", traffic.name, bandwidth(traffic, memory_bytes, 1) * 1e-9,
                    bandwidth(traffic, memory_bytes, 2) * 1e-9);
    return EXIT_SUCCESS;
}

} // namespace

const std::vector<Family>& families() {
    static const std::vector<Family> all = {
        {"level1", "vector operations, one thread, against each peer", run_level1},
        {"gemm", "matrix products, one thread, against each peer", run_gemm},
        {"threads", "vector operations of class 3 on two threads", run_threads},
        {"overhead", "what a call costs before its kernel starts", run_overhead},
        {"bandwidth", "what the machine's memory gives, one core and two", run_bandwidth},
    };
    return all;
}

} // namespace nxl::bench
