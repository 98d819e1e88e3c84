// Physical cores, counted from the operating system's topology.
#pragma once

namespace nxl {

/// A set of processor numbers. 65536 of them are eight times what an x86-64 Linux kernel can be built for.
class ProcessorSet {
    static constexpr int bits = 64;
    unsigned long words_[1024] = {};

  public:
    static constexpr int capacity = 1024 * bits;

    void add(int processor) { words_[processor / bits] |= 1UL << processor % bits; }
    bool has(int processor) const { return words_[processor / bits] >> processor % bits & 1; }
    int size() const;
    bool operator==(const ProcessorSet&) const = default;

    /// The processors that process `pid` may run on; empty when the system does not say.
    static ProcessorSet of_process(int pid);

    /// The online processors, of the system described under `sysfs` ("/sys/devices/system/cpu"); empty without it.
    static ProcessorSet of_system(const char* sysfs);

    /// A list as the kernel writes it, "0-3,8"; it ends at the first character that does not belong to one.
    static ProcessorSet of_list(const char* text);
};

/// The cores that this process may use. A process that is kept from some of the online processors counts as 1 core.
/// No thread is pinned or moved.
int nxl_count_physical_cores();

/// The same for a process that may run on `allowed`, with the processors described under `sysfs`.
/// Without a description each processor counts as a core.
int count_physical_cores(const ProcessorSet& allowed, const char* sysfs);

} // namespace nxl
