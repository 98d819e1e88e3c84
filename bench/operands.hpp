// The arrays that every contender of a case works on, in turn.
#pragma once
#include "bench/cases.hpp"
#include "service/types.hpp"
#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace nxl::bench {

/// A matrix of rows by columns, column-major without gaps; a vector is one column. Empty where a routine has none.
struct Extent {
    int rows = 0, columns = 0;

    i64 elements() const { return i64{rows} * columns; }
};

/// What the square matrix a is.
enum class Shape {
    random,
    own_inverse, // a triangle to which repeated products and solutions return
    dominated,   // one large entry in each row and column, in random places: well conditioned, and rows have to move
    positive_definite, // Hermitian
    near_one,          // so that a product over all elements stays near 1 too
    factors            // either triangle, with its diagonal or with ones, is well conditioned
};

/// The array that each call finds as it was at first.
enum class Restored { none, a, b };

/// Which arrays a routine has, and their sizes in elements of one or two doubles.
struct Layout {
    Extent x{}, y{}, a{}, b{}, c{};
    int doubles_per_element = 1;
    Shape shape = Shape::random;
    Restored restored = Restored::none;
    int pivots = 0; // row interchanges
    i64 work = 0;   // elements of scratch memory

    i64 doubles() const {
        return (x.elements() + y.elements() + a.elements() + b.elements() + c.elements()) * doubles_per_element;
    }
};

/// Operands of one case. Routines change them, but keep their size, see the scalars in rows.hpp, or have them restored.
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
    std::array<Array, 5> arrays_;  // x, y, a, b, c
    std::vector<double> original_; // of the array to restore
    std::vector<int> pivots_;
    std::vector<double> work_;

    template <class T> T* data(std::size_t i) const { return reinterpret_cast<T*>(arrays_[i].data); }
    const Array& restored_array() const { return arrays_[layout_.restored == Restored::a ? 2 : 3]; }
    void shape_a();
    void set_pivots();

  public:
    Size size;
    int lda, ldb, ldc;
    zcomplex result;   // of the last call
    int info = 0;      // of the last call
    unsigned turn = 0; // lets a call undo what the one before it did

    Operands(const Case& which, const Layout& layout);

    template <class T = double> T* x() const { return data<T>(0); }
    template <class T = double> T* y() const { return data<T>(1); }
    template <class T = double> T* a() const { return data<T>(2); }
    template <class T = double> T* b() const { return data<T>(3); }
    template <class T = double> T* c() const { return data<T>(4); }
    int* pivots() { return pivots_.data(); }
    template <class T> T* work() { return reinterpret_cast<T*>(work_.data()); }
    template <class T> int work_elements() const { return static_cast<int>(work_.size() * sizeof(double) / sizeof(T)); }
    const char* option(std::size_t i) const { return &options_[i]; }

    /// The same values at every call: uniform in (-1, 1) but for the shape of a, and no turn taken.
    void refill();

    bool need_restoring() const { return layout_.restored != Restored::none; }
    void restore();

    /// Largest difference of results and arrays, relative to values of size 1 or more; infinite where one is not
    /// finite, or where a row interchange or info differs.
    double difference(const Operands& other) const;
};

} // namespace nxl::bench
