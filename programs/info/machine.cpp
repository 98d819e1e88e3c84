#include "machine.hpp"

#include "service/cpuid.hpp"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace info {
namespace {

using nxl::ProcessorSet;

constexpr const char* kSysfs = "/sys/devices/system/cpu";

std::string text_of(const unsigned* registers, std::size_t count) {
    const std::string text(reinterpret_cast<const char*>(registers), count * sizeof(unsigned));
    return text.substr(0, text.find('\0'));
}

std::string vendor() {
    const nxl::CpuidRegisters name = nxl::read_cpuid(0);
    const unsigned words[] = {name.ebx, name.edx, name.ecx};
    return text_of(words, 3);
}

/// The brand string, blanks around it removed. Virtual machines may have none.
std::string brand() {
    std::string text;
    for (unsigned leaf = 0x80000002U; leaf <= 0x80000004U; ++leaf) {
        const nxl::CpuidRegisters part = nxl::read_cpuid(leaf);
        const unsigned words[] = {part.eax, part.ebx, part.ecx, part.edx};
        text += text_of(words, 4);
    }
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "unknown processor";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string line_of(const std::string& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

/// "32K" or "1M" in bytes; 0 for what is no size.
long bytes_of(const std::string& text) {
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    return *end == 'K' ? number << 10 : *end == 'M' ? number << 20 : number;
}

std::string lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::vector<Cache> caches_in_sysfs(int processor) {
    std::vector<Cache> caches;
    for (int index = 0;; ++index) {
        const std::string folder =
            std::string(kSysfs) + "/cpu" + std::to_string(processor) + "/cache/index" + std::to_string(index) + "/";
        const long bytes = bytes_of(line_of(folder + "size"));
        if (bytes <= 0) return caches;
        caches.push_back({std::atoi(line_of(folder + "level").c_str()), lower(line_of(folder + "type")), bytes,
                          ProcessorSet::of_list(line_of(folder + "shared_cpu_list").c_str()).size()});
    }
}

std::vector<Cache> caches_by_sysconf() {
    std::vector<Cache> caches;
    const auto add = [&](int level, const char* type, int name) {
        if (const long bytes = sysconf(name); bytes > 0) caches.push_back({level, type, bytes, 0});
    };
    add(1, "data", _SC_LEVEL1_DCACHE_SIZE);
    add(1, "instruction", _SC_LEVEL1_ICACHE_SIZE);
    add(2, "unified", _SC_LEVEL2_CACHE_SIZE);
    add(3, "unified", _SC_LEVEL3_CACHE_SIZE);
    return caches;
}

int first_of(const ProcessorSet& set) {
    for (int p = 0; p < ProcessorSet::capacity; ++p)
        if (set.has(p)) return p;
    return 0;
}

} // namespace

Machine this_machine() {
    Machine machine{.vendor = vendor(),
                    .processor = brand(),
                    .caches = {},
                    .online = ProcessorSet::of_system(kSysfs),
                    .allowed = ProcessorSet::of_process(getpid()),
                    .cores = 0};
    machine.caches = caches_in_sysfs(first_of(machine.allowed));
    if (machine.caches.empty()) machine.caches = caches_by_sysconf();
    machine.cores = nxl::count_physical_cores(machine.online.size() > 0 ? machine.online : machine.allowed, kSysfs);
    return machine;
}

std::string list_of(const ProcessorSet& set) {
    std::string list;
    for (int p = 0; p < ProcessorSet::capacity; ++p) {
        if (!set.has(p)) continue;
        const int first = p;
        while (p + 1 < ProcessorSet::capacity && set.has(p + 1)) ++p;
        list += (list.empty() ? "" : ",") + std::to_string(first);
        if (p > first) list += "-" + std::to_string(p);
    }
    return list;
}

} // namespace info
