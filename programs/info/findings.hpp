// What nxl-info finds out: the machine, and what the library decides on it in this environment.
#pragma once

#include "machine.hpp"

#include "service/cpu_class.hpp"
#include "service/threads.hpp"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace info {

struct Findings {
    std::string library; // the file of libnxl.so that was loaded
    Machine machine;
    nxl::ClassChoice cpu_class;
    nxl::WidthChoice width;
    std::array<nxl::ThreadChoice, nxl::thread_domain_count> threads;
    std::array<int, nxl::thread_domain_count> answers; // of libnxl.so, to the same question
    int cores;                                         // that dynamic adjustment holds to
    bool dynamic, scratch_cached;
    std::vector<std::pair<std::string, std::string>> environment; // the library's and OpenMP's variables that are set
};

Findings find_out();

/// A line for each setting that does not do what it seems to.
std::vector<std::string> warnings(const Findings& findings);

/// Where a count of threads is from, as "NXL_NUM_THREADS".
std::string source_of(const nxl::ThreadChoice& choice);

inline constexpr std::array<const char*, nxl::thread_domain_count> kDomains = {"all", "blas", "fft", "vml"};

void print_text(const Findings& findings);
void print_json(const Findings& findings, const std::vector<std::string>& warnings);

} // namespace info
