// Matrices of small integers. Products and sums of them are exact in any order, so a result is right or it is wrong;
// the margin below each column holds NaN, which whoever reads it carries into the result.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace nxl_test {

using nxl::i64;
using nxl::zcomplex;

inline double conjugate(double value) { return value; }
inline zcomplex conjugate(zcomplex value) { return std::conj(value); }
inline bool is_nan(double value) { return std::isnan(value); }
inline bool is_nan(zcomplex value) { return std::isnan(value.real()) && std::isnan(value.imag()); }

template <class T> T all_nan() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    if constexpr (sizeof(T) == sizeof(double)) return nan;
    else return {nan, nan};
}

/// A random integer in -largest .. largest, for complex T in both parts.
template <class T> T random_integer(std::mt19937& random, int largest) {
    std::uniform_int_distribution<int> part(-largest, largest);
    if constexpr (sizeof(T) == sizeof(double)) return part(random);
    else return {static_cast<double>(part(random)), static_cast<double>(part(random))};
}

template <class T> class IntegerMatrix {
    i64 rows_, columns_;
    i64 margin_; // another for each seed, so that no leading dimension passes for that of another matrix
    std::vector<T> elements_;

  public:
    IntegerMatrix(i64 rows, i64 columns, unsigned seed, int largest = 3)
        : rows_(rows),
          columns_(columns),
          margin_(i64{seed} + 1),
          elements_(static_cast<std::size_t>(ld() * columns), all_nan<T>()) {
        std::mt19937 random(seed);
        for (i64 j = 0; j < columns; ++j)
            for (i64 i = 0; i < rows; ++i) at(i, j) = random_integer<T>(random, largest);
    }

    /// What op() turns into rows by columns.
    static IntegerMatrix operand(char trans, i64 rows, i64 columns, unsigned seed) {
        const bool plain = trans == 'N' || trans == 'n';
        return plain ? IntegerMatrix(rows, columns, seed) : IntegerMatrix(columns, rows, seed);
    }

    i64 rows() const { return rows_; }
    i64 columns() const { return columns_; }
    i64 ld() const { return rows_ + margin_; }
    T* data() { return elements_.data(); }
    const T* data() const { return elements_.data(); }
    T& at(i64 i, i64 j) { return elements_[static_cast<std::size_t>(i + j * ld())]; }
    T at(i64 i, i64 j) const { return elements_[static_cast<std::size_t>(i + j * ld())]; }

    /// Element (i, j) of op(this): N, T, or any other letter, which conjugates.
    T op(char trans, i64 i, i64 j) const {
        if (trans == 'N' || trans == 'n') return at(i, j);
        return trans == 'T' || trans == 't' ? at(j, i) : conjugate(at(j, i));
    }

    bool margin_untouched() const {
        for (i64 j = 0; j < columns_; ++j)
            for (i64 i = rows_; i < ld(); ++i)
                if (!is_nan(at(i, j))) return false;
        return true;
    }

    /// The same values; a NaN is like any other, and zeros have no sign.
    bool agrees_with(const IntegerMatrix& other) const {
        for (std::size_t i = 0; i < elements_.size(); ++i)
            if (elements_[i] != other.elements_[i] && !(is_nan(elements_[i]) && is_nan(other.elements_[i])))
                return false;
        return elements_.size() == other.elements_.size();
    }

    /// The same bits.
    bool operator==(const IntegerMatrix& other) const {
        return elements_.size() == other.elements_.size() &&
               std::memcmp(data(), other.data(), elements_.size() * sizeof(T)) == 0;
    }
};

/// op(matrix) x.
template <class T> std::vector<T> times(const IntegerMatrix<T>& matrix, char trans, const std::vector<T>& x) {
    const bool plain = trans == 'N' || trans == 'n';
    std::vector<T> y(static_cast<std::size_t>(plain ? matrix.rows() : matrix.columns()));
    for (i64 j = 0; j < matrix.columns(); ++j)
        for (i64 i = 0; i < matrix.rows(); ++i) {
            const i64 row = plain ? i : j, column = plain ? j : i;
            y[static_cast<std::size_t>(row)] += matrix.op(trans, row, column) * x[static_cast<std::size_t>(column)];
        }
    return y;
}

/// Random integers, none of them 0: times them, two different rows of integers hardly ever agree, and two that differ
/// in one element never do.
template <class T> std::vector<T> probe(i64 length, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<T> x(static_cast<std::size_t>(length));
    for (T& value : x)
        while (value == T{}) value = random_integer<T>(random, 1 << 14);
    return x;
}

} // namespace nxl_test
