// A column-major matrix as a BLAS call sees it, laid against an unreadable page, with NaN wherever the call has no
// business.
#pragma once
#include "tests/support/guarded_vector.hpp"
#include <algorithm>

namespace nxl_test {

enum class Part { full, upper, lower };
/// Of a diagonal a call reads everything, nothing (a unit diagonal) or the real parts (a Hermitian one).
enum class Diagonal { general, unit, real };

/// A vector of n elements `inc` apart is one row of n columns, with ld the size of inc.
struct MatrixShape {
    int rows = 0, cols = 0, ld = 1;
    Part part = Part::full;
    Diagonal diagonal = Diagonal::general;

    bool has(int i, int j) const {
        if (i >= rows || (diagonal == Diagonal::unit && i == j)) return false;
        return part == Part::full || (part == Part::upper ? i <= j : i >= j);
    }
    std::size_t at(int i, int j) const { return static_cast<std::size_t>(i + std::int64_t{j} * ld); }
    /// Elements from the first to the last, slack between columns included.
    std::size_t span() const { return rows < 1 || cols < 1 ? 0 : at(rows - 1, cols - 1) + 1; }
    /// body(i, j) for every place in memory, slack included.
    template <class Body> void for_each_place(Body body) const {
        if (span() == 0) return;
        for (int j = 0; j < cols; ++j)
            for (int i = 0; i < (j + 1 < cols ? ld : rows); ++i) body(i, j);
    }
};

template <class T> class GuardedMatrix {
    MatrixShape shape_;
    GuardedMemory memory_;
    T* data_;
    std::vector<T> original_;

  public:
    /// value(i, j) gives the elements that the call may read.
    template <class Value>
    GuardedMatrix(const MatrixShape& shape, Flush flush, Value value)
        : shape_(shape),
          memory_(shape.span() * sizeof(T) + sizeof(double)),
          data_(reinterpret_cast<T*>(memory_.place(shape.span() * sizeof(T), flush))) {
        std::memset(static_cast<void*>(data_), 0xff, shape.span() * sizeof(T)); // NaN
        shape.for_each_place([&](int i, int j) {
            if (!shape.has(i, j)) return;
            data_[shape.at(i, j)] = value(i, j);
            if constexpr (!std::is_same_v<T, double>)
                if (shape.diagonal == Diagonal::real && i == j) data_[shape.at(i, j)].imag(std::nan(""));
        });
        original_.assign(data_, data_ + shape.span());
    }

    T* data() const { return data_; }
    const std::vector<T>& original() const { return original_; }
    void restore() { std::copy(original_.begin(), original_.end(), data_); }

    bool untouched() const {
        return original_.empty() || std::memcmp(data_, original_.data(), original_.size() * sizeof(T)) == 0;
    }
    /// What the call may not write: slack, and what is not of the shape.
    bool rest_untouched() const {
        if (shape_.part == Part::full && shape_.ld == shape_.rows) return true;
        bool same = true;
        shape_.for_each_place([&](int i, int j) {
            const std::size_t at = shape_.at(i, j);
            if (!shape_.has(i, j) && std::memcmp(data_ + at, &original_[at], sizeof(T)) != 0) same = false;
        });
        return same;
    }
};

} // namespace nxl_test
