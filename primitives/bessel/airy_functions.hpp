// The exported Airy functions Ai and Bi and their derivatives.
#pragma once
#include "primitives/bessel/limits.hpp"

namespace nxl::bessel {

/// id 0: the function, 1: its derivative. kode 1, or 2 for the scaled function. Where the code tells of nothing
/// computed the result stays as it is. zeros: 1 when Ai became 0 by underflow.
struct AiryRequest {
    std::complex<float> z;
    i64 id, kode;
};
Code airy_ai(const AiryRequest& request, std::complex<float>* ai, i64* zeros);
Code airy_bi(const AiryRequest& request, std::complex<float>* bi);

} // namespace nxl::bessel
