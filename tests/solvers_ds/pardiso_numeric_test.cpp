// Factorisation and solution of every matrix type: residuals, inertia, pivots that fail or are replaced.
#include "tests/solvers_ds/systems.hpp"
#include <gtest/gtest.h>
#include <omp.h>

namespace {

using namespace nxl_test;

constexpr int all_types[] = {1, 2, -2, 3, 4, -4, 6, 11, 13};

struct Shape {
    const char* name;
    Pattern pattern;
};

/// Supernodes of one and of many columns, wider than a panel, rows in runs and scattered, several trees.
std::vector<Shape> shapes() {
    return {{"one_pair", chain(2)},
            {"chain", chain(30)},
            {"star", star(25, 7)},
            {"grid", grid(9, 8)},
            {"clique", clique(170)},
            {"cliques_apart", apart(clique(20), clique(9))},
            {"grid_with_full_row", joined(grid(7, 7), star(49, 11))},
            {"random", random_pattern(120, 500, 4)},
            {"sparse_random", random_pattern(200, 260, 5)}};
}

void expect_solved(const System& system, const std::vector<double>& b, const std::string& what,
                   bool transposed = false) {
    EXPECT_LE(system.backward_error(b, system.x, transposed), 1e-10) << what;
}

class PardisoNumeric : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(, PardisoNumeric, testing::ValuesIn(all_types), [](const auto& info) {
    return (info.param < 0 ? "minus_" : "") + std::to_string(std::abs(info.param));
});

TEST_P(PardisoNumeric, SolvesOnEveryShapeWithEveryOrdering) {
    for (const Shape& shape : shapes())
        for (const int ordering : {0, 1, 2})
            for (const int threads : {1, 3}) {
                omp_set_num_threads(threads);
                NXL_Set_Dynamic(0);
                System system(GetParam(), shape.pattern, 18, 3);
                system.run(-2);
                system.parameter(1) = 1;
                system.parameter(2) = ordering;
                system.parameter(10) = 13;
                system.parameter(21) = 1;
                const auto b = system.b;
                const std::string what = std::string(shape.name) + ", ordering " + std::to_string(ordering) +
                                         ", threads " + std::to_string(threads);
                ASSERT_EQ(system.run(13), 0) << what;
                expect_solved(system, b, what);
                EXPECT_EQ(system.parameter(14), 0) << what;
                std::fill(system.x.begin(), system.x.end(), 0.0);
                ASSERT_EQ(system.run(33), 0);
                expect_solved(system, b, what + ", again");
                system.run(-1);
            }
}

} // namespace
