// The problems of the sparse family: generated ones, and Matrix Market files of a folder.
#pragma once
#include "tests/support/sparse_problems.hpp"
#include <functional>
#include <string>
#include <vector>

namespace nxl::bench {

struct SparseCase {
    std::string name, size; // as in poisson2d/700; of a file its name and order
    bool analysed;          // is in the table of analyses, too
    std::function<nxl_test::SparseProblem()> make;
};

/// `sides` replace those of each problem, `folder` may be empty.
std::vector<SparseCase> sparse_cases(const std::vector<int>& sides, const std::string& folder);

/// What geometric means are over: definite, indefinite, unsymmetric, complex.
const char* group_of(const nxl_test::SparseProblem& problem);

} // namespace nxl::bench
