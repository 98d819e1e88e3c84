// Norms over blocks of columns, and the lines of the report.
#include "report.hpp"

#include "nxl.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <sys/resource.h>

namespace solve {
namespace {

/// The larger one, or NaN if either is: a solution that is not a number must not pass for a good one.
double worse(double a, double b) { return std::isnan(a) || a > b ? a : b; }

template <class T> double largest(const T* x, int n) {
    double m = 0.0;
    for (int i = 0; i < n; ++i) m = worse(m, std::abs(x[i]));
    return m;
}

template <class T> double largest_difference(const T* x, const T* y, int n) {
    double m = 0.0;
    for (int i = 0; i < n; ++i) m = worse(m, std::abs(x[i] - y[i]));
    return m;
}

double ratio(double part, double whole) { return part == 0.0 ? 0.0 : part / whole; }

double length_of(const double* x, int n) {
    const int one = 1;
    return dnrm2(&n, x, &one);
}
double length_of(const Complex* x, int n) {
    const int one = 1;
    return dznrm2(&n, x, &one);
}

double peak_megabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0; // Linux counts in KiB
}

} // namespace

template <class T> double scaled_residual(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x) {
    const double a_norm = norm(a);
    std::vector<T> product(static_cast<std::size_t>(a.n));
    double worst = 0.0;
    for (int k = 0; k < b.count; ++k) {
        multiply(a, x.column(k), product.data());
        const double scale = a_norm * largest(x.column(k), a.n) + largest(b.column(k), a.n);
        worst = worse(worst, ratio(largest_difference(b.column(k), product.data(), a.n), scale));
    }
    return worst;
}

template <class T>
Fit fit_of(const SparseMatrix<T>& a, const Block<T>& b, const Block<T>& x, const Rank& rank, double condition) {
    const auto length = [](const std::vector<T>& v) { return length_of(v.data(), static_cast<int>(v.size())); };
    Fit fit{.rank = rank, .condition = condition};
    std::vector<T> residual(static_cast<std::size_t>(a.n)), gradient(static_cast<std::size_t>(a.columns));
    const double a_norm = length(a.value);
    for (int k = 0; k < b.count; ++k) {
        multiply(a, x.column(k), residual.data());
        std::transform(b.column(k), b.column(k) + a.n, residual.begin(), residual.begin(), std::minus<>());
        multiply_adjoint(a, residual.data(), gradient.data());
        const double size = length_of(b.column(k), a.n);
        fit.residual = worse(fit.residual, ratio(length(residual), size));
        fit.gradient = worse(fit.gradient, ratio(ratio(length(gradient), a_norm), size));
    }
    return fit;
}

template <class T> double relative_error(const Block<T>& x, const Block<T>& exact) {
    double worst = 0.0;
    for (int k = 0; k < x.count; ++k) {
        const double difference = largest_difference(x.column(k), exact.column(k), x.n);
        worst = worse(worst, ratio(difference, largest(exact.column(k), x.n)));
    }
    return worst;
}

template <class T> std::string facts(const SparseMatrix<T>& a) {
    const std::string field = std::is_same_v<T, double> ? "real" : "complex";
    std::array<char, 32> norm_text{};
    std::snprintf(norm_text.data(), norm_text.size(), "%.3g", norm(a));
    const std::string entries = ", " + std::to_string(a.entries()) + " entries, " + field,
                      size = std::string(", norm ") + norm_text.data();
    if (!a.square()) return shape_of(a) + entries + size;
    std::string symmetry = name_of(a.symmetry);
    if (a.symmetry == Symmetry::general) {
        symmetry = is_symmetric(a)   ? "symmetric by its values"
                   : is_hermitian(a) ? "hermitian by its values"
                                     : "unsymmetric";
    }
    return "n = " + std::to_string(a.n) + entries + " " + symmetry + size;
}

namespace {

void print_factors(const Outcome& outcome) {
    std::printf("factors      ");
    if (outcome.factors) std::printf("%d entries, fill %.2f, ", outcome.factors->entries, outcome.factors->fill);
    if (outcome.operations > 0.0)
        std::printf("%.3g GFLOP in %.3f s, %.3g GFLOP/s\n", 1e-9 * outcome.operations, outcome.factor_seconds,
                    1e-9 * outcome.operations / outcome.factor_seconds);
    else std::printf("%.3f s\n", outcome.factor_seconds);
    if (!outcome.factors) return;
    const SparseFactors& f = *outcome.factors;
    std::printf("pivots       ");
    if (f.definite) std::printf("all positive");
    else if (f.has_signs) std::printf("%d positive, %d negative, %d replaced", f.positive, f.negative, f.replaced);
    else std::printf("%d replaced", f.replaced);
    std::printf("; %d steps of refinement\n", f.refined);
    if (f.window > 0)
        std::printf("files        %.0f MB of factors through %d MB of memory\n", 1e-6 * f.bytes, f.window);
}

void print_fit(const Fit& fit) {
    std::printf("rank         %d of %d, by %s above %.2e of the largest\n", fit.rank.rank, fit.rank.most, fit.rank.by,
                fit.rank.rcond);
    if (fit.condition > 0.0) std::printf("condition    %.2e  %s\n", fit.condition, fit.rank.condition);
    std::printf("residual     %.2e  |b - A x| / |b|\n", fit.residual);
    std::printf("gradient     %.2e  |A^H (b - A x)| / (|A| |b|)\n", fit.gradient);
}

void print_residual(const Report& r) {
    std::printf("residual     %.2e  |b - A x| / (|A| |x| + |b|)\n", r.residual);
    if (r.bounds.condition > 0.0) {
        std::printf("condition    %.2e  |A| |A^-1|\n", r.bounds.condition);
        std::printf("bounds       %.2e  forward, |x - exact| / |x|; backward %.2e, by elements of A and b\n",
                    r.bounds.forward, r.bounds.backward);
    } else if (r.outcome.factors) std::printf("backward     %.2e  the same by elements\n", r.bounds.backward);
}

} // namespace

void print(const Report& r) {
    std::printf("matrix       %s%s\n", r.source.c_str(), r.generated ? " (generated)" : "");
    std::printf("             %s\n", r.facts.c_str());
    std::printf("right sides  %d: %s\n", r.systems, r.right_hand_side.c_str());
    std::printf("method       %s\n", r.method.c_str());
    if (r.outcome.direct()) print_factors(r.outcome);
    else std::printf("iterations   %ld, residual reduced to %.2e\n", r.outcome.iterations, r.outcome.residual);
    std::printf("time         %s %.3f s, setup %.3f s, solve %.3f s\n", r.generated ? "generate" : "read",
                r.times.input, r.times.setup, r.times.solve);
    if (r.fit) print_fit(*r.fit);
    else print_residual(r);
    if (r.error != nullptr) std::printf("error        %.2e  |x - x_known| / |x_known|\n", *r.error);
    std::printf("memory       %.0f MiB at the peak\n", peak_megabytes());
}

template double scaled_residual(const SparseMatrix<double>&, const Block<double>&, const Block<double>&);
template double scaled_residual(const SparseMatrix<Complex>&, const Block<Complex>&, const Block<Complex>&);
template double relative_error(const Block<double>&, const Block<double>&);
template double relative_error(const Block<Complex>&, const Block<Complex>&);
template Fit fit_of(const SparseMatrix<double>&, const Block<double>&, const Block<double>&, const Rank&, double);
template Fit fit_of(const SparseMatrix<Complex>&, const Block<Complex>&, const Block<Complex>&, const Rank&, double);
template std::string facts(const SparseMatrix<double>&);
template std::string facts(const SparseMatrix<Complex>&);

} // namespace solve
