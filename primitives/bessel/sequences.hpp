// The exported Bessel functions: n orders from a first one on.
#pragma once
#include "primitives/bessel/continuation.hpp"
#include "primitives/bessel/limits.hpp"

namespace nxl::bessel {

struct SequenceRequest {
    std::complex<float> z;
    float order;
    i64 kode; // 1, or 2 for the scaled function
    i64 n;
};

/// f(order + k, z) into cy[k], k = 0 ... n - 1. Where the code tells of nothing computed cy stays as it is.
/// zeros: how many results became 0 by underflow.
Code bessel_sequence(Function function, const SequenceRequest& request, std::complex<float>* cy, i64* zeros);

/// The same for the Hankel function of the first or second kind.
Code hankel_sequence(i64 kind, const SequenceRequest& request, std::complex<float>* cy, i64* zeros);

} // namespace nxl::bessel
