// The vector primitives that work element by element, each against a plain loop over its own formula; order, ramp,
// mask, power and pointers. CTest runs this program at both vector widths.
#include "nxl.h"
#include "tests/primitives/guarded_array.hpp"
#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

using namespace nxl_test;
using D = double;
using Z = zcomplex;

/// Calls a primitive on arrays of every size and compares with formula(i, sources...), an element of type T: into an
/// array of its own, then in the place of each source of the same type that `InPlace` has a bit for.
template <class T, class... S, unsigned InPlace = ~0U, class Call, class Formula>
void matches_at(const char* name, Call call, Formula formula, std::integral_constant<unsigned, InPlace> = {}) {
    for (const std::uint32_t n : sizes) {
        Values values(n + 1);
        std::tuple<std::vector<S>...> sources{values.take<S>(n)...};
        std::vector<T> wanted(n);
        for (std::size_t i = 0; i < n; ++i)
            wanted[i] = std::apply([&](const auto&... s) { return formula(i, s...); }, sources);

        const auto run = [&]<std::size_t... I>(int place, std::index_sequence<I...>) {
            std::tuple<GuardedArray<S>...> arrays{GuardedArray<S>(std::get<I>(sources))...};
            GuardedArray<T> apart(n);
            T* dst = apart.data();
            ((static_cast<int>(I) == place ? void(dst = reinterpret_cast<T*>(std::get<I>(arrays).data())) : void()),
             ...);
            call(std::get<I>(arrays).data()..., dst, n);
            if (place < 0) apart.expect(wanted, name);
            const auto check = [&](auto& array, const auto& source, int index) {
                if constexpr (std::is_same_v<decltype(source), const std::vector<T>&>)
                    array.expect(index == place ? wanted : source, std::string(name) + " in place");
                else array.expect(source, name);
            };
            (check(std::get<I>(arrays), std::get<I>(sources), static_cast<int>(I)), ...);
        };
        constexpr auto all = std::index_sequence_for<S...>{};
        constexpr bool same_type[] = {std::is_same_v<S, T>...};
        run(-1, all);
        for (int place = 0; place < static_cast<int>(sizeof...(S)); ++place)
            if (same_type[place] && (InPlace >> place & 1U) != 0) run(place, all);
        if (::testing::Test::HasFatalFailure()) return;
    }
}

/// The same for a formula that looks at the elements i alone.
template <class T, class... S, class Call, class Formula> void matches(const char* name, Call call, Formula formula) {
    matches_at<T, S...>(name, call, [&](std::size_t i, const auto&... s) { return formula(s[i]...); });
}

/// Without the C++ library's own ways to treat infinities.
Z product(Z a, Z b) { return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()}; }

/// R. L. Smith, algorithm 116.
Z quotient(Z a, Z b) {
    if (std::abs(b.real()) >= std::abs(b.imag())) {
        const D r = b.imag() / b.real(), d = b.real() + r * b.imag();
        return {(a.real() + a.imag() * r) / d, (a.imag() - a.real() * r) / d};
    }
    const D r = b.real() / b.imag(), d = b.imag() + r * b.real();
    return {(a.real() * r + a.imag()) / d, (a.imag() * r - a.real()) / d};
}

struct Scalars {
    D x;
    Z z;
};
class ScalarWithArray : public ::testing::TestWithParam<Scalars> {};
INSTANTIATE_TEST_SUITE_P(, ScalarWithArray,
                         ::testing::Values(Scalars{-2.75, {1.25, -0.5}}, Scalars{-0.0, {-0.0, -0.0}},
                                           Scalars{0.0, {-0.0, 0.0}}));

template <class T, class S, class Routine, class Value, class Formula>
void with_value(const char* name, Routine routine, Value value, Formula formula) {
    matches<T, S>(name, [=](auto* src, auto* dst, auto n) { routine(src, dst, value, n); }, formula);
}

TEST_P(ScalarWithArray, MatchesPlainLoops) {
    const D x = GetParam().x;
    const Z z = GetParam().z;
    with_value<D, D>("AddValue_d", AddValue_d, x, [&](D a) { return a + x; });
    with_value<Z, Z>("AddValuec_d", AddValuec_d, &z, [&](Z a) { return a + z; });
    with_value<Z, Z>("AddValuecd_d", AddValuecd_d, x, [&](Z a) { return a + x; });
    with_value<Z, D>("AddValuedc_d", AddValuedc_d, &z, [&](D a) { return a + z; });
    with_value<D, D>("SubFromValue_d", SubFromValue_d, x, [&](D a) { return x - a; });
    with_value<Z, Z>("SubFromValuec_d", SubFromValuec_d, &z, [&](Z a) { return z - a; });
    with_value<Z, Z>("SubFromValuecd_d", SubFromValuecd_d, x, [&](Z a) { return x - a; });
    with_value<Z, D>("SubFromValuedc_d", SubFromValuedc_d, &z, [&](D a) { return z - a; });
    with_value<D, D>("DivideValue_d", DivideValue_d, x, [&](D a) { return x / a; });
    with_value<Z, Z>("DivideValuec_d", DivideValuec_d, &z, [&](Z a) { return quotient(z, a); });
    with_value<Z, Z>("DivideValuecd_d", DivideValuecd_d, x, [&](Z a) { return quotient({x, 0.0}, a); });
    with_value<Z, D>("DivideValuedc_d", DivideValuedc_d, &z, [&](D a) { return z / a; });
    with_value<D, D>("ScaleByValue_d", ScaleByValue_d, x, [&](D a) { return a * x; });
    with_value<Z, Z>("ScaleByValuec_d", ScaleByValuec_d, &z, [&](Z a) { return product(a, z); });
    with_value<Z, Z>("ScaleByValuecd_d", ScaleByValuecd_d, x, [&](Z a) { return a * x; });
    with_value<Z, D>("ScaleByValuedc_d", ScaleByValuedc_d, &z, [&](D a) { return a * z; });
}

TEST(VectorPrimitives, ArrayWithArray) {
    matches<Z, Z, D>("AddVeccd_d", AddVeccd_d, [](Z a, D b) { return a + b; });
    matches<Z, Z, D>("SubVeccd_d", SubVeccd_d, [](Z a, D b) { return a - b; });
    matches<Z, D, Z>("SubVecdc_d", SubVecdc_d, [](D a, Z b) { return a - b; });
    matches<Z, Z, D>("MulVeccd_d", MulVeccd_d, [](Z a, D b) { return a * b; });
    matches<Z, Z, Z>("DivVeccc_d", DivVeccc_d, quotient);
    matches<Z, Z, D>("DivVeccd_d", DivVeccd_d, [](Z a, D b) { return a / b; });
    matches<Z, D, Z>("DivVecdc_d", DivVecdc_d, [](D a, Z b) { return quotient({a, 0.0}, b); });
    matches<Z, Z, Z>("ConjMulcc_d", ConjMulcc_d, [](Z a, Z b) {
        return Z(a.real() * b.real() + a.imag() * b.imag(), a.real() * b.imag() - a.imag() * b.real());
    });
}

D sign(D a) { return a < 0.0 ? -1.0 : a == 0.0 ? 0.0 : 1.0; }
D sign(Z a) { return sign(a.real() == 0.0 ? a.imag() : a.real()); }

/// y by the sign of a, both parts of it.
template <class S, class T> T by_sign(S a, T y) { return sign(a) == 0.0 ? T(0.0) : sign(a) < 0.0 ? -y : y; }

/// The routine changes dst where it stands; as a function of the old values it can be called like the others. The signs
/// themselves are not a place for the result.
template <class S, class T> void sign_multiply_matches(const char* name, void (*routine)(const S*, T*, std::uint32_t)) {
    const auto call = [=](const S* src, const T* old, T* dst, std::uint32_t n) {
        if (dst != old) std::copy(old, old + n, dst);
        routine(src, dst, n);
    };
    matches_at<T, S, T>(
        name, call, [](std::size_t i, const auto& s, const auto& y) { return by_sign(s[i], y[i]); },
        std::integral_constant<unsigned, 2>{});
}

TEST(VectorPrimitives, Signs) {
    matches<D, D>("Sgndd_d", Sgndd_d, [](D a) { return sign(a); });
    matches<D, Z>("Sgncd_d", Sgncd_d, [](Z a) { return sign(a); });
    matches<Z, D>("Sgndc_d", Sgndc_d, [](D a) { return Z(sign(a)); });
    matches<Z, Z>("Sgncc_d", Sgncc_d, [](Z a) { return Z(sign(a)); });
    sign_multiply_matches("SgnMul_d", SgnMul_d);
    sign_multiply_matches("SgnMulc_d", SgnMulc_d);
    sign_multiply_matches("SgnMulcd_d", SgnMulcd_d);
    sign_multiply_matches("SgnMuldc_d", SgnMuldc_d);
    matches<D, D>(
        "SgnMul_d on its own signs",
        [](const D* s, D* d, std::uint32_t n) {
            std::copy(s, s + n, d);
            SgnMul_d(d, d, n);
        },
        [](D a) { return by_sign(a, a); });
}

/// A processor's conversion to 32 bits, and back.
D truncated(D a) { return a > -2147483649.0 && a < 2147483648.0 ? std::trunc(a) + 0.0 : -2147483648.0; }

TEST(VectorPrimitives, RemaindersAndRounding) {
    matches<D, D, D>("Rem_d", Rem_d, [](D a, D b) { return a - b * truncated(a / b); });
    for (const D v : {2.0, -0.1, 0.0, 1e-300})
        matches<D, D>(
            "RemVal_d", [v](auto* s, auto* d, auto n) { RemVal_d(s, v, d, n); },
            [v](D a) { return a - truncated(a * (1.0 / v)) * v; });
    const D a[] = {7.5, -7.5}, b[] = {2.0, 2.0};
    D rest[2] = {};
    Rem_d(a, b, rest, 2);
    EXPECT_EQ(rest[0], 1.5);
    EXPECT_EQ(rest[1], -1.5);

    matches<D, D>("Ceil_d", Ceil_d, [](D v) { return std::ceil(v); });
    matches<D, D>("Floor_d", Floor_d, [](D v) { return std::floor(v); });
}

TEST(VectorPrimitives, Order) {
    matches_at<Z, Z>("Reverse_d", Reverse_d, [](std::size_t i, const auto& s) { return s[s.size() - 1 - i]; });
    matches<Z, Z>("Flip_d", Flip_d, [](Z a) { return Z(a.imag(), a.real()); });
    matches<Z, Z>("FlipConj_d", FlipConj_d, [](Z a) { return Z(a.imag(), -a.real()); });
    matches<Z, Z>("MulI_d", MulI_d, [](Z a) { return Z(-a.imag(), a.real()); });
}

TEST(VectorPrimitives, Ramp) {
    for (const auto& [offset, step] :
         {std::pair<Z, Z>{{1.25, -0.5}, {0.1, -0.3}}, {0.0, {0.1, 0.0}}, {{-0.0, 1e300}, {-0.0, 1e298}}})
        matches_at<Z, Z>(
            "Rampc_d", [&](auto*, auto* d, auto n) { Rampc_d(d, n, &offset, &step); },
            [&](std::size_t i, const auto&) {
                const D index = static_cast<D>(i);
                return Z(offset.real() + index * step.real(), offset.imag() + index * step.imag());
            });
}

/// Of 32 MiB and some doubles, which are stored past the caches where the array's start allows it.
TEST(VectorPrimitives, LargeResultsFromAnyStart) {
    constexpr std::uint32_t pairs = (2U << 20) + 7, n = 2 * pairs;
    constexpr D guard = 0x1.badp77;
    const auto source = Values(3, Values::finite).take<D>(n + 1);
    const D* src = source.data() + 1;
    const auto* complex_src = reinterpret_cast<const Z*>(src);
    const Z value{0.5, -2.0};
    std::vector<D> store(n + 8);
    for (std::size_t start = 1; start <= 4; ++start) {
        D* dst = store.data() + start;
        const auto check = [&](const char* name, auto call, auto wanted) {
            std::fill(store.begin(), store.end(), guard);
            call();
            std::size_t wrong = 0;
            for (std::size_t i = 0; i < n; ++i) wrong += dst[i] != wanted(i);
            EXPECT_EQ(wrong, 0U) << name << " from " << start;
            EXPECT_TRUE(dst[-1] == guard && dst[n] == guard) << name << " from " << start;
        };
        auto* complex_dst = reinterpret_cast<Z*>(dst);
        check("AddValue_d", [&] { AddValue_d(src, dst, 0.5, n); }, [&](std::size_t i) { return src[i] + 0.5; });
        check(
            "AddValuec_d", [&] { AddValuec_d(complex_src, complex_dst, &value, pairs); },
            [&](std::size_t i) { return src[i] + (i % 2 == 0 ? 0.5 : -2.0); });
        check(
            "Reverse_d", [&] { Reverse_d(complex_src, complex_dst, pairs); },
            [&](std::size_t i) { return src[n - 2 - i + 2 * (i % 2)]; });
    }
}

template <class T> class PackByMask : public ::testing::Test {};
using Elements = ::testing::Types<D, Z>;
TYPED_TEST_SUITE(PackByMask, Elements);

TYPED_TEST(PackByMask, AppendsWhereTheMaskIsAboveZeroAndWritesNothingBehind) {
    using T = TypeParam;
    const auto routine = [](auto... arguments) {
        if constexpr (std::is_same_v<T, D>) return PackByMask_d(arguments...);
        else return PackByMaskc_d(arguments...);
    };
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    for (const std::vector<std::int32_t>& pattern :
         {std::vector<std::int32_t>{0, -1, lowest}, {1}, {1, 0, -7, 9, 0}, {0, 3}})
        for (const std::uint32_t n : {0U, 1U, 2U, 3U, 4U, 5U, 9U, 33U, 2047U, 2048U, 2049U, 5000U}) {
            const auto source = Values(n).take<T>(n);
            std::vector<std::int32_t> mask(n);
            std::vector<T> wanted;
            for (std::size_t i = 0; i < n; ++i) {
                mask[i] = pattern[(i + i / 7) % pattern.size()];
                if (mask[i] > 0) wanted.push_back(source[i]);
            }
            GuardedArray<T> src(source), dst(wanted.size());
            EXPECT_EQ(routine(n, src.data(), dst.data(), mask.data()), wanted.size());
            dst.expect(wanted, "apart");
            auto behind = source;
            std::copy(wanted.begin(), wanted.end(), behind.begin());
            EXPECT_EQ(routine(n, src.data(), src.data(), mask.data()), wanted.size());
            for (std::size_t i = 0; i < wanted.size(); ++i) ASSERT_TRUE(same_bits(src.data()[i], wanted[i])) << i;
        }
}

TEST(VectorPrimitives, PowerLeavesTheFirstElement) {
    for (const std::uint32_t n : {0U, 1U, 2U, 9U}) {
        std::vector<Z> a(n), b(n);
        for (std::size_t i = 0; i < n; ++i) {
            a[i] = std::polar(1.0 + 0.1 * static_cast<D>(i), 0.3 * static_cast<D>(i));
            b[i] = Z(2.0 - static_cast<D>(i), 0.5);
        }
        GuardedArray<Z> dst(n);
        Powc_d(a.data(), b.data(), dst.data(), n);
        std::vector<Z> wanted(dst.data(), dst.data() + n);
        for (std::size_t i = 1; i < n; ++i)
            EXPECT_LE(std::abs(wanted[i] - std::exp(b[i] * std::log(a[i]))), 1e-13 * std::abs(wanted[i])) << i;
        if (n > 0) wanted[0] = GuardedArray<Z>::untouched();
        dst.expect(wanted, "Powc_d");
    }
}

TEST(VectorPrimitives, SingleValuesBehindPointers) {
    D real = 0.0, real_out = 0.0;
    Z complex, complex_out;
    const Z z{1.25, -0.5};
    std::int32_t integer = 0, integer_out = 0;
    SetValToPtr_d(&real, 2.5);
    SetValcToPtr_d(&complex, &z);
    SetValIToPtr(&integer, -7);
    GetValFromPtr_d(&real, &real_out);
    GetValcFromPtr_d(&complex, &complex_out);
    GetValIFromPtr(&integer, &integer_out);
    EXPECT_EQ(real_out, 2.5);
    EXPECT_EQ(GetValFromPtrf_d(&real), 2.5);
    EXPECT_EQ(complex_out, z);
    EXPECT_EQ(integer_out, -7);
}

} // namespace
