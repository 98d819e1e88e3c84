// REMEZ: what characterises a best approximation, closed forms, and everything that a caller may get wrong.
#include "nxl.h"
#include "tests/support/guarded_vector.hpp"
#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <utility>

namespace {

struct Band {
    double first, last, desired, weight;
};

struct Grid {
    std::vector<double> frequency, desired, weight;

    int count() const { return static_cast<int>(frequency.size()); }
};

/// `density` points a coefficient.
Grid grid_of(const std::vector<Band>& bands, int terms, double density = 16.0) {
    Grid grid;
    for (const Band& band : bands) {
        const int pieces = std::max(1, static_cast<int>(2.0 * density * terms * (band.last - band.first)));
        for (int i = 0; i <= pieces; ++i) {
            grid.frequency.push_back(i == pieces ? band.last : band.first + (band.last - band.first) * i / pieces);
            grid.desired.push_back(band.desired);
            grid.weight.push_back(band.weight);
        }
    }
    return grid;
}

Grid sampled(const std::function<double(double)>& desired, int points) {
    Grid grid = grid_of({{0.0, 0.5, 0.0, 1.0}}, points - 1, 1.0);
    for (int i = 0; i < grid.count(); ++i)
        grid.desired[static_cast<std::size_t>(i)] = desired(grid.frequency[static_cast<std::size_t>(i)]);
    return grid;
}

/// A call with every array at an unreadable page, of exactly the promised size.
struct Fit {
    const Grid grid;
    int terms;
    nxl_test::StridedVector<double> ad, x, y, a, p, q, alpha;
    std::vector<int> extrema;

    Fit(const Grid& points, int nfc, std::vector<int> start = {})
        : grid(points),
          terms(nfc),
          ad(size(), 1, 1),
          x(size(), 1, 2),
          y(size(), 1, 3),
          a(size(), 1, 4),
          p(size(), 1, 5),
          q(size(), 1, 6),
          alpha(size(), 1, 7),
          extrema(std::move(start)) {
        extrema.resize(static_cast<std::size_t>(size()));
        const int points_count = grid.count();
        REMEZ(&points_count, &terms, extrema.data(), ad.data(), x.data(), y.data(), grid.desired.data(),
              grid.frequency.data(), grid.weight.data(), a.data(), p.data(), q.data(), alpha.data());
    }
    int size() const { return std::max(terms, 0) + 2; }

    long double error_at(int place) const { // from 1
        const auto i = static_cast<std::size_t>(place - 1);
        const long double cosine = cosl(2.0L * acosl(-1.0L) * static_cast<long double>(grid.frequency[i]));
        long double sum = 0.0L, next = 0.0L; // Clenshaw's recurrence
        for (int k = terms - 1; k > 0; --k)
            next = std::exchange(sum, static_cast<long double>(alpha[k]) + 2.0L * cosine * sum - next);
        sum = static_cast<long double>(alpha[0]) + cosine * sum - next;
        return grid.weight[i] * (grid.desired[i] - sum);
    }
    double level() const { return static_cast<double>(std::abs(error_at(extrema[0]))); }
    /// Extrema ascend, alternate and are equal to `tolerance`; nothing on the grid, each `stride`th point, is above.
    void expect_alternation(double tolerance, int stride = 1) const {
        for (int k = 0; k <= terms; ++k) {
            const auto i = static_cast<std::size_t>(k);
            const double sign = (k % 2 == 0) == (error_at(extrema[0]) > 0.0L) ? 1.0 : -1.0;
            EXPECT_NEAR(sign * static_cast<double>(error_at(extrema[i])), level(), tolerance * level()) << k;
            EXPECT_GT(extrema[i], k == 0 ? 0 : extrema[i - 1]);
        }
        EXPECT_EQ(extrema.back(), grid.count() + 1);
        for (int place = 1; place <= grid.count(); place += stride)
            ASSERT_LE(static_cast<double>(std::abs(error_at(place))), (1.0 + tolerance) * level()) << place;
        EXPECT_EQ(alpha[terms], 0.0);
        EXPECT_EQ(alpha[terms + 1], 0.0);
    }
    /// The largest error, as a caller sees it.
    double largest() const {
        long double largest = 0.0L;
        for (int place = 1; place <= grid.count(); ++place) largest = std::max(largest, std::abs(error_at(place)));
        return static_cast<double>(largest);
    }
};

const std::vector<Band> lowpass{{0.0, 0.2, 1.0, 1.0}, {0.25, 0.5, 0.0, 10.0}};

TEST(Remez, BestFitsAlternate) {
    const std::vector<Band> five{{0, .1, 0, 10}, {.12, .2, 1, 1}, {.22, .3, 0, 5}, {.32, .4, .5, 1}, {.42, .5, 0, 1}};
    const std::vector<Band> near_zero{{0.001, 0.004, 0, 10}, {0.006, 0.02, 1, 1}, {0.022, 0.5, 0, 5}};
    const std::vector<Band> notch{{0, 0.2, 1, 1}, {0.2001, 0.2002, 0, 1}, {0.21, 0.5, 1, 1}}; // equal spacing misses it
    for (const auto& bands : {lowpass, five, near_zero, notch})
        for (const int terms : {1, 2, 3, 10, 27, 40}) Fit(grid_of(bands, terms), terms).expect_alternation(1e-9);
}

TEST(Remez, PartsOfTheAxis) { // beyond them the fit is large, and with it the rounding of the coefficients
    for (const auto& [first, last] : {std::pair{0.0, 0.1}, {0.15, 0.35}, {0.4, 0.5}}) {
        const double middle = 0.5 * (first + last);
        const Fit fit(grid_of({{first, middle - 0.01, 1, 1}, {middle + 0.01, last, 0, 3}}, 6, 200.0), 6);
        double largest = 0.0;
        for (int k = 0; k < 6; ++k) largest = std::max(largest, std::abs(fit.alpha[k]));
        EXPECT_LE(largest, 1e7);
        fit.expect_alternation(1e-9 + 2e-13 * largest);
    }
}

TEST(Remez, LongFilters) { // a transition of 1.8 coefficients' width keeps the error near 6e-4
    for (const int terms : {500, 2000}) {
        const Grid grid = grid_of({{0.0, 0.2, 1, 1}, {0.2 + 1.8 / terms, 0.5, 0, 1}}, terms, 8.0);
        const Fit fit(grid, terms);
        fit.expect_alternation(terms == 500 ? 2e-9 : 2e-8, 29);
        EXPECT_NEAR(fit.level(), 5.6e-4, 0.2e-4);
    }
}

TEST(Remez, PowersHaveTheDeviationOfChebyshev) { // x^n, x = cos 2 pi f, by degree n - 1: 2^(1-n); x^n - T_n / 2^(n-1)
    for (const int n : {1, 2, 5, 12, 20}) {
        // The extrema, at multiples of 1 / (2 n), are on the grid.
        const Grid grid = sampled([n](double f) { return std::pow(std::cos(2.0 * M_PI * f), n); }, 24 * n + 1);
        const Fit fit(grid, n);
        EXPECT_NEAR(fit.level() * std::pow(2.0, n - 1), 1.0, 1e-9) << n;
        fit.expect_alternation(1e-9);
        for (int k = 0; k <= n; ++k) EXPECT_EQ(fit.extrema[static_cast<std::size_t>(k)], 24 * k + 1);
        // x^n = 2^(1-n) sum of (n over j) cos (n - 2 j) angle, the one at zero halved.
        double binomial = 1.0;
        for (int j = 1; 2 * j <= n; ++j) {
            binomial *= static_cast<double>(n - j + 1) / j;
            const double exact = std::pow(2.0, 1 - n) * binomial * (2 * j == n ? 0.5 : 1.0);
            EXPECT_NEAR(fit.alpha[n - 2 * j], exact, 1e-14);
        }
    }
}

TEST(Remez, OrderOfALowpassIsAsEstimated) { // Kaiser: attenuation of 14.6 width taps + 13 dB, equal weights
    const Grid grid = grid_of({{0.0, 0.2, 1, 1}, {0.25, 0.5, 0, 1}}, 31);
    EXPECT_NEAR(-20.0 * std::log10(Fit(grid, 31).level()), 14.6 * 0.05 * 60 + 13.0, 1.5);
}

TEST(Remez, AnyStartLeadsToTheSameFit) {
    const int terms = 30;
    const Grid grid = grid_of(lowpass, terms);
    const Fit reference(grid, terms);
    const auto shifted = [&](int first, int step) {
        std::vector<int> start;
        for (int k = 0; k <= terms; ++k) start.push_back(first + step * k);
        return start;
    };
    std::vector<int> all = shifted(1, 1), descending = shifted(1, 1), one_beyond = shifted(1, 12);
    std::reverse(descending.begin(), descending.end());
    one_beyond.back() = grid.count() + 1;
    std::vector<int> drawn;
    std::mt19937 bits(3); // NOLINT: the same at each run
    for (int place = 1; place <= grid.count(); ++place) all.push_back(place);
    std::sample(all.begin() + terms + 1, all.end(), std::back_inserter(drawn), terms + 1, bits);
    const int count = grid.count(), most = std::numeric_limits<int>::max();
    for (const auto& start :
         {shifted(1, 1), shifted(count - terms, 1), descending, one_beyond, drawn, shifted(0, 1), shifted(-5, 1),
          shifted(7, 0), std::vector<int>(31, most), std::vector<int>(31, -most - 1), reference.extrema}) {
        const Fit fit(grid, terms, start);
        fit.expect_alternation(1e-9);
        EXPECT_NEAR(fit.level(), reference.level(), 1e-11 * reference.level());
    }
    const Fit again(grid, terms);
    EXPECT_EQ(again.extrema, reference.extrema);
    for (int k = 0; k < terms; ++k) EXPECT_EQ(again.alpha[k], reference.alpha[k]);
}

TEST(Remez, NoiseConverges) { // errors thousands of times those of the set on the way
    std::mt19937_64 bits(3);  // NOLINT: the same at each run
    const Grid grid = sampled([&](double) { return static_cast<double>(bits() >> 11) * 0x1p-53; }, 321);
    Fit(grid, 20).expect_alternation(1e-9);
}

TEST(Remez, ExactFitsAreFound) {
    const Fit constant(grid_of({{0.0, 0.2, 3.0, 1.0}, {0.25, 0.5, 3.0, 10.0}}, 30), 30);
    EXPECT_NEAR(constant.alpha[0], 3.0, 1e-13);
    const Grid cosine = sampled([](double f) { return std::cos(6.0 * M_PI * f) - 0.5; }, 400);
    const Fit fit(cosine, 12);
    for (int k = 0; k < 12; ++k) EXPECT_NEAR(fit.alpha[k], k == 0 ? -0.5 : k == 3 ? 1.0 : 0.0, 1e-13) << k;
    const Grid zero = sampled([](double) { return 0.0; }, 100);
    const Fit nothing(zero, 5);
    for (int k = 0; k < 5; ++k) EXPECT_EQ(nothing.alpha[k], 0.0);
}

TEST(Remez, TermsBeyondRoundingAreLeftOut) { // least errors down to 1e-140, and gaps where a fit passes all bounds
    struct Case {
        std::vector<Band> bands;
        int terms;
        double density, largest;
    };
    const std::vector<Band> apart{{0, .05, 1, 1}, {.45, .5, 0, 1}}, part{{.2, .22, 1, 1}, {.23, .25, 0, 1}};
    for (const auto& [bands, terms, density, largest] :
         {Case{lowpass, 300, 16, 1e-5}, Case{lowpass, 1000, 4, 1e-5}, Case{apart, 30, 16, 1e-5},
          Case{apart, 101, 16, 1e-5}, Case{part, 30, 160, 0.1}}) {
        const Grid grid = grid_of(bands, terms, density);
        const Fit fit(grid, terms);
        EXPECT_LE(fit.largest(), largest) << terms;
        const auto used = std::find(fit.extrema.begin(), fit.extrema.end(), grid.count() + 1) - fit.extrema.begin();
        EXPECT_LE(used, terms);
        for (auto k = static_cast<int>(used) - 1; k < terms + 2; ++k) EXPECT_EQ(fit.alpha[k], 0.0) << k;
    }
}

TEST(Remez, TooFewPointsMakeZeros) {
    const std::vector<int> start{4, 5, 6, 7, 8, 9, 10};
    for (const int points : {5, 2}) {
        const Grid grid = sampled([](double f) { return f; }, points);
        const Fit fit(grid, 5, start);
        for (int k = 0; k < 7; ++k) EXPECT_EQ(fit.alpha[k], 0.0);
        EXPECT_EQ(fit.extrema, start);
    }
    for (const int terms : {0, -3, -2147483647 - 1}) {
        int extrema = 77;
        const int points = -1;
        REMEZ(&points, &terms, &extrema, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
              nullptr, nullptr);
        EXPECT_EQ(extrema, 77);
    }
    const Grid six = sampled([](double f) { return std::exp(f); }, 6); // as many points as extrema
    Fit(six, 5).expect_alternation(1e-9);
}

TEST(Remez, BadDataEnd) { // within the arrays and with places on the grid
    const double nan = std::nan(""), infinity = HUGE_VAL;
    const Grid good = grid_of(lowpass, 12);
    for (const double bad : {nan, infinity, -infinity, 0.0, -1.0, 1e308, 5e-324})
        for (auto member : {&Grid::desired, &Grid::frequency, &Grid::weight})
            for (const bool all : {false, true}) {
                Grid grid = good;
                auto& values = grid.*member;
                if (all) std::fill(values.begin(), values.end(), bad);
                values[values.size() / 2] = bad;
                const Fit fit(grid, 12);
                for (const int place : fit.extrema) {
                    EXPECT_GE(place, 1);
                    EXPECT_LE(place, grid.count() + 1);
                }
            }
}

} // namespace
