// Arrays for the tests of the primitives: aligned to 8 bytes and no further, between margins that must stay; values
// with zeros of both signs, NaN, infinities and the limits of rounding among them.
#pragma once
#include <bit>
#include <complex>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace nxl_test {

using zcomplex = std::complex<double>;

/// Every loop length around one, two and four registers of either width, and a long one.
inline constexpr std::uint32_t sizes[] = {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 1013};

/// All signs and payloads of NaN count as one; everything else is compared by its bits.
inline bool same_bits(double a, double b) {
    return (a != a && b != b) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
inline bool same_bits(zcomplex a, zcomplex b) { return same_bits(a.real(), b.real()) && same_bits(a.imag(), b.imag()); }

class Values {
  public:
    enum Kind { any, finite }; // finite for sums, which show nothing behind a NaN

  private:
    std::mt19937 generator_;
    Kind kind_;

  public:
    explicit Values(unsigned seed, Kind kind = any) : generator_(seed), kind_(kind) {}

    void next(double& value) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double special[] = {0.0,  -0.0,  std::numeric_limits<double>::quiet_NaN(),
                                      0.5,  -0.5,  infinity,
                                      7.5,  -7.5,  -infinity,
                                      1e10, -1e10, 0x1.fffffffffffffp51,
                                      2.0,  -2.0,  -0x1.fffffffffffffp51,
                                      3e9,  1e300, 5e-324};
        value = std::uniform_real_distribution<>(-10.0, 10.0)(generator_);
        if (kind_ == finite) return;
        const unsigned pick = generator_() % 64;
        if (pick < std::size(special)) value = special[pick];
    }
    void next(zcomplex& value) {
        double re = 0.0, im = 0.0;
        next(re), next(im);
        value = {re, im};
    }
    template <class T> std::vector<T> take(std::size_t n) {
        std::vector<T> values(n);
        for (T& value : values) next(value);
        return values;
    }
};

template <class T> class GuardedArray {
    static constexpr std::size_t margin = 9;    // doubles; odd, so that the array starts off any register's boundary
    static constexpr double guard = 0x1.badp77; // at the array's own places too, until they are written
    std::size_t count_;
    std::vector<double> store_;

  public:
    explicit GuardedArray(std::size_t n) : count_(n * sizeof(T) / sizeof(double)), store_(count_ + 2 * margin, guard) {}
    explicit GuardedArray(const std::vector<T>& values) : GuardedArray(values.size()) {
        if (!values.empty()) std::memcpy(store_.data() + margin, values.data(), values.size() * sizeof(T));
    }

    T* data() { return reinterpret_cast<T*>(store_.data() + margin); }
    static T untouched() {
        if constexpr (sizeof(T) == sizeof(double)) return guard;
        else return {guard, guard};
    }
    /// Holds what is wanted, to the bit, and nothing beside it was written.
    void expect(const std::vector<T>& wanted, const std::string& what) {
        for (std::size_t i = 0; i < wanted.size(); ++i)
            ASSERT_TRUE(same_bits(data()[i], wanted[i]))
                << what << " at " << i << " of " << wanted.size() << ": " << data()[i] << ", not " << wanted[i];
        for (std::size_t i = 0; i < margin; ++i) {
            ASSERT_EQ(store_[i], guard) << what << ", before " << wanted.size();
            ASSERT_EQ(store_[margin + count_ + i], guard) << what << ", behind " << wanted.size();
        }
    }
};

} // namespace nxl_test
