// Ai anywhere, and Bi as a sum of Ai at arguments a third of a turn to either side (DLMF 9.2.10).
#include "primitives/bessel/airy_functions.hpp"
#include "primitives/bessel/airy.hpp"
#include "primitives/bessel/to_single.hpp"

namespace nxl::bessel {
namespace {

constexpr double half_root3 = 0.5 * std::numbers::sqrt3;

Code code_of_input(const AiryRequest& request, zcomplex z) {
    if (request.id < 0 || request.id > 1 || request.kode < 1 || request.kode > 2) return Code::bad_input;
    const double r = std::hypot(z.real(), z.imag()); // the argument of the exponentials has the size of its power 3/2
    return code_of_size(r * r * r, largest_size * largest_size);
}

/// Ai or Ai' at z from its scaled value; zeta belongs to z.
Scaled unscaled(const AiryPair& pair, i64 id) {
    return Scaled{id == 0 ? pair.value : pair.derivative, 0.0} * scaled_exp(-pair.zeta);
}

Scaled ai_of(zcomplex z, i64 id, bool scaled) {
    const AiryPair pair = airy(z);
    if (scaled) return {id == 0 ? pair.value : pair.derivative, 0.0};
    Scaled ai = unscaled(pair, id);
    if (z.imag() == 0.0) ai.value = ai.value.real();
    return ai;
}

/// Im z >= 0. z turned by a third has the power 3/2 of z with the other sign, unless it went across the negative axis.
Scaled bi_of(zcomplex z, i64 id, bool scaled) {
    const zcomplex zeta = 2.0 / 3.0 * z * std::sqrt(z);
    const zcomplex forth(-0.5, half_root3);                         // exp(2 pi i/3)
    const zcomplex factor(id == 0 ? half_root3 : -half_root3, 0.5); // exp(i pi/6), and that times forth
    const Scaled size{1.0, scaled ? -std::abs(zeta.real()) : 0.0};
    const Scaled first = std::conj(factor) * unscaled(airy(z * std::conj(forth), -zeta), id);
    if (z.imag() == 0.0) return Scaled{2.0 * first.value.real(), first.log_scale} * size; // the other is its conjugate
    const zcomplex ahead = z * forth;
    const Scaled second = factor * unscaled(airy(ahead, ahead.imag() < 0.0 ? zeta : -zeta), id);
    return (first + second) * size;
}

} // namespace

Code airy_ai(const AiryRequest& request, std::complex<float>* ai, i64* zeros) {
    *zeros = 0;
    const zcomplex z = without_signed_zeros(zcomplex(request.z));
    const Code size = code_of_input(request, z);
    if (!computes(size)) return size;
    const Single result = to_single(ai_of(z, request.id, request.kode == 2), false);
    if (result.overflow) return Code::overflow;
    *ai = result.value;
    *zeros = result.underflow;
    return size;
}

Code airy_bi(const AiryRequest& request, std::complex<float>* bi) {
    const zcomplex z = without_signed_zeros(zcomplex(request.z));
    const Code size = code_of_input(request, z);
    if (!computes(size)) return size;
    const bool below = z.imag() < 0.0;
    const Single result = to_single(bi_of(below ? std::conj(z) : z, request.id, request.kode == 2), below);
    if (result.overflow) return Code::overflow;
    *bi = result.value;
    return size;
}

} // namespace nxl::bessel
