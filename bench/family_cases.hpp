// The cases of each family that compares libraries: routines, options and sizes, and nothing else.
#pragma once
#include "bench/cases.hpp"
#include <vector>

namespace nxl::bench {

/// Each routine with its options once for each order, instead of the sizes that it has; all of them when there is no
/// order.
std::vector<Case> with_sizes(const std::vector<Case>& cases, const std::vector<int>& orders);

std::vector<Case> level1_cases();
std::vector<Case> level2_cases();
std::vector<Case> level3_cases();
std::vector<Case> gemm_cases();
std::vector<Case> narrow_cases();
std::vector<Case> level1_threads_cases();
std::vector<Case> level3_threads_cases();
std::vector<Case> factor_cases();
std::vector<Case> lapack_cases();
std::vector<Case> svd_cases();
std::vector<Case> eigen_cases();
std::vector<Case> nonsymmetric_cases();
std::vector<Case> primitive_cases();

} // namespace nxl::bench
