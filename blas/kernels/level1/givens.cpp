// drotg, zrotg, drotmg: the construction of plane rotations.
// Method: Lawson, Hanson, Kincaid and Krogh, Basic Linear Algebra Subprograms for Fortran usage, ACM TOMS 5 (1979).
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

// drotg: c and s with   [ c  s] [a]   [r]        zrotg: c real,   [    c     s] [a]   [r]
//                       [-s  c] [b] = [0],                        [-conj(s)  c] [b] = [0].
//
// drotmg keeps scale factors d1 and d2 apart, so that two entries of H are 1 or -1 and the rotation of a pair takes two
// products in place of four. H (x1, y1) has a second component of zero.
double modulus(double re, double im) { return __builtin_sqrt(re * re + im * im); }

// Bounds within which drotmg keeps d1 and d2: beyond them, products of many rotations would leave the range.
constexpr double gam = 4096.0;
constexpr double gam_squared = 16777216.0;
constexpr double reciprocal_gam_squared = 5.960464477539e-08; // a rounded literal, not 2^-24: results depend on it

/// The modified rotation under construction; `flag` tells which entries of H are implied.
struct ModifiedGivens {
    double flag = -1.0;
    double h11 = 0.0, h21 = 0.0, h12 = 0.0, h22 = 0.0;

    /// Before a row of H is rescaled, its implied entries become explicit.
    void make_explicit() {
        if (flag < 0.0) return;
        if (flag == 0.0) h11 = h22 = 1.0;
        else h21 = -1.0, h12 = 1.0;
        flag = -1.0;
    }

    void write(double* param) const {
        param[0] = flag;
        if (flag <= 0.0) param[2] = h21, param[3] = h12;
        if (flag != 0.0) param[1] = h11, param[4] = h22;
    }
};

/// A zero or an infinite d never gets into the bounds; without this test rescale() would not end.
bool needs_rescaling(double d) {
    const double size = __builtin_fabs(d);
    return d != 0.0 && __builtin_isfinite(d) && (size <= reciprocal_gam_squared || size >= gam_squared);
}

/// Brings |d| between gam^-2 and gam^2; the row of H and, for the first row, x move the other way.
void rescale(ModifiedGivens& h, double& d, double& a, double& b, double* x) {
    while (needs_rescaling(d)) {
        h.make_explicit();
        const bool small = __builtin_fabs(d) <= reciprocal_gam_squared;
        const double factor = small ? 1.0 / gam : gam;
        d *= small ? gam_squared : 1.0 / gam_squared;
        a *= factor;
        b *= factor;
        if (x) *x *= factor;
    }
}

} // namespace

/// b becomes z, from which c and s can be recovered: s where that is the smaller one, else 1 / c, or 1 when c is 0.
/// Division by the sum of the magnitudes keeps the squares in range.
void drotg(double& a, double& b, double& c, double& s) {
    const double abs_a = __builtin_fabs(a), abs_b = __builtin_fabs(b);
    const double roe = abs_a <= abs_b ? b : a;
    const double scale = abs_a + abs_b;
    if (scale == 0.0) {
        c = 1.0;
        s = a = b = 0.0;
        return;
    }
    const double ra = a / scale, rb = b / scale;
    double r = scale * __builtin_sqrt(ra * ra + rb * rb);
    if (roe < 0.0) r = -r;
    c = a / r;
    s = b / r;
    double z = s;
    if (abs_a <= abs_b) z = c != 0.0 ? 1.0 / c : 1.0;
    a = r;
    b = z;
}

/// r has the argument of a. When a is 0, b is taken as it stands, with c = 0 and s = 1.
void zrotg(zcomplex& a, const zcomplex& b, double& c, zcomplex& s) {
    double* ca = parts(&a);
    const double ar = ca[0], ai = ca[1], br = parts(&b)[0], bi = parts(&b)[1];
    double* sine = parts(&s);
    const double abs_a = modulus(ar, ai);
    if (abs_a == 0.0) {
        c = 0.0;
        sine[0] = 1.0;
        sine[1] = 0.0;
        ca[0] = br;
        ca[1] = bi;
        return;
    }
    const double scale = abs_a + modulus(br, bi);
    const double r0 = ar / scale, r1 = ai / scale, r2 = br / scale, r3 = bi / scale;
    const double norm = scale * __builtin_sqrt((r0 * r0 + r1 * r1) + (r2 * r2 + r3 * r3));
    const double alpha_re = ar / abs_a, alpha_im = ai / abs_a;
    c = abs_a / norm;
    sine[0] = (alpha_re * br + alpha_im * bi) / norm; // alpha conj(b) / norm
    sine[1] = (alpha_im * br - alpha_re * bi) / norm;
    ca[0] = alpha_re * norm;
    ca[1] = alpha_im * norm;
}

/// With |q1| > |q2| the diagonal of H is 1, implied by flag 0; else x and y change places, and the other diagonal is
/// implied, by flag 1. Where no rotation exists all becomes zero.
void drotmg(double& d1, double& d2, double& x1, const double& y1, double* param) {
    const double p1 = d1 * x1, p2 = d2 * y1;
    if (!(d1 < 0.0) && p2 == 0.0) {
        param[0] = -2.0;
        return;
    }
    const double q1 = p1 * x1, q2 = p2 * y1;
    const bool first_row_leads = __builtin_fabs(q1) > __builtin_fabs(q2);
    ModifiedGivens h;
    double u = -1.0;
    if (d1 < 0.0) {
        // No rotation exists; H stays zero.
    } else if (first_row_leads) {
        h.h21 = -y1 / x1;
        h.h12 = p2 / p1;
        u = 1.0 - h.h12 * h.h21;
    } else if (!(q2 < 0.0)) {
        h.h11 = p1 / p2;
        h.h22 = x1 / y1;
        u = 1.0 + h.h11 * h.h22;
    }
    if (u <= 0.0) {
        d1 = d2 = x1 = 0.0;
        ModifiedGivens{}.write(param);
        return;
    }
    h.flag = first_row_leads ? 0.0 : 1.0;
    const double new_d1 = (first_row_leads ? d1 : d2) / u;
    d2 = (first_row_leads ? d2 : d1) / u;
    d1 = new_d1;
    x1 = (first_row_leads ? x1 : y1) * u;
    rescale(h, d1, h.h11, h.h12, &x1);
    rescale(h, d2, h.h21, h.h22, nullptr);
    h.write(param);
}

} // namespace nxl::NXL_TARGET
