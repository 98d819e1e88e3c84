// The arrays that every contender of a case works on, in turn.
#pragma once
#include "bench/cases.hpp"
#include "bench/shapes.hpp"
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

/// Which arrays a routine has, and their sizes in elements of one or two doubles.
struct Layout {
    Extent x{}, y{}, a{}, b{}, c{};
    int doubles_per_element = 1;
    Shape shape = Shape::random;
    const char* restored = "";  // names of the arrays that each call finds as they were at first
    const char* unchecked = ""; // and of those in which libraries may differ: eigenvectors
    int pivots = 0;             // row interchanges
    int farthest = -1;          // rows that an interchange reaches over; all when negative
    i64 work = 0;               // elements of scratch memory
    i64 real_work = 0, integer_work = 0;

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
    std::vector<double> original_; // of the arrays to restore, one after the other
    std::vector<int> pivots_, integer_work_;
    std::vector<double> work_, real_work_;

    template <class T> T* data(std::size_t i) const { return reinterpret_cast<T*>(arrays_[i].data); }
    /// Calls body(array) for those that `names` has.
    template <class Body> void for_arrays(const char* names, const Body& body) const;
    void set_pivots();

  public:
    Size size;
    int lda, ldb, ldc, ldx;
    int lwork, lrwork, liwork;
    zcomplex result;   // of the last call
    int count = 0;     // that the last call found
    int info = 0;      // of the last call
    unsigned turn = 0; // lets a call undo what the one before it did

    Operands(const Case& which, const Layout& layout);

    template <class T = double> T* x() const { return data<T>(0); }
    template <class T = double> T* y() const { return data<T>(1); }
    template <class T = double> T* a() const { return data<T>(2); }
    template <class T = double> T* b() const { return data<T>(3); }
    template <class T = double> T* c() const { return data<T>(4); }
    /// Real ones where a routine has two side by side: the second column of x or y.
    double* second_x() const { return arrays_[0].data + i64{layout_.x.rows} * layout_.doubles_per_element; }
    double* second_y() const { return arrays_[1].data + i64{layout_.y.rows} * layout_.doubles_per_element; }
    int* pivots() { return pivots_.data(); }
    int* integer_work() { return integer_work_.data(); }
    double* real_work() { return real_work_.data(); }
    template <class T = double> T* work() { return reinterpret_cast<T*>(work_.data()); }
    const char* option(std::size_t i) const { return &options_[i]; }

    /// The same values at every call: uniform in (-1, 1) but for the shape of a, and no turn taken.
    void refill();

    bool need_restoring() const { return layout_.restored[0] != 0; }
    void restore();

    /// Largest difference of results and arrays, relative to values of size 1 or more; infinite where one is not
    /// finite, or where a row interchange, a count or info differs.
    double difference(const Operands& other) const;
};

} // namespace nxl::bench
