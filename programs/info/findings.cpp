#include "findings.hpp"

#include "include/nxl.h"
#include "service/memory.hpp"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace info {
namespace {

/// The file that the dynamic linker took libnxl.so from.
std::string loaded_library() {
    Dl_info where{};
    if (!dladdr(dlsym(RTLD_DEFAULT, "NXL_Get_Max_Threads"), &where) || !where.dli_fname) return "unknown";
    std::error_code trouble;
    const auto file = std::filesystem::canonical(where.dli_fname, trouble);
    return trouble ? where.dli_fname : file.string();
}

std::vector<std::pair<std::string, std::string>> variables() {
    std::vector<std::pair<std::string, std::string>> found;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view text = *entry;
        if (!text.starts_with("NXL_") && !text.starts_with("OMP_") && !text.starts_with("KMP_")) continue;
        const auto equals = std::min(text.find('='), text.size() - 1);
        found.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    }
    std::ranges::sort(found);
    return found;
}

} // namespace

Findings find_out() {
    Findings findings{.library = loaded_library(),
                      .machine = this_machine(),
                      .cpu_class = nxl::cpu_class_choice(),
                      .width = nxl::vector_width_choice(),
                      .threads = {},
                      .answers = {},
                      .cores = nxl::nxl_count_physical_cores(),
                      .dynamic = NXL_Get_Dynamic() != 0,
                      .scratch_cached = !nxl::cache_turned_off(),
                      .environment = variables()};
    for (int domain = 0; domain < nxl::thread_domain_count; ++domain) {
        const auto at = static_cast<std::size_t>(domain);
        findings.threads[at] = nxl::thread_choice(domain);
        findings.answers[at] = NXL_Domain_Get_Max_Threads(domain);
    }
    return findings;
}

std::string source_of(const nxl::ThreadChoice& choice) {
    switch (choice.source) {
    case nxl::CountSource::program: return "the program";
    case nxl::CountSource::num_threads_variable: return "NXL_NUM_THREADS";
    case nxl::CountSource::domain_variable: return "NXL_DOMAIN_NUM_THREADS";
    case nxl::CountSource::openmp: break;
    }
    return nxl::environment("OMP_NUM_THREADS") ? "OMP_NUM_THREADS" : "OpenMP";
}

} // namespace info
