// All of the direct solvers that is compiled with CHOLMOD's header.
#include "bench/direct_solver.hpp"

#ifdef NXL_BENCH_CHOLMOD
#include "bench/loaded.hpp"
#include <algorithm>
#include <cholmod.h>
#include <stdexcept>

namespace nxl::bench {
namespace {

struct Cholmod : LoadedLibrary {
    decltype(&cholmod_start) start;
    decltype(&cholmod_finish) finish;
    decltype(&cholmod_analyze) analyze;
    decltype(&cholmod_factorize) factorize;
    decltype(&cholmod_solve2) solve2;
    decltype(&cholmod_free_factor) free_factor;
    decltype(&cholmod_free_dense) free_dense;

    Cholmod() : LoadedLibrary("libcholmod.so." + std::to_string(CHOLMOD_MAIN_VERSION)) {
        find("cholmod_start", start);
        find("cholmod_finish", finish);
        find("cholmod_analyze", analyze);
        find("cholmod_factorize", factorize);
        find("cholmod_solve2", solve2);
        find("cholmod_free_factor", free_factor);
        find("cholmod_free_dense", free_dense);
    }
};

const Cholmod& cholmod() {
    static const Cholmod library;
    return library;
}

/// The upper triangle by rows is the lower one by columns, of a Hermitian matrix conjugated.
class CholmodSolver final : public DirectSolver {
    cholmod_common common_{};
    std::vector<int> start_, row_;
    std::vector<double> value_;
    cholmod_sparse matrix_{};
    cholmod_factor* factor_ = nullptr;
    cholmod_dense *x_ = nullptr, *y_ = nullptr, *e_ = nullptr; // solutions, and work memory of solutions

    void check(bool well) const {
        if (!well || common_.status != CHOLMOD_OK)
            throw std::runtime_error("CHOLMOD ends with " + std::to_string(common_.status));
    }

  public:
    CholmodSolver(const SparseProblem& problem, SparseOrdering ordering)
        : start_(from_zero(problem.ia)),
          row_(from_zero(problem.ja)),
          value_(problem.a) {
        cholmod().start(&common_);
        common_.print = 0;
        common_.nmethods = 1;
        common_.method[0].ordering = ordering == SparseOrdering::metis ? CHOLMOD_METIS : CHOLMOD_AMD;
        common_.postorder = 1;
        common_.supernodal = CHOLMOD_SUPERNODAL;
        if (problem.complex())
            for (std::size_t k = 1; k < value_.size(); k += 2) value_[k] = -value_[k];
        matrix_.nrow = matrix_.ncol = static_cast<std::size_t>(problem.n);
        matrix_.nzmax = row_.size();
        matrix_.p = start_.data();
        matrix_.i = row_.data();
        matrix_.x = value_.data();
        matrix_.stype = -1;
        matrix_.itype = CHOLMOD_INT;
        matrix_.xtype = problem.complex() ? CHOLMOD_COMPLEX : CHOLMOD_REAL;
        matrix_.dtype = CHOLMOD_DOUBLE;
        matrix_.sorted = matrix_.packed = 1;
    }
    ~CholmodSolver() override {
        for (cholmod_dense** block : {&x_, &y_, &e_}) cholmod().free_dense(block, &common_);
        cholmod().free_factor(&factor_, &common_);
        cholmod().finish(&common_);
    }
    CholmodSolver(const CholmodSolver&) = delete;
    CholmodSolver& operator=(const CholmodSolver&) = delete;

    void analyse() override {
        cholmod().free_factor(&factor_, &common_);
        factor_ = cholmod().analyze(&matrix_, &common_);
        check(factor_ != nullptr);
    }
    void factorise() override { check(cholmod().factorize(&matrix_, factor_, &common_) == 1); }
    void solve(const std::vector<double>& b, std::vector<double>& x, int nb) override {
        cholmod_dense right{};
        right.nrow = right.d = matrix_.nrow;
        right.ncol = static_cast<std::size_t>(nb);
        right.nzmax = right.nrow * right.ncol;
        right.x = const_cast<double*>(b.data()); // NOLINT: it is only read
        right.xtype = matrix_.xtype;
        right.dtype = CHOLMOD_DOUBLE;
        check(cholmod().solve2(CHOLMOD_A, factor_, &right, nullptr, &x_, nullptr, &y_, &e_, &common_) == 1);
        std::copy_n(static_cast<const double*>(x_->x), x.size(), x.data());
    }
    double peak_bytes() const override { return static_cast<double>(common_.memory_usage); }
};

} // namespace

std::vector<DirectContender> cholmod_direct() {
    if (!cholmod().complete()) return {};
    const std::string version = std::to_string(CHOLMOD_MAIN_VERSION) + '.' + std::to_string(CHOLMOD_SUB_VERSION) + '.' +
                                std::to_string(CHOLMOD_SUBSUB_VERSION);
    const auto definite = [](const SparseProblem& problem) { return problem.mtype == 2 || problem.mtype == 4; };
    const auto with = [](SparseOrdering ordering) {
        return [=](const SparseProblem& problem) { return std::make_unique<CholmodSolver>(problem, ordering); };
    };
    return {{"CHOLMOD", version + ", METIS", definite, with(SparseOrdering::metis)},
            {"CHOLMOD/A", version + ", AMD", definite, with(SparseOrdering::minimum_degree)}};
}

} // namespace nxl::bench

#else

namespace nxl::bench {

std::vector<DirectContender> cholmod_direct() { return {}; }

} // namespace nxl::bench

#endif
