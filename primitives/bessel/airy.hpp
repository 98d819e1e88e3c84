// The Airy function Ai and its derivative in double precision, anywhere in the plane.
#pragma once
#include "service/types.hpp"

namespace nxl::bessel {

/// Ai(z) = value exp(-zeta), Ai'(z) = derivative exp(-zeta), zeta = 2/3 z sqrt(z), the principal root.
struct AiryPair {
    zcomplex value, derivative;
    zcomplex zeta;
};
AiryPair airy(zcomplex z);

} // namespace nxl::bessel
