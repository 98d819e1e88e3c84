// I of orders up to about 90 in the right half plane: power series, ratio of neighbours with the Wronskian, expansion
// in 1/z. On the imaginary axis this is J, and results hold to the size of the two neighbours where one is near a zero.
#include "primitives/bessel/i_moderate.hpp"
#include "primitives/bessel/hankel_sums.hpp"
#include "primitives/bessel/k_moderate.hpp"
#include "primitives/bessel/phase.hpp"
#include "primitives/bessel/precision.hpp"
#include "primitives/bessel/recurrences.hpp"
#include <cmath>
#include <numbers>

namespace nxl::bessel {
namespace {

constexpr int series_limit = 100;    // terms; 12 are taken for nu = 0 at the end of its region, 19 for nu = 90
constexpr int fraction_limit = 5000; // steps; 320 are taken at most, for the largest nu and real z

/// sum of (z^2 / 4)^k / (k! (nu + 1)_k).
struct Sum {
    zcomplex value;
    bool converged;
};
Sum power_sum(double nu, zcomplex quarter_square) {
    Sum sum{1.0, false};
    zcomplex term = 1.0;
    for (int k = 1; k <= series_limit && !sum.converged; ++k) {
        term *= quarter_square / (k * (nu + k));
        sum.value += term;
        sum.converged = magnitude(term) <= 0.25 * epsilon * magnitude(sum.value);
    }
    return sum;
}

/// The steps after which the ratio I(nu + 1) / I(nu), recurred downwards from 0, is exact to double precision, or
/// fraction_limit. The denominators p of its continued fraction are near z I(nu) K(k) in modulus, so that the ratio's
/// relative error is about 1 / (4 |p|^2). F. W. J. Olver, J. Res. Nat. Bur. Standards 71B (1967).
int steps_of_ratio(double nu, zcomplex two_over_z) {
    constexpr double enough = 64.0 / epsilon; // |p|^2
    zcomplex before = 0.0, p = 1.0;
    for (int k = 1; k < fraction_limit; ++k) {
        const zcomplex next = before + (nu + k) * two_over_z * p;
        before = p;
        p = next;
        if (std::norm(p) >= enough) return k;
    }
    return fraction_limit;
}

} // namespace

/// DLMF 10.25.2.
PairResult i_by_series(double nu, zcomplex z) {
    const zcomplex half = 0.5 * z;
    const Sum sum = power_sum(nu, half * half), sum_up = power_sum(nu + 1.0, half * half);
    int sign = 0;
    const double log_scale = nu * std::log(std::abs(half)) - ::lgamma_r(nu + 1.0, &sign); // std::lgamma writes a global
    const zcomplex phase = phase_of_power(nu, z);
    return {{phase * sum.value, phase * half / (nu + 1.0) * sum_up.value, log_scale},
            sum.converged && sum_up.converged};
}

/// The ratio by its recurrence downwards, the size by I(nu) K(nu + 1) + I(nu + 1) K(nu) = 1 / z (DLMF 10.28.2).
PairResult i_by_ratio(double nu, zcomplex z) {
    const zcomplex two_over_z = 2.0 / z;
    const int steps = steps_of_ratio(nu, two_over_z);
    zcomplex up = 0.0, here = 1.0; // orders nu + k + 1, nu + k
    for (int k = steps; k > 0; --k) {
        const zcomplex down = up + (nu + k) * two_over_z * here;
        up = here;
        here = down;
    }
    const PairResult k = moderate_k_pair(nu, z);
    const zcomplex factor = 1.0 / (z * (here * k.pair.second + up * k.pair.first));
    return {{factor * here, factor * up, -k.pair.log_scale}, k.converged && steps < fraction_limit};
}

/// DLMF 10.40.5, the recessive exponential as far as it counts: all of it on the imaginary axis.
PairResult i_by_expansion(double nu, zcomplex z) {
    static_assert(2.0 * asymptotic_radius > negligible_exponent); // so real z have one exponential and stay real
    const HankelSums sums = hankel_sums(nu, z), sums_up = hankel_sums(nu + 1.0, z);
    const zcomplex root = std::sqrt(0.5 / std::numbers::pi / z);
    const zcomplex growing = root * zcomplex(std::cos(z.imag()), std::sin(z.imag()));
    OrderPair pair{growing * (sums.even - sums.odd), growing * (sums_up.even - sums_up.odd), z.real()};
    if (2.0 * z.real() < negligible_exponent) {
        const double turns = std::copysign(nu + 0.5, z.imag()); // +-i exp(+-i pi nu)
        const zcomplex falling = root * std::exp(-2.0 * z.real()) * unit_phase(2.0 * turns) *
                                 zcomplex(std::cos(z.imag()), -std::sin(z.imag()));
        pair.first += falling * (sums.even + sums.odd);
        pair.second -= falling * (sums_up.even + sums_up.odd);
    }
    return {pair, sums.converged && sums_up.converged};
}

/// The recurrence in the order upwards from [0, 1), I(nu + 1) = I(nu - 1) - 2 nu / z I(nu). Unstable as it is, it
/// multiplies errors by about exp(nu^2 Re(1 / z)) only, as long as nu <= |z|.
PairResult i_by_expansion_upwards(double nu, zcomplex z) {
    const int steps = static_cast<int>(nu);
    const double start = nu - steps;
    PairResult result = i_by_expansion(start, z);
    for (int i = 1; i <= steps; ++i) {
        const zcomplex next = result.pair.first - 2.0 * (start + i) / z * result.pair.second;
        result.pair.first = result.pair.second;
        result.pair.second = next;
    }
    return result;
}

PairResult moderate_i_pair(double nu, zcomplex z) {
    if (z == 0.0) return {{nu == 0.0 ? 1.0 : 0.0, 0.0, 0.0}, true};
    const double radius = std::abs(z), up = nu + 1.0;
    const auto choose = [&] {
        if (radius * radius <= 4.0 * up) return i_by_series;
        if (radius < asymptotic_radius) return i_by_ratio;
        if (2.0 * radius >= up * up) return i_by_expansion;
        const bool few_digits_lost = radius >= up && 2.0 * radius * radius >= up * up * z.real(); // a factor of 7
        return few_digits_lost ? i_by_expansion_upwards : i_by_ratio;
    };
    PairResult result = choose()(nu, z);
    result.pair = normalised(result.pair);
    return result;
}

} // namespace nxl::bessel
