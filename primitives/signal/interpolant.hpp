// A cosine polynomial given by its values at some frequencies, in barycentric form. The memory is the caller's.
#pragma once
#include "service/types.hpp"

namespace nxl::signal {

/// cos(2 pi f), exactly enough that differences of two such numbers are accurate relative to themselves: near 0 and
/// near 1/2 the cosines of neighbours agree in most of their digits, which a single double would lose.
struct Cosine {
    double high, low;
};
Cosine cosine_of(double frequency);

/// mantissa times 2^exponent: products of thousands of factors, which would leave the range of doubles.
struct ScaledProduct {
    double mantissa = 1.0;
    i64 exponent = 0;

    /// Call this at least once in 8 factors, none of them beyond 2^-110 to 2^110.
    void rescale();
    void times(double factor) { mantissa *= factor; }
};

/// Through `count` >= 2 nodes of ascending frequency. Berrut and Trefethen, SIAM Review 46 (2004).
struct Interpolant {
    i64 count;
    double* high; ///< the nodes: cosines of their frequencies
    double* low;
    double* weight; ///< 2^-weight_exponent / product of a node's differences to all others; the largest is about 1
    double* value;  ///< at the nodes
    i64 weight_exponent = 0;

    void set_node(i64 k, double frequency);
    /// The weights, once all nodes are set; they alternate in sign. Nodes that coincide count as just apart. The values
    /// come after this.
    void compute_weights();
    double operator()(double frequency) const;
};

} // namespace nxl::signal
