// The Airy function Ai and its derivative in double precision, anywhere in the plane.
#pragma once
#include "service/types.hpp"

namespace nxl::bessel {

/// Ai(z) = value exp(-zeta), Ai'(z) = derivative exp(-zeta), zeta = 2/3 z sqrt(z), the principal root; on the negative
/// axis that of the upper side. There the products are real, and an imaginary part left by rounding may be dropped.
struct AiryPair {
    zcomplex value, derivative;
    zcomplex zeta;
};
AiryPair airy(zcomplex z);

/// The same for callers who know zeta better than z tells, which counts where zeta is large.
AiryPair airy(zcomplex z, zcomplex zeta);

} // namespace nxl::bessel
