// K of orders up to about 90 in the right half plane: two neighbouring orders within [-1/2, 3/2] by the region of z,
// then the recurrence upwards, which is stable there.
#include "primitives/bessel/k_moderate.hpp"
#include "primitives/bessel/hankel_sums.hpp"
#include "primitives/bessel/precision.hpp"
#include "primitives/bessel/recurrences.hpp"
#include <cmath>
#include <numbers>

namespace nxl::bessel {
namespace {

constexpr double series_radius = 2.0; // inside, the continued fraction takes long
constexpr int series_limit = 60;      // terms; 13 are taken at |z| = 2
constexpr int fraction_limit = 1000;  // steps; about 170 / (|z| cos^2(arg(z) / 2)) are taken, 150 at |z| = 2

/// 1 / Gamma(1 + mu) = even(mu^2) - mu odd(mu^2), so that 1 / Gamma(1 - mu) = even + mu odd. No difference of nearly
/// equal values for small mu. The Taylor coefficients of 1 / Gamma(1 + x): DLMF 5.7.1.
struct ReciprocalGamma {
    double even, odd;
};
ReciprocalGamma reciprocal_gamma(double mu) {
    constexpr double even[] = {1.0,
                               -0.65587807152025388108,
                               0.16653861138229148950,
                               -0.0096219715278769735621,
                               -0.0011651675918590651121,
                               0.00012805028238811618615,
                               -1.2504934821426706573e-6,
                               -2.0563384169776071035e-7,
                               5.0020076444692229301e-9,
                               1.0434267116911005105e-10};
    constexpr double odd[] = {-0.57721566490153286061,   0.042002635034095235529,   0.042197734555544336748,
                              -0.0072189432466630995424, 0.00021524167411495097282, 0.000020134854780788238656,
                              -1.1330272319816958824e-6, -6.1160951044814158179e-9, 1.1812745704870201446e-9,
                              -7.782263439905071254e-12};
    const double square = mu * mu;
    ReciprocalGamma result{0.0, 0.0};
    for (int i = 9; i >= 0; --i) {
        result.even = result.even * square + even[i];
        result.odd = result.odd * square + odd[i];
    }
    return result;
}

bool below(zcomplex term, zcomplex sum) { return magnitude(term) <= 0.25 * epsilon * magnitude(sum); }

/// sinh(x) / x.
zcomplex sinh_ratio(zcomplex x) { return x == 0.0 ? zcomplex(1.0) : std::sinh(x) / x; }

} // namespace

/// N. M. Temme, On the numerical evaluation of the modified Bessel function of the third kind, J. Comput. Phys. 19
/// (1975): K(mu) = sum c_k f_k, K(mu + 1) = (2 / z) sum c_k (p_k - k f_k), c_k = (z^2 / 4)^k / k!.
PairResult k_by_series(double mu, zcomplex z) {
    const auto [even, odd] = reciprocal_gamma(mu);
    const zcomplex log_half = -std::log(0.5 * z);
    const zcomplex sigma = mu * log_half;
    const double reflection = 1.0 / ((even - mu * odd) * (even + mu * odd)); // pi mu / sin(pi mu)
    const zcomplex power = std::exp(sigma);                                  // (z / 2)^-mu
    zcomplex f = reflection * (std::cosh(sigma) * odd + sinh_ratio(sigma) * log_half * even);
    zcomplex p = 0.5 * power / (even - mu * odd);
    zcomplex q = 0.5 / (power * (even + mu * odd));
    const zcomplex quarter_square = 0.25 * z * z;
    zcomplex c = 1.0, sum = f, sum_up = p;
    for (int k = 1; k <= series_limit; ++k) {
        f = (static_cast<double>(k) * f + p + q) / (k * k - mu * mu);
        p /= k - mu;
        q /= k + mu;
        c *= quarter_square / static_cast<double>(k);
        const zcomplex term = c * f, term_up = c * (p - static_cast<double>(k) * f);
        sum += term;
        sum_up += term_up;
        if (below(term, sum) && below(term_up, sum_up)) return {{sum, 2.0 / z * sum_up, 0.0}, true};
    }
    return {{sum, 2.0 / z * sum_up, 0.0}, false};
}

/// K(mu) = sqrt(pi / (2 z)) exp(-z) / S and K(mu + 1) / K(mu) = (mu + 1/2 + z + (mu^2 - 1/4) h) / z. The continued
/// fraction h = 1 / (b_1 + a_2 / (b_2 + ...)), b_n = 2 (n + z), a_n = mu^2 - (n - 1/2)^2, is taken forwards by Steed's
/// algorithm, and the normalising sum S goes along: Temme (1975), section 4; I. J. Thompson and A. R. Barnett, Comput.
/// Phys. Commun. 47 (1987). Converges in the closed right half plane, like exp(-2 Re sqrt(2 n z)).
PairResult k_by_continued_fraction(double mu, zcomplex z) {
    const double weight = 0.25 - mu * mu;
    double a = -weight;
    zcomplex b = 2.0 * (1.0 + z);
    zcomplex d = 1.0 / b;
    zcomplex step = d, h = d;
    zcomplex u_before = 0.0, u = weight; // the fraction's own recurrence from 0, 1, its n-th member times C_n
    zcomplex weights = u;                // their sum
    zcomplex sum = 1.0 + weights * step;
    bool converged = false;
    for (int n = 2; n <= fraction_limit && !converged; ++n) {
        const zcomplex u_next = (b * u + a / (n - 1) * u_before) / static_cast<double>(n);
        u_before = u;
        u = u_next;
        weights += u;
        a = mu * mu - (n - 0.5) * (n - 0.5);
        b += 2.0;
        d = 1.0 / (b + a * d);
        step *= b * d - 1.0;
        h += step;
        sum += weights * step;
        converged = below(weights * step, sum) && below(weight * step, z);
    }
    const zcomplex root = std::sqrt(0.5 * std::numbers::pi / z);
    const zcomplex k = root * zcomplex(std::cos(z.imag()), -std::sin(z.imag())) / sum;
    return {{k, k * ((mu + 0.5 + z - weight * h) / z), -z.real()}, converged};
}

/// DLMF 10.40.2.
PairResult k_by_expansion(double mu, zcomplex z) {
    const HankelSums sums = hankel_sums(mu, z), sums_up = hankel_sums(mu + 1.0, z);
    const zcomplex factor = std::sqrt(0.5 * std::numbers::pi / z) * zcomplex(std::cos(z.imag()), -std::sin(z.imag()));
    return {{factor * (sums.even + sums.odd), factor * (sums_up.even + sums_up.odd), -z.real()},
            sums.converged && sums_up.converged};
}

PairResult moderate_k_pair(double nu, zcomplex z) {
    const int steps = static_cast<int>(std::lround(nu));
    const double mu = nu - steps;
    const double radius = std::abs(z);
    PairResult result = radius <= series_radius      ? k_by_series(mu, z)
                        : radius < asymptotic_radius ? k_by_continued_fraction(mu, z)
                                                     : k_by_expansion(mu, z);
    for (int i = 0; i < steps; ++i) result.pair = advance_up(result.pair, mu + i, z);
    result.pair = normalised(result.pair);
    return result;
}

} // namespace nxl::bessel
