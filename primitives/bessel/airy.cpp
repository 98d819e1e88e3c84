// Ai and Ai': near the origin one Taylor step of y'' = z y from the nearest point of a lattice where both are known,
// and beyond it the asymptotic expansions (DLMF 9.7.5, 9.7.6 and, around the negative axis, 9.2.14).
#include "primitives/bessel/airy.hpp"
#include "primitives/bessel/airy_table.hpp"
#include "primitives/bessel/precision.hpp"
#include <cmath>
#include <numbers>

namespace nxl::bessel {
namespace {

// From this radius on |zeta| >= 18: the least term of the asymptotic series, exp(-2 |zeta|), is below the precision.
constexpr double table_radius = 9.0;
constexpr int asymptotic_terms = 38;

/// u_k and v_k of DLMF 9.7.2.
struct AsymptoticCoefficients {
    double u[asymptotic_terms], v[asymptotic_terms];
};

consteval AsymptoticCoefficients make_asymptotic_coefficients() {
    AsymptoticCoefficients c{};
    c.u[0] = c.v[0] = 1.0;
    for (int k = 1; k < asymptotic_terms; ++k) {
        const double six_k = 6.0 * k;
        c.u[k] = c.u[k - 1] * ((six_k - 5.0) * (six_k - 3.0) * (six_k - 1.0)) / ((2.0 * k - 1.0) * 216.0 * k);
        c.v[k] = c.u[k] * (six_k + 1.0) / (1.0 - six_k);
    }
    return c;
}
constexpr AsymptoticCoefficients coefficients = make_asymptotic_coefficients();

/// The series in 1/zeta with the signs of exp(-zeta), and with those of exp(zeta).
struct AsymptoticSums {
    zcomplex falling_value, falling_derivative, rising_value, rising_derivative;

    explicit AsymptoticSums(zcomplex zeta) {
        const zcomplex inverse = 1.0 / zeta;
        zcomplex power = 1.0, u[2] = {1.0, 0.0}, v[2] = {1.0, 0.0}; // terms of even and of odd index
        for (int k = 1; k < asymptotic_terms; ++k) {
            power *= inverse;
            const zcomplex term = coefficients.u[k] * power;
            u[k & 1] += term;
            v[k & 1] += coefficients.v[k] * power;
            if (abs1(term) < epsilon / 8.0) break;
        }
        falling_value = u[0] - u[1], falling_derivative = v[0] - v[1];
        rising_value = u[0] + u[1], rising_derivative = v[0] + v[1];
    }
};

/// |z| >= table_radius, Im z >= 0. Past arg z = 2 pi/3, where Im zeta turns negative, exp(zeta) joins exp(-zeta).
AiryPair airy_far(zcomplex z, zcomplex zeta) {
    const AsymptoticSums sums(zeta);
    const zcomplex root = std::sqrt(std::sqrt(z));
    const double half = 0.5 * std::numbers::inv_sqrtpi;
    const zcomplex before_value = half / root, before_derivative = -half * root;
    if (z.real() >= 0.0 || zeta.imag() >= 0.0)
        return {before_value * sums.falling_value, before_derivative * sums.falling_derivative, zeta};
    if (z.imag() == 0.0) { // the two exponentials are conjugate to each other
        const zcomplex wave = std::polar(1.0, -zeta.imag()), scale = std::conj(wave);
        const double value = 2.0 * (before_value * sums.falling_value * wave).real();
        const double derivative = 2.0 * (before_derivative * sums.falling_derivative * wave).real();
        return {value * scale, derivative * scale, zeta};
    }
    const zcomplex other = zcomplex(0.0, 1.0) * std::exp(2.0 * zeta);
    return {before_value * (sums.falling_value + other * sums.rising_value),
            before_derivative * (sums.falling_derivative - other * sums.rising_derivative), zeta};
}

/// |z| < table_radius, Im z >= 0: a step of at most sqrt(1/2). A real z has a real node and stays real.
AiryPair airy_near(zcomplex z, zcomplex zeta) {
    const int x = static_cast<int>(std::rint(z.real())), y = static_cast<int>(std::rint(z.imag()));
    const auto [value, derivative] = airy_nodes[y][x + airy_columns];
    const zcomplex node(x, y), h = z - node, h2 = h * h;
    const zcomplex ratio2 = node * h2, ratio3 = h2 * h;
    // Ai(node + h) = value + h sum b_k, Ai' = sum k b_k, from k (k - 1) b_k = node h^2 b_(k-2) + h^3 b_(k-3)
    zcomplex before3 = derivative, before2 = node * value * h / 2.0, before1 = (ratio2 * derivative + h2 * value) / 6.0;
    zcomplex sum = before3 + before2 + before1, derivative_sum = before3 + 2.0 * before2 + 3.0 * before1;
    const double small = epsilon / 64.0 * (abs1(value) + abs1(derivative));
    for (int k = 4; abs1(before1) + abs1(before2) + abs1(before3) > small; ++k) {
        const zcomplex b = (ratio2 * before2 + ratio3 * before3) / (static_cast<double>(k) * (k - 1));
        sum += b;
        derivative_sum += static_cast<double>(k) * b;
        before3 = before2, before2 = before1, before1 = b;
    }
    const zcomplex scale = std::exp(zeta);
    return {(value + h * sum) * scale, derivative_sum * scale, zeta};
}

} // namespace

AiryPair airy(zcomplex z, zcomplex zeta) {
    if (z.imag() < 0.0) {
        const AiryPair mirrored = airy(std::conj(z), std::conj(zeta));
        return {std::conj(mirrored.value), std::conj(mirrored.derivative), std::conj(mirrored.zeta)};
    }
    return std::norm(z) < table_radius * table_radius ? airy_near(z, zeta) : airy_far(z, zeta);
}

AiryPair airy(zcomplex z) {
    if (z.imag() == 0.0) z.imag(0.0); // without a sign: the upper side of the cut
    return airy(z, 2.0 / 3.0 * z * std::sqrt(z));
}

} // namespace nxl::bessel
