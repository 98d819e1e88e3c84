#include "error_bounds.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace solve {
namespace {

/// The larger one, or NaN if either is.
double worse(double a, double b) { return std::isnan(a) || a > b ? a : b; }

} // namespace

template <class T>
ErrorBounds error_bounds(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x, double condition) {
    constexpr double kUnit = std::numeric_limits<double>::epsilon();
    const double inverse_norm = condition / norm(a);
    ErrorBounds bounds{.condition = condition};
    for (int k = 0; k < b.count; ++k) {
        double largest = 0.0, solution = 0.0;
        for (int i = 0; i < a.n; ++i) {
            const auto [columns, values] = a.row(i);
            T residual = b.column(k)[i];
            double size = std::abs(residual);
            for (std::size_t e = 0; e < columns.size(); ++e) {
                const T term = values[e] * x.column(k)[columns[e]];
                residual -= term;
                size += std::abs(term);
            }
            const double rounding = kUnit * static_cast<double>(columns.size() + 1) * size;
            largest = worse(largest, std::abs(residual) + rounding);
            solution = worse(solution, std::abs(x.column(k)[i]));
            if (size > 0.0) bounds.backward = worse(bounds.backward, std::abs(residual) / size);
        }
        if (largest > 0.0) bounds.forward = worse(bounds.forward, inverse_norm * largest / solution);
    }
    return bounds;
}

template ErrorBounds error_bounds(const SparseMatrix<double>&, const Block<double>&, const Block<double>&, double);
template ErrorBounds error_bounds(const SparseMatrix<Complex>&, const Block<Complex>&, const Block<Complex>&, double);

} // namespace solve
