// nxl_eigen.hpp: the three solvers over both scalars, layouts and triangles, as Eigen's users call solvers.
#include "nxl_eigen.hpp"

#include <Eigen/Dense>
#include <complex>
#include <gtest/gtest.h>

namespace {

template <class Matrix> class EigenBridge : public ::testing::Test {};
using Matrices = ::testing::Types<Eigen::SparseMatrix<double>, Eigen::SparseMatrix<double, Eigen::RowMajor>,
                                  Eigen::SparseMatrix<std::complex<double>>>;
TYPED_TEST_SUITE(EigenBridge, Matrices);

constexpr int kSize = 40;

/// Definite, or of both signs; the lower triangle's entries differ from row to row.
template <class Matrix> Matrix self_adjoint(double middle) {
    using Scalar = typename Matrix::Scalar;
    Matrix lower(kSize, kSize);
    for (int i = 0; i < kSize; ++i) {
        lower.coeffRef(i, i) = i % 3 == 1 ? middle : 9.0;
        for (int j = 0; j < i; j += 7) lower.coeffRef(i, j) = Scalar(0.1 * (i % 5) - 0.2);
        if constexpr (!std::is_same_v<Scalar, double>)
            if (i > 0) lower.coeffRef(i, i - 1) = Scalar(0.3, 0.5);
    }
    return lower.template selfadjointView<Eigen::Lower>();
}

template <class Solver, class Matrix> void expect_solution(const Matrix& read, const Matrix& a) {
    using Dense = Eigen::Matrix<typename Matrix::Scalar, Eigen::Dynamic, Eigen::Dynamic>;
    const Dense b = Dense::Random(kSize, 3);
    Solver solver;
    solver.analyzePattern(read);
    solver.factorize(read);
    ASSERT_EQ(solver.info(), Eigen::Success) << solver.status().text();
    EXPECT_LT((a * solver.solve(b) - b).norm(), 1e-11);
    const Dense one = solver.solve(b.col(1) + b.col(2)); // an expression, and one column of it
    EXPECT_LT((a * one - b.col(1) - b.col(2)).norm(), 1e-11);
    using Columns = Eigen::SparseMatrix<typename Matrix::Scalar>;
    const Columns sparse = solver.solve(Columns(read));
    EXPECT_LT((a * Dense(sparse) - Dense(read)).norm(), 1e-9);
    solver.factorize(Matrix(2.0 * read)); // another matrix of the pattern
    EXPECT_LT((a * solver.solve(b) - 0.5 * b).norm(), 1e-11);
}

TYPED_TEST(EigenBridge, SolvesFromEachTriangle) {
    const TypeParam definite = self_adjoint<TypeParam>(9.0), indefinite = self_adjoint<TypeParam>(-9.0);
    const auto lower = [](const TypeParam& a) { return TypeParam(a.template triangularView<Eigen::Lower>()); };
    const auto upper = [](const TypeParam& a) { return TypeParam(a.template triangularView<Eigen::Upper>()); };
    expect_solution<nxl::SparseLLT<TypeParam>>(lower(definite), definite);
    expect_solution<nxl::SparseLLT<TypeParam, Eigen::Upper>>(upper(definite), definite);
    expect_solution<nxl::SparseLDLT<TypeParam>>(lower(indefinite), indefinite);
    expect_solution<nxl::SparseLDLT<TypeParam, Eigen::Upper>>(upper(indefinite), indefinite);
    TypeParam general = definite;
    general.coeffRef(3, 30) = 5.0;
    expect_solution<nxl::SparseLU<TypeParam>>(general, general);
}

TYPED_TEST(EigenBridge, TellsWhatCannotBeFactored) {
    EXPECT_EQ((nxl::SparseLLT<TypeParam>(self_adjoint<TypeParam>(-9.0)).info()), Eigen::NumericalIssue);
    const nxl::SparseLDLT<TypeParam> indefinite(self_adjoint<TypeParam>(-9.0));
    EXPECT_EQ(indefinite.solver().inertia().negative, 13);
    TypeParam singular(kSize, kSize);
    for (int i = 1; i < kSize; ++i) singular.coeffRef(i, i - 1) = 1.0;
    EXPECT_EQ(nxl::SparseLU<TypeParam>(singular).info(), Eigen::NumericalIssue);
    EXPECT_EQ(nxl::SparseLU<TypeParam>(TypeParam(0, 0)).info(), Eigen::InvalidInput);
}

} // namespace
