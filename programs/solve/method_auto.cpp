// The choice of a method by the matrix: factors of a narrow band; sparse factors; Cholesky or LU where it is dense;
// conjugate gradients or FGMRES where factors do not fit into memory, or where the user asks for iterations; QR or
// singular values where it is not square.
#include "method.hpp"

#include <algorithm>

namespace solve {
namespace {

/// Why the matrix cannot be positive definite, as far as that shows without factoring it; empty when nothing does.
template <class T> std::string doubt_of_definiteness(const SparseMatrix<T>& a) {
    if (!is_hermitian(a)) return std::is_same_v<T, double> ? "not symmetric" : "not Hermitian";
    const auto d = diagonal(a);
    const auto found = std::find_if(d.begin(), d.end(), [](const T& value) { return !(std::real(value) > 0.0); });
    if (found == d.end()) return "";
    return "diagonal entry " + std::to_string(found - d.begin() + 1) + " is not positive";
}

template <class T> class Automatic final : public Method<T> {
  public:
    explicit Automatic(const Settings& settings) : settings_(settings) {}

    void set_up(const SparseMatrix<T>& a) override {
        if (!a.square()) return set_up_rectangular(a);
        const std::string doubt = doubt_of_definiteness(a);
        if (settings_.iterative) return iterate_or_refuse(a, "", doubt);
        if (pays_band(a)) return set_up_band(a, doubt.empty());
        if (!is_dense(a.n, a.entries())) return set_up_sparse(a, doubt);
        if (fits_dense<T>(a.n)) return set_up_dense(a, doubt);
        iterate_or_refuse(a, dense_need<T>(a.n) + ", ", doubt);
    }
    Outcome solve(const Block<T>& b, Block<T>& x, const Observer& observe) override {
        if (rectangular_ != nullptr) return solve_rectangular(b, x, observe);
        Outcome outcome = chosen_->solve(b, x, observe);
        if (outcome.converged || fallback_ == nullptr) return outcome;
        take(make_lu<T>(), *fallback_, "method direct met pivots too small");
        return chosen_->solve(b, x, observe);
    }
    double condition() const override { return chosen_->condition(); }
    std::optional<Rank> rank() const override { return chosen_->rank(); }
    std::string description() const override { return chosen_->description() + " (auto: " + reason_ + ")"; }

  private:
    void set_up_rectangular(const SparseMatrix<T>& a) {
        if (settings_.iterative)
            throw Refusal("methods cg and fgmres need a square matrix, this one is " + shape_of(a));
        rectangular_ = &a;
        take(make_qr<T>(), a, "not square");
    }
    Outcome solve_rectangular(const Block<T>& b, Block<T>& x, const Observer& observe) {
        try {
            return chosen_->solve(b, x, observe);
        } catch (const Refusal& refusal) {
            take(make_svd<T>(settings_), *rectangular_, refusal.what());
        }
        return chosen_->solve(b, x, observe);
    }

    void set_up_band(const SparseMatrix<T>& a, bool may_be_definite) {
        if (may_be_definite) {
            try {
                return take(make_band_cholesky<T>(), a, "narrow band, positive definite");
            } catch (const Refusal& refusal) {
                return take(make_band_lu<T>(), a, std::string("narrow band, ") + refusal.what());
            }
        }
        take(make_band_lu<T>(), a, "narrow band");
    }

    void take(std::unique_ptr<Method<T>> method, const SparseMatrix<T>& a, const std::string& reason) {
        chosen_ = std::move(method); // frees what the one before held
        chosen_->set_up(a);
        reason_ = reason;
    }

    /// Factors that do not fit leave a real matrix to the iterations. Where a dense copy fits, it has the last word on
    /// a matrix that pivots inside a few columns cannot factor.
    void set_up_sparse(const SparseMatrix<T>& a, const std::string& doubt) {
        try {
            take(make_sparse_direct<T>(settings_), a, "sparse");
            if (fits_dense<T>(a.n)) fallback_ = &a;
        } catch (const TooLarge& refusal) {
            iterate_or_refuse(a, refusal.what() + std::string(", "), doubt);
        }
    }

    void set_up_dense(const SparseMatrix<T>& a, std::string doubt) {
        if (doubt.empty()) {
            try {
                return take(make_cholesky<T>(), a, "positive definite");
            } catch (const Refusal& refusal) {
                doubt = refusal.what();
            }
        }
        take(make_lu<T>(), a, doubt);
    }

    void iterate_or_refuse(const SparseMatrix<T>& a, const std::string& size, const std::string& doubt) {
        if constexpr (std::is_same_v<T, double>) iterate(a, size, doubt);
        else if (settings_.iterative) throw Refusal("methods cg and fgmres need a real matrix, this one is complex");
        else throw Refusal("no method fits: " + size + "and cg and fgmres need a real matrix");
    }

    /// By conjugate gradients where there is no doubt that matrix and preconditioner are positive definite, otherwise
    /// by FGMRES with ILU(0), as far as the user has left that open.
    void iterate(const SparseMatrix<double>& a, const std::string& size, std::string doubt)
        requires std::is_same_v<T, double>
    {
        if (doubt.empty()) {
            try {
                return take(make_conjugate_gradients(settings_), a, size + "symmetric, positive diagonal");
            } catch (const Refusal& refusal) {
                doubt = refusal.what();
            }
        }
        Settings settings = settings_;
        const bool full = a.n > 500 && is_dense(a.n, a.entries()); // ILU(0) would be LU, on one thread, by merging
        if (!settings.preconditioner_named) settings.preconditioner = full ? "none" : "ilu0";
        try {
            take(make_fgmres(settings), a, size + doubt);
        } catch (const Refusal& refusal) {
            if (settings.preconditioner_named) throw;
            settings.preconditioner = "none";
            take(make_fgmres(settings), a, size + doubt + ", " + refusal.what());
        }
    }

    const Settings settings_;
    std::unique_ptr<Method<T>> chosen_;
    const SparseMatrix<T>* fallback_ = nullptr; // to be solved by LU if the direct method does not
    const SparseMatrix<T>* rectangular_ = nullptr;
    std::string reason_;
};

} // namespace

bool is_dense(int n, int entries) { return entries >= 0.25 * n * n; }

template <class T> std::unique_ptr<Method<T>> make_automatic(const Settings& settings) {
    return std::make_unique<Automatic<T>>(settings);
}

template std::unique_ptr<Method<double>> make_automatic(const Settings&);
template std::unique_ptr<Method<Complex>> make_automatic(const Settings&);

} // namespace solve
