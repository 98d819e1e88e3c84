// Environment variables. An empty value reads as not set.
#pragma once
#include <cstdlib>

namespace nxl {

/// The value of a variable, or null when it is not set or empty.
inline const char* environment(const char* name) {
    const char* value = std::getenv(name);
    return value && *value ? value : nullptr;
}

} // namespace nxl
