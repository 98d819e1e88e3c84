// CBLAS level 1 on a few numbers whose results are known.
#include "nxl_cblas.h"
#include <array>
#include <complex>
#include <gtest/gtest.h>

namespace {

using zcomplex = std::complex<double>;
using Reals = std::array<double, 4>;
using Complexes = std::array<zcomplex, 2>;

const Reals x{1.0, -7.0, 3.0, 2.0};
const Complexes u{zcomplex(3.0, -4.0), zcomplex(0.0, 1.0)}, v{zcomplex(1.0, 2.0), zcomplex(-2.0, 5.0)};

TEST(CblasLevel1, Sums) {
    zcomplex sum;
    cblas_zdotu_sub(2, u.data(), 1, v.data(), -1, &sum);
    EXPECT_EQ(sum, u[0] * v[1] + u[1] * v[0]);
    cblas_zdotc_sub(2, u.data(), 1, v.data(), 1, &sum);
    EXPECT_EQ(sum, std::conj(u[0]) * v[0] + std::conj(u[1]) * v[1]);
    EXPECT_EQ(cblas_ddot(2, x.data(), 2, x.data(), -2), 6.0);
    EXPECT_DOUBLE_EQ(cblas_dnrm2(2, x.data() + 1, 2), std::sqrt(53.0));
    EXPECT_DOUBLE_EQ(cblas_dznrm2(2, u.data(), 1), std::sqrt(26.0));
    EXPECT_EQ(cblas_dasum(4, x.data(), 1), 13.0);
    EXPECT_EQ(cblas_dzasum(2, u.data(), 1), 8.0);
}

TEST(CblasLevel1, PositionsCountFromZero) {
    EXPECT_EQ(cblas_idamax(4, x.data(), 1), 1U);
    EXPECT_EQ(cblas_idamax(0, x.data(), 1), 0U);
    EXPECT_EQ(cblas_idamin(3, x.data() + 1, 1), 2U);
    EXPECT_EQ(cblas_izamax(2, v.data(), 1), 1U);
    EXPECT_EQ(cblas_izamin(2, u.data(), 1), 1U);
}

TEST(CblasLevel1, Updates) {
    Reals a = x, b{10.0, 20.0, 30.0, 40.0};
    cblas_daxpy(2, 2.0, a.data(), 2, b.data(), 1);
    EXPECT_EQ(b, (Reals{12.0, 26.0, 30.0, 40.0}));
    cblas_dswap(2, a.data(), 1, b.data(), -1);
    EXPECT_EQ(a, (Reals{26.0, 12.0, 3.0, 2.0}));
    cblas_dcopy(2, a.data(), 1, b.data() + 2, 1);
    cblas_dscal(2, 0.5, b.data(), 2);
    EXPECT_EQ(b, (Reals{-3.5, 1.0, 13.0, 12.0}));
    Complexes c = u, d = v;
    const zcomplex factor(0.0, 1.0);
    cblas_zaxpy(2, &factor, c.data(), 1, d.data(), 1);
    EXPECT_EQ(d, (Complexes{zcomplex(5.0, 5.0), zcomplex(-3.0, 5.0)}));
    cblas_zscal(1, &factor, d.data(), 1);
    cblas_zdscal(1, 2.0, d.data() + 1, 1);
    EXPECT_EQ(d, (Complexes{zcomplex(-5.0, 5.0), zcomplex(-6.0, 10.0)}));
    cblas_zswap(1, c.data(), 1, d.data(), 1);
    cblas_zcopy(1, d.data(), 1, d.data() + 1, 1);
    EXPECT_EQ(d, (Complexes{u[0], u[0]}));
    EXPECT_EQ(c[0], zcomplex(-5.0, 5.0));
}

TEST(CblasLevel1, Rotations) {
    double a = 3.0, b = 4.0, c = 0.0, s = 0.0;
    cblas_drotg(&a, &b, &c, &s);
    EXPECT_DOUBLE_EQ(a, 5.0);
    EXPECT_DOUBLE_EQ(s, 0.8);
    Reals p{3.0, 0.0, 4.0, 0.0};
    cblas_drot(1, p.data(), 1, p.data() + 2, 1, 0.0, 1.0);
    EXPECT_EQ(p, (Reals{4.0, 0.0, -3.0, 0.0}));
    const std::array<double, 5> h{0.0, 0.0, 2.0, 3.0, 0.0}; // (x, y) := (x + 3 y, 2 x + y)
    cblas_drotm(1, p.data(), 1, p.data() + 2, 1, h.data());
    EXPECT_EQ(p, (Reals{-5.0, 0.0, 5.0, 0.0}));
    double d1 = 1.0, d2 = 1.0, x1 = 2.0;
    std::array<double, 5> made{};
    cblas_drotmg(&d1, &d2, &x1, 0.0, made.data());
    EXPECT_EQ(made[0], -2.0);
    zcomplex f(3.0, 0.0), g(0.0, 4.0), sine;
    cblas_zrotg(&f, &g, &c, &sine);
    EXPECT_DOUBLE_EQ(c, 0.6);
    EXPECT_NEAR(std::abs(sine - zcomplex(0.0, -0.8)), 0.0, 1e-15);
    Complexes q = u;
    cblas_zdrot(1, q.data(), 1, q.data() + 1, 1, 0.0, 1.0);
    EXPECT_EQ(q, (Complexes{u[1], -u[0]}));
}

} // namespace
