// The exported Bessel and Airy functions: values against multiple precision, identities in all quadrants, sequences of
// orders, codes.
#include "nxl.h"
#include "tests/primitives/bessel/reference_table.hpp"
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace {

using dcomplex = std::complex<double>;

constexpr float inf = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
constexpr nxl_c unset(-77.0F, 77.0F);

/// Hankel functions of kinds 1 and 2, Airy functions A and B and their derivatives (1).
enum BesselName { I, J, K, Y, H1, H2, A0, A1, B0, B1 };
constexpr const char* bessel_texts[] = {"I", "J", "K", "Y", "H1", "H2", "Ai", "Ai'", "Bi", "Bi'"};
constexpr BesselName of_order[] = {I, J, K, Y, H1, H2};

struct Answer {
    std::vector<nxl_c> cy; // with one element more than was asked for, which must stay
    int nz, ierr;
    dcomplex operator[](std::size_t k) const { return cy[k]; }
};

Answer call(BesselName function, nxl_c z, float order, int kode, int n = 1) {
    Answer a{std::vector<nxl_c>(static_cast<std::size_t>(std::max(n, 0)) + 1, unset), -1, -1};
    nxl_c* cy = a.cy.data();
    const int second = function == H2 || function == A1 || function == B1, kind = second + 1;
    switch (function) {
    case I: CBESI(&z, &order, &kode, &n, cy, &a.nz, &a.ierr); break;
    case J: CBESJ(&z, &order, &kode, &n, cy, &a.nz, &a.ierr); break;
    case K: CBESK(&z, &order, &kode, &n, cy, &a.nz, &a.ierr); break;
    case Y: CBESY(&z, &order, &kode, &n, cy, &a.nz, nullptr, &a.ierr); break;
    case H1:
    case H2: CBESH(&z, &order, &kode, &kind, &n, cy, &a.nz, &a.ierr); break;
    case A0:
    case A1: CAIRY(&z, &second, &kode, cy, &a.nz, &a.ierr); break;
    default: CBIRY(&z, &second, &kode, cy, &a.ierr), a.nz = 0;
    }
    EXPECT_EQ(a.cy.back(), unset);
    return a;
}

/// |got - want| in units of the last place of |want|.
double ulps(dcomplex got, dcomplex want) {
    return std::abs(got - want) / std::ldexp(1.0, std::ilogb(std::abs(want)) - 23);
}

bool is_plus_zero(float x) { return x == 0.0F && !std::signbit(x); }

/// The code of a computation that goes well.
int code_of_size(BesselName function, nxl_c z, float last_order) {
    const double size = std::abs(dcomplex(z));
    if (function >= A0) return size > std::cbrt(0x1p22) ? 3 : 0;
    return size > 2048.0 || last_order > 2048.0F ? 3 : 0;
}

TEST(Bessel, ReferenceValues) {
    double worst[std::size(bessel_texts)] = {};
    for (nxl_test::TableRow& row : nxl_test::read_table("bessel", 7)) {
        const auto function = static_cast<BesselName>(row.one_of(bessel_texts));
        const int kode = static_cast<int>(row.number());
        const auto order = static_cast<float>(row.number());
        const nxl_c z(row.complex());
        const dcomplex want = row.complex();
        const Answer a = call(function, z, order, kode);
        SCOPED_TRACE(testing::Message() << bessel_texts[function] << " kode " << kode << " order " << order << " at "
                                        << z << ": " << a.cy[0] << " for " << want);
        if (std::max(std::abs(want.real()), std::abs(want.imag())) > FLT_MAX) {
            EXPECT_EQ(a.ierr, 2);
            EXPECT_EQ(a.cy[0], unset);
            continue;
        }
        EXPECT_EQ(a.ierr, code_of_size(function, z, order));
        const bool underflow = std::abs(want) < FLT_MIN && want != 0.0;
        EXPECT_EQ(a.nz, underflow);
        if (underflow) EXPECT_TRUE(is_plus_zero(a.cy[0].real()) && is_plus_zero(a.cy[0].imag()));
        if (want == 0.0 || underflow) continue;
        const double error = ulps(a[0], want);
        EXPECT_LE(error, 1.0);
        worst[function] = std::max(worst[function], error);
    }
    for (std::size_t f = 0; f < std::size(worst); ++f)
        std::printf("%s: worst error %.3f ulp\n", bessel_texts[f], worst[f]);
}

/// Points with log-uniform modulus, in all quadrants, now and then within 1e-4 of an axis.
class Points {
    std::mt19937 generator_{20};

  public:
    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator_); }
    nxl_c next(double smallest, double largest) {
        const double r = std::exp(uniform(std::log(smallest), std::log(largest)));
        double angle = uniform(-std::numbers::pi, std::numbers::pi);
        if (uniform(0.0, 1.0) < 0.3)
            angle = std::rint(angle * 2.0 / std::numbers::pi) * std::numbers::pi / 2.0 + uniform(-1e-4, 1e-4);
        return {static_cast<float>(r * std::cos(angle)), static_cast<float>(r * std::sin(angle))};
    }
};

/// A sum that should be `want`, by the rounding of its terms to single precision.
void expect_sum(dcomplex a, dcomplex b, dcomplex want) {
    EXPECT_LE(std::abs(a + b - want), 4e-7 * (std::abs(a) + std::abs(b)));
}

// Each catches a wrong factor, phase or scale on one side of a border between regions, half planes or blocks of orders.
TEST(Bessel, IdentitiesInAllQuadrants) {
    Points points;
    const dcomplex i(0.0, 1.0);
    int in_range = 0;
    for (int trial = 0; trial < 3000 && !HasFailure(); ++trial) {
        const nxl_c at = points.next(0.05, 80.0);
        const dcomplex z(at);
        const int n = 3 + static_cast<int>(points.uniform(0.0, 4.0));
        const auto order = static_cast<float>(points.uniform(0.0, 20.0 + 0.5 * std::abs(z)));
        Answer f[6];
        for (const BesselName name : of_order) f[name] = call(name, at, order, 1, n);
        SCOPED_TRACE(testing::Message() << "order " << order << " at " << at);
        const auto good = [](const Answer& a) { return a.ierr == 0 && a.nz == 0; };
        const bool all_j = good(f[J]) && good(f[Y]) && good(f[H1]) && good(f[H2]);
        for (std::size_t k = 0; k + 1 < static_cast<std::size_t>(n); ++k) {
            if (good(f[I]) && good(f[K])) expect_sum(f[I][k] * f[K][k + 1], f[I][k + 1] * f[K][k], 1.0 / z);
            if (!all_j) continue;
            ++in_range;
            expect_sum(f[J][k + 1] * f[Y][k], -f[J][k] * f[Y][k + 1], 2.0 / (std::numbers::pi * z));
            expect_sum(f[H1][k + 1] * f[H2][k], -f[H1][k] * f[H2][k + 1], -4.0 * i / (std::numbers::pi * z));
            expect_sum(f[H1][k], f[H2][k], 2.0 * f[J][k]);
            expect_sum(f[J][k], i * f[Y][k], f[H1][k]);
            if (k == 0) continue;
            const dcomplex twice = 2.0 * (double{order} + static_cast<double>(k)) / z;
            for (const BesselName name : {J, Y, H1, H2}) expect_sum(f[name][k - 1], f[name][k + 1], twice * f[name][k]);
        }
    }
    EXPECT_GT(in_range, 3000);
}

TEST(Bessel, AiryWronskianAndConjugates) {
    Points points;
    for (int trial = 0; trial < 3000 && !HasFailure(); ++trial) {
        const nxl_c z = points.next(0.01, 20.0);
        SCOPED_TRACE(testing::Message() << z);
        const dcomplex ai = call(A0, z, 0, 1)[0], ai1 = call(A1, z, 0, 1)[0], bi = call(B0, z, 0, 1)[0],
                       bi1 = call(B1, z, 0, 1)[0];
        if (std::abs(ai) > 0.0 && bi != dcomplex(unset)) expect_sum(ai * bi1, -ai1 * bi, std::numbers::inv_pi);
        for (const BesselName name : {I, J, K, Y, H1, A0, A1, B0, B1})
            for (const int kode : {1, 2}) {
                const Answer a = call(name, z, 1.25F, kode),
                             b = call(name == H1 ? H2 : name, std::conj(z), 1.25F, kode);
                if (a.ierr == 0) EXPECT_EQ(a.cy[0], std::conj(b.cy[0])) << bessel_texts[name];
                EXPECT_EQ(a.ierr, b.ierr);
            }
    }
}

dcomplex kode_2_factor(BesselName name, dcomplex z) {
    const dcomplex i(0.0, 1.0);
    if (name == I) return std::exp(-std::abs(z.real()));
    if (name == K) return std::exp(z);
    return name == H1 ? std::exp(-i * z) : name == H2 ? std::exp(i * z) : std::exp(-std::abs(z.imag()));
}

// Orders one by one, as a sequence, and scaled: across blocks of orders, and across the order where methods change.
// Underflows come at the end of I and J, at the start of K, and of H where it decays; zeros at the origin are none.
TEST(Bessel, SequencesAgreeWithSingleOrders) {
    for (const nxl_c z : {nxl_c(40, 25), nxl_c(-70, 1), nxl_c(3, -50), nxl_c(-0.5F, -30), nxl_c(65, 0), nxl_c(-65, 0),
                          nxl_c(0, 45), nxl_c(100, 30), nxl_c(-40, 110), nxl_c(20, -100)})
        for (const BesselName name : of_order)
            for (const float order : {0.0F, 0.375F, 70.5F}) {
                constexpr int n = 130;
                const Answer all = call(name, z, order, 1, n), scaled = call(name, z, order, 2, n);
                SCOPED_TRACE(testing::Message() << bessel_texts[name] << " " << order << " at " << z);
                int zeros = 0;
                const dcomplex factor = kode_2_factor(name, z);
                for (int k = 0; k < n; ++k) {
                    const auto at = static_cast<std::size_t>(k);
                    const Answer one = call(name, z, order + static_cast<float>(k), 1);
                    if (one.ierr == 2) EXPECT_EQ(all.ierr, 2);
                    zeros += one.nz;
                    if (all.ierr == 2 || one.ierr == 2) continue;
                    EXPECT_EQ(all.cy[at] == 0.0F, one.nz == 1) << k;
                    if (one.nz == 0) EXPECT_LE(ulps(all[at], one[0]), 1.0) << k;
                    const double size = std::abs(scaled[at]);
                    if (one.nz == 0 && scaled.ierr == 0 && size > 0.0)
                        EXPECT_LE(std::abs(all[at] * factor - scaled[at]), 4e-7 * size) << k;
                }
                if (all.ierr == 0) EXPECT_EQ(all.nz, zeros);
            }
}

TEST(Bessel, CodesAndWhatTheyLeaveUntouched) {
    struct Case {
        const char* functions; // by their places in of_order
        nxl_c z;
        float order;
        int kode, n, ierr;
    };
    const float limit = 0x1p22F, above = std::nextafter(limit, inf);
    const Case cases[] = {
        {"012345", {1, 1}, -0.5F, 1, 1, 1}, {"012345", {1, 1}, nan, 1, 1, 1},      {"012345", {1, 1}, 0, 0, 1, 1},
        {"012345", {1, 1}, 0, 3, 1, 1},     {"012345", {1, 1}, 0, 1, 0, 1},        {"012345", {1, 1}, 0, 1, -5, 1},
        {"2345", {0, 0}, 0, 1, 1, 1},       {"2345", {-0.0F, 0}, 2, 2, 3, 1},      {"01", {0, 0}, 0, 1, 2, 0},
        {"012345", {inf, 0}, -1, 1, 1, 1},  {"012345", {inf, 0}, 0, 2, 1, 4},      {"012345", {0, -inf}, 1, 1, 1, 4},
        {"012345", {nan, 1}, 1, 1, 1, 4},   {"012345", {1, nan}, 1, 1, 1, 4},      {"012345", {nan, inf}, 1, 1, 1, 4},
        {"012345", {above, 0}, 0, 2, 1, 4}, {"012345", {3e6F, -3e6F}, 0, 2, 1, 4}, {"012345", {1, 1}, inf, 1, 1, 4},
        {"012345", {1, 1}, limit, 1, 2, 4}, {"01", {1, 1}, limit, 1, 1, 3},        {"2345", {1, 1}, limit, 1, 1, 2},
        {"012345", {limit, 0}, 0, 2, 1, 3}, {"012345", {0, 2048}, 0, 2, 1, 0},     {"012345", {0, 2049}, 0, 2, 1, 3},
        {"0", {90, 0}, 0, 1, 1, 0},         {"0", {95, 3}, 0, 1, 100, 2},          {"1345", {0, 95}, 0, 1, 1, -2},
        {"2", {-95, 0}, 0, 1, 1, 2},        {"2345", {2, 1}, 0, 1, 200, 2},        {"2345", {1e-30F, 0}, 1, 2, 2, 2},
        {"2345", {60, 1}, 0, 2, 200, 2},    {"2", {1e-40F, 0}, 0, 1, 1, 0},        {"2345", {1e-40F, 0}, 1, 1, 1, 2},
        {"012345", {1, 1}, 0, 1, 1, 0},
    };
    for (const Case& c : cases)
        for (const char* f = c.functions; *f; ++f) {
            const BesselName name = of_order[*f - '0'];
            const Answer a = call(name, c.z, c.order, c.kode, c.n);
            SCOPED_TRACE(testing::Message() << bessel_texts[name] << " " << c.order << " at " << c.z << " n " << c.n);
            const bool decays = name == H1; // of the functions that grow upwards the one that does not
            EXPECT_EQ(a.ierr, c.ierr == -2 ? (decays ? 0 : 2) : c.ierr);
            const bool untouched = std::ranges::all_of(a.cy, [](nxl_c v) { return v == unset; });
            EXPECT_EQ(untouched, a.ierr != 0 && a.ierr != 3);
            if (untouched) EXPECT_EQ(a.nz, 0);
        }
    const int kode = 1, n = 1;
    const float order = 0;
    for (const int m : {0, 3, -1}) {
        nxl_c z(1, 1), cy = unset;
        int nz = -1, ierr = -1;
        CBESH(&z, &order, &kode, &m, &n, &cy, &nz, &ierr);
        EXPECT_EQ(ierr, 1);
        EXPECT_EQ(nz, 0);
        EXPECT_EQ(cy, unset);
    }
}

TEST(Bessel, CodesOfAiryFunctions) {
    struct Case {
        nxl_c z;
        int id, kode, ai, bi;
    };
    const Case cases[] = {
        {{1, 1}, 2, 1, 1, 1},      {{1, 1}, -1, 1, 1, 1},  {{1, 1}, 0, 0, 1, 1},   {{1, 1}, 1, 3, 1, 1},
        {{inf, 0}, 5, 1, 1, 1},    {{inf, 0}, 0, 1, 4, 4}, {{0, nan}, 1, 2, 4, 4}, {{26010, 0}, 0, 2, 4, 4},
        {{-26000, 0}, 0, 2, 3, 3}, {{161, 0}, 1, 2, 0, 0}, {{0, 162}, 1, 2, 3, 3}, {{50, 0}, 0, 1, 0, 2},
        {{-50, 50}, 0, 1, 2, 2},   {{200, 0}, 0, 1, 3, 2}, {{0, 0}, 0, 1, 0, 0},
    };
    for (const Case& c : cases) {
        nxl_c ai = unset, bi = unset;
        int nz = -1, ierr = -1;
        SCOPED_TRACE(testing::Message() << c.z << " id " << c.id << " kode " << c.kode);
        CAIRY(&c.z, &c.id, &c.kode, &ai, &nz, &ierr);
        EXPECT_EQ(ierr, c.ai);
        EXPECT_EQ(nz, c.kode == 1 && c.z.real() >= 50.0F && c.ai != 1 && c.ai != 4);
        EXPECT_EQ(ai == unset, c.ai != 0 && c.ai != 3);
        CBIRY(&c.z, &c.id, &c.kode, &bi, &ierr);
        EXPECT_EQ(ierr, c.bi);
        EXPECT_EQ(bi == unset, c.bi != 0 && c.bi != 3);
    }
}

// The negative axis is the upper side's; real arguments have real values; no zero comes with a sign.
TEST(Bessel, AxesAndSignedZeros) {
    for (const float order : {0.0F, 0.5F, 3.0F, 2.7F, 200.0F})
        for (const float r : {0.7F, 21.0F, 180.0F})
            for (const int kode : {1, 2})
                for (const BesselName name : {I, J, K, Y, H1, H2, A0, A1, B0, B1}) {
                    SCOPED_TRACE(testing::Message() << bessel_texts[name] << " " << order << " at +-" << r);
                    EXPECT_EQ(call(name, {-r, -0.0F}, order, kode).cy, call(name, {-r, 0.0F}, order, kode).cy);
                    EXPECT_EQ(call(name, {-0.0F, r}, order, kode).cy, call(name, {0.0F, r}, order, kode).cy);
                    const Answer a = call(name, {r, -0.0F}, order, kode);
                    const bool real = name != H1 && name != H2;
                    if (real && (a.ierr == 0 || a.ierr == 3)) EXPECT_TRUE(is_plus_zero(a.cy[0].imag()));
                    if (name >= A0 && kode == 2 && name < B0) continue;
                    const Answer negative = call(name, {-r, 0}, order, kode);
                    if ((name >= A0 || ((name == I || name == J) && std::rint(order) == order)) &&
                        negative.ierr % 3 == 0)
                        EXPECT_TRUE(is_plus_zero(negative.cy[0].imag()));
                }
}

} // namespace
