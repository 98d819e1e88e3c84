// What the tests say of both scalar types: conjugates, moduli, values at random.
#pragma once
#include <cmath>
#include <complex>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace nxl_test {

using zcomplex = std::complex<double>;
using Scalars = ::testing::Types<double, zcomplex>;
using Generator = std::mt19937_64;

inline constexpr double eps = std::numeric_limits<double>::epsilon();
template <class T> constexpr bool is_complex = sizeof(T) > sizeof(double);

inline double conjugate(double v) { return v; }
inline zcomplex conjugate(zcomplex v) { return std::conj(v); }
inline double abs1(double v) { return std::fabs(v); }
inline double abs1(zcomplex v) { return std::fabs(v.real()) + std::fabs(v.imag()); }

/// The imaginary part counts where there is one.
template <class T> T scalar(double real, double imag) {
    if constexpr (is_complex<T>) return {real, imag};
    else return real;
}
template <class T> T all_nan() { return scalar<T>(std::nan(""), std::nan("")); }

/// Parts in [-1, 1); the library's own distributions take a logarithm for every number.
template <class T> T random_value(Generator& generator) {
    const auto uniform = [&] { return static_cast<double>(static_cast<std::int64_t>(generator())) * 0x1p-63; };
    const double real = uniform();
    return scalar<T>(real, is_complex<T> ? uniform() : 0.0);
}
template <class T> std::vector<T> random_values(std::int64_t count, unsigned long seed) {
    Generator generator(seed);
    std::vector<T> values(static_cast<std::size_t>(count));
    for (T& value : values) value = random_value<T>(generator);
    return values;
}

/// Integers in -largest .. largest, in both parts of a complex number.
template <class T> T random_integer(Generator& generator, int largest) {
    const auto part = [&] {
        return static_cast<double>(generator() % static_cast<unsigned>(2 * largest + 1)) - largest;
    };
    const double real = part();
    return scalar<T>(real, is_complex<T> ? part() : 0.0);
}

/// DGETRF for double, ZGETRF for zcomplex, of "GETRF".
template <class T> std::string routine_name(const std::string& rest) { return (is_complex<T> ? "Z" : "D") + rest; }

} // namespace nxl_test
