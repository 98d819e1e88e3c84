// The sparse direct method: the matrix is factored as it is, by the kind that its symmetry and its signs allow.
#include "common/input_error.hpp"
#include "common/interrupt.hpp"
#include "common/stopwatch.hpp"
#include "method.hpp"
#include "progress.hpp"
#include "report.hpp"

#include "nxl.hpp"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <optional>
#include <system_error>

namespace solve {
namespace {

constexpr int kStructurallySingular = -6, kNoMemory = -2, kFailedPivot = -4, kTooLarge = -8, kZeroOnDiagonal = -7;

/// Larger residuals say that replaced pivots have cost the solution.
constexpr double kGoodResidual = 1e-8;

nxl::Ordering ordering_of(const std::string& name) {
    if (name == "minimum-degree") return nxl::Ordering::minimum_degree;
    return name == "constrained" ? nxl::Ordering::constrained_minimum_degree : nxl::Ordering::nested_dissection;
}

const char* name_of(nxl::MatrixType type) {
    switch (type) {
    case nxl::MatrixType::positive_definite: return "symmetric positive definite";
    case nxl::MatrixType::symmetric: return "symmetric indefinite";
    case nxl::MatrixType::hermitian_positive_definite: return "Hermitian positive definite";
    case nxl::MatrixType::hermitian: return "Hermitian indefinite";
    case nxl::MatrixType::complex_symmetric: return "complex symmetric";
    default: return "unsymmetric";
    }
}

/// Of a diagonal: whether all of it is positive, and whether there is a 0.
struct Signs {
    bool positive, zero;
};

template <class T> Signs signs_of_diagonal(const SparseMatrix<T>& a) {
    const auto d = diagonal(a);
    return {std::all_of(d.begin(), d.end(), [](const T& value) { return std::real(value) > 0.0; }),
            std::any_of(d.begin(), d.end(), [](const T& value) { return value == T{}; })};
}

template <class T> nxl::MatrixType type_of(const SparseMatrix<T>& a, bool positive) {
    using enum nxl::MatrixType;
    constexpr bool real = std::is_same_v<T, double>;
    if (is_hermitian(a)) {
        if (positive) return real ? positive_definite : hermitian_positive_definite;
        return real ? symmetric : hermitian;
    }
    if (!real && is_symmetric(a)) return complex_symmetric;
    return real ? general : complex_general;
}

/// A folder for factors, and the library's settings for it.
class FactorFolder {
    std::filesystem::path path_;

  public:
    explicit FactorFolder(int megabytes) {
        std::string name = (std::filesystem::temp_directory_path() / "nxl-solve-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw common::InputError(name, std::error_code(errno, std::generic_category()).message());
        path_ = name;
        setenv("NXL_PARDISO_OOC_PATH", (path_ / "factors").c_str(), 1);
        setenv("NXL_PARDISO_OOC_MAX_CORE_SIZE", std::to_string(megabytes).c_str(), 1);
        setenv("NXL_PARDISO_OOC_KEEP_FILE", "1", 1); // which deletes them
    }
    ~FactorFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    FactorFolder(const FactorFolder&) = delete;
    FactorFolder& operator=(const FactorFolder&) = delete;
};

template <class T> class SparseDirect final : public Method<T> {
  public:
    explicit SparseDirect(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<T>& a) override {
        a_ = &a;
        const Signs signs = signs_of_diagonal(a);
        solver_.emplace(type_of(a, signs.positive), options(a, signs));
        if (settings_.out_of_core > 0) files_.emplace(settings_.out_of_core);
        expect(solver_->analyse(a.row_start, a.column, a.value));
        if (!files_) expect_room();
        if (!factor()) {
            reason_ = "a trial Cholesky failed";
            solver_->give_up_definiteness();
            expect(watched_factor());
        }
    }

    Outcome solve(const Block<T>& b, Block<T>& x, const Observer& /*observe*/) override {
        expect(solver_->refine(b.value, x.value, steps(), true));
        Outcome outcome;
        outcome.operations = 1e6 * solver_->million_operations();
        outcome.factor_seconds = seconds_;
        outcome.factors = figures();
        const double residual = scaled_residual(*a_, b, x);
        outcome.converged = residual <= kGoodResidual;
        if (!std::isfinite(residual) && files_) outcome.trouble = "the files of the factors could not be read";
        else if (!std::isfinite(residual)) outcome.trouble = "the numbers left the range of doubles";
        else if (!outcome.converged)
            outcome.trouble = "the pivots are too small: the matrix is singular, or close to it";
        return outcome;
    }

    std::string description() const override {
        return std::string("direct, ") + name_of(solver_->type()) + ", " + settings_.ordering +
               (reason_.empty() ? "" : " (" + reason_ + ")");
    }

  private:
    bool definite() const {
        return solver_->type() == nxl::MatrixType::positive_definite ||
               solver_->type() == nxl::MatrixType::hermitian_positive_definite;
    }
    int steps() const { return settings_.refine >= 0 ? settings_.refine : definite() ? 0 : 2; }

    nxl::SparseOptions options(const SparseMatrix<T>& a, const Signs& signs) const {
        const nxl::MatrixType type = type_of(a, signs.positive);
        auto options = nxl::SparseOptions::of(type);
        options.ordering = ordering_of(settings_.ordering);
        if (settings_.out_of_core > 0) options.out_of_core = nxl::OutOfCore::always;
        if (options.pivots_of_order_2) options.matching = options.scaling = signs.zero; // pairs for the zeros
        return options;
    }

    static void expect(const nxl::Status& status) {
        if (status.ok()) return;
        if (status.code() == kNoMemory) throw std::bad_alloc();
        if (status.code() == kStructurallySingular || status.code() == kZeroOnDiagonal)
            throw Singular("the matrix is singular: no order of its rows fills the diagonal");
        if (status.code() == kTooLarge) throw TooLarge("method direct: " + std::string(status.text()));
        throw Refusal("method direct: " + std::string(status.text()));
    }

    /// Before the factors are taken: they have to fit into half of the memory.
    void expect_room() const {
        const double bytes = static_cast<double>(solver_->factor_size_in_entries()) * sizeof(T);
        if (!fits_in_memory(bytes)) throw TooLarge("method direct needs " + memory_need(bytes, "the factors"));
    }

    /// False when a matrix that looked definite is not.
    bool factor() {
        const bool trial = definite();
        const nxl::Status status = watched_factor();
        if (trial && status.code() == kFailedPivot) return false;
        expect(status);
        return true;
    }

    nxl::Status watched_factor() {
        const common::Interruptible interruptible;
        const FactorisationProgress progress;
        common::Stopwatch watch;
        const nxl::Status status = solver_->factor(a_->value);
        seconds_ = watch.lap();
        common::stop_if_interrupted();
        return status;
    }

    SparseFactors figures() const {
        const auto [positive, negative] = solver_->inertia();
        return {.entries = solver_->factor_size_in_entries(),
                .bytes = static_cast<double>(solver_->factor_size_in_entries()) * sizeof(T),
                .fill = static_cast<double>(solver_->factor_size_in_entries()) / solver_->entries(),
                .definite = definite(),
                .has_signs =
                    solver_->type() == nxl::MatrixType::symmetric || solver_->type() == nxl::MatrixType::hermitian,
                .positive = positive,
                .negative = negative,
                .replaced = solver_->perturbed_pivots(),
                .refined = solver_->refinement_steps(),
                .window = settings_.out_of_core};
    }

    const Settings settings_;
    const SparseMatrix<T>* a_ = nullptr;
    std::optional<FactorFolder> files_; // outlives the solver
    std::optional<nxl::SparseSolver<T>> solver_;
    std::string reason_;
    double seconds_ = 0.0;
};

} // namespace

template <class T> std::unique_ptr<Method<T>> make_sparse_direct(const Settings& settings) {
    return std::make_unique<SparseDirect<T>>(settings);
}

template std::unique_ptr<Method<double>> make_sparse_direct(const Settings&);
template std::unique_ptr<Method<Complex>> make_sparse_direct(const Settings&);

} // namespace solve
