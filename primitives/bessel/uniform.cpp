// I and K of large order. Debye's expansions (DLMF 10.41.3, 10.41.4; F. W. J. Olver, Asymptotics and Special Functions,
// chapter 10) hold in the quadrant except near the turning point i nu, where Olver's Airy-type ones take over
// (DLMF 10.20).
#include "primitives/bessel/uniform.hpp"
#include "primitives/bessel/airy.hpp"
#include "primitives/bessel/phase.hpp"
#include "primitives/bessel/precision.hpp"
#include "primitives/bessel/uniform_coefficients.hpp"
#include <cmath>
#include <numbers>

namespace nxl::bessel {
namespace {

constexpr double pi = std::numbers::pi;

/// Horner's rule for real coefficients, the lowest first.
template <int count> zcomplex polynomial(const double (&c)[count], zcomplex x) {
    zcomplex sum = c[count - 1];
    for (int k = count - 2; k >= 0; --k) sum = sum * x + c[k];
    return sum;
}

// The Airy-type expansion serves |xi| < 2/3, which is |zeta| < 1. Outside, an order of 86 has |nu xi| > 57, and the
// terms of Debye's sums, of the order of k! / (2 |nu xi|)^k, reach double precision at the 13th.
constexpr double airy_border = 2.0 / 3.0;
constexpr int debye_terms = 15;

/// c[k][j] is the coefficient of p^(k + 2 j) in U_k (DLMF 10.41.9). Their signs alternate: nothing cancels here.
struct DebyeCoefficients {
    double c[debye_terms][debye_terms];
};

consteval DebyeCoefficients make_debye_coefficients() {
    DebyeCoefficients u{};
    u.c[0][0] = 1.0;
    for (int k = 0; k + 1 < debye_terms; ++k) {
        for (int j = 0; j <= k; ++j) {
            const double power = k + 2.0 * j;
            u.c[k + 1][j] += u.c[k][j] * (power / 2.0 + 1.0 / (8.0 * (power + 1.0)));
            u.c[k + 1][j + 1] -= u.c[k][j] * (power / 2.0 + 5.0 / (8.0 * (power + 3.0)));
        }
    }
    return u;
}
constexpr DebyeCoefficients debye = make_debye_coefficients();

/// (atanh(s) - s) / s^3 as a series in s^2, for |s^2| < series_border: the closed form cancels there.
constexpr double series_border = 0.25;
constexpr int series_terms = 28;
struct CubicSeries {
    double c[series_terms];
};
consteval CubicSeries make_cubic_series() {
    CubicSeries series{};
    for (int k = 0; k < series_terms; ++k) series.c[k] = 1.0 / (2.0 * k + 3.0);
    return series;
}
constexpr CubicSeries cubic_series = make_cubic_series();

/// A function's value is mantissa exp(log_scale).
struct Scaled {
    zcomplex mantissa;
    double log_scale;
};

Scaled scaled(zcomplex factor, zcomplex exponent) {
    return {factor * zcomplex(std::cos(exponent.imag()), std::sin(exponent.imag())), exponent.real()};
}

/// What the expansions are made of, at z = nu t in the first quadrant. I grows like exp(-nu xi), and K like exp(nu xi):
/// -xi is Debye's eta, or where `turned`, eta - i pi/2, which vanishes at the turning point t = i.
struct Place {
    zcomplex s2, s; // 1 + t^2 and its root
    zcomplex xi;
    zcomplex cubic; // where the Airy-type expansion serves: 3/2 xi / s^3, so that zeta = s^2 cubic^(2/3) (DLMF 10.20.2)
    bool turned;    // near i always

    explicit Place(zcomplex t) : turned(t.imag() > 0.5 * t.real()) {
        const double x = t.real(), y = t.imag();
        s2 = zcomplex((1.0 - y) * (1.0 + y) + x * x, 2.0 * x * y);
        s = std::sqrt(s2);
        if (abs1(s2) < series_border) {
            cubic = 1.5 * polynomial(cubic_series.c, s2);
            xi = 2.0 / 3.0 * s * s2 * cubic;
        } else {
            xi = -(s + std::log((turned ? zcomplex(y, -x) : t) / (1.0 + s)));
            cubic = 1.5 * xi / (s * s2);
        }
    }
    bool near_turning_point() const { return turned && std::norm(xi) < airy_border * airy_border; }
    /// Where I consists of both exponentials, the second one smaller or, on the imaginary axis, as large. The line
    /// where it enters, Im xi = 0, is the one where it counts least.
    bool both_exponentials() const { return turned && xi.imag() < 0.0; }
    /// The phase of I that xi leaves out where it is turned.
    zcomplex phase_of_i(double nu) const { return turned ? unit_phase(nu) : zcomplex(1.0); }
};

/// Sums of U_k(p) / nu^k over even and over odd k.
struct DebyeSums {
    zcomplex even = 1.0, odd = 0.0;

    DebyeSums(double nu, zcomplex p) {
        const zcomplex p2 = p * p;
        zcomplex power = 1.0;
        double before = 1.0;
        for (int k = 1; k < debye_terms; ++k) {
            power *= p / nu;
            zcomplex term = debye.c[k][k];
            for (int j = k - 1; j >= 0; --j) term = term * p2 + debye.c[k][j];
            term *= power;
            (k % 2 == 0 ? even : odd) += term;
            const double size = abs1(term); // one polynomial alone may vanish
            if (size < epsilon / 8.0 && before < epsilon / 8.0) break;
            before = size;
        }
    }
};

Scaled debye_k(double nu, const Place& place) {
    const zcomplex p = 1.0 / place.s;
    const DebyeSums sums(nu, p);
    const zcomplex factor = std::sqrt(pi / 2.0) * std::sqrt(p / nu) * std::conj(place.phase_of_i(nu));
    return scaled(factor * (sums.even - sums.odd), nu * place.xi);
}

Scaled debye_i(double nu, const Place& place) {
    const zcomplex p = 1.0 / place.s;
    const DebyeSums sums(nu, p);
    zcomplex sum = sums.even + sums.odd;
    if (place.both_exponentials()) // continued from K(z exp(-i pi)) by DLMF 10.34.2
        sum += zcomplex(0.0, 1.0) * std::exp(2.0 * nu * place.xi) * (sums.even - sums.odd);
    const zcomplex factor = std::sqrt(0.5 / pi) * std::sqrt(p / nu) * place.phase_of_i(nu);
    return scaled(factor * sum, -nu * place.xi);
}

/// Olver's expansion of a Bessel function that consists of Ai(turn nu^(2/3) zeta), turn a third of a turn or none.
struct OlverSum {
    zcomplex value; // less the exponential
    OlverSum(double nu, const Place& place, zcomplex turn, zcomplex airy_exponent) {
        const zcomplex sixth = std::pow(place.cubic, 1.0 / 6.0), third = sixth * sixth;
        zcomplex zeta = place.s2 * third * third;
        zeta.imag(std::fmax(zeta.imag(), 0.0)); // what rounding takes below the axis would be another branch
        const double inverse2 = 1.0 / (nu * nu), root = std::cbrt(nu);
        const zcomplex a = 1.0 + inverse2 * (polynomial(olver_a1, zeta) + inverse2 * polynomial(olver_a2, zeta));
        const zcomplex b = polynomial(olver_b0, zeta) +
                           inverse2 * (polynomial(olver_b1, zeta) + inverse2 * polynomial(olver_b2, zeta));
        const AiryPair ai = airy(turn * (root * root * zeta), airy_exponent);
        const zcomplex before = std::numbers::sqrt2 * sixth; // (4 zeta / s^2)^(1/4)
        value = before / root * (ai.value * a + turn * ai.derivative * b / (nu * root));
    }
};

Scaled olver_k(double nu, const Place& place) { // by H2(-i z), DLMF 10.27.8
    const zcomplex turn(-0.5, -0.5 * std::numbers::sqrt3);
    const OlverSum sum(nu, place, turn, -nu * place.xi);
    const zcomplex factor = pi * zcomplex(0.5 * std::numbers::sqrt3, -0.5) * std::conj(place.phase_of_i(nu));
    return scaled(factor * sum.value, nu * place.xi);
}

Scaled olver_i(double nu, const Place& place) { // by J(-i z), DLMF 10.27.6
    const OlverSum sum(nu, place, 1.0, nu * place.xi);
    return scaled(place.phase_of_i(nu) * sum.value, -nu * place.xi);
}

Scaled uniform_k(double nu, zcomplex z) {
    const Place place(z / nu);
    return place.near_turning_point() ? olver_k(nu, place) : debye_k(nu, place);
}

Scaled uniform_i(double nu, zcomplex z) {
    const Place place(z / nu);
    return place.near_turning_point() ? olver_i(nu, place) : debye_i(nu, place);
}

/// The function at both orders on one scale; the lower quadrant by reflection.
OrderPair pair_of(Scaled (&function)(double, zcomplex), double nu, zcomplex z) {
    const zcomplex upper(std::fabs(z.real()), std::fabs(z.imag())); // a negative zero is no other side
    const Scaled first = function(nu, upper), second = function(nu + 1.0, upper);
    const double log_scale = std::fmax(first.log_scale, second.log_scale);
    const zcomplex values[2] = {first.mantissa * std::exp(first.log_scale - log_scale),
                                second.mantissa * std::exp(second.log_scale - log_scale)};
    if (z.imag() < 0.0) return {std::conj(values[0]), std::conj(values[1]), log_scale};
    return {values[0], values[1], log_scale};
}

} // namespace

OrderPair uniform_k_pair(double nu, zcomplex z) { return pair_of(uniform_k, nu, z); }

OrderPair uniform_i_pair(double nu, zcomplex z) { return pair_of(uniform_i, nu, z); }

} // namespace nxl::bessel
