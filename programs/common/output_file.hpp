// Files that a program is going to write.
#pragma once

#include <string>

namespace common {

/// Throws InputError if a file of this name could not be written: better before a long run than after it. What exists
/// stays as it is, and nothing new is left behind.
void expect_writable(const std::string& path);

} // namespace common
