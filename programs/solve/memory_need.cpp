#include "memory_need.hpp"
#include <array>
#include <cstdio>
#include <unistd.h>

namespace solve {

bool fits_in_memory(double bytes) {
    const auto memory = static_cast<double>(sysconf(_SC_PHYS_PAGES)) * static_cast<double>(sysconf(_SC_PAGESIZE));
    return bytes <= memory / 2.0;
}

std::string memory_need(double bytes, const std::string& what) {
    std::array<char, 32> gibibytes{};
    std::snprintf(gibibytes.data(), gibibytes.size(), "%.1f GiB", bytes / 0x1p30);
    return gibibytes.data() + std::string(" for ") + what + ", more than half of this machine's memory";
}

} // namespace solve
