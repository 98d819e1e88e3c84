// The short report at the end of a run, and the figures that it needs.
#pragma once

#include "error_bounds.hpp"
#include "matrix_market.hpp"
#include "method.hpp"

#include <optional>
#include <string>

namespace solve {

struct Times {
    double input = 0.0, setup = 0.0, solve = 0.0; // seconds
};

/// The largest |b - A x| / (|A| |x| + |b|) over the columns, infinity norms; 0 where all is 0.
template <class T> double scaled_residual(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x);

/// The largest |x - exact| / |exact| over the columns, infinity norms.
template <class T> double relative_error(const Block<T>& x, const Block<T>& exact);

/// What a solution by least squares, or the shortest one, leaves; the largest over the columns, 2-norms, of A that of
/// Frobenius.
struct Fit {
    Rank rank;
    double condition = 0.0;
    double residual = 0.0; // |b - A x| / |b|
    double gradient = 0.0; // |A^H (b - A x)| / (|A| |b|), which is 0 at the minimum
};
template <class T>
Fit fit_of(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x, const Rank& rank, double condition);

/// "n = 5, 13 entries, ...": one line about the matrix.
template <class T> std::string facts(const SparseMatrix<T>& a);

struct Report {
    std::string source, facts, method, right_hand_side;
    int systems = 1;
    Outcome outcome;
    Times times;
    double residual = 0.0;
    ErrorBounds bounds;            // of a direct method
    std::optional<Fit> fit;        // of one for matrices of any shape
    const double* error = nullptr; // null when the solution is not known
    bool generated = false;
};

/// Prints the report on standard output.
void print(const Report& report);

} // namespace solve
