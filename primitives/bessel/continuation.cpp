// All functions are real on the positive axis, so the lower half plane mirrors the upper one, where t = -i z lies in
// the right half plane: DLMF 10.27.6, 10.27.8, H2 = 2 J - H1, Y = i J - i H1. Beyond the imaginary
// axis: 10.34.1, 10.34.2; on the negative axis, which belongs to the upper half plane, 10.11.1 and 10.11.2.
#include "primitives/bessel/continuation.hpp"
#include <numbers>

namespace nxl::bessel {
namespace {

constexpr double pi = std::numbers::pi, two_over_pi = 2.0 / pi;
constexpr zcomplex imaginary_unit(0.0, 1.0);

/// The factor of KODE 2 for Im z >= 0.
Scaled scaling(Function function, zcomplex z) {
    const double x = z.real(), y = z.imag();
    switch (function) {
    case Function::i: return {1.0, -std::abs(x)};
    case Function::j:
    case Function::y: return {1.0, -y};
    case Function::k: return scaled_exp(z);
    case Function::h1: return scaled_exp({y, -x});
    default: return scaled_exp({-y, x});
    }
}

/// J or Y on the real axis.
Continuation on_real_axis(Function function, double x) {
    Continuation path{.t = {0.0, -std::abs(x)}, .on_axis = true};
    const bool negative = x < 0.0;
    if (function == Function::j) path.i = {1.0, negative ? 2 : 0};
    else path.k = {1.0, negative ? -2 : 0};
    if (function == Function::y && negative) path.i = {2.0 * imaginary_unit, 2, true};
    return path;
}

/// Im z >= 0, without a sign on zeros.
Continuation in_upper_half_plane(Function function, zcomplex z) {
    const double x = z.real(), y = z.imag();
    const zcomplex turned(y, 0.0 - x), mirrored(-x, 0.0 - y); // -i z and -z
    switch (function) {
    case Function::i:
        if (x == 0.0 && y > 0.0) return {.t = {0.0, -y}, .i = {1.0, 1}, .on_axis = true};
        return x < 0.0 ? Continuation{.t = mirrored, .i = {1.0, 2}} : Continuation{.t = z, .i = {1.0}};
    case Function::k:
        if (x >= 0.0) return {.t = z, .k = {1.0}};
        return {.t = mirrored, .i = {-pi * imaginary_unit}, .k = {1.0, -2}};
    case Function::j:
        if (y == 0.0) return on_real_axis(function, x);
        return {.t = turned, .i = {1.0, 1}};
    case Function::y:
        if (y == 0.0) return on_real_axis(function, x);
        return {.t = turned, .i = {imaginary_unit, 1}, .k = {-two_over_pi, -1}};
    case Function::h1: return {.t = turned, .k = {-two_over_pi * imaginary_unit, -1}};
    default: return {.t = turned, .i = {2.0, 1}, .k = {two_over_pi * imaginary_unit, -1}};
    }
}

Function conjugate_of(Function function) {
    if (function == Function::h1) return Function::h2;
    return function == Function::h2 ? Function::h1 : function;
}

} // namespace

Continuation continue_to(Function function, zcomplex z, bool scaled) {
    z = without_signed_zeros(z);
    // On the positive axis H2 is the conjugate of H1, which is the one with a single term.
    const bool conjugate = z.imag() < 0.0 || (function == Function::h2 && z.imag() == 0.0 && z.real() > 0.0);
    if (conjugate) {
        function = conjugate_of(function);
        z = without_signed_zeros(std::conj(z));
    }
    Continuation path = in_upper_half_plane(function, z);
    if (scaled) path.scale = scaling(function, z);
    path.conjugate = conjugate;
    return path;
}

} // namespace nxl::bessel
