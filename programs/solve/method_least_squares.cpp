// Least squares of a dense copy of any shape, and the shortest solution where there are many: by QR (dgels, zgels),
// which needs full rank, and by singular values (dgelsd, zgelsd), which do not.
#include "direct_method.hpp"

#include "nxl.h"

#include <array>
#include <cstdio>
#include <limits>

namespace solve {
namespace {

/// What counts as 0 beside 1 in a matrix of this shape, when nothing else is said.
template <class T> double default_rcond(const SparseMatrix<T>& a) {
    return std::max(a.n, a.columns) * std::numeric_limits<double>::epsilon();
}

std::string short_text(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2e", value);
    return text.data();
}

/// Calls call(work, lwork) for the best size, then with that much.
template <class T, class Call> void with_workspace(Call call) {
    T best{};
    call(&best, -1);
    std::vector<T> work(static_cast<std::size_t>(std::real(best)));
    call(work.data(), static_cast<int>(work.size()));
}

template <class T> class LeastSquares : public Method<T> {
  public:
    void set_up(const SparseMatrix<T>& a) final {
        const double bytes = 2.0 * a.n * a.columns * sizeof(T);
        if (!fits_in_memory(bytes))
            throw Refusal("method " + name() + " needs " + memory_need(bytes, "a dense matrix and work"));
        a_ = &a;
    }

    Outcome solve(const Block<T>& b, Block<T>& x, const Observer& /*observe*/) final {
        std::vector<T> values = column_major(*a_);
        Block<T> both(std::max(a_->n, a_->columns), b.count); // the right-hand sides, then the solutions
        for (int k = 0; k < b.count; ++k) std::copy(b.column(k), b.column(k) + a_->n, both.column(k));
        common::Stopwatch watch;
        expect_memory(fit(values, both));
        Outcome outcome;
        outcome.least_squares = true;
        outcome.factor_seconds = watch.lap();
        outcome.operations = operations();
        for (int k = 0; k < b.count; ++k) std::copy(both.column(k), both.column(k) + a_->columns, x.column(k));
        const auto finite = [](const T& value) { return std::isfinite(std::abs(value)); };
        outcome.converged = std::all_of(x.value.begin(), x.value.end(), finite);
        if (!outcome.converged) outcome.trouble = "the numbers left the range of doubles";
        return outcome;
    }

    std::string description() const final {
        const char* what = a_->n < a_->columns ? ", shortest solution" : ", least squares";
        return name() + (a_->square() ? "" : what);
    }

  protected:
    virtual std::string name() const = 0;
    /// Destroys the matrix, and replaces right-hand sides by solutions; returns info. Throws Refusal.
    virtual int fit(std::vector<T>& values, Block<T>& both) = 0;
    /// Of `fit`; 0 when they are not counted.
    virtual double operations() const { return 0.0; }

    const SparseMatrix<T>* a_ = nullptr;
};

template <class T> class Qr final : public LeastSquares<T> {
  public:
    double condition() const override { return condition_; }

    std::optional<Rank> rank() const override {
        const SparseMatrix<T>& a = *this->a_;
        const double rcond = default_rcond(a);
        int rank = 0;
        if constexpr (kRealFlops<T> == 1.0) rank = pivoted_rank(a.n, a.columns, column_major(a), rcond);
        else rank = pivoted_rank(2 * a.n, 2 * a.columns, real_form(column_major(a)), rcond) / 2;
        return Rank{.rank = rank,
                    .most = std::min(a.n, a.columns),
                    .rcond = rcond,
                    .by = "QR with pivots",
                    .condition = "|R| |R^-1|"};
    }

  private:
    std::string name() const override { return "qr"; }

    int fit(std::vector<T>& values, Block<T>& both) override {
        const SparseMatrix<T>& a = *this->a_;
        const int* ldb = &both.n;
        int info = 0;
        with_workspace<T>([&](T* work, int lwork) {
            routine_of<T>(dgels, zgels)("N", &a.n, &a.columns, &both.count, values.data(), &a.n, both.value.data(), ldb,
                                        work, &lwork, &info, 1);
        });
        expect_memory(info);
        if (info > 0) refuse("element " + std::to_string(info) + " on the diagonal of the triangle is 0");
        // The triangle is R of A = Q R, or L of A = L Q.
        const int order = std::min(a.n, a.columns);
        const char* uplo = a.n >= a.columns ? "U" : "L";
        double rcond = 0.0;
        ConditionSpace<T> space(order);
        routine_of<T>(dtrcon, ztrcon)("1", uplo, "N", &order, values.data(), &a.n, &rcond, space.work.data(),
                                      space.spare.data(), &info, 1, 1, 1);
        condition_ = 1.0 / rcond;
        if (rcond <= default_rcond(a)) refuse("the condition of the triangle is " + short_text(condition_));
        return info;
    }
    [[noreturn]] static void refuse(const std::string& reason) {
        throw Refusal("method qr needs a matrix of full rank, but " + reason);
    }

    double operations() const override {
        const double most = std::max(this->a_->n, this->a_->columns), least = std::min(this->a_->n, this->a_->columns);
        return kRealFlops<T> * 2.0 * least * least * (most - least / 3.0);
    }

    /// [Re -Im; Im Re], whose singular values are those of the matrix, each twice.
    std::vector<double> real_form(const std::vector<T>& values) const {
        const auto m = static_cast<std::size_t>(this->a_->n), n = static_cast<std::size_t>(this->a_->columns);
        std::vector<double> real(4 * m * n);
        for (std::size_t j = 0; j < n; ++j)
            for (std::size_t i = 0; i < m; ++i) {
                const T value = values[i + m * j];
                double* left = real.data() + i + 2 * m * j;
                double* right = left + 2 * m * n;
                left[0] = right[m] = std::real(value);
                left[m] = std::imag(value);
                right[0] = -left[m];
            }
        return real;
    }

    /// The elements on the diagonal of R, which do not grow, that are above rcond times the first.
    static int pivoted_rank(int m, int n, std::vector<double> values, double rcond) {
        const auto least = static_cast<std::size_t>(std::min(m, n));
        std::vector<int> pivots(static_cast<std::size_t>(n));
        std::vector<double> tau(least);
        int info = 0;
        with_workspace<double>([&](double* work, int lwork) {
            dgeqp3(&m, &n, values.data(), &m, pivots.data(), tau.data(), work, &lwork, &info);
        });
        expect_memory(info);
        std::size_t rank = 0;
        const auto diagonal = [&](std::size_t k) { return std::abs(values[k * (static_cast<std::size_t>(m) + 1)]); };
        while (rank < least && diagonal(rank) > rcond * diagonal(0)) ++rank;
        return static_cast<int>(rank);
    }

    double condition_ = 0.0;
};

template <class T> class Svd final : public LeastSquares<T> {
  public:
    explicit Svd(std::optional<double> rcond) : wanted_(rcond) {}

    double condition() const override {
        return rank_ > 0 ? value_.front() / value_[static_cast<std::size_t>(rank_) - 1] : 0.0;
    }

    std::optional<Rank> rank() const override {
        const int most = static_cast<int>(value_.size());
        return Rank{.rank = rank_,
                    .most = most,
                    .rcond = rcond(),
                    .by = "singular values",
                    .condition = "the largest of them / the smallest"};
    }

  private:
    std::string name() const override { return "svd"; }
    double rcond() const { return wanted_.value_or(default_rcond(*this->a_)); }

    int fit(std::vector<T>& values, Block<T>& both) override {
        const SparseMatrix<T>& a = *this->a_;
        const double rcond = this->rcond();
        value_.resize(static_cast<std::size_t>(std::min(a.n, a.columns)));
        int info = 0, size = 0; // of integers, which are not used
        double none = 0.0;
        with_workspace<T>([&](T* work, int lwork) {
            const auto go = [&](auto* routine, auto*... reals) {
                routine(&a.n, &a.columns, &both.count, values.data(), &a.n, both.value.data(), &both.n, value_.data(),
                        &rcond, &rank_, work, &lwork, reals..., &size, &info);
            };
            if constexpr (kRealFlops<T> == 1.0) go(dgelsd);
            else go(zgelsd, &none);
        });
        if (info > 0) throw Refusal("the iteration for the singular values has not converged");
        return info;
    }

    const std::optional<double> wanted_;
    std::vector<double> value_; // singular ones, descending
    int rank_ = 0;
};

} // namespace

bool takes_any_shape(const std::string& method) { return method == "auto" || method == "qr" || method == "svd"; }

template <class T> std::unique_ptr<Method<T>> make_qr() { return std::make_unique<Qr<T>>(); }
template <class T> std::unique_ptr<Method<T>> make_svd(const Settings& settings) {
    return std::make_unique<Svd<T>>(settings.rcond);
}

template std::unique_ptr<Method<double>> make_qr();
template std::unique_ptr<Method<Complex>> make_qr();
template std::unique_ptr<Method<double>> make_svd(const Settings&);
template std::unique_ptr<Method<Complex>> make_svd(const Settings&);

} // namespace solve
