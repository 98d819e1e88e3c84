// The pack family against plain loops: exported entries, and the kernels of every class.
#include "nxl.h"
#include "primitives/pack/pack_table.hpp"
#include "tests/primitives/guarded_array.hpp"
#include <functional>

namespace {

using namespace nxl_test;
using Ints = std::vector<int>;

/// One way to call the six routines.
template <class T> struct Family {
    std::string name;
    std::function<void(int n, const T* a, int inc, T* y)> pack_strided, unpack_strided;
    std::function<void(int n, const T* a, const int* ia, T* y)> pack_indexed, pack_masked;
    std::function<void(int n, const T* a, T* y, const int* iy)> unpack_indexed, unpack_masked;
};

template <class T> std::vector<Family<T>> families();

template <> std::vector<Family<double>> families() {
    std::vector<Family<double>> all = {{
        .name = "entries",
        .pack_strided = [](int n, auto* a, int inc, auto* y) { vdpacki(&n, a, &inc, y); },
        .unpack_strided = [](int n, auto* a, int inc, auto* y) { vdunpacki(&n, a, y, &inc); },
        .pack_indexed = [](int n, auto* a, auto* ia, auto* y) { vdpackv(&n, a, ia, y); },
        .pack_masked = [](int n, auto* a, auto* ma, auto* y) { vdpackm(&n, a, ma, y); },
        .unpack_indexed = [](int n, auto* a, auto* y, auto* iy) { vdunpackv(&n, a, y, iy); },
        .unpack_masked = [](int n, auto* a, auto* y, auto* my) { vdunpackm(&n, a, y, my); },
    }};
    for (int pack_class = 0; pack_class <= 4; ++pack_class) {
        const nxl::PackTable& table = nxl::pack_kernels_of(pack_class);
        all.push_back({
            .name = "class " + std::to_string(pack_class),
            .pack_strided = [&table](int n, auto* a, int inc, auto* y) { table.strided_d(n, a, inc, y, 1); },
            .unpack_strided = [&table](int n, auto* a, int inc, auto* y) { table.strided_d(n, a, 1, y, inc); },
            .pack_indexed = table.pack_indexed_d,
            .pack_masked = table.pack_masked_d,
            .unpack_indexed = table.unpack_indexed_d,
            .unpack_masked = table.unpack_masked_d,
        });
    }
    return all;
}

template <> std::vector<Family<zcomplex>> families() {
    const auto count = [](int n) { return static_cast<std::uint32_t>(n); };
    return {{
        .name = "entries",
        .pack_strided = [=](int n, auto* a, int inc, auto* y) { vdpackic_d(count(n), a, inc, y); },
        .unpack_strided = [=](int n, auto* a, int inc, auto* y) { vdunpackic_d(count(n), a, y, inc); },
        .pack_indexed = [=](int n, auto* a, auto* ia, auto* y) { vdpackvc_d(count(n), a, ia, y); },
        .pack_masked = [=](int n, auto* a, auto* ma, auto* y) { vdpackmc_d(count(n), a, ma, y); },
        .unpack_indexed = [=](int n, auto* a, auto* y, auto* iy) { vdunpackvc_d(count(n), a, y, iy); },
        .unpack_masked = [=](int n, auto* a, auto* y, auto* my) { vdunpackmc_d(count(n), a, y, my); },
    }};
}

template <class T> class Pack : public ::testing::Test {};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(Pack, Scalars);

TYPED_TEST(Pack, ByStrideFromTheFirstElementOnAlsoBackwards) {
    using T = TypeParam;
    for (const auto& family : families<T>())
        for (const std::uint32_t n : sizes)
            for (const int inc : {1, 2, 5, -1, -3, 0}) {
                const auto gaps = static_cast<std::size_t>(std::abs(inc));
                const std::size_t wide = n == 0 ? 0 : 1 + (n - 1) * gaps, start = inc < 0 && n > 0 ? wide - 1 : 0;
                const auto place = [&](std::size_t i) { return inc < 0 ? start - i * gaps : i * gaps; };
                const auto loose = Values(n).take<T>(wide), dense = Values(n + 1).take<T>(n);
                std::vector<T> packed(n), unpacked(wide, GuardedArray<T>::untouched());
                for (std::size_t i = 0; i < n; ++i) {
                    packed[i] = loose[place(i)];
                    unpacked[place(i)] = dense[i];
                }
                GuardedArray<T> from(loose), to(n), spread(wide);
                family.pack_strided(static_cast<int>(n), from.data() + start, inc, to.data());
                to.expect(packed, family.name);
                family.unpack_strided(static_cast<int>(n), dense.data(), inc, spread.data() + start);
                spread.expect(unpacked, family.name);
            }
}

TYPED_TEST(Pack, ByIndexTheLastOfRepeatedPlacesStays) {
    using T = TypeParam;
    constexpr std::size_t wide = 50;
    std::mt19937 generator(5);
    for (const auto& family : families<T>())
        for (const std::uint32_t n : sizes) {
            const auto loose = Values(n).take<T>(wide), dense = Values(n + 1).take<T>(n);
            Ints places(n);
            std::vector<T> packed(n), unpacked(wide, GuardedArray<T>::untouched());
            for (std::size_t i = 0; i < n; ++i) {
                const std::size_t place = generator() % wide;
                places[i] = static_cast<int>(place);
                packed[i] = loose[place];
                unpacked[place] = dense[i];
            }
            GuardedArray<T> to(n), spread(wide);
            family.pack_indexed(static_cast<int>(n), loose.data(), places.data(), to.data());
            to.expect(packed, family.name);
            family.unpack_indexed(static_cast<int>(n), dense.data(), spread.data(), places.data());
            spread.expect(unpacked, family.name);
        }
}

TYPED_TEST(Pack, ByMaskOtherElementsAreNotWritten) {
    using T = TypeParam;
    for (const auto& family : families<T>())
        for (const Ints& pattern : {Ints{0, -1}, Ints{1}, Ints{1, 0, -7, 9, 0}, Ints{0, 3}})
            for (const std::uint32_t n : {0U, 1U, 2U, 3U, 4U, 5U, 9U, 33U, 2048U, 2051U}) {
                const auto loose = Values(n).take<T>(n);
                Ints mask(n);
                std::vector<T> packed, unpacked(n, GuardedArray<T>::untouched());
                for (std::size_t i = 0; i < n; ++i) {
                    mask[i] = pattern[(i + i / 7) % pattern.size()];
                    if (mask[i] > 0) packed.push_back(unpacked[i] = loose[i]);
                }
                GuardedArray<T> from(loose), to(packed.size()), spread(n);
                family.pack_masked(static_cast<int>(n), from.data(), mask.data(), to.data());
                to.expect(packed, family.name);
                const std::vector<T> dense(packed); // exactly as long as it is read
                family.unpack_masked(static_cast<int>(n), dense.data(), spread.data(), mask.data());
                spread.expect(unpacked, family.name);
            }
}

TEST(Pack, NegativeLengthsOfRealArraysDoNothing) {
    const double a[] = {1.0, 2.0};
    const int ones[] = {1, 1};
    for (const auto& family : families<double>())
        for (const int n : {-1, std::numeric_limits<int>::min()}) {
            GuardedArray<double> y(2);
            family.pack_strided(n, a, 1, y.data());
            family.pack_indexed(n, a, ones, y.data());
            family.pack_masked(n, a, ones, y.data());
            family.unpack_strided(n, a, 1, y.data());
            family.unpack_indexed(n, a, y.data(), ones);
            family.unpack_masked(n, a, y.data(), ones);
            y.expect({y.untouched(), y.untouched()}, family.name);
        }
}

TEST(PackKernels, ClassesFromTwoOnHaveTheirOwn) {
    const auto* first = &nxl::pack_kernels_of(0);
    const auto* second = &nxl::pack_kernels_of(2);
    EXPECT_NE(first, second);
    EXPECT_EQ(&nxl::pack_kernels_of(1), first);
    EXPECT_EQ(&nxl::pack_kernels_of(3), second);
    EXPECT_EQ(&nxl::pack_kernels_of(4), second);
}

} // namespace
