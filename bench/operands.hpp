// The arrays that every contender of a case works on, in turn.
#pragma once
#include "bench/cases.hpp"
#include "service/types.hpp"
#include <array>
#include <cstdlib>
#include <memory>
#include <string>

namespace nxl::bench {

/// A matrix of rows by columns, column-major without gaps; a vector is one column. Empty where a routine has none.
struct Extent {
    int rows = 0, columns = 0;

    i64 elements() const { return i64{rows} * columns; }
};

/// Which arrays a routine has, and their sizes in elements of one or two doubles.
struct Layout {
    Extent x{}, y{}, a{}, b{}, c{};
    int doubles_per_element = 1;
    bool a_is_own_inverse = false; // see Operands::refill

    i64 doubles() const {
        return (x.elements() + y.elements() + a.elements() + b.elements() + c.elements()) * doubles_per_element;
    }
};

/// Operands of one case. Routines change them, but keep their size: see the scalars in rows.hpp.
class Operands {
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    struct Array {
        double* data = nullptr;
        i64 doubles = 0;
    };
    Layout layout_;
    std::string options_;
    std::unique_ptr<double[], Free> memory_;
    std::array<Array, 5> arrays_; // x, y, a, b, c

    template <class T> T* data(std::size_t i) const { return reinterpret_cast<T*>(arrays_[i].data); }
    void make_own_inverse(const Array& matrix) const;

  public:
    Size size;
    int lda, ldb, ldc;
    zcomplex result;   // of the last call
    unsigned turn = 0; // lets a call undo what the one before it did

    Operands(const Case& which, const Layout& layout);

    template <class T = double> T* x() const { return data<T>(0); }
    template <class T = double> T* y() const { return data<T>(1); }
    template <class T = double> T* a() const { return data<T>(2); }
    template <class T = double> T* b() const { return data<T>(3); }
    template <class T = double> T* c() const { return data<T>(4); }
    const char* option(std::size_t i) const { return &options_[i]; }

    /// The same values at every call: uniform in (-1, 1), and no turn taken. A triangle that is its own inverse has 1
    /// in the first half of its diagonal, -1 in the second, small entries in the block that couples the halves, and
    /// elsewhere entries too small to tell: repeated products and solutions return to where they started.
    void refill();

    /// Largest difference of results and arrays, relative to values of size 1 or more; infinite where one is not
    /// finite.
    double difference(const Operands& other) const;
};

} // namespace nxl::bench
