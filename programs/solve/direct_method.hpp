// What the direct methods share that keep all factors in one array: the matrix is stored as its factorisation wants it,
// factored once, and all right-hand sides are solved together.
#pragma once

#include "common/interrupt.hpp"
#include "common/stopwatch.hpp"
#include "method.hpp"
#include "progress.hpp"

#include <algorithm>
#include <cmath>
#include <new>
#include <type_traits>

namespace solve {

/// A flop of complex numbers, taken over additions and products in equal number, is four of real ones.
template <class T> constexpr double kRealFlops = std::is_same_v<T, double> ? 1.0 : 4.0;

inline double cube(int n) { return static_cast<double>(n) * n * n; }

/// The routine for T of a pair.
template <class T, class Real, class OfComplex> auto routine_of(Real* real, OfComplex* complex) {
    if constexpr (std::is_same_v<T, double>) return real;
    else return complex;
}

/// Work arrays of the routines that estimate a condition.
template <class T> struct ConditionSpace {
    std::vector<T> work;
    std::vector<std::conditional_t<std::is_same_v<T, double>, int, double>> spare;

    explicit ConditionSpace(int n) : work(4 * static_cast<std::size_t>(n)), spare(2 * static_cast<std::size_t>(n)) {}
};

/// The dense copy, column by column.
template <class T> std::vector<T> column_major(const SparseMatrix<T>& a);

/// Our arguments are good: what is below 0 says that a routine had no memory to work with.
inline void expect_memory(int info) {
    if (info < 0) throw std::bad_alloc();
}

template <class T> class Direct : public Method<T> {
  public:
    void set_up(const SparseMatrix<T>& a) final {
        check(a);
        n_ = a.n;
        norm_ = norm(a);
        values_ = stored(a);
        const int info = watched_factor();
        expect_memory(info);
        if (info > 0) refuse(info);
    }

    Outcome solve(const Block<T>& b, Block<T>& x, const Observer& /*observe*/) final {
        x = b;
        expect_memory(substitute(x));
        const auto finite = [](const T& value) { return std::isfinite(std::abs(value)); };
        Outcome outcome;
        outcome.operations = operations();
        outcome.factor_seconds = seconds_;
        outcome.converged = std::all_of(x.value.begin(), x.value.end(), finite);
        if (!outcome.converged) outcome.trouble = "the numbers left the range of doubles";
        return outcome;
    }

    double condition() const final { return 1.0 / reciprocal_condition(norm_); }

  protected:
    /// Throws Refusal before any memory is taken.
    virtual void check(const SparseMatrix<T>& a) const = 0;
    /// The matrix as the factorisation wants it.
    virtual std::vector<T> stored(const SparseMatrix<T>& a) { return column_major(a); }
    /// Factors the matrix in its place; returns info.
    virtual int factor() = 0;
    [[noreturn]] virtual void refuse(int info) const = 0;
    /// Replaces right-hand sides by solutions; returns info.
    virtual int substitute(Block<T>& x) const = 0;
    /// 1 / (norm |A^-1|), infinity norms.
    virtual double reciprocal_condition(double norm) const = 0;
    virtual double operations() const = 0;

    int n_ = 0;
    std::vector<T> values_; // of the matrix; of the factors once set_up is through

  private:
    /// Throws Interrupted when the user has stopped it: then the factors are not whole, whatever info says.
    int watched_factor() {
        const common::Interruptible interruptible;
        const FactorisationProgress progress(n_);
        common::Stopwatch watch;
        const int info = factor();
        seconds_ = watch.lap();
        common::stop_if_interrupted();
        return info;
    }

    double norm_ = 0.0, seconds_ = 0.0;
};

} // namespace solve
