// Assertions on the library's own invariants: one that fails is a fault of the library, and ends the process.
#pragma once
#include <source_location>

namespace nxl {

/// Writes the text, the source with its folder and without its extension, and the line to standard error, and aborts.
[[noreturn, gnu::cold]] void assertion_failed(const char* text, const std::source_location& at);

/// `text`: the condition, as it is to be reported.
inline void require(bool holds, const char* text, const std::source_location& at = std::source_location::current()) {
    if (!holds) [[unlikely]]
        assertion_failed(text, at);
}

} // namespace nxl
