// The machine and the libraries in words, so that a figure can be quoted with them.
#pragma once
#include "bench/library.hpp"

namespace nxl::bench {

void print_machine();
void print_library(const Library& nxl);
void print_libraries(const Library& nxl, const std::vector<Library>& peers);

/// Every library that can be measured here: its file, and how many of the routines that can be timed it has.
void print_offers(const std::vector<Library>& libraries);

} // namespace nxl::bench
