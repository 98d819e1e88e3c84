// nxl's sparse solver for users of Eigen: SparseLU, SparseLLT and SparseLDLT, classes of Eigen's concept of a sparse
// solver, over nxl.hpp. One thread at a time uses an object.
#pragma once
#include "nxl.hpp"

#include <Eigen/SparseCore>
#include <cstddef>
#include <span>
#include <type_traits>
#include <vector>

namespace nxl {

/// What the classes below share: a solver in Eigen's sense. Matrix is an Eigen::SparseMatrix of double or
/// std::complex<double> with indices of 32 bits, by columns or by rows.
template <class Derived, class Matrix> class EigenSparseSolver : public Eigen::SparseSolverBase<Derived> {
    using Base = Eigen::SparseSolverBase<Derived>;

  public:
    using MatrixType = Matrix;
    using Scalar = typename MatrixType::Scalar;
    using RealScalar = typename MatrixType::RealScalar;
    using StorageIndex = typename MatrixType::StorageIndex;
    enum { ColsAtCompileTime = Eigen::Dynamic, MaxColsAtCompileTime = Eigen::Dynamic };
    static_assert(std::is_same_v<StorageIndex, int>, "indices of 32 bits");

    /// Rows of the matrix.
    Eigen::Index rows() const { return solver_.size(); }
    /// The same.
    Eigen::Index cols() const { return rows(); }
    /// Success, NumericalIssue for a matrix that cannot be factored so, or InvalidInput.
    Eigen::ComputationInfo info() const {
        eigen_assert(this->m_isInitialized && "compute() or analyzePattern() comes first");
        if (status_) return Eigen::Success;
        return status_.code() == -4 || status_.code() == -6 ? Eigen::NumericalIssue : Eigen::InvalidInput;
    }
    /// Why, in words.
    const Status& status() const { return status_; }
    /// nxl's own solver behind this one: inertia, size of the factors.
    const SparseSolver<Scalar>& solver() const { return solver_; }

    /// Analysis and factorisation.
    Derived& compute(const MatrixType& a) {
        analyzePattern(a);
        if (status_) factorize(a);
        return this->derived();
    }
    /// Analysis: of the pattern, and where matching asks for it of the values.
    void analyzePattern(const MatrixType& a) {
        eigen_assert(a.rows() == a.cols() && "a square matrix is expected");
        this->m_isInitialized = true;
        const auto rows = as_rows(a);
        const auto size = static_cast<std::size_t>(rows.nonZeros());
        status_ = solver_.analyse({rows.outerIndexPtr(), static_cast<std::size_t>(rows.rows()) + 1},
                                  {rows.innerIndexPtr(), size}, {rows.valuePtr(), size});
    }
    /// Factors a matrix of the pattern that was analysed.
    void factorize(const MatrixType& a) {
        eigen_assert(this->m_isInitialized && "analyzePattern() comes first");
        const auto rows = as_rows(a);
        status_ = solver_.factor({rows.valuePtr(), static_cast<std::size_t>(rows.nonZeros())});
    }

    using Base::_solve_impl; // sparse right-hand sides
    /// What solve() calls.
    template <class B, class X> void _solve_impl(const Eigen::MatrixBase<B>& b, Eigen::MatrixBase<X>& x) const {
        const Eigen::Matrix<Scalar, Eigen::Dynamic, Eigen::Dynamic> given = b;
        Eigen::Matrix<Scalar, Eigen::Dynamic, Eigen::Dynamic> found(given.rows(), given.cols());
        if (given.size() != 0)
            status_ = solver_.solve({given.data(), static_cast<std::size_t>(given.size())},
                                    {found.data(), static_cast<std::size_t>(found.size())});
        x = found;
    }

  protected:
    using Rows = Eigen::SparseMatrix<Scalar, Eigen::RowMajor, int>;

    EigenSparseSolver(nxl::MatrixType type, bool lower) : solver_(type), lower_(lower) {}

  private:
    /// Compressed rows; of a lower triangle those of its adjoint, which are an upper one.
    Rows as_rows(const MatrixType& a) const {
        Rows rows = lower_ ? Rows(a.adjoint()) : Rows(a);
        rows.makeCompressed();
        return rows;
    }

    mutable SparseSolver<Scalar> solver_; // a solution counts its steps of refinement
    mutable Status status_;
    bool lower_;
};

namespace detail {
/// The type of a matrix of these scalars.
template <class Matrix> constexpr MatrixType type_of(MatrixType real, MatrixType complex) {
    return std::is_same_v<typename Matrix::Scalar, double> ? real : complex;
}
} // namespace detail

/// A X = B for any square A: rows matched to columns, L U.
template <class Matrix> class SparseLU : public EigenSparseSolver<SparseLU<Matrix>, Matrix> {
    using Base = EigenSparseSolver<SparseLU<Matrix>, Matrix>;

  public:
    /// An object to be given a matrix by compute().
    SparseLU() : Base(detail::type_of<Matrix>(MatrixType::general, MatrixType::complex_general), false) {}
    /// The factors of a.
    explicit SparseLU(const Matrix& a) : SparseLU() { this->compute(a); }
};

/// A X = B for A symmetric or Hermitian positive definite: L L^H. Reads the triangle UpLo, Eigen::Lower or
/// Eigen::Upper.
template <class Matrix, int UpLo = Eigen::Lower>
class SparseLLT : public EigenSparseSolver<SparseLLT<Matrix, UpLo>, Matrix> {
    using Base = EigenSparseSolver<SparseLLT<Matrix, UpLo>, Matrix>;

  public:
    /// An object to be given a matrix by compute().
    SparseLLT()
        : Base(detail::type_of<Matrix>(MatrixType::positive_definite, MatrixType::hermitian_positive_definite),
               UpLo == Eigen::Lower) {}
    /// The factors of a.
    explicit SparseLLT(const Matrix& a) : SparseLLT() { this->compute(a); }
};

/// A X = B for A symmetric or Hermitian: L D L^H with pivots of order 1 and 2. Reads the triangle UpLo.
template <class Matrix, int UpLo = Eigen::Lower>
class SparseLDLT : public EigenSparseSolver<SparseLDLT<Matrix, UpLo>, Matrix> {
    using Base = EigenSparseSolver<SparseLDLT<Matrix, UpLo>, Matrix>;

  public:
    /// An object to be given a matrix by compute().
    SparseLDLT() : Base(detail::type_of<Matrix>(MatrixType::symmetric, MatrixType::hermitian), UpLo == Eigen::Lower) {}
    /// The factors of a.
    explicit SparseLDLT(const Matrix& a) : SparseLDLT() { this->compute(a); }
};

} // namespace nxl
