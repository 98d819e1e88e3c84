// The test problems of More, Garbow and Hillstrom, Testing Unconstrained Optimization Software, ACM TOMS 7 (1981), with
// their numbers there. Residuals are generic, so that the Jacobian comes exactly, by complex steps.
#pragma once
#include <cmath>
#include <complex>
#include <functional>
#include <string>
#include <vector>

namespace nxl_test {

using Vector = std::vector<double>;
using Complex = std::complex<double>;

struct Problem {
    std::string name;
    Vector start;
    int m;
    Vector minima; // sums of squares in the paper; a run may end at any of them
    std::function<void(const double*, double*)> value;
    std::function<void(const Complex*, Complex*)> complex_value;

    int n() const { return static_cast<int>(start.size()); }

    Vector values(const Vector& x) const {
        Vector f(static_cast<std::size_t>(m));
        value(x.data(), f.data());
        return f;
    }
    /// J, column-major, m by n.
    Vector derivatives(const Vector& x) const {
        constexpr double h = 1e-150;
        Vector fjac;
        std::vector<Complex> point(x.begin(), x.end()), f(static_cast<std::size_t>(m));
        for (Complex& component : point) {
            const double kept = component.real();
            component = {kept, h};
            complex_value(point.data(), f.data());
            component = kept;
            for (const Complex& value_i : f) fjac.push_back(value_i.imag() / h);
        }
        return fjac;
    }
};

template <class F> Problem problem(const char* name, const Vector& start, int m, const Vector& minima, F f) {
    return {name, start, m, minima, f, f};
}

inline std::vector<Problem> problems_of_two_unknowns() {
    using std::exp;
    return {
        problem("Rosenbrock_1", {-1.2, 1.0}, 2, {0.0},
                [](const auto* x, auto* f) {
                    f[0] = 10.0 * (x[1] - x[0] * x[0]);
                    f[1] = 1.0 - x[0];
                }),
        problem("FreudensteinRoth_2", {0.5, -2.0}, 2, {0.0, 48.98425},
                [](const auto* x, auto* f) {
                    f[0] = -13.0 + x[0] + ((5.0 - x[1]) * x[1] - 2.0) * x[1];
                    f[1] = -29.0 + x[0] + ((x[1] + 1.0) * x[1] - 14.0) * x[1];
                }),
        problem("PowellBadlyScaled_3", {0.0, 1.0}, 2, {0.0},
                [](const auto* x, auto* f) {
                    f[0] = 1e4 * x[0] * x[1] - 1.0;
                    f[1] = exp(-x[0]) + exp(-x[1]) - 1.0001;
                }),
        problem("BrownBadlyScaled_4", {1.0, 1.0}, 3, {0.0},
                [](const auto* x, auto* f) {
                    f[0] = x[0] - 1e6;
                    f[1] = x[1] - 2e-6;
                    f[2] = x[0] * x[1] - 2.0;
                }),
        problem("Beale_5", {1.0, 1.0}, 3, {0.0},
                [](const auto* x, auto* f) {
                    const double y[] = {1.5, 2.25, 2.625};
                    auto power = x[1];
                    for (int i = 0; i < 3; ++i, power *= x[1]) f[i] = y[i] - x[0] * (1.0 - power);
                }),
        problem("JennrichSampson_6", {0.3, 0.4}, 10, {124.3622},
                [](const auto* x, auto* f) {
                    for (int i = 1; i <= 10; ++i)
                        f[i - 1] = 2.0 + 2.0 * i - (exp(1.0 * i * x[0]) + exp(1.0 * i * x[1]));
                }),
    };
}

inline std::vector<Problem> problems_of_three_unknowns() {
    using std::atan, std::exp, std::real, std::sqrt;
    return {
        problem("HelicalValley_7", {-1.0, 0.0, 0.0}, 3, {0.0},
                [](const auto* x, auto* f) {
                    const auto turns = atan(x[1] / x[0]) / (2.0 * M_PI) + (real(x[0]) < 0.0 ? 0.5 : 0.0);
                    f[0] = 10.0 * (x[2] - 10.0 * turns);
                    f[1] = 10.0 * (sqrt(x[0] * x[0] + x[1] * x[1]) - 1.0);
                    f[2] = x[2];
                }),
        problem("Bard_8", {1.0, 1.0, 1.0}, 15, {8.214877e-3},
                [](const auto* x, auto* f) {
                    const double y[] = {.14, .18, .22, .25, .29, .32, .35, .39, .37, .58, .73, .96, 1.34, 2.10, 4.39};
                    for (int i = 0; i < 15; ++i) {
                        const double u = i + 1, v = 15 - i;
                        f[i] = y[i] - (x[0] + u / (v * x[1] + std::fmin(u, v) * x[2]));
                    }
                }),
        problem("Gauss_9", {0.4, 1.0, 0.0}, 15, {1.127933e-8},
                [](const auto* x, auto* f) {
                    const double y[] = {.0009, .0044, .0175, .0540, .1295, .2420, .3521, .3989};
                    for (int i = 0; i < 15; ++i) {
                        const auto d = (7.0 - i) / 2.0 - x[2];
                        f[i] = x[0] * exp(-x[1] * d * d / 2.0) - y[i < 8 ? i : 14 - i];
                    }
                }),
        problem("Meyer_10", {0.02, 4000.0, 250.0}, 16, {87.94586},
                [](const auto* x, auto* f) {
                    const double y[] = {34780, 28610, 23650, 19630, 16370, 13720, 11540, 9744,
                                        8261,  7030,  6005,  5147,  4427,  3820,  3307,  2872};
                    for (int i = 0; i < 16; ++i) f[i] = x[0] * exp(x[1] / (50.0 + 5.0 * i + x[2])) - y[i];
                }),
        problem("Box_12", {0.0, 10.0, 20.0}, 10, {0.0},
                [](const auto* x, auto* f) {
                    for (int i = 0; i < 10; ++i) {
                        const double t = 0.1 * (i + 1);
                        f[i] = exp(-t * x[0]) - exp(-t * x[1]) - x[2] * (exp(-t) - exp(-10.0 * t));
                    }
                }),
    };
}

inline std::vector<Problem> problems_of_four_unknowns() {
    using std::cos, std::exp, std::sin, std::sqrt;
    return {
        problem("PowellSingular_13", {3.0, -1.0, 0.0, 1.0}, 4, {0.0},
                [](const auto* x, auto* f) {
                    f[0] = x[0] + 10.0 * x[1];
                    f[1] = sqrt(5.0) * (x[2] - x[3]);
                    f[2] = (x[1] - 2.0 * x[2]) * (x[1] - 2.0 * x[2]);
                    f[3] = sqrt(10.0) * (x[0] - x[3]) * (x[0] - x[3]);
                }),
        problem("Wood_14", {-3.0, -1.0, -3.0, -1.0}, 6, {0.0},
                [](const auto* x, auto* f) {
                    f[0] = 10.0 * (x[1] - x[0] * x[0]);
                    f[1] = 1.0 - x[0];
                    f[2] = sqrt(90.0) * (x[3] - x[2] * x[2]);
                    f[3] = 1.0 - x[2];
                    f[4] = sqrt(10.0) * (x[1] + x[3] - 2.0);
                    f[5] = (x[1] - x[3]) / sqrt(10.0);
                }),
        problem("KowalikOsborne_15", {.25, .39, .415, .39}, 11, {3.075056e-4},
                [](const auto* x, auto* f) {
                    const double y[] = {.1957, .1947, .1735, .1600, .0844, .0627, .0456, .0342, .0323, .0235, .0246};
                    const double t[] = {4.0, 2.0, 1.0, .5, .25, .167, .125, .1, .0833, .0714, .0625};
                    for (int i = 0; i < 11; ++i)
                        f[i] = y[i] - x[0] * (t[i] * t[i] + t[i] * x[1]) / (t[i] * t[i] + t[i] * x[2] + x[3]);
                }),
        problem("BrownDennis_16", {25.0, 5.0, -5.0, -1.0}, 20, {85822.20},
                [](const auto* x, auto* f) {
                    for (int i = 0; i < 20; ++i) {
                        const double t = (i + 1) / 5.0;
                        const auto a = x[0] + t * x[1] - exp(t), b = x[2] + x[3] * sin(t) - cos(t);
                        f[i] = a * a + b * b;
                    }
                }),
    };
}

inline std::vector<Problem> larger_fits() {
    using std::exp;
    return {
        problem("Osborne1_17", {.5, 1.5, -1.0, .01, .02}, 33, {5.464895e-5},
                [](const auto* x, auto* f) {
                    const double y[] = {.844, .908, .932, .936, .925, .908, .881, .850, .818, .784, .751,
                                        .718, .685, .658, .628, .603, .580, .558, .538, .522, .506, .490,
                                        .478, .467, .457, .448, .438, .431, .424, .420, .414, .411, .406};
                    for (int i = 0; i < 33; ++i)
                        f[i] = y[i] - (x[0] + x[1] * exp(-10.0 * i * x[3]) + x[2] * exp(-10.0 * i * x[4]));
                }),
        problem("BiggsExp6_18", {1.0, 2.0, 1.0, 1.0, 1.0, 1.0}, 13, {0.0, 5.655650e-3},
                [](const auto* x, auto* f) {
                    for (int i = 0; i < 13; ++i) {
                        const double t = 0.1 * (i + 1), y = exp(-t) - 5.0 * exp(-10.0 * t) + 3.0 * exp(-4.0 * t);
                        f[i] = x[2] * exp(-t * x[0]) - x[3] * exp(-t * x[1]) + x[5] * exp(-t * x[4]) - y;
                    }
                }),
        problem("Osborne2_19", {1.3, .65, .65, .7, .6, 3.0, 5.0, 7.0, 2.0, 4.5, 5.5}, 65, {4.013774e-2},
                [](const auto* x, auto* f) {
                    const double y[] = {1.366, 1.191, 1.112, 1.013, .991, .885, .831, .847, .786, .725, .746,
                                        .679,  .608,  .655,  .616,  .606, .602, .626, .651, .724, .649, .649,
                                        .694,  .644,  .624,  .661,  .612, .558, .533, .495, .500, .423, .395,
                                        .375,  .372,  .391,  .396,  .405, .428, .429, .523, .562, .607, .653,
                                        .672,  .708,  .633,  .668,  .645, .632, .591, .559, .597, .625, .739,
                                        .710,  .729,  .720,  .636,  .581, .428, .292, .162, .098, .054};
                    for (int i = 0; i < 65; ++i) {
                        const double t = i / 10.0;
                        f[i] = y[i] - x[0] * exp(-t * x[4]);
                        for (int k = 1; k < 4; ++k) f[i] -= x[k] * exp(-(t - x[7 + k]) * (t - x[7 + k]) * x[4 + k]);
                    }
                }),
        problem("Watson_20", Vector(6, 0.0), 31, {2.287670e-3},
                [](const auto* x, auto* f) {
                    for (int i = 0; i < 29; ++i) {
                        const double t = (i + 1) / 29.0;
                        auto sum = x[5], slope = 5.0 * x[5]; // Horner
                        for (int j = 4; j >= 0; --j) {
                            sum = sum * t + x[j];
                            if (j > 0) slope = slope * t + 1.0 * j * x[j];
                        }
                        f[i] = slope - sum * sum - 1.0;
                    }
                    f[29] = x[0];
                    f[30] = x[1] - x[0] * x[0] - 1.0;
                }),
    };
}

inline std::vector<Problem> problems_of_any_size() {
    return {
        problem("VariablyDimensioned_25", {.9, .8, .7, .6, .5, .4, .3, .2, .1, 0.0}, 12, {0.0},
                [](const auto* x, auto* f) {
                    auto sum = 0.0 * x[0];
                    for (int j = 0; j < 10; ++j) {
                        f[j] = x[j] - 1.0;
                        sum += (j + 1.0) * (x[j] - 1.0);
                    }
                    f[10] = sum;
                    f[11] = sum * sum;
                }),
        problem("BroydenTridiagonal_30", Vector(12, -1.0), 12, {0.0},
                [](const auto* x, auto* f) {
                    for (int i = 0; i < 12; ++i) {
                        f[i] = (3.0 - 2.0 * x[i]) * x[i] + 1.0;
                        if (i > 0) f[i] -= x[i - 1];
                        if (i < 11) f[i] -= 2.0 * x[i + 1];
                    }
                }),
        problem("LinearFullRank_32", Vector(5, 1.0), 10, {5.0},
                [](const auto* x, auto* f) {
                    auto sum = x[0] + x[1] + x[2] + x[3] + x[4];
                    for (int i = 0; i < 10; ++i) {
                        f[i] = -0.2 * sum - 1.0;
                        if (i < 5) f[i] += x[i];
                    }
                }),
        problem("LinearRankOne_33", Vector(5, 1.0), 10, {90.0 / 42.0},
                [](const auto* x, auto* f) {
                    auto sum = 0.0 * x[0];
                    for (int j = 0; j < 5; ++j) sum += (j + 1.0) * x[j];
                    for (int i = 0; i < 10; ++i) f[i] = (i + 1.0) * sum - 1.0;
                }),
    };
}

inline std::vector<Problem> all_problems() {
    std::vector<Problem> all;
    for (const auto& group : {problems_of_two_unknowns(), problems_of_three_unknowns(), problems_of_four_unknowns(),
                              larger_fits(), problems_of_any_size()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}

} // namespace nxl_test
