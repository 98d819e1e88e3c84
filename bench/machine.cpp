#include "bench/machine.hpp"
#include "bench/routines.hpp"
#include "service/cpu_class.hpp"
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <thread>
#include <utility>

namespace nxl::bench {
namespace {

std::string processor_name() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    return "unknown processor";
}

} // namespace

void print_machine() {
    std::printf("machine    %s, %u processors online\n", processor_name().c_str(), std::thread::hardware_concurrency());
}

void print_library(const Library& nxl) {
    std::printf("%-10s %s, class %d, %d-bit vectors\n", nxl.name.c_str(), nxl.version.c_str(),
                static_cast<int>(nxl_cpu_class()), nxl_vector_bits());
}

void print_libraries(const Library& nxl, const std::vector<Library>& peers) {
    print_library(nxl);
    for (const Library& peer : peers) std::printf("%-10s %s\n", peer.name.c_str(), peer.version.c_str());
    if (peers.empty()) std::printf("no peer is installed here\n");
}

void print_offers(const std::vector<Library>& libraries) {
    const std::pair<const char*, const std::vector<Routine>*> tables[] = {
        {"level1", &level1_routines()},      {"level2", &level2_routines()}, {"level3", &level3_routines()},
        {"factor", &factor_routines()},      {"lapack", &lapack_routines()}, {"eigen", &eigen_routines()},
        {"nonsym", &nonsymmetric_routines()}};
    for (const Library& library : libraries) {
        std::printf("  %-10s  %s\n%14s%s\n%14s", library.name.c_str(), library.version.c_str(), "",
                    library.file().c_str(), "");
        for (const auto& [name, rows] : tables) {
            const auto has = [&](const Routine& row) { return library.symbol(row.name).address != nullptr; };
            std::printf("%s %td of %zu%s", name, std::ranges::count_if(*rows, has), rows->size(),
                        rows == std::end(tables)[-1].second ? " routines\n" : ", ");
        }
    }
}

} // namespace nxl::bench
