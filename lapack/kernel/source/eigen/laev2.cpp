// dlaev2, ZLAEV2: rt1 is accurate to a few units, rt2 as far as a c - b^2 does not cancel. Jacobi's rotation, with the
// larger of the two forms of its tangent: Golub and Van Loan, Matrix Computations, 4th ed., section 8.5.2.
#include "lapack/kernel/source/eigen/laev2.hpp"
#include <cmath>
#include <utility>

namespace nxl {
namespace {

/// sqrt(x^2 + y^2) of numbers that are not negative, by the ratio of the smaller to the larger.
double length(double x, double y) {
    const double larger = x > y ? x : y, ratio = (x > y ? y : x) / larger;
    return larger == 0.0 ? 0.0 : larger * std::sqrt(1.0 + ratio * ratio);
}

} // namespace

void laev2(double a, double b, double c, double& rt1, double& rt2, double& cs1, double& sn1) {
    const double sum = a + c, difference = a - c, twice = b + b;
    const double root = length(std::fabs(difference), std::fabs(twice));
    double larger = a, smaller = c;
    if (std::fabs(c) > std::fabs(a)) std::swap(larger, smaller);
    const double sign = sum < 0.0 ? -1.0 : 1.0;
    if (sum == 0.0) {
        rt1 = 0.5 * root;
        rt2 = -0.5 * root;
    } else {
        rt1 = 0.5 * (sum + sign * root);
        rt2 = larger / rt1 * smaller - b / rt1 * b; // the determinant by rt1, in this order within the range
    }
    // The tangent, or cotangent, of the angle of (difference, 2b), whichever does not cancel.
    const double turn = difference >= 0.0 ? 1.0 : -1.0, far = difference + turn * root;
    if (std::fabs(far) > std::fabs(twice)) {
        const double cotangent = -twice / far;
        sn1 = 1.0 / std::sqrt(1.0 + cotangent * cotangent);
        cs1 = cotangent * sn1;
    } else if (twice == 0.0) {
        cs1 = 1.0;
        sn1 = 0.0;
    } else {
        const double tangent = -far / twice;
        cs1 = 1.0 / std::sqrt(1.0 + tangent * tangent);
        sn1 = tangent * cs1;
    }
    if (sign != turn) return;
    const double kept = cs1; // that was the vector of rt2
    cs1 = -sn1;
    sn1 = kept;
}

void nxl_lapack_zlaev2(const zcomplex& a, const zcomplex& b, const zcomplex& c, double& rt1, double& rt2, double& cs1,
                       zcomplex& sn1) {
    const double size = std::abs(b);
    const zcomplex phase = size == 0.0 ? zcomplex(1.0) : zcomplex(b.real() / size, -b.imag() / size);
    double sine = 0.0;
    laev2(a.real(), size, c.real(), rt1, rt2, cs1, sine);
    sn1 = phase * sine;
}

} // namespace nxl
