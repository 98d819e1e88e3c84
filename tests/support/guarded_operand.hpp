// An array argument of a BLAS call, laid against an unreadable page: random values at the places that the call may use,
// NaN at all others.
#pragma once
#include "tests/support/guarded_vector.hpp"
#include <gtest/gtest.h>
#include <memory>

namespace nxl_test {

template <class T> class GuardedOperand {
    std::vector<bool> used_;
    std::unique_ptr<GuardedMemory> memory_;
    T* data_;
    std::vector<T> original_;

    void keep() { original_.assign(data_, data_ + used_.size()); }

  public:
    /// used: the places of the array that belong to the vector or matrix.
    GuardedOperand(std::vector<bool> used, std::mt19937_64& generator, Flush flush)
        : used_(std::move(used)),
          memory_(std::make_unique<GuardedMemory>(used_.size() * sizeof(T) + sizeof(double))),
          data_(reinterpret_cast<T*>(flush == Flush::end
                                         ? memory_->at_end(used_.size() * sizeof(T))
                                         : memory_->at_start() + (flush == Flush::start ? 0 : sizeof(double)))) {
        std::memset(static_cast<void*>(data_), 0xff, used_.size() * sizeof(T)); // NaN
        std::uniform_real_distribution<double> uniform(-1.0, 1.0);
        for (std::size_t k = 0; k < used_.size(); ++k)
            if (used_[k]) {
                double* parts = reinterpret_cast<double*>(data_ + k);
                for (std::size_t part = 0; part < sizeof(T) / sizeof(double); ++part) parts[part] = uniform(generator);
            }
        keep();
    }

    /// n elements, `inc` apart.
    static GuardedOperand vector(int n, int inc, std::mt19937_64& generator, Flush flush = Flush::end) {
        const std::size_t step = static_cast<unsigned>(std::abs(inc));
        std::vector<bool> used(n < 1 ? 0 : 1 + static_cast<std::size_t>(n - 1) * step, false);
        for (std::size_t k = 0; k < used.size(); k += step) used[k] = true;
        return {std::move(used), generator, flush};
    }

    /// Rows and columns of a matrix, of which the places with belongs(row, column) are used.
    template <class Belongs>
    static GuardedOperand matrix(int m, int n, int lda, Belongs belongs, std::mt19937_64& generator,
                                 Flush flush = Flush::end) {
        std::vector<bool> used(m < 1 || n < 1 ? 0 : static_cast<std::size_t>(n - 1) * unsigned(lda) + unsigned(m));
        for (std::size_t k = 0; k < used.size(); ++k) {
            const int row = static_cast<int>(k % unsigned(lda)), column = static_cast<int>(k / unsigned(lda));
            used[k] = row < m && belongs(row, column);
        }
        return {std::move(used), generator, flush};
    }

    T* data() const { return data_; }

    void fill(T value) {
        for (std::size_t k = 0; k < used_.size(); ++k)
            if (used_[k]) data_[k] = value;
        keep();
    }
    /// Changes each used element: change(place, value).
    template <class Change> void change(Change change) {
        for (std::size_t k = 0; k < used_.size(); ++k)
            if (used_[k]) change(k, data_[k]);
        keep();
    }

    /// The values before the call, for an oracle, and their moduli, for its error bound.
    std::vector<T> copy() const { return original_; }
    std::vector<double> moduli() const {
        std::vector<double> result;
        for (const T& v : original_) result.push_back(std::abs(v));
        return result;
    }

    /// Used elements within tolerance times bound of what is wanted, all others as they were.
    ::testing::AssertionResult is_near(const std::vector<T>& want, const std::vector<double>& bound,
                                       double tolerance) const {
        for (std::size_t k = 0; k < used_.size(); ++k) {
            if (!used_[k] && std::memcmp(data_ + k, &original_[k], sizeof(T)) != 0)
                return ::testing::AssertionFailure() << "place " << k << " was written";
            if (used_[k] && !(std::abs(data_[k] - want[k]) <= tolerance * bound[k]))
                return ::testing::AssertionFailure()
                       << "place " << k << " is " << data_[k] << ", not " << want[k] << ", bound " << bound[k];
        }
        return ::testing::AssertionSuccess();
    }
};

} // namespace nxl_test
