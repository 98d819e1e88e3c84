// The machine and the libraries in words, so that a figure can be quoted with them.
#pragma once
#include "bench/library.hpp"

namespace nxl::bench {

void print_machine();
void print_library(const Library& nxl);
void print_libraries(const Library& nxl, const std::vector<Library>& peers);

} // namespace nxl::bench
