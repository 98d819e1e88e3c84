// Linear-phase filters of symmetric impulse response, optimal in the sense of the largest weighted error, by REMEZ.
#pragma once

#include <stdexcept>
#include <vector>

namespace fir {

/// Frequencies are in cycles per sample, 0 to 0.5.
struct Band {
    double first, last;
    double desired; // magnitude
    double weight;
};

/// What is left of a band in the design.
struct Ripple {
    double least, greatest; // magnitudes
    double error;           // the largest distance from what is desired
};

struct Filter {
    std::vector<double> taps;   // symmetric about the middle
    std::vector<Ripple> ripple; // one per band
    double level = 0.0;         // the weighted error that all extrema have
    double largest = 0.0;       // the largest weighted error anywhere in the bands
    int terms = 0, used = 0;    // free coefficients, and those that rounding left

    bool converged() const;
};

/// The amplitude of a symmetric filter, a real number: its response is that times a delay of half the length. Made for
/// many frequencies: cosines of sums share those of their terms, so that one takes about 4 sqrt(taps / 2) of them.
class Amplitude {
  public:
    explicit Amplitude(const std::vector<double>& taps);
    double operator()(double frequency) const;

  private:
    int block_, blocks_;         // cosines are counted in blocks, the last of them filled up
    double shift_;               // the k-th is of 2 pi f (k + shift)
    std::vector<double> factor_; // block_ by blocks_, column-major
};

/// There is no such filter; the text says why.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The filter of so many taps, 3 or more. `density`: points of the grid per coefficient. Bands ascend and are apart.
Filter design(int taps, const std::vector<Band>& bands, int density);

} // namespace fir
