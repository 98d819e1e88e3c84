// All that is compiled with Eigen. Its GMRES preconditions from the left, and so measures its tolerance by the
// preconditioned residual; it makes the basis by Householder reflections.
#include "bench/krylov_peer.hpp"

#ifdef NXL_BENCH_EIGEN
#include <Eigen/Core>
#include <Eigen/SparseCore>
#include <unsupported/Eigen/IterativeSolvers>

namespace nxl::bench {

/// Hands Eigen's vectors to IncompleteFactors, without a copy.
class PeerPreconditioner {
    const IncompleteFactors* factors_ = nullptr;

  public:
    using StorageIndex = int;
    enum { ColsAtCompileTime = Eigen::Dynamic, MaxColsAtCompileTime = Eigen::Dynamic };

    void set(const IncompleteFactors& factors) { factors_ = &factors; }
    Eigen::Index rows() const { return factors_->order(); }
    Eigen::Index cols() const { return factors_->order(); }
    // NOLINTNEXTLINE(readability-identifier-naming): the name that Eigen calls
    template <class Matrix> PeerPreconditioner& analyzePattern(const Matrix&) { return *this; }
    template <class Matrix> PeerPreconditioner& factorize(const Matrix&) { return *this; }
    template <class Matrix> PeerPreconditioner& compute(const Matrix&) { return *this; }
    Eigen::ComputationInfo info() { return Eigen::Success; }

    template <class Rhs> Eigen::Solve<PeerPreconditioner, Rhs> solve(const Eigen::MatrixBase<Rhs>& r) const {
        return {*this, r.derived()};
    }
    template <class Rhs, class Dest> void _solve_impl(const Rhs& r, Dest& z) const {
        factors_->apply(r.data(), z.data());
    }
};

namespace {

using Matrix = Eigen::SparseMatrix<double, Eigen::RowMajor>;

class EigenGmres final : public KrylovPeer {
    Eigen::Map<const Matrix> matrix_;
    Eigen::GMRES<Matrix, PeerPreconditioner> solver_;

  public:
    EigenGmres(const SparseRows& a, const IncompleteFactors& factors, const KrylovSettings& settings)
        : matrix_(a.n, a.n, static_cast<Eigen::Index>(a.value.size()), a.start.data(), a.column.data(),
                  a.value.data()) {
        solver_.preconditioner().set(factors);
        solver_.set_restart(settings.restart);
        solver_.setMaxIterations(settings.max_iterations);
        solver_.setTolerance(settings.tolerance);
        solver_.compute(matrix_);
    }
    int solve(const std::vector<double>& b, std::vector<double>& x) override {
        const auto n = static_cast<Eigen::Index>(b.size());
        Eigen::Map<Eigen::VectorXd>(x.data(), n) = solver_.solve(Eigen::Map<const Eigen::VectorXd>(b.data(), n));
        return static_cast<int>(solver_.iterations());
    }
};

} // namespace

std::string eigen_version() {
    return std::to_string(EIGEN_WORLD_VERSION) + '.' + std::to_string(EIGEN_MAJOR_VERSION) + '.' +
           std::to_string(EIGEN_MINOR_VERSION) + ", " + Eigen::SimdInstructionSetsInUse();
}

std::unique_ptr<KrylovPeer> eigen_gmres(const SparseRows& a, const IncompleteFactors& factors,
                                        const KrylovSettings& settings) {
    return std::make_unique<EigenGmres>(a, factors, settings);
}

} // namespace nxl::bench

#else

namespace nxl::bench {

std::string eigen_version() { return {}; }

std::unique_ptr<KrylovPeer> eigen_gmres(const SparseRows&, const IncompleteFactors&, const KrylovSettings&) {
    return nullptr;
}

} // namespace nxl::bench

#endif
