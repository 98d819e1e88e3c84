#include "bench/machine.hpp"
#include "service/cpu_class.hpp"
#include <cstdio>
#include <fstream>
#include <thread>

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

} // namespace nxl::bench
