// The trust-region subproblem by the conditions its step has to meet, each way it can end, and its loops over threads.
#include "nxl.h"
#include "solvers_tr/kernel/d_tr_trialstep_nlsqp_withMP.hpp"
#include "solvers_tr/kernel/d_tr_trialstep_utils.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace nxl::tr {
namespace {

using Vector = std::vector<double>;

Vector random_vector(i64 n, unsigned seed) {
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    Vector x(static_cast<std::size_t>(n));
    for (double& value : x) value = uniform(generator);
    return x;
}

struct Trial {
    i64 m, n;
    Vector jacobian, residual;
    Vector step = Vector(static_cast<std::size_t>(n)), work = Vector(static_cast<std::size_t>(3 * n)),
           h = Vector(static_cast<std::size_t>(n * n)), factor = h;
    int iterations = 0;
    double shift = 99.0;

    int solve(double radius, int limit = 50) {
        iterations = limit;
        const TrialProblem problem{.m = m,
                                   .n = n,
                                   .jacobian = jacobian.data(),
                                   .residual = residual.data(),
                                   .radius = radius,
                                   .threads = 1,
                                   .step = step.data(),
                                   .work = {work.data(), work.data() + n, work.data() + 2 * n},
                                   .h = h.data(),
                                   .factor = factor.data()};
        return DMINTR_LS_PD_WITHOMP(problem, iterations, shift);
    }

    double length() const { return norm(n, step.data()); }

    /// |J^T (J s + F) + shift s| / |J^T F|
    double defect() const {
        double sum = 0.0, scale = 0.0;
        for (i64 j = 0; j < n; ++j) {
            double with_step = shift * at(step, j), without = 0.0;
            for (i64 i = 0; i < m; ++i) {
                double row = at(residual, i);
                for (i64 k = 0; k < n; ++k) row += at(jacobian, i + k * m) * at(step, k);
                with_step += at(jacobian, i + j * m) * row;
                without += at(jacobian, i + j * m) * at(residual, i);
            }
            sum += with_step * with_step;
            scale += without * without;
        }
        return std::sqrt(sum / scale);
    }

    static double at(const Vector& v, i64 i) { return v[static_cast<std::size_t>(i)]; }
};

Trial random_trial() { return {30, 7, random_vector(210, 1), random_vector(30, 2)}; }

TEST(TrialStep, GaussNewtonStepThatFitsIsTaken) {
    Trial trial = random_trial();
    EXPECT_EQ(trial.solve(1e3), inside);
    EXPECT_EQ(trial.shift, 0.0);
    EXPECT_EQ(trial.iterations, 0);
    EXPECT_LE(trial.defect(), 1e-13);
}

TEST(TrialStep, StepOnTheBoundaryMeetsItsShift) { // catches a shift added twice to H, or not taken off before the next
    Trial trial = random_trial();
    trial.solve(1e3);
    const double full = trial.length();
    for (double part : {0.9, 0.3, 1e-3, 1e-8}) {
        EXPECT_EQ(trial.solve(part * full), on_boundary) << part;
        EXPECT_NEAR(trial.length(), part * full, 1e-14 * full) << part;
        EXPECT_GT(trial.shift, 0.0);
        EXPECT_LE(trial.defect(), 0.01) << part; // s has been scaled by up to 1 %
        EXPECT_LE(trial.iterations, 10);
    }
    EXPECT_EQ(trial.solve(1.005 * full), on_boundary); // lengthened
    EXPECT_NEAR(trial.length(), 1.005 * full, 1e-14 * full);
    EXPECT_EQ(trial.shift, 0.0);
}

TEST(TrialStep, LengthIsMetWhereSquaresOverflow) {
    for (const double small : {1e-60, 1e-87, 1e-120, 1e-155}) {
        Trial trial{2, 2, {1.0, 0.0, 0.0, small}, {-5.0, 1.0}};
        EXPECT_EQ(trial.solve(100.0), on_boundary) << small;
        EXPECT_NEAR(trial.length(), 100.0, 1e-12) << small;
    }
}

TEST(TrialStep, IterationLimitEndsIt) {
    Trial trial = random_trial();
    EXPECT_EQ(trial.solve(1e-4, 0), limit_reached);
    EXPECT_EQ(trial.iterations, 1);
}

TEST(TrialStep, SingularMatrixGoesToTheBoundaryAlongItsNullVector) {
    Trial trial{3, 2, {1.0, 1.0, 1.0, 1.0, 1.0, 1.0}, {1.0, 2.0, 3.0}}; // H = (3 3; 3 3), J^T F = (6 6)
    EXPECT_EQ(trial.solve(50.0), hard_case);
    EXPECT_NEAR(trial.length(), 50.0, 1.0);
    EXPECT_GT(trial.shift, 0.0);
    EXPECT_LE(trial.shift, 1e-14);
    EXPECT_NEAR(trial.step[0] + trial.step[1], -2.0, 0.2); // J s stays that of the Gauss-Newton steps
    EXPECT_EQ(trial.solve(0.5), on_boundary);              // |s| above the radius: back to the shift
    EXPECT_NEAR(trial.length(), 0.5, 1e-14);
    EXPECT_NEAR(trial.step[0], trial.step[1], 1e-7);
}

TEST(TrialStep, HardCaseDirectionOfTwoUnknowns) { // the method by hand: v goes with ((1 - b / c) a, max(b, c)^2 / c)
    for (double b : {0.5, 0.005, -3.0}) {         // rows whose largest value is b, c, and c with b large below 0
        const double a = 2.0, c = 0.01, largest = std::max(b, c), radius = 3.0;
        const double v[] = {(1.0 - b / c) * a, largest * largest / c};
        Vector factor{a, b, 0.0, c}, s{0.25, -0.5}, work(4);
        ASSERT_EQ(step_in_hard_case(2, radius, factor.data(), s.data(), work.data(), work.data() + 2), hard_case);
        EXPECT_NEAR(norm(2, s.data()), radius, 1e-14);
        const double moved[] = {s[0] - 0.25, s[1] + 0.5};
        EXPECT_NEAR(moved[0] * v[1], moved[1] * v[0], 1e-13 * norm(2, v)) << b;
        EXPECT_LT(moved[0] * v[0] + moved[1] * v[1], 0.0) << b; // the smaller root
    }
}

TEST(TrialStep, LoopsOverColumnsAreTheSameOnAnyNumberOfThreads) {
    const i64 m = 701, n = 1031; // beyond the sizes from which the loops fork
    const Vector a = random_vector(n * n, 3);
    Vector norms(n), serial_norms(n), copy(a.size(), 7.0), serial_copy = copy, shifted = a, serial_shifted = a;
    column_norms(m, n, a.data(), serial_norms.data(), 1);
    copy_lower(n, a.data(), serial_copy.data(), 1);
    ADD_TO_DIAGONAL(n, 0.5, serial_shifted.data(), 1);
    for (i64 j = 0; j < n; ++j)
        for (i64 i = 0; i < n; ++i) {
            const double before = Trial::at(a, i + j * n);
            ASSERT_EQ(Trial::at(serial_copy, i + j * n), i < j ? 7.0 : before);
            ASSERT_EQ(Trial::at(serial_shifted, i + j * n), i == j ? before + 0.5 : before);
        }
    EXPECT_NEAR(serial_norms[n - 1], std::sqrt(m / 3.0), 1.0);
    for (int threads : {2, 3, 8}) {
        column_norms(m, n, a.data(), norms.data(), threads);
        copy_lower(n, a.data(), copy.data(), threads);
        shifted = a;
        ADD_TO_DIAGONAL(n, 0.5, shifted.data(), threads);
        EXPECT_EQ(norms, serial_norms);
        EXPECT_EQ(copy, serial_copy);
        EXPECT_EQ(shifted, serial_shifted);
        std::fill(norms.begin(), norms.end(), 0.0);
        std::fill(copy.begin(), copy.end(), 7.0);
    }
}

} // namespace
} // namespace nxl::tr
