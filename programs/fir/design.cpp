// The grid that REMEZ works on, and the way from its cosine coefficients to the taps.
#include "design.hpp"

#include "nxl.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace fir {
namespace {

using std::numbers::pi;

struct Grid {
    std::vector<double> frequency, desired, weight;

    int count() const { return static_cast<int>(frequency.size()); }
};

/// A symmetric filter of even length has a zero at 1/2: its amplitude is cos(pi f) times a sum of cosines.
double factor(bool even, double frequency) { return even ? std::cos(pi * frequency) : 1.0; }

/// Points at most `step` apart, both edges of each band among them; of an even length not 1/2 itself.
Grid grid_of(const std::vector<Band>& bands, bool even, double step) {
    Grid grid;
    for (const Band& band : bands) {
        const double margin = even ? 0.5 * std::min(step, band.last - band.first) : 0.0;
        const double last = std::min(band.last, 0.5 - margin);
        const int pieces = std::max(1, static_cast<int>(std::ceil((last - band.first) / step)));
        for (int i = 0; i <= pieces; ++i) {
            const double f = i == pieces ? last : band.first + (last - band.first) * i / pieces;
            grid.frequency.push_back(f);
            grid.desired.push_back(band.desired / factor(even, f));
            grid.weight.push_back(band.weight * factor(even, f));
        }
    }
    return grid;
}

struct Approximation {
    std::vector<double> alpha;
    double level;
    int used; // coefficients
};

Approximation approximate(const Grid& grid, int terms) {
    const int points = grid.count();
    const auto size = static_cast<std::size_t>(terms) + 2;
    std::vector<int> extrema(size); // zeros are no start, so that REMEZ takes its own
    std::vector<double> ad(size), x(size), y(size), a(size), p(size), q(size), alpha(size);
    REMEZ(&points, &terms, extrema.data(), ad.data(), x.data(), y.data(), grid.desired.data(), grid.frequency.data(),
          grid.weight.data(), a.data(), p.data(), q.data(), alpha.data());
    const auto behind = std::find(extrema.begin(), extrema.end(), points + 1);
    const auto first = static_cast<std::size_t>(extrema.front() - 1);
    double sum = 0.0;
    for (int k = 0; k < terms; ++k)
        sum += alpha[static_cast<std::size_t>(k)] * std::cos(2.0 * pi * k * grid.frequency[first]);
    alpha.resize(static_cast<std::size_t>(terms));
    return {alpha, grid.weight[first] * std::abs(grid.desired[first] - sum),
            static_cast<int>(behind - extrema.begin()) - 1};
}

/// Odd length: the tap k beside the middle one is alpha(k) / 2. Even length: by cos a cos b = (cos(a+b) + cos(a-b)) / 2
/// the factor cos(pi f) makes of each cosine of k two, of k + 1/2 and k - 1/2.
std::vector<double> taps_of(const std::vector<double>& alpha, int taps) {
    const auto count = static_cast<std::size_t>(taps), terms = alpha.size();
    std::vector<double> h(count);
    for (std::size_t k = 0; k < terms; ++k) {
        const double next = k + 1 < terms ? alpha[k + 1] : 0.0;
        const double of_cosine = k == 0 ? alpha[0] : 0.5 * alpha[k]; // seen from either side, 0 has a mirror image
        const double tap = count % 2 == 1 ? of_cosine : 0.5 * (of_cosine + 0.5 * next);
        const std::size_t upper = count / 2 + k; // of the two in the middle this is the later one
        h[upper] = tap;
        h[count - 1 - upper] = tap;
    }
    return h;
}

/// Within a band, on a grid four times as fine as that of the design.
Ripple ripple_of(const Amplitude& amplitude, const Band& band, double step) {
    const int pieces = std::max(1, static_cast<int>(std::ceil(4.0 * (band.last - band.first) / step)));
    Ripple ripple{.least = HUGE_VAL, .greatest = 0.0, .error = 0.0};
    for (int i = 0; i <= pieces; ++i) {
        const double there = amplitude(band.first + (band.last - band.first) * i / pieces);
        ripple.least = std::min(ripple.least, std::abs(there));
        ripple.greatest = std::max(ripple.greatest, std::abs(there));
        ripple.error = std::max(ripple.error, std::abs(there - band.desired));
    }
    return ripple;
}

} // namespace

/// Between points of the grid the error may be a little above its extrema there.
bool Filter::converged() const { return largest <= 1.1 * level || largest < 1e-12; }

Amplitude::Amplitude(const std::vector<double>& taps) : shift_(taps.size() % 2 == 1 ? 0.0 : 0.5) {
    const std::size_t terms = (taps.size() + 1) / 2;
    block_ = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(terms))));
    blocks_ = (static_cast<int>(terms) + block_ - 1) / block_;
    factor_.resize(static_cast<std::size_t>(block_) * static_cast<std::size_t>(blocks_));
    for (std::size_t k = 0; k < terms; ++k)
        factor_[k] = (k == 0 && shift_ == 0.0 ? 1.0 : 2.0) * taps[taps.size() / 2 + k];
}

/// cos(a + b) = cos a cos b - sin a sin b, a being the block's first angle and b the way from there.
double Amplitude::operator()(double frequency) const {
    const double angle = 2.0 * pi * frequency, one = 1.0, zero = 0.0;
    const int step = 1;
    std::vector<double> cosine(static_cast<std::size_t>(block_)), sine(cosine);
    std::vector<double> by_cosine(static_cast<std::size_t>(blocks_)), by_sine(by_cosine);
    for (std::size_t k = 0; k < cosine.size(); ++k) {
        cosine[k] = std::cos(angle * static_cast<double>(k));
        sine[k] = std::sin(angle * static_cast<double>(k));
    }
    dgemv("T", &block_, &blocks_, &one, factor_.data(), &block_, cosine.data(), &step, &zero, by_cosine.data(), &step);
    dgemv("T", &block_, &blocks_, &one, factor_.data(), &block_, sine.data(), &step, &zero, by_sine.data(), &step);
    double sum = 0.0;
    for (int b = 0; b < blocks_; ++b) {
        const double first = angle * (b * block_ + shift_);
        const auto k = static_cast<std::size_t>(b);
        sum += std::cos(first) * by_cosine[k] - std::sin(first) * by_sine[k];
    }
    return sum;
}

Filter design(int taps, const std::vector<Band>& bands, int density) {
    const bool even = taps % 2 == 0;
    if (even && bands.back().last == 0.5 && bands.back().desired != 0.0)
        throw Refusal("a filter of even length is zero at half the sampling rate: take an odd number of taps");
    const int terms = (taps + 1) / 2;
    double width = 0.0;
    for (const Band& band : bands) width += band.last - band.first;
    const double step = width / (static_cast<double>(density) * terms); // extrema share what the bands cover
    const Approximation best = approximate(grid_of(bands, even, step), terms);

    Filter filter{
        .taps = taps_of(best.alpha, taps), .ripple = {}, .level = best.level, .terms = terms, .used = best.used};
    const Amplitude amplitude(filter.taps);
    for (const Band& band : bands) {
        filter.ripple.push_back(ripple_of(amplitude, band, step));
        filter.largest = std::max(filter.largest, band.weight * filter.ripple.back().error);
    }
    return filter;
}

} // namespace fir
