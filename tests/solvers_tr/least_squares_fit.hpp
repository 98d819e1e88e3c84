// A run of either least-squares solver, which watches every request, and how far it ends from the first-order
// conditions.
#pragma once
#include "nxl.h"
#include "tests/solvers_tr/least_squares_problems.hpp"
#include "tests/support/host_allocator.hpp"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace nxl_test {

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr int success = 1501, invalid = 1502, no_memory = 1503;

inline double norm(const Vector& v) {
    double sum = 0.0;
    for (const double e : v) sum += e * e;
    return std::sqrt(sum);
}

/// One run, leg by leg. The handle lives as long as this does.
struct Fit {
    Problem p;
    const bool bounded;
    Vector lower, upper;
    int n = p.n(), m = p.m, iter1 = 2000, iter2 = 100;
    double rs = 100.0;
    Vector eps, x = p.start, f = Vector(static_cast<std::size_t>(m)), fjac = Vector(static_cast<std::size_t>(m * n));

    void* handle = nullptr;
    int request = 0, status = 0, iterations = -1, code = 99;
    double first_norm = -1.0, last_norm = -1.0;
    std::vector<int> requests;  // the answers so far
    std::vector<Vector> points; // of residuals

    explicit Fit(const Problem& of) : Fit(of, false, unlimited(of, -1.0), unlimited(of, 1.0), 1e-12) {}
    Fit(const Problem& of, Vector least, Vector most) : Fit(of, true, std::move(least), std::move(most), 1e-30) {}
    /// Without bounds that would matter, by one of the two.
    static Fit by(bool bounded, const Problem& of) {
        if (bounded) return Fit(of, unlimited(of, -1.0), unlimited(of, 1.0));
        return Fit(of);
    }
    Fit(const Fit&) = delete;
    Fit& operator=(const Fit&) = delete;
    ~Fit() {
        void* const before = handle;
        if (handle) EXPECT_EQ(end(&handle), success);
        EXPECT_EQ(handle, before);
    }

    int start() {
        if (!bounded) return dtrnlsp_init(&handle, &n, &m, x.data(), eps.data(), &iter1, &iter2, &rs);
        return dtrnlspbc_init(&handle, &n, &m, x.data(), lower.data(), upper.data(), eps.data(), &iter1, &iter2, &rs);
    }
    int solve(void** of) { return (bounded ? dtrnlspbc_solve : dtrnlsp_solve)(of, f.data(), fjac.data(), &request); }
    int get(void** of) {
        return (bounded ? dtrnlspbc_get : dtrnlsp_get)(of, &iterations, &code, &first_norm, &last_norm);
    }
    int end(void** of) const { return (bounded ? dtrnlspbc_delete : dtrnlsp_delete)(of); }

    /// One call, and the answer to what it asks for; the point asked about is inside the bounds.
    int leg() {
        status = solve(&handle);
        requests.push_back(request);
        if (request == 1 || request == 2)
            for (std::size_t i = 0; i < x.size(); ++i)
                EXPECT_TRUE(lower[i] <= x[i] && x[i] <= upper[i]) << i << " " << x[i];
        if (request == 1) points.push_back(x), f = p.values(x);
        if (request == 2) fjac = p.derivatives(x);
        EXPECT_EQ(get(&handle), success);
        return request;
    }
    Fit& to_the_end() {
        if (!handle) EXPECT_EQ(start(), success);
        while (leg() >= 0 && status == success && requests.size() < 100000) {
        }
        EXPECT_EQ(status, success);
        EXPECT_EQ(request, -code);
        EXPECT_EQ(f, p.values(x)) << "x and fvec belong together";
        EXPECT_DOUBLE_EQ(last_norm, norm(f));
        EXPECT_LE(last_norm, first_norm);
        return *this;
    }
    long asked(int what) const { return std::count(requests.begin(), requests.end(), what); }

    /// How far x is from the first-order conditions: the largest cosine between F and a column of J, over variables
    /// that are not held by a bound; one close to its bound may go there instead. 0 where F vanishes.
    double first_order_error() const {
        const Vector here = p.values(x), columns = p.derivatives(x);
        const double size = norm(here);
        double error = 0.0;
        if (size < 1e-9) return error;
        for (std::size_t k = 0; k < x.size(); ++k) {
            double g = 0.0, square = 0.0;
            for (std::size_t i = 0; i < here.size(); ++i) {
                const double d = columns[k * here.size() + i];
                g += d * here[i];
                square += d * d;
            }
            if (square == 0.0 || g == 0.0) continue;
            const double room = g > 0.0 ? x[k] - lower[k] : upper[k] - x[k]; // where -g points
            error = std::max(error, std::min(std::fabs(g) / std::sqrt(square), room * std::sqrt(square)) / size);
        }
        return error;
    }

  private:
    Fit(const Problem& of, bool by_bounds, Vector least, Vector most, double tolerance)
        : p(of),
          bounded(by_bounds),
          lower(std::move(least)),
          upper(std::move(most)),
          eps(6, tolerance) {}
    static Vector unlimited(const Problem& of, double sign) { return Vector(of.start.size(), sign * infinity); }
};

inline Problem named(const std::string& name) {
    for (const Problem& candidate : all_problems())
        if (candidate.name.starts_with(name)) return candidate;
    throw std::invalid_argument(name);
}
inline Problem rosenbrock(const Vector& start = {-1.2, 1.0}) {
    Problem result = named("Rosenbrock");
    result.start = start;
    return result;
}

} // namespace nxl_test
