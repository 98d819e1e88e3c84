// Bounded least squares for tests: problems from the literature, a run that watches every request, the first-order
// condition. Jacobians come from complex steps, so a problem is its residual alone.
#pragma once
#include "nxl.h"
#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace nxl_test {

using Vector = std::vector<double>;
using Complexes = std::vector<std::complex<double>>;
inline constexpr double infinity = std::numeric_limits<double>::infinity();

struct Problem {
    int m;
    Vector start;
    std::function<void(const Complexes& x, Complexes& f)> residual;
    int n() const { return static_cast<int>(start.size()); }
};

inline std::size_t at(int i) { return static_cast<std::size_t>(i); }

inline Vector values(const Problem& problem, const Vector& x) {
    Complexes f(at(problem.m));
    problem.residual(Complexes(x.begin(), x.end()), f);
    Vector result;
    for (const auto& v : f) result.push_back(v.real());
    return result;
}

inline Vector derivatives(const Problem& problem, const Vector& x) {
    constexpr double h = 1e-30;
    Vector result;
    Complexes f(at(problem.m));
    for (std::size_t j = 0; j < x.size(); ++j) {
        Complexes moved(x.begin(), x.end());
        moved[j] += std::complex<double>(0.0, h);
        problem.residual(moved, f);
        for (const auto& v : f) result.push_back(v.imag() / h);
    }
    return result;
}

inline double norm(const Vector& v) {
    double sum = 0.0;
    for (const double e : v) sum += e * e;
    return std::sqrt(sum);
}

/// A handle and all that belongs to it.
struct Fit {
    Problem problem;
    Vector lower, upper, x;
    Vector eps = Vector(6, 1e-30);
    int iter1 = 2000, iter2 = 100;
    double rs = 100.0;

    void* handle = nullptr;
    int request = 0, status = 0;
    int evaluations = 0, jacobians = 0;
    Vector f, j;
    int iterations = -7, code = -7;
    double r1 = -7.0, r2 = -7.0;

    Fit(Problem p, Vector lw, Vector up)
        : problem(std::move(p)),
          lower(std::move(lw)),
          upper(std::move(up)),
          x(problem.start),
          f(at(problem.m)),
          j(at(problem.m * problem.n())) {}
    explicit Fit(const Problem& p) : Fit(p, Vector(p.start.size(), -infinity), Vector(p.start.size(), infinity)) {}
    Fit(const Fit&) = delete;
    Fit& operator=(const Fit&) = delete;
    ~Fit() {
        void* const before = handle;
        if (handle) EXPECT_EQ(dtrnlspbc_delete(&handle), 1501);
        EXPECT_EQ(handle, before);
    }

    int init() {
        const int n = problem.n();
        return dtrnlspbc_init(&handle, &n, &problem.m, x.data(), lower.data(), upper.data(), eps.data(), &iter1, &iter2,
                              &rs);
    }

    /// One call, and the answer to what it asks for; the point asked about is inside the bounds.
    int step() {
        status = dtrnlspbc_solve(&handle, f.data(), j.data(), &request);
        if (request != 1 && request != 2) return request;
        for (std::size_t i = 0; i < x.size(); ++i)
            EXPECT_TRUE(lower[i] <= x[i] && x[i] <= upper[i]) << i << " " << x[i];
        if (request == 1) f = values(problem, x), ++evaluations;
        else j = derivatives(problem, x), ++jacobians;
        return request;
    }

    void get() { EXPECT_EQ(dtrnlspbc_get(&handle, &iterations, &code, &r1, &r2), 1501); }

    void solve() {
        ASSERT_EQ(init(), 1501);
        do step();
        while (request >= 0 && status == 1501);
        get();
        EXPECT_EQ(status, 1501);
        EXPECT_EQ(request, -code);
        EXPECT_EQ(f, values(problem, x)) << "x and fvec belong together";
        EXPECT_DOUBLE_EQ(r2, norm(f));
        EXPECT_LE(r2, r1);
    }

    /// How far x is from the first-order conditions: the largest cosine between F and a column of J, over variables
    /// that are not held by a bound; one close to its bound may go there instead. 0 where F vanishes.
    double first_order_error() const {
        const Vector values_here = values(problem, x), columns = derivatives(problem, x);
        const double size = norm(values_here);
        double error = 0.0;
        if (size < 1e-9) return error;
        for (std::size_t k = 0; k < x.size(); ++k) {
            double g = 0.0, square = 0.0;
            for (std::size_t i = 0; i < values_here.size(); ++i) {
                const double d = columns[k * values_here.size() + i];
                g += d * values_here[i];
                square += d * d;
            }
            if (square == 0.0 || g == 0.0) continue;
            const double room = g > 0.0 ? x[k] - lower[k] : upper[k] - x[k]; // where -g points
            error = std::max(error, std::min(std::fabs(g) / std::sqrt(square), room * std::sqrt(square)) / size);
        }
        return error;
    }
};

// From Moré, Garbow and Hillstrom, ACM TOMS 7 (1981), and the papers named there.

inline Problem rosenbrock(Vector start) {
    return {2, std::move(start),
            [](const Complexes& x, Complexes& f) { f = {10.0 * (x[1] - x[0] * x[0]), 1.0 - x[0]}; }};
}

inline Problem bard() {
    return {15, {1, 1, 1}, [](const Complexes& x, Complexes& f) {
                static constexpr double y[] = {0.14, 0.18, 0.22, 0.25, 0.29, 0.32, 0.35, 0.39,
                                               0.37, 0.58, 0.73, 0.96, 1.34, 2.10, 4.39};
                for (int i = 0; i < 15; ++i) {
                    const double u = i + 1, v = 15 - i, w = std::min(u, v);
                    f[at(i)] = y[i] - (x[0] + u / (v * x[1] + w * x[2]));
                }
            }};
}

inline Problem kowalik_osborne() {
    return {11, {0.25, 0.39, 0.415, 0.39}, [](const Complexes& x, Complexes& f) {
                static constexpr double y[] = {0.1957, 0.1947, 0.1735, 0.1600, 0.0844, 0.0627,
                                               0.0456, 0.0342, 0.0323, 0.0235, 0.0246};
                static constexpr double u[] = {4, 2, 1, 0.5, 0.25, 0.167, 0.125, 0.1, 0.0833, 0.0714, 0.0625};
                for (int i = 0; i < 11; ++i)
                    f[at(i)] = y[i] - x[0] * (u[i] * u[i] + u[i] * x[1]) / (u[i] * u[i] + u[i] * x[2] + x[3]);
            }};
}

inline Problem meyer() {
    return {16, {0.02, 4000, 250}, [](const Complexes& x, Complexes& f) {
                static constexpr double y[] = {34780, 28610, 23650, 19630, 16370, 13720, 11540, 9744,
                                               8261,  7030,  6005,  5147,  4427,  3820,  3307,  2872};
                for (int i = 0; i < 16; ++i) f[at(i)] = x[0] * std::exp(x[1] / (50.0 + 5.0 * i + x[2])) - y[i];
            }};
}

inline Problem osborne() {
    return {33, {0.5, 1.5, -1, 0.01, 0.02}, [](const Complexes& x, Complexes& f) {
                static constexpr double y[] = {0.844, 0.908, 0.932, 0.936, 0.925, 0.908, 0.881, 0.850, 0.818,
                                               0.784, 0.751, 0.718, 0.685, 0.658, 0.628, 0.603, 0.580, 0.558,
                                               0.538, 0.522, 0.506, 0.490, 0.478, 0.467, 0.457, 0.448, 0.438,
                                               0.431, 0.424, 0.420, 0.414, 0.411, 0.406};
                for (int i = 0; i < 33; ++i)
                    f[at(i)] = y[i] - (x[0] + x[1] * std::exp(-10.0 * i * x[3]) + x[2] * std::exp(-10.0 * i * x[4]));
            }};
}

inline Problem brown_dennis() {
    return {20, {25, 5, -5, -1}, [](const Complexes& x, Complexes& f) {
                for (int i = 0; i < 20; ++i) {
                    const double t = (i + 1) / 5.0;
                    const auto a = x[0] + t * x[1] - std::exp(t), b = x[2] + x[3] * std::sin(t) - std::cos(t);
                    f[at(i)] = a * a + b * b;
                }
            }};
}

inline Problem freudenstein_roth() {
    return {2, {0.5, -2}, [](const Complexes& x, Complexes& f) {
                f = {-13.0 + x[0] + ((5.0 - x[1]) * x[1] - 2.0) * x[1],
                     -29.0 + x[0] + ((x[1] + 1.0) * x[1] - 14.0) * x[1]};
            }};
}

/// J has rank 2 at the minimum, 0.
inline Problem powell_singular() {
    return {4, {3, -1, 0, 1}, [](const Complexes& x, Complexes& f) {
                f = {x[0] + 10.0 * x[1], std::sqrt(5.0) * (x[2] - x[3]), (x[1] - 2.0 * x[2]) * (x[1] - 2.0 * x[2]),
                     std::sqrt(10.0) * (x[0] - x[3]) * (x[0] - x[3])};
            }};
}

/// F(i) = (A x - b)(i) + c sin(3 x(i mod n)), A and b random; c of 0 makes it linear.
inline Problem random_problem(int m, int n, double c, unsigned seed) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> normal;
    Vector a(at(m * n)), b(at(m)), start(at(n));
    for (Vector* v : {&a, &b, &start})
        for (double& e : *v) e = normal(generator);
    return {m, start, [=](const Complexes& x, Complexes& f) {
                for (int i = 0; i < m; ++i) {
                    f[at(i)] = c * std::sin(3.0 * x[at(i % n)]) - b[at(i)];
                    for (int k = 0; k < n; ++k) f[at(i)] += a[at(i * n + k)] * x[at(k)];
                }
            }};
}

} // namespace nxl_test
