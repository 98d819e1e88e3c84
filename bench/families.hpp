// The families that nxl-bench runs by name.
#pragma once
#include "bench/comparison.hpp"
#include <string>
#include <vector>

namespace nxl::bench {

/// What a user asked for.
struct Request {
    std::string family;
    std::string library = "libnxl.so.0";
    std::string filter = ".";       // a regular expression over the names of cases
    std::string csv, plot;          // files to write; none when empty
    std::vector<std::string> peers; // files of further peers
    std::string matrices;           // a folder of Matrix Market files; none when empty
    std::vector<int> sizes;         // instead of the family's own
    int threads = 0;                // 0: the family's own
    bool self_check = false;
};

struct Family {
    const char* name;
    const char* description;
    int (*run)(const Request& request); // returns the program's exit status
    std::vector<std::string> options;   // that it heeds
};

const std::vector<Family>& families();

/// Before libraries are loaded: peers start this many threads, and threads without work sleep at once. While one
/// contender runs, those of the others would be on its cores.
void let_idle_threads_sleep(int threads);

/// How much a bound kernel slot, a driver and an entry add to a direct call of the kernel.
int run_overhead(const Request& request);

/// FGMRES with ILU(0) on convection and diffusion in a cube: the library's share of the time, and the bandwidth in it.
int run_krylov(const Request& request);

/// Sparse systems by PARDISO: analysis, factorisation and solution.
int run_sparse(const Request& request);

/// LU, Cholesky and the sparse factorisation on 1 to 128 virtual cores.
int run_scaling(const Request& request);

} // namespace nxl::bench
