// The choice of a method by the matrix: Cholesky or LU; conjugate gradients or FGMRES where dense factors would cost
// too much, or where the user asks for iterations.
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
        std::string doubt = doubt_of_definiteness(a);
        if (!settings_.iterative && pays_band(a)) return set_up_band(a, doubt.empty());
        const bool fits = fits_dense<T>(a.n);
        if constexpr (std::is_same_v<T, double>) {
            const bool large = !(fits && pays_dense(a.n, a.entries()));
            if (large || settings_.iterative) return iterate(a, large ? "large, " : "", doubt, fits);
        } else {
            if (settings_.iterative) throw Refusal("methods cg and fgmres need a real matrix, this one is complex");
            if (!fits)
                throw Refusal("no method fits: cg and fgmres need a real matrix, and lu needs " + dense_need<T>(a.n));
        }
        if (doubt.empty()) {
            try {
                return take(make_cholesky<T>(), a, "positive definite");
            } catch (const Refusal& refusal) {
                doubt = refusal.what();
            }
        }
        take(make_lu<T>(), a, doubt);
    }
    Outcome solve(const Block<T>& b, Block<T>& x, const Observer& observe) override {
        Outcome outcome = chosen_->solve(b, x, observe);
        if (outcome.converged || fallback_ == nullptr) return outcome;
        take(make_lu<T>(), *fallback_,
             "fgmres did not converge in " + std::to_string(outcome.iterations) + " iterations");
        return chosen_->solve(b, x, observe);
    }
    double condition() const override { return chosen_->condition(); }
    std::string description() const override { return chosen_->description() + " (auto: " + reason_ + ")"; }

  private:
    void set_up_band(const SparseMatrix<T>& a, bool may_be_definite) {
        if (may_be_definite) {
            try {
                return take(make_band_cholesky<T>(), a, "narrow band, positive definite");
            } catch (const Refusal&) { // LU has the last word
            }
        }
        take(make_band_lu<T>(), a, "narrow band");
    }

    void take(std::unique_ptr<Method<T>> method, const SparseMatrix<T>& a, const std::string& reason) {
        chosen_ = std::move(method); // frees what the one before held
        chosen_->set_up(a);
        reason_ = reason;
    }

    /// By conjugate gradients where there is no doubt that matrix and preconditioner are positive definite, otherwise
    /// by FGMRES with ILU(0), as far as the user has left that open.
    void iterate(const SparseMatrix<double>& a, const std::string& size, std::string doubt, bool fits)
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
        const bool full = a.n > 500 && a.entries() >= 0.25 * a.n * a.n; // ILU(0) would be LU, on one thread, by merging
        if (!settings.preconditioner_named) settings.preconditioner = full ? "none" : "ilu0";
        const bool free = fits && !settings.iterative; // to go over to LU
        if (free) settings.max_iterations = kPatience;
        try {
            take(make_fgmres(settings), a, size + doubt);
            if (free) fallback_ = &a;
        } catch (const Refusal& refusal) {
            if (settings.preconditioner_named) throw;
            const std::string reason = size + doubt + ", " + refusal.what();
            if (free) return take(make_lu<double>(), a, reason);
            settings.preconditioner = "none";
            take(make_fgmres(settings), a, reason);
        }
    }

    /// Iterations for each right-hand side before dense LU is tried: with ILU(0) most that converge at all are done.
    static constexpr int kPatience = 500;

    const Settings settings_;
    std::unique_ptr<Method<T>> chosen_;
    const SparseMatrix<T>* fallback_ = nullptr; // to be solved by LU if FGMRES does not converge
    std::string reason_;
};

} // namespace

bool pays_dense(int n, int entries) {
    constexpr int kQuick = 5000; // 42 GFLOP for Cholesky, 200 MB: about a second
    return n <= kQuick || entries >= 0.25 * n * n;
}

template <class T> std::unique_ptr<Method<T>> make_automatic(const Settings& settings) {
    return std::make_unique<Automatic<T>>(settings);
}

template std::unique_ptr<Method<double>> make_automatic(const Settings&);
template std::unique_ptr<Method<Complex>> make_automatic(const Settings&);

} // namespace solve
