// Cores from sysfs: a core is counted at the first processor of its list of sibling threads.
#include "service/physical_cores.hpp"
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace nxl {
namespace {

/// What one sysfs file holds, as text; empty when it cannot be read. Sysfs files are one page at most.
struct SysfsText {
    char text[4096];

    explicit SysfsText(const char* path) {
        const int file = open(path, O_RDONLY | O_CLOEXEC);
        const ssize_t length = file < 0 ? 0 : read(file, text, sizeof text - 1);
        if (file >= 0) close(file);
        text[length < 0 ? 0 : length] = '\0';
    }
};

/// A core is shared by a list of processors; the list's first one stands for it.
bool stands_for_its_core(int processor, const char* sysfs) {
    char path[512];
    std::snprintf(path, sizeof path, "%s/cpu%d/topology/thread_siblings_list", sysfs, processor);
    const SysfsText siblings(path);
    return siblings.text[0] == '\0' || std::atoi(siblings.text) == processor;
}

} // namespace

int ProcessorSet::size() const {
    int count = 0;
    for (const unsigned long word : words_) count += __builtin_popcountl(word);
    return count;
}

ProcessorSet ProcessorSet::of_process(int pid) {
    ProcessorSet set;
    // On failure nothing is written, and the set stays empty.
    sched_getaffinity(pid, sizeof set.words_, reinterpret_cast<cpu_set_t*>(set.words_));
    return set;
}

ProcessorSet ProcessorSet::of_system(const char* sysfs) {
    char path[512];
    std::snprintf(path, sizeof path, "%s/online", sysfs);
    return of_list(SysfsText(path).text);
}

ProcessorSet ProcessorSet::of_list(const char* text) {
    ProcessorSet set;
    for (char* end = nullptr;; text = end + 1) {
        const long first = std::strtol(text, &end, 10);
        if (end == text) return set;
        const long last = *end == '-' ? std::strtol(end + 1, &end, 10) : first;
        for (long p = first < 0 ? 0 : first; p <= last && p < capacity; ++p) set.add(static_cast<int>(p));
        if (*end != ',') return set;
    }
}

int count_physical_cores(const ProcessorSet& allowed, const char* sysfs) {
    const ProcessorSet online = ProcessorSet::of_system(sysfs);
    const int processors = allowed.size();
    if (online.size() == 0) return processors > 0 && processors == sysconf(_SC_NPROCESSORS_ONLN) ? processors : 1;
    if (allowed != online) return 1;
    int cores = 0;
    for (int p = 0; p < ProcessorSet::capacity; ++p)
        if (online.has(p) && stands_for_its_core(p, sysfs)) ++cores;
    return cores > 0 ? cores : 1;
}

int nxl_count_physical_cores() {
    return count_physical_cores(ProcessorSet::of_process(getpid()), "/sys/devices/system/cpu");
}

} // namespace nxl
