#include "bench/direct_solver.hpp"
#include "include/nxl.h"
#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace nxl::bench {
namespace {

class NxlSolver final : public DirectSolver {
    decltype(&PARDISO) pardiso_;
    SparseProblem problem_;
    SparseOrdering ordering_;
    std::array<std::int64_t, 64> handle_{};
    std::array<int, 64> iparam_{};
    std::vector<int> perm_;
    int peak_kilobytes_ = 0; // without the vectors of a refinement, which grow with the right-hand sides

    void call(int ido, double* b, double* x, int nb) {
        const int one = 1, silent = 0;
        int error = 0;
        pardiso_(handle_.data(), &one, &one, &problem_.mtype, &ido, &problem_.n, problem_.a.data(), problem_.ia.data(),
                 problem_.ja.data(), perm_.data(), &nb, iparam_.data(), &silent, b, x, &error);
        if (error != 0 && ido > 0) throw std::runtime_error("PARDISO ends with " + std::to_string(error));
    }

    /// Of a triangle, whose rows begin with their diagonal.
    bool has_zero_on_diagonal() const {
        const std::size_t words = problem_.complex() ? 2 : 1;
        return std::any_of(problem_.ia.begin(), problem_.ia.end() - 1, [&](int first) {
            const double* const value = problem_.a.data() + words * static_cast<std::size_t>(first - 1);
            return std::all_of(value, value + words, [](double part) { return part == 0.0; });
        });
    }

    /// The defaults of the type, but for the ordering, and for zeros on the diagonal, which a matching pairs: without
    /// it a third of the pivots of a saddle point are perturbed, and each solution is refined twice.
    void set_options() {
        const bool indefinite = problem_.mtype == -2 || problem_.mtype == 6, unsymmetric = problem_.mtype > 10;
        iparam_ = {};
        iparam_[0] = 1;
        iparam_[1] = ordering_ == SparseOrdering::metis ? 2 : 0;
        iparam_[9] = indefinite ? 8 : 13;
        iparam_[10] = iparam_[12] = unsymmetric || (indefinite && has_zero_on_diagonal()) ? 1 : 0;
        iparam_[18] = -1;
        iparam_[20] = indefinite ? 1 : 0;
    }

  public:
    NxlSolver(decltype(&PARDISO) pardiso, SparseProblem problem, SparseOrdering ordering)
        : pardiso_(pardiso),
          problem_(std::move(problem)),
          ordering_(ordering),
          perm_(static_cast<std::size_t>(problem_.n)) {}
    ~NxlSolver() override { call(-1, nullptr, nullptr, 1); }
    NxlSolver(const NxlSolver&) = delete;
    NxlSolver& operator=(const NxlSolver&) = delete;

    void analyse() override {
        set_options();
        call(11, nullptr, nullptr, 1);
    }
    void factorise() override {
        call(22, nullptr, nullptr, 1);
        peak_kilobytes_ = std::max(iparam_[14], iparam_[15] + iparam_[16]);
    }
    void solve(const std::vector<double>& b, std::vector<double>& x, int nb) override {
        call(33, const_cast<double*>(b.data()), x.data(), nb); // NOLINT: with iparam(6) = 0 it is only read
    }
    double peak_bytes() const override { return 1024.0 * peak_kilobytes_; }
    double flops() const override { return 1e6 * iparam_[18]; }
};

} // namespace

DirectContender nxl_direct(const Library& library, const std::string& name, SparseOrdering ordering) {
    const auto pardiso = reinterpret_cast<decltype(&PARDISO)>(library.symbol("PARDISO").address);
    if (!pardiso) throw std::runtime_error(library.name + " has no PARDISO");
    return {name, library.version, [](const SparseProblem&) { return true; },
            [=](const SparseProblem& problem) { return std::make_unique<NxlSolver>(pardiso, problem, ordering); }};
}

SparseColumns columns_of(const SparseProblem& problem) {
    const std::size_t words = problem.complex() ? 2 : 1, n = static_cast<std::size_t>(problem.n);
    SparseColumns columns;
    columns.start.assign(n + 1, 0);
    for (const int j : problem.ja) ++columns.start[static_cast<std::size_t>(j)];
    for (std::size_t j = 0; j < n; ++j) columns.start[j + 1] += columns.start[j];
    columns.row.resize(problem.ja.size());
    columns.value.resize(problem.a.size());
    std::vector<int> next(columns.start.begin(), columns.start.end() - 1);
    for (std::size_t i = 0; i < n; ++i)
        for (int k = problem.ia[i] - 1; k < problem.ia[i + 1] - 1; ++k) {
            const auto from = static_cast<std::size_t>(k);
            const auto to = static_cast<std::size_t>(next[static_cast<std::size_t>(problem.ja[from] - 1)]++);
            columns.row[to] = static_cast<int>(i);
            for (std::size_t w = 0; w < words; ++w) columns.value[words * to + w] = problem.a[words * from + w];
        }
    return columns;
}

std::vector<int> from_zero(const std::vector<int>& indices) {
    std::vector<int> lowered(indices);
    for (int& index : lowered) --index;
    return lowered;
}

} // namespace nxl::bench
