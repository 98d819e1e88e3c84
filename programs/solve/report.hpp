// The short report at the end of a run, and the figures that it needs.
#pragma once

#include "error_bounds.hpp"
#include "matrix_market.hpp"
#include "method.hpp"

#include <string>

namespace solve {

struct Times {
    double input = 0.0, setup = 0.0, solve = 0.0; // seconds
};

/// The largest |b - A x| / (|A| |x| + |b|) over the columns, infinity norms; 0 where all is 0.
template <class T> double scaled_residual(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x);

/// The largest |x - exact| / |exact| over the columns, infinity norms.
template <class T> double relative_error(const Block<T>& x, const Block<T>& exact);

/// "n = 5, 13 entries, ...": one line about the matrix.
template <class T> std::string facts(const SparseMatrix<T>& a);

struct Report {
    std::string source, facts, method, right_hand_side;
    int systems = 1;
    Outcome outcome;
    Times times;
    double residual = 0.0;
    ErrorBounds bounds;            // of a direct method
    const double* error = nullptr; // null when the solution is not known
    bool generated = false;
};

/// Prints the report on standard output.
void print(const Report& report);

} // namespace solve
