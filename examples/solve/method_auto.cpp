// The choice of a method by the matrix: Cholesky, LU, or conjugate gradients where dense factors would cost too much.
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
        const bool fits = fits_dense<T>(a.n);
        if constexpr (std::is_same_v<T, double>) {
            if (doubt.empty() && !(fits && pays_dense(a.n, a.entries())))
                return take(make_conjugate_gradients(settings_), a, "large, symmetric, positive diagonal");
        }
        if (!fits) {
            const std::string unfit = doubt.empty() ? "complex" : doubt; // as real matrices without a doubt are gone
            throw Refusal("no method fits: not cg (" + unfit + "), and lu needs " + dense_need<T>(a.n));
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
        return chosen_->solve(b, x, observe);
    }
    std::string description() const override { return chosen_->description() + " (auto: " + reason_ + ")"; }

  private:
    void take(std::unique_ptr<Method<T>> method, const SparseMatrix<T>& a, const std::string& reason) {
        chosen_ = std::move(method); // frees what the one before held
        chosen_->set_up(a);
        reason_ = reason;
    }

    const Settings settings_;
    std::unique_ptr<Method<T>> chosen_;
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
