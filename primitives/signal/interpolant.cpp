// Weights and evaluation of the barycentric form. Products are kept in range by their exponents, whatever part of the
// axis the nodes cover and however many they are.
#include "primitives/signal/interpolant.hpp"
#include <algorithm>
#include <cmath>

namespace nxl::signal {
namespace {

constexpr i64 lanes = 4;                // sums run in this many chains
constexpr double coincident = 0x1p-100; // the least difference of two nodes
constexpr double cancelled = 0x1p-16;   // |sum| over sum of magnitudes from which on digits are short

double power_of_two(double x, i64 exponent) {
    return std::ldexp(x, static_cast<int>(std::clamp(exponent, i64{-5000}, i64{5000})));
}

/// cos a - cos b for a frequency of a below that of b, and so positive.
double apart(double high_a, double low_a, double high_b, double low_b) {
    const double difference = (high_a - high_b) + (low_a - low_b);
    return difference > coincident ? difference : coincident;
}

/// The sums over the nodes of the barycentric form at one place.
struct Sums {
    double value = 0.0, one = 0.0, magnitude = 0.0;
};

Sums sums_at(const Interpolant& p, Cosine x) {
    double value[lanes] = {}, one[lanes] = {}, magnitude[lanes] = {};
    const auto add = [&](i64 lane, i64 k) {
        const double term = p.weight[k] / ((x.high - p.high[k]) + (x.low - p.low[k]));
        value[lane] += term * p.value[k];
        one[lane] += term;
        magnitude[lane] += std::abs(term);
    };
    i64 k = 0;
    for (; k + lanes <= p.count; k += lanes)
        for (i64 lane = 0; lane < lanes; ++lane) add(lane, k + lane);
    for (; k < p.count; ++k) add(0, k);
    return {(value[0] + value[1]) + (value[2] + value[3]), (one[0] + one[1]) + (one[2] + one[3]),
            (magnitude[0] + magnitude[1]) + (magnitude[2] + magnitude[3])};
}

/// Sums times the product of all differences: stable far away from the nodes too. Higham, IMA J. Numer. Anal. 24
/// (2004).
double by_products(const Interpolant& p, Cosine x, double sum) {
    ScaledProduct product;
    for (i64 k = 0; k < p.count; ++k) {
        product.times((x.high - p.high[k]) + (x.low - p.low[k]));
        if (k % 8 == 7) product.rescale();
    }
    product.times(sum);
    product.rescale();
    return power_of_two(product.mantissa, product.exponent + p.weight_exponent);
}

} // namespace

void ScaledProduct::rescale() {
    int shift = 0;
    mantissa = std::frexp(mantissa, &shift);
    exponent += shift;
}

Cosine cosine_of(double frequency) {
    constexpr double pi = 3.14159265358979323846;
    // A cosine of middle size is the sine of what is missing to a quarter turn. 1 - cos near 0 and 1 + cos near 1/2 are
    // small and known to full relative accuracy: low takes what high drops of them.
    if (std::abs(frequency - 0.25) <= 0.125) return {std::sin(2.0 * pi * (0.25 - frequency)), 0.0};
    const bool near_zero = frequency < 0.25;
    const double sine = std::sin(pi * (near_zero ? frequency : 0.5 - frequency)), small = 2.0 * sine * sine;
    const double high = 1.0 - small, low = (1.0 - high) - small;
    return near_zero ? Cosine{high, low} : Cosine{-high, -low};
}

void Interpolant::set_node(i64 k, double frequency) {
    const Cosine x = cosine_of(frequency);
    high[k] = x.high;
    low[k] = x.low;
}

void Interpolant::compute_weights() {
    i64 least = 0; // of the exponents, which wait in value
    const auto product_at = [this](i64 k) {
        ScaledProduct product;
        for (i64 j = 0; j < count; ++j) {
            if (j < k) product.times(-apart(high[j], low[j], high[k], low[k]));
            if (j > k) product.times(apart(high[k], low[k], high[j], low[j]));
            if (j % 8 == 7) product.rescale();
        }
        product.rescale();
        return product;
    };
    for (i64 k = 0; k < count; ++k) {
        const ScaledProduct product = product_at(k);
        weight[k] = product.mantissa;
        value[k] = static_cast<double>(product.exponent);
        least = k == 0 ? product.exponent : std::min(least, product.exponent);
    }
    for (i64 k = 0; k < count; ++k) weight[k] = power_of_two(1.0 / weight[k], least - static_cast<i64>(value[k]));
    weight_exponent = -least;
}

double Interpolant::operator()(double frequency) const {
    const Cosine x = cosine_of(frequency);
    const Sums sums = sums_at(*this, x);
    if (std::abs(sums.one) > cancelled * sums.magnitude && std::isfinite(sums.one)) return sums.value / sums.one;
    for (i64 k = 0; k < count; ++k)
        if ((x.high - high[k]) + (x.low - low[k]) == 0.0) return value[k];
    return by_products(*this, x, sums.value);
}

} // namespace nxl::signal
