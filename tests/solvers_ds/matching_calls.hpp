// The matching stage as the driver calls it.
#pragma once
#include "solvers_ds/kernel/default/pardiso/matching.hpp"
#include "tests/support/sparse_problems.hpp"
#include <gtest/gtest.h>

namespace nxl_test {

struct Matching {
    nxl::pardiso::i32 code = 0, matched = 0;
    std::vector<nxl::pardiso::i32> row_of_column; // counted from 1
    std::vector<double> row_scale, column_scale;
};

/// The problem's arrays have to be as before.
inline Matching match(SparseProblem problem, bool scale = true, nxl::pardiso::i32 mode = 1) {
    const auto n = static_cast<std::size_t>(problem.n), all = 2 * problem.ja.size();
    Matching result = {.row_of_column = std::vector<nxl::pardiso::i32>(n),
                       .row_scale = std::vector<double>(n),
                       .column_scale = std::vector<double>(n)};
    std::vector<nxl::pardiso::i32> integers(6 * n + 20 + all);
    std::vector<double> reals(2 * n + all);
    const auto ia = problem.ia, ja = problem.ja;
    result.code = nxl::pardiso::match_and_scale({.n = problem.n,
                                                 .ia = problem.ia.data(),
                                                 .ja = problem.ja.data(),
                                                 .a = problem.a.data(),
                                                 .symmetric = problem.upper(),
                                                 .scale = scale,
                                                 .mode = mode,
                                                 .work = {.integers = integers.data(), .reals = reals.data()},
                                                 .row_of_column = result.row_of_column.data(),
                                                 .row_scale = result.row_scale.data(),
                                                 .column_scale = result.column_scale.data()},
                                                result.matched);
    EXPECT_EQ(problem.ia, ia);
    EXPECT_EQ(problem.ja, ja);
    return result;
}

} // namespace nxl_test
