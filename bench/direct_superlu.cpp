// All that is compiled with SuperLU's header. Real problems only: the header of complex ones cannot stand beside it.
#include "bench/direct_solver.hpp"

#ifdef NXL_BENCH_SUPERLU
#include "bench/loaded.hpp"
#include <algorithm>
#include <slu_ddefs.h>
#include <stdexcept>

namespace nxl::bench {
namespace {

struct SuperLu : LoadedLibrary {
    decltype(&::set_default_options) set_default_options;
    decltype(&::StatInit) stat_init;
    decltype(&::StatFree) stat_free;
    decltype(&::get_perm_c) get_perm_c;
    decltype(&::sp_preorder) sp_preorder;
    decltype(&::sp_ienv) sp_ienv;
    decltype(&::dgstrf) dgstrf;
    decltype(&::dgstrs) dgstrs;
    decltype(&::dQuerySpace) query_space;
    decltype(&::Destroy_CompCol_Permuted) destroy_permuted;
    decltype(&::Destroy_SuperNode_Matrix) destroy_l;
    decltype(&::Destroy_CompCol_Matrix) destroy_u;

    SuperLu() : LoadedLibrary("libsuperlu.so.5") {
        find("set_default_options", set_default_options);
        find("StatInit", stat_init);
        find("StatFree", stat_free);
        find("get_perm_c", get_perm_c);
        find("sp_preorder", sp_preorder);
        find("sp_ienv", sp_ienv);
        find("dgstrf", dgstrf);
        find("dgstrs", dgstrs);
        find("dQuerySpace", query_space);
        find("Destroy_CompCol_Permuted", destroy_permuted);
        find("Destroy_SuperNode_Matrix", destroy_l);
        find("Destroy_CompCol_Matrix", destroy_u);
    }
};

const SuperLu& superlu() {
    static const SuperLu library;
    return library;
}

/// Whether each entry has one in the place across the diagonal.
bool has_symmetric_pattern(const SparseProblem& problem, const SparseColumns& columns) {
    return columns.start == from_zero(problem.ia) && columns.row == from_zero(problem.ja);
}

/// With minimum degree of A + A^T and diagonal pivots where the pattern is symmetric, as its guide has it, else with
/// the defaults.
class SuperLuSolver final : public DirectSolver {
    SparseColumns a_;
    superlu_options_t options_{};
    SuperLUStat_t statistics_{};
    NCformat store_{};
    SuperMatrix matrix_{}, permuted_{}, l_{}, u_{};
    GlobalLU_t global_{};
    std::vector<int> perm_c_, perm_r_, etree_;

    void free_factor() {
        if (l_.Store) superlu().destroy_l(&l_);
        if (u_.Store) superlu().destroy_u(&u_);
        l_.Store = u_.Store = nullptr;
    }
    void free_permuted() {
        if (permuted_.Store) superlu().destroy_permuted(&permuted_);
        permuted_.Store = nullptr;
    }

  public:
    explicit SuperLuSolver(const SparseProblem& problem)
        : a_(columns_of(problem)),
          perm_c_(static_cast<std::size_t>(problem.n)),
          perm_r_(perm_c_),
          etree_(perm_c_) {
        superlu().set_default_options(&options_);
        if (has_symmetric_pattern(problem, a_)) {
            options_.ColPerm = MMD_AT_PLUS_A;
            options_.SymmetricMode = YES;
            options_.DiagPivotThresh = 0.001;
        }
        superlu().stat_init(&statistics_);
        store_ = {.nnz = static_cast<int>(a_.row.size()),
                  .nzval = a_.value.data(),
                  .rowind = a_.row.data(),
                  .colptr = a_.start.data()};
        matrix_ = {
            .Stype = SLU_NC, .Dtype = SLU_D, .Mtype = SLU_GE, .nrow = problem.n, .ncol = problem.n, .Store = &store_};
    }
    ~SuperLuSolver() override {
        free_factor();
        free_permuted();
        superlu().stat_free(&statistics_);
    }
    SuperLuSolver(const SuperLuSolver&) = delete;
    SuperLuSolver& operator=(const SuperLuSolver&) = delete;

    void analyse() override {
        free_factor();
        free_permuted();
        superlu().get_perm_c(options_.ColPerm, &matrix_, perm_c_.data());
        superlu().sp_preorder(&options_, &matrix_, perm_c_.data(), etree_.data(), &permuted_);
    }
    void factorise() override {
        free_factor();
        int info = 0;
        superlu().dgstrf(&options_, &permuted_, superlu().sp_ienv(2), superlu().sp_ienv(1), etree_.data(), nullptr, 0,
                         perm_c_.data(), perm_r_.data(), &l_, &u_, &global_, &statistics_, &info);
        if (info != 0) throw std::runtime_error("SuperLU ends with " + std::to_string(info));
    }
    void solve(const std::vector<double>& b, std::vector<double>& x, int nb) override {
        std::ranges::copy(b, x.begin());
        DNformat block = {.lda = matrix_.nrow, .nzval = x.data()};
        SuperMatrix right = {
            .Stype = SLU_DN, .Dtype = SLU_D, .Mtype = SLU_GE, .nrow = matrix_.nrow, .ncol = nb, .Store = &block};
        int info = 0;
        superlu().dgstrs(NOTRANS, &l_, &u_, perm_c_.data(), perm_r_.data(), &right, &statistics_, &info);
        if (info != 0) throw std::runtime_error("SuperLU ends with " + std::to_string(info));
    }
    double peak_bytes() const override {
        mem_usage_t usage{};
        superlu().query_space(const_cast<SuperMatrix*>(&l_), const_cast<SuperMatrix*>(&u_), &usage); // NOLINT: reads
        return static_cast<double>(usage.total_needed);
    }
};

} // namespace

std::vector<DirectContender> superlu_direct() {
    if (!superlu().complete()) return {};
    return {{"SuperLU", "5", [](const SparseProblem& problem) { return problem.mtype == 11; },
             [](const SparseProblem& problem) { return std::make_unique<SuperLuSolver>(problem); }}};
}

} // namespace nxl::bench

#else

namespace nxl::bench {

std::vector<DirectContender> superlu_direct() { return {}; }

} // namespace nxl::bench

#endif
