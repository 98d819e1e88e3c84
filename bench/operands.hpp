// The arrays that every contender of a case works on, in turn.
#pragma once
#include "service/types.hpp"
#include <cstdlib>
#include <memory>

namespace nxl::bench {

/// Operands of one case. Routines change x and y, but keep their size: see the scalars in routines.cpp.
struct Operands {
    int n;             // the size of the case
    i64 doubles;       // in each array
    zcomplex result;   // of the last call
    unsigned turn = 0; // lets a call undo what the one before it did

    Operands(int size, i64 array_doubles);

    double* x() const { return x_; }
    double* y() const { return y_; }
    zcomplex* zx() const { return reinterpret_cast<zcomplex*>(x_); }
    zcomplex* zy() const { return reinterpret_cast<zcomplex*>(y_); }

    /// The same values at every call: uniform in (-1, 1), and no turn taken.
    void refill();

    /// Largest difference of results and arrays, relative to values of size 1 or more.
    double difference(const Operands& other) const;

  private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    std::unique_ptr<double[], Free> memory_;
    double* x_;
    double* y_;
};

} // namespace nxl::bench
