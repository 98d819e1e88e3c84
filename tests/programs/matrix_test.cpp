// Sparse products and the generated problems against dense matrices and against what physics says of them.
#include "common/input_error.hpp"
#include "dense.hpp"
#include "generators.hpp"
#include "progress.hpp"
#include "report.hpp"

#include <gtest/gtest.h>
#include <random>

namespace {

using solve::Complex;
using solve::Symmetry;
using solve_test::Dense;

template <class T> T random_value(std::mt19937& random) {
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    if constexpr (std::is_same_v<T, double>) return value(random);
    else return {value(random), value(random)};
}

template <class T> double largest_difference(const std::vector<T>& a, const std::vector<T>& b) {
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

using Scalars = ::testing::Types<double, Complex>;
template <class T> class Sparse : public ::testing::Test {};
TYPED_TEST_SUITE(Sparse, Scalars);

TYPED_TEST(Sparse, ProductNormAndDiagonalAgreeWithTheTriplets) { // 200 rows run on one thread, 4000 on several
    std::mt19937 random(7);
    for (const int n : {200, 4000}) {
        const auto size = static_cast<std::size_t>(n);
        std::vector<TypeParam> x(size), y(size), expected(size), diagonal(size);
        for (auto& value : x) value = random_value<TypeParam>(random);
        std::uniform_int_distribution<int> row(0, n - 1), offset(0, 39);
        std::vector<solve::Triplet<TypeParam>> triplets;
        for (int k = 0; k < 12 * n; ++k) {
            const int i = row(random), j = (i + offset(random)) % n;
            triplets.push_back({i, j, random_value<TypeParam>(random)});
            expected.data()[i] += triplets.back().value * x.data()[j];
            if (i == j) diagonal.data()[i] += triplets.back().value;
        }
        const auto a = solve::assemble(n, Symmetry::general, triplets);
        solve::multiply(a, x.data(), y.data());
        EXPECT_LT(largest_difference(y, expected), 1e-13);
        EXPECT_LT(largest_difference(solve::diagonal(a), diagonal), 1e-14);
        double norm = 0.0;
        for (const auto& values : solve_test::dense(a)) {
            double sum = 0.0;
            for (const auto& value : values) sum += std::abs(value);
            norm = std::max(norm, sum);
        }
        EXPECT_NEAR(solve::norm(a), norm, 1e-13);
    }
}

TEST(SparseSymmetry, IsSeenInValuesAndInPattern) {
    using List = std::vector<solve::Triplet<double>>;
    const auto symmetric = [](const List& list) { return is_symmetric(solve::assemble(3, Symmetry::general, list)); };
    EXPECT_TRUE(symmetric({{0, 0, 1}, {0, 2, 5}, {2, 0, 5}, {1, 1, 1}}));
    EXPECT_FALSE(symmetric({{0, 0, 1}, {0, 2, 5}, {2, 0, 4}, {1, 1, 1}})); // another value
    EXPECT_FALSE(symmetric({{0, 0, 1}, {0, 2, 5}, {1, 0, 5}, {1, 1, 1}})); // another place
    EXPECT_FALSE(symmetric({{0, 1, 1}, {0, 2, 5}, {2, 0, 5}, {1, 1, 1}})); // upper only
    EXPECT_FALSE(symmetric({{0, 0, 1}, {2, 1, 5}, {2, 0, 5}, {1, 1, 1}})); // lower only
}

TEST(SparseSymmetry, HermitianIsNotComplexSymmetric) {
    using List = std::vector<solve::Triplet<Complex>>;
    const Complex i(0.0, 1.0);
    const auto hermitian = [](Symmetry declared, const List& list) {
        return is_hermitian(solve::assemble(2, declared, list));
    };
    EXPECT_TRUE(hermitian(Symmetry::general, {{0, 0, 1.0}, {0, 1, 2.0 + i}, {1, 0, 2.0 - i}}));
    EXPECT_FALSE(hermitian(Symmetry::general, {{0, 0, 1.0}, {0, 1, 2.0 + i}, {1, 0, 2.0 + i}}));
    EXPECT_FALSE(hermitian(Symmetry::general, {{0, 0, 1.0 + i}, {1, 1, 1.0}})); // a diagonal that is not real
    EXPECT_TRUE(hermitian(Symmetry::hermitian, {{0, 0, 1.0}, {1, 0, 2.0 + i}}));
    EXPECT_FALSE(hermitian(Symmetry::symmetric, {{0, 0, 1.0}, {1, 0, 2.0 + i}}));
    EXPECT_TRUE(hermitian(Symmetry::symmetric, {{0, 0, 1.0}, {1, 0, 2.0}}));
}

TEST(Generators, SymmetricProblemsArePositiveDefinite) {
    for (const char* problem : {"poisson2d:7", "heat3d:4", "anisotropic2d:6", "heat3d:1", "layers3d:6", "truss:1",
                                "truss:9", "random:50", "kriging:1", "kriging:60"}) {
        const auto [matrix, load] = solve::generate(problem);
        EXPECT_EQ(matrix.symmetry, Symmetry::symmetric) << problem;
        EXPECT_TRUE(is_symmetric(matrix)) << problem; // layers3d: the mean across a face is the same from both sides
        EXPECT_TRUE(solve_test::is_positive_definite(solve_test::dense(matrix))) << problem;
        EXPECT_EQ(load.size(), static_cast<std::size_t>(matrix.n)) << problem;
    }
    for (const char* wind : {"convection2d:5", "convection3d:4"})
        EXPECT_FALSE(is_symmetric(solve::generate(wind).matrix)) << wind;
}

TEST(Generators, GridsAreKroneckerSumsOfSecondDifferences) {
    const auto second_difference = [](int i, int j) { return i == j ? 2.0 : std::abs(i - j) == 1 ? -1.0 : 0.0; };
    const int n = 4;
    const auto heat = solve_test::dense(solve::generate("heat3d:4").matrix);
    const auto plane = solve_test::dense(solve::generate("anisotropic2d:4").matrix);
    for (int i = 0; i < n * n * n; ++i) {
        for (int j = 0; j < n * n * n; ++j) {
            const int x[] = {i % n, j % n}, y[] = {i / n % n, j / n % n}, z[] = {i / n / n, j / n / n};
            const bool same_x = x[0] == x[1], same_y = y[0] == y[1], same_z = z[0] == z[1];
            const double along_x = same_y && same_z ? second_difference(x[0], x[1]) : 0.0;
            const double along_y = same_x && same_z ? second_difference(y[0], y[1]) : 0.0;
            const double along_z = same_x && same_y ? second_difference(z[0], z[1]) : 0.0;
            const auto row = static_cast<std::size_t>(i), column = static_cast<std::size_t>(j);
            ASSERT_EQ(heat[row][column], along_x + along_y + along_z) << i << ' ' << j;
            if (z[0] == 0 && z[1] == 0)
                ASSERT_NEAR(plane[row][column], along_x + 0.01 * along_y, 1e-15) << i << ' ' << j;
        }
    }
}

// Joints are numbered frame by frame, four each, three displacements a joint; the bearings take away 5 in the first
// frame and 3 in the last. Moving the whole bridge, or turning it, must strain no bar: joints away from the bearings
// feel no force.
TEST(Generators, RigidMotionsOfTheTrussCauseNoForce) {
    const int bays = 6, held_first = 5;
    const auto a = solve::generate("truss:6").matrix;
    ASSERT_EQ(a.n, 12 * (bays + 1) - 8);
    const double height[] = {0.0, 0.0, 5.0, 5.0};
    for (int motion = 0; motion < 4; ++motion) {
        std::vector<double> x(static_cast<std::size_t>(a.n)), force(x);
        for (int f = 1; f < bays; ++f) {
            for (int c = 0; c < 4; ++c) {
                const double turned[] = {-height[c], 0.0, 5.0 * f}; // about the axis across
                for (int axis = 0; axis < 3; ++axis)
                    x.data()[12 * f - held_first + 3 * c + axis] = motion < 3 ? axis == motion : turned[axis];
            }
        }
        solve::multiply(a, x.data(), force.data());
        for (int k = 12 * 2 - held_first; k < 12 * (bays - 1) - held_first; ++k)
            EXPECT_NEAR(force.data()[k], 0.0, 1e-7)
                << "motion " << motion << ", unknown " << k; // stiffness is about 1e6
    }
}

TEST(Generators, SizesThatDoNotExistAreRefused) {
    for (const char* bad : {"", ":", "heat3d", "heat3d:", "heat3d:0", "heat3d:-3", "heat3d:5x", "heat3d:700",
                            "truss:2000000000", "poisson2d:99999999999", "kriging:46341", "panels:2", "unknown:5"})
        EXPECT_THROW(solve::generate(bad), common::UsageError) << bad;
}

TEST(Report, WrongSolutionsShow) {
    const auto a = solve::generate("poisson2d:3").matrix;
    solve::Block<double> b(9, 2), x(9, 2);
    x.value.assign(18, 1.0);
    for (int k = 0; k < 2; ++k) solve::multiply(a, x.column(k), b.column(k));
    EXPECT_EQ(solve::scaled_residual(a, b, x), 0.0);
    auto wrong = x;
    wrong.column(1)[4] = 2.0; // row 5 has diagonal 4: residual 4, scale 8 * 2 + 2
    EXPECT_DOUBLE_EQ(solve::scaled_residual(a, b, wrong), 4.0 / 18.0);
    EXPECT_DOUBLE_EQ(solve::relative_error(wrong, x), 1.0);
    wrong.column(0)[0] = std::nan("");
    EXPECT_TRUE(std::isnan(solve::scaled_residual(a, b, wrong)));
    EXPECT_TRUE(std::isnan(solve::relative_error(wrong, x)));
}

TEST(Progress, IsMeasuredOnALogarithmicScale) {
    EXPECT_DOUBLE_EQ(solve::progress_of(1e-2, 1e-8), 0.25);
    EXPECT_EQ(solve::progress_of(50.0, 1e-8), 0.0);
    EXPECT_EQ(solve::progress_of(std::nan(""), 1e-8), 0.0);
    EXPECT_EQ(solve::progress_of(0.0, 1e-8), 1.0);
}

} // namespace
