// What is too large for the machine is refused before it is tried.
#pragma once
#include <string>

namespace solve {

/// Whether so many bytes are at most half of the machine's memory; and how the refusal of more goes on.
bool fits_in_memory(double bytes);
std::string memory_need(double bytes, const std::string& what);

} // namespace solve
