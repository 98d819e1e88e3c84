// Least squares by the library: the parameters that bring a formula closest to the points, and how sure they are.
#pragma once

#include "data.hpp"
#include "expression.hpp"

#include <stdexcept>

namespace fit {

/// The data and the model do not determine the parameters; the text says why.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Of the parameters; infinite where there is none. Equal ones hold a parameter at its value.
struct Bounds {
    std::vector<double> lower, upper;
};

struct Fit {
    std::vector<double> value;  // of the parameters
    std::vector<double> error;  // NaN for a parameter on its bound; empty where no points are left over to judge by
    std::vector<double> fitted; // the formula at each x
    double residual = 0.0;      // 2-norm of fitted - y, each divided by its sigma where there is one
    int freedom = 0;            // points less parameters that are not on a bound
    int iterations = 0;
    bool converged = false;
    std::string reason; // why it stopped
};

/// Fits from `start`, with up to `limit` accepted steps. Standard errors are the roots of the diagonal of (J'J)^-1,
/// with the derivatives divided by sigma; without sigma they are multiplied by the standard deviation of the residual.
/// A parameter on its bound counts as known there.
Fit fit(Expression& model, const Data& data, const std::vector<double>& start, const Bounds& bounds, int limit);

} // namespace fit
