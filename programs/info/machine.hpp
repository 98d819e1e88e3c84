// The machine as the processor and the system describe it.
#pragma once

#include "service/physical_cores.hpp"

#include <string>
#include <vector>

namespace info {

struct Cache {
    int level;
    std::string type; // data, instruction or unified
    long bytes;
    int sharers; // logical processors; 0 when the system does not say
};

struct Machine {
    std::string vendor, processor;
    std::vector<Cache> caches; // of the first processor that this process may run on
    nxl::ProcessorSet online, allowed;
    int cores; // of all online processors

    /// The process is kept from some of the online processors.
    bool narrowed() const { return online.size() > 0 && allowed != online; }
};

Machine this_machine();

/// As the kernel writes it: "0-3,8".
std::string list_of(const nxl::ProcessorSet& set);

} // namespace info
