// nxl-solve on a stiffness matrix from the field.
#include "program.hpp"

#include <cmath>

namespace {

using solve_test::number_after;
using solve_test::Program;

TEST_F(Program, SolvesBcsstk16) {
    const std::string file = "'" NXL_TEST_DATA "/bcsstk16.mtx.gz' --precond jacobi --tolerance 1e-10";
    for (const std::string options : {"", " --nrhs 3"}) {
        const auto run = this->run(file + options);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_NE(run.out.find("n = 4884, 290378 entries, real symmetric"), std::string::npos) << run.out;
        EXPECT_LT(number_after(run.out, "residual     "), 1e-10);
        EXPECT_LT(number_after(run.out, "error "), 1e-6);
        EXPECT_LT(number_after(run.out, "iterations "), 1500.0);
    }
}

TEST_F(Program, FactorsSparseAndDense) {
    for (const std::string method : {"", " --method cholesky"}) {
        const auto run = this->run("'" NXL_TEST_DATA "/bcsstk16.mtx.gz' --nrhs 2" + method);
        EXPECT_NE(run.out.find(method.empty() ? "symmetric positive definite" : "method       cholesky\n"),
                  std::string::npos)
            << run.out;
        EXPECT_LT(number_after(run.out, "residual     "), 1e-14);
        EXPECT_LT(number_after(run.out, "error "), 1e-8);
    }
    const auto unsymmetric = run("'" NXL_TEST_DATA "/west0479.mtx.gz'");
    EXPECT_NE(unsymmetric.out.find("direct, unsymmetric"), std::string::npos) << unsymmetric.out;
    EXPECT_LT(number_after(unsymmetric.out, "backward     "), 1e-14);
}

TEST_F(Program, RefusesWhatConjugateGradientsCannotSolve) {
    const auto run = this->run("'" NXL_TEST_DATA "/west0479.mtx.gz' --method cg");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("west0479.mtx.gz: method cg needs a symmetric matrix, this one is not"), std::string::npos);
}

} // namespace
