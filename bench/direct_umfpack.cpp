// All that is compiled with the headers of UMFPACK and KLU.
#include "bench/direct_solver.hpp"

#ifdef NXL_BENCH_UMFPACK
#include "bench/loaded.hpp"
#include <algorithm>
#include <array>
#include <klu.h>
#include <stdexcept>
#include <umfpack.h>

namespace nxl::bench {
namespace {

struct Umfpack : LoadedLibrary {
    decltype(&umfpack_di_symbolic) symbolic;
    decltype(&umfpack_di_numeric) numeric;
    decltype(&umfpack_di_solve) solve;
    decltype(&umfpack_zi_symbolic) z_symbolic;
    decltype(&umfpack_zi_numeric) z_numeric;
    decltype(&umfpack_zi_solve) z_solve;
    decltype(&umfpack_di_free_symbolic) free_symbolic, z_free_symbolic;
    decltype(&umfpack_di_free_numeric) free_numeric, z_free_numeric;
    decltype(&umfpack_di_defaults) defaults;

    Umfpack() : LoadedLibrary("libumfpack.so." + std::to_string(UMFPACK_MAIN_VERSION)) {
        find("umfpack_di_symbolic", symbolic);
        find("umfpack_di_numeric", numeric);
        find("umfpack_di_solve", solve);
        find("umfpack_zi_symbolic", z_symbolic);
        find("umfpack_zi_numeric", z_numeric);
        find("umfpack_zi_solve", z_solve);
        find("umfpack_di_free_symbolic", free_symbolic);
        find("umfpack_zi_free_symbolic", z_free_symbolic);
        find("umfpack_di_free_numeric", free_numeric);
        find("umfpack_zi_free_numeric", z_free_numeric);
        find("umfpack_di_defaults", defaults);
    }
};

const Umfpack& umfpack() {
    static const Umfpack library;
    return library;
}

class UmfpackSolver final : public DirectSolver {
    const int n_;
    const bool complex_;
    const SparseColumns a_;
    std::array<double, UMFPACK_CONTROL> control_{};
    std::array<double, UMFPACK_INFO> info_{};
    void *symbolic_ = nullptr, *numeric_ = nullptr;

    static void check(int status) {
        if (status < 0) throw std::runtime_error("UMFPACK ends with " + std::to_string(status));
    }
    void free_numeric() { (complex_ ? umfpack().z_free_numeric : umfpack().free_numeric)(&numeric_); }
    void free_symbolic() { (complex_ ? umfpack().z_free_symbolic : umfpack().free_symbolic)(&symbolic_); }

  public:
    explicit UmfpackSolver(const SparseProblem& problem)
        : n_(problem.n),
          complex_(problem.complex()),
          a_(columns_of(problem)) {
        umfpack().defaults(control_.data());
        control_[UMFPACK_IRSTEP] = 0; // solutions of the others are not refined either
    }
    ~UmfpackSolver() override {
        free_numeric();
        free_symbolic();
    }
    UmfpackSolver(const UmfpackSolver&) = delete;
    UmfpackSolver& operator=(const UmfpackSolver&) = delete;

    void analyse() override {
        free_numeric();
        free_symbolic();
        const int *const start = a_.start.data(), *const row = a_.row.data();
        const double* const value = a_.value.data();
        check(complex_
                  ? umfpack().z_symbolic(n_, n_, start, row, value, nullptr, &symbolic_, control_.data(), info_.data())
                  : umfpack().symbolic(n_, n_, start, row, value, &symbolic_, control_.data(), info_.data()));
    }
    void factorise() override {
        free_numeric();
        const int *const start = a_.start.data(), *const row = a_.row.data();
        const double* const value = a_.value.data();
        check(complex_
                  ? umfpack().z_numeric(start, row, value, nullptr, symbolic_, &numeric_, control_.data(), info_.data())
                  : umfpack().numeric(start, row, value, symbolic_, &numeric_, control_.data(), info_.data()));
    }
    void solve(const std::vector<double>& b, std::vector<double>& x, int nb) override {
        const int *const start = a_.start.data(), *const row = a_.row.data();
        const double* const value = a_.value.data();
        const std::size_t length = b.size() / static_cast<std::size_t>(nb);
        std::array<double, UMFPACK_INFO> info{};
        for (std::size_t at = 0; at < b.size(); at += length)
            check(complex_ ? umfpack().z_solve(UMFPACK_A, start, row, value, nullptr, x.data() + at, nullptr,
                                               b.data() + at, nullptr, numeric_, control_.data(), info.data())
                           : umfpack().solve(UMFPACK_A, start, row, value, x.data() + at, b.data() + at, numeric_,
                                             control_.data(), info.data()));
    }
    double peak_bytes() const override { return info_[UMFPACK_PEAK_MEMORY] * info_[UMFPACK_SIZE_OF_UNIT]; }
};

struct Klu : LoadedLibrary {
    decltype(&klu_defaults) defaults;
    decltype(&klu_analyze) analyze;
    decltype(&klu_factor) factor, z_factor;
    decltype(&klu_solve) solve, z_solve;
    decltype(&klu_free_symbolic) free_symbolic;
    decltype(&klu_free_numeric) free_numeric, z_free_numeric;

    Klu() : LoadedLibrary("libklu.so." + std::to_string(KLU_MAIN_VERSION)) {
        find("klu_defaults", defaults);
        find("klu_analyze", analyze);
        find("klu_factor", factor);
        find("klu_z_factor", z_factor);
        find("klu_solve", solve);
        find("klu_z_solve", z_solve);
        find("klu_free_symbolic", free_symbolic);
        find("klu_free_numeric", free_numeric);
        find("klu_z_free_numeric", z_free_numeric);
    }
};

const Klu& klu() {
    static const Klu library;
    return library;
}

class KluSolver final : public DirectSolver {
    const int n_;
    const bool complex_;
    SparseColumns a_;
    klu_common common_{};
    klu_symbolic* symbolic_ = nullptr;
    klu_numeric* numeric_ = nullptr;

    void check(bool well) const {
        if (!well || common_.status != KLU_OK)
            throw std::runtime_error("KLU ends with " + std::to_string(common_.status));
    }
    void free_numeric() { (complex_ ? klu().z_free_numeric : klu().free_numeric)(&numeric_, &common_); }

  public:
    explicit KluSolver(const SparseProblem& problem)
        : n_(problem.n),
          complex_(problem.complex()),
          a_(columns_of(problem)) {
        klu().defaults(&common_);
    }
    ~KluSolver() override {
        free_numeric();
        klu().free_symbolic(&symbolic_, &common_);
    }
    KluSolver(const KluSolver&) = delete;
    KluSolver& operator=(const KluSolver&) = delete;

    void analyse() override {
        free_numeric();
        klu().free_symbolic(&symbolic_, &common_);
        symbolic_ = klu().analyze(n_, a_.start.data(), a_.row.data(), &common_);
        check(symbolic_ != nullptr);
    }
    void factorise() override {
        free_numeric();
        numeric_ = (complex_ ? klu().z_factor : klu().factor)(a_.start.data(), a_.row.data(), a_.value.data(),
                                                              symbolic_, &common_);
        check(numeric_ != nullptr);
    }
    void solve(const std::vector<double>& b, std::vector<double>& x, int nb) override {
        std::ranges::copy(b, x.begin());
        check((complex_ ? klu().z_solve : klu().solve)(symbolic_, numeric_, n_, nb, x.data(), &common_) == 1);
    }
    double peak_bytes() const override { return static_cast<double>(common_.mempeak); }
};

template <class Solver> DirectContender contender(const char* name, const std::string& version) {
    return {name, version, [](const SparseProblem& problem) { return !problem.upper(); },
            [](const SparseProblem& problem) { return std::make_unique<Solver>(problem); }};
}

std::string version_text(int main, int sub, int least) {
    return std::to_string(main) + '.' + std::to_string(sub) + '.' + std::to_string(least);
}

} // namespace

std::vector<DirectContender> umfpack_direct() {
    std::vector<DirectContender> found;
    if (umfpack().complete())
        found.push_back(contender<UmfpackSolver>(
            "UMFPACK", version_text(UMFPACK_MAIN_VERSION, UMFPACK_SUB_VERSION, UMFPACK_SUBSUB_VERSION)));
    if (klu().complete())
        found.push_back(
            contender<KluSolver>("KLU", version_text(KLU_MAIN_VERSION, KLU_SUB_VERSION, KLU_SUBSUB_VERSION)));
    return found;
}

} // namespace nxl::bench

#else

namespace nxl::bench {

std::vector<DirectContender> umfpack_direct() { return {}; }

} // namespace nxl::bench

#endif
