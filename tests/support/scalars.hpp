// What the tests say of both scalar types: conjugates, moduli, values at random.
#pragma once
#include <cmath>
#include <complex>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace nxl_test {

using zcomplex = std::complex<double>;
using Scalars = ::testing::Types<double, zcomplex>;

/// SplitMix64 (Steele, Lea, Flood, OOPSLA 2014): seeding costs nothing, so that every value can have a seed of its own.
class Generator {
    std::uint64_t state_;

  public:
    using result_type = std::uint64_t;
    explicit Generator(std::uint64_t seed) : state_(seed) {}
    static constexpr result_type min() { return 0; }
    static constexpr result_type max() { return ~result_type{0}; }
    result_type operator()() {
        std::uint64_t z = state_ += 0x9e3779b97f4a7c15;
        z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9;
        z = (z ^ z >> 27) * 0x94d049bb133111eb;
        return z ^ z >> 31;
    }
};

inline constexpr double eps = std::numeric_limits<double>::epsilon();
template <class T> constexpr bool is_complex = sizeof(T) > sizeof(double);

inline double conjugate(double v) { return v; }
inline zcomplex conjugate(zcomplex v) { return std::conj(v); }
inline double abs1(double v) { return std::fabs(v); }
inline double abs1(zcomplex v) { return std::fabs(v.real()) + std::fabs(v.imag()); }
/// Of numbers whose squares are in the range; std::abs of a complex one takes several times as long.
inline double modulus(double v) { return std::fabs(v); }
inline double modulus(zcomplex v) { return std::sqrt(std::norm(v)); }

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
