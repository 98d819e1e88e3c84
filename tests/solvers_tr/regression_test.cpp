// Regression as in the statistics literature: model families of the field on noisy data made here, from a far and a
// near start, with numeric Jacobians. The certified values come from Gauss-Newton steps in extended precision.
#include "nxl.h"
#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using Real = long double;
using Dual = std::complex<Real>; // a complex step carries the derivative
template <class T> using Values = std::vector<T>;

struct Regression {
    const char* name;
    Values<double> truth, far, near;
    double first, last, noise; // the range of x; standard deviation of y
    std::function<double(const double* b, double x)> value;
    std::function<Dual(const Dual* b, Real x)> dual;
};

template <class Model>
Regression regression(const char* name, const Values<double>& truth, const Values<double>& far,
                      const Values<double>& near, double first, double last, double noise, Model model) {
    return {name, truth, far, near, first, last, noise, model, model};
}

const Regression regressions[] = {
    regression("SaturatingGrowth", {239.0, 5.5e-4}, {500.0, 1e-4}, {250.0, 5e-4}, 50.0, 760.0, 0.1,
               [](const auto* b, auto x) { return b[0] * (std::decay_t<decltype(b[0])>(1) - exp(-b[1] * x)); }),
    regression("Logistic", {72.5, 2.6, 0.067}, {100.0, 1.0, 0.1}, {75.0, 2.5, 0.07}, 5.0, 85.0, 0.6,
               [](const auto* b, auto x) { return b[0] / (std::decay_t<decltype(b[0])>(1) + exp(b[1] - b[2] * x)); }),
    regression("RationalQuadratic", {1.67, -0.139, 0.0026, -0.0017, 2.2e-5}, {2.0, -0.1, 0.003, -0.001, 1e-5},
               {1.5, -0.15, 0.0025, -0.002, 2e-5}, 10.0, 370.0, 0.15,
               [](const auto* b, auto x) {
                   using T = std::decay_t<decltype(b[0])>;
                   return (b[0] + b[1] * x + b[2] * x * x) / (T(1) + b[3] * x + b[4] * x * x);
               }),
    regression("PeaksOnADecay", {98.8, 0.0105, 100.5, 67.5, 23.1, 71.9, 179.0, 18.4},
               {94.0, 0.009, 90.1, 63.0, 20.0, 70.0, 178.0, 16.5}, {96.0, 0.0096, 80.0, 63.5, 25.0, 74.0, 177.0, 20.0},
               1.0, 250.0, 2.5,
               [](const auto* b, auto x) {
                   const auto peak = [x](auto height, auto at, auto width) {
                       const auto distance = (x - at) / width;
                       return height * exp(-distance * distance);
                   };
                   return b[0] * exp(-b[1] * x) + peak(b[2], b[3], b[4]) + peak(b[5], b[6], b[7]);
               }),
};

struct Points {
    Values<double> x, y;

    explicit Points(const Regression& r) {
        std::mt19937_64 random(20);
        std::normal_distribution<double> error(0.0, r.noise);
        constexpr int count = 120;
        for (int i = 0; i < count; ++i) {
            x.push_back(r.first + (r.last - r.first) * i / (count - 1));
            y.push_back(r.value(r.truth.data(), x.back()) + error(random));
        }
    }
    int m() const { return static_cast<int>(x.size()); }
};

/// Solves a x = b, both of which it uses up: elimination with the largest pivot.
Values<Real> solved(Values<Values<Real>> a, Values<Real> b) {
    const std::size_t n = b.size();
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < n; ++i)
            if (std::fabs(a[i][k]) > std::fabs(a[pivot][k])) pivot = i;
        std::swap(a[k], a[pivot]);
        std::swap(b[k], b[pivot]);
        for (std::size_t i = k + 1; i < n; ++i) {
            const Real factor = a[i][k] / a[k][k];
            for (std::size_t j = k; j < n; ++j) a[i][j] -= factor * a[k][j];
            b[i] -= factor * b[k];
        }
    }
    for (std::size_t k = n; k-- > 0;) {
        for (std::size_t j = k + 1; j < n; ++j) b[k] -= a[k][j] * b[j];
        b[k] /= a[k][k];
    }
    return b;
}

/// Parameters and sum of squares at the minimum next to the truth, which is near enough for plain Gauss-Newton steps.
struct Certified {
    Values<Real> b;
    Real sum = 0;

    Certified(const Regression& r, const Points& points) : b(r.truth.begin(), r.truth.end()) {
        for (int step = 0; step < 60; ++step) take_step(r, points);
    }

  private:
    void take_step(const Regression& r, const Points& points) {
        constexpr Real h = 1e-200L;
        const std::size_t n = b.size();
        Values<Values<Real>> normal(n, Values<Real>(n, 0));
        Values<Real> right(n, 0), slope(n);
        sum = 0;
        for (std::size_t i = 0; i < points.x.size(); ++i) {
            Values<Dual> moved(b.begin(), b.end());
            const Real error = points.y[i] - r.dual(moved.data(), points.x[i]).real();
            sum += error * error;
            for (std::size_t j = 0; j < n; ++j) {
                moved[j] = {b[j], h};
                slope[j] = r.dual(moved.data(), points.x[i]).imag() / h;
                moved[j] = b[j];
            }
            for (std::size_t j = 0; j < n; ++j) {
                right[j] += slope[j] * error;
                for (std::size_t k = 0; k < n; ++k) normal[j][k] += slope[j] * slope[k];
            }
        }
        const Values<Real> change = solved(normal, right);
        for (std::size_t j = 0; j < n; ++j) b[j] += change[j];
    }
};

/// A fit in variables of order one: the parameters over those of the start.
struct Fitted {
    Values<double> b;
    double sum = 0.0;

    Fitted(const Regression& r, const Points& points, const Values<double>& start) : b(start.size()) {
        int n = static_cast<int>(start.size()), m = points.m(), iter1 = 2000, iter2 = 100, request = 0;
        Values<double> x(start.size(), 1.0), f(points.x.size()), fjac(f.size() * x.size()), f1(f), f2(f);
        const Values<double> eps = {1e-14, 1e-14, 1e-14, 1e-12, 1e-14, 1e-14};
        const double rs = 1.0, difference = 1e-5;
        const auto residuals = [&](Values<double>& to) {
            for (std::size_t j = 0; j < b.size(); ++j) b[j] = start[j] * x[j];
            for (std::size_t i = 0; i < to.size(); ++i) to[i] = points.y[i] - r.value(b.data(), points.x[i]);
        };
        const auto jacobian = [&] {
            void* handle = nullptr;
            int asked = 0;
            EXPECT_EQ(djacobi_init(&handle, &n, &m, x.data(), fjac.data(), &difference), 1501);
            do {
                EXPECT_EQ(djacobi_solve(&handle, f1.data(), f2.data(), &asked), 1501);
                if (asked != 0) residuals(asked == 1 ? f1 : f2);
            } while (asked != 0);
            EXPECT_EQ(djacobi_delete(&handle), 1501);
        };
        void* handle = nullptr;
        EXPECT_EQ(dtrnlsp_init(&handle, &n, &m, x.data(), eps.data(), &iter1, &iter2, &rs), 1501);
        int legs = 0;
        do {
            EXPECT_EQ(dtrnlsp_solve(&handle, f.data(), fjac.data(), &request), 1501);
            if (request == 1) residuals(f);
            if (request == 2) jacobian();
        } while (request >= 0 && ++legs < 10000);
        EXPECT_LT(request, -1) << "stopped by the limit of iterations";
        EXPECT_EQ(dtrnlsp_delete(&handle), 1501);
        residuals(f);
        for (const double error : f) sum += error * error;
    }
};

class Regressions : public ::testing::TestWithParam<Regression> {};

TEST_P(Regressions, CertifiedValuesFromBothStarts) {
    const Regression& r = GetParam();
    const Points points(r);
    const Certified certified(r, points);
    for (const Values<double>& start : {r.far, r.near}) {
        const Fitted fitted(r, points, start);
        EXPECT_NEAR(fitted.sum, static_cast<double>(certified.sum), 1e-10 * fitted.sum);
        for (std::size_t j = 0; j < start.size(); ++j) {
            const auto value = static_cast<double>(certified.b[j]);
            EXPECT_NEAR(fitted.b[j], value, 1e-5 * std::fabs(value)) << "parameter " << j + 1;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, Regressions, ::testing::ValuesIn(regressions),
                         [](const auto& info) { return info.param.name; });

} // namespace
