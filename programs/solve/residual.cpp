// Norms of b - A x.
#include "residual.hpp"

#include "nxl.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace solve {

double evaluate_residual(const SparseMatrix<double>& a, const double* b, const double* x, double* r) {
    const int one = 1;
    multiply(a, x, r);
    std::transform(b, b + a.n, r, r, std::minus<>());
    return dnrm2(&a.n, r, &one);
}

double relative_norm(double norm, double initial) {
    if (initial == 0.0) return 0.0;
    const double ratio = norm / initial;
    return std::isfinite(ratio) ? ratio : std::numeric_limits<double>::infinity();
}

bool is_rounding(const SparseMatrix<double>& a, const double* b, const double* x, const double* r) {
    constexpr double kUnits = 100.0; // sums of a row's products, and of a method's updates
    const auto largest = [&a](const double* v) {
        return std::abs(*std::max_element(v, v + a.n, [](double p, double q) { return std::abs(p) < std::abs(q); }));
    };
    return largest(r) <= kUnits * std::numeric_limits<double>::epsilon() * (norm(a) * largest(x) + largest(b));
}

} // namespace solve
