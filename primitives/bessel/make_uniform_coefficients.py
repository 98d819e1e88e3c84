#!/usr/bin/env python3
"""Prints uniform_coefficients.hpp: Taylor series of Olver's A_k and B_k around the turning point. Needs mpmath.

The explicit sums (DLMF 10.20.10, 10.20.11) are taken on a circle around zeta = 0, where nothing cancels, and give the
Taylor coefficients as trapezoidal Cauchy integrals. The functions have their nearest singularity at |zeta| = 2.81.
"""
from fractions import Fraction

import mpmath
from mpmath import mpc, mpf

mpmath.mp.dps = 50
RADIUS, POINTS = mpf("1.3"), 160
A_COUNT, B_COUNT = 3, 3
ORDER = 86  # the smallest order: a term that it makes invisible is left out
INVISIBLE = 2e-18


def debye_polynomials(count):
    """U_0 to U_count, exact: the coefficients of p^0, p^1, ... (DLMF 10.41.9)."""
    polynomials = [[Fraction(1)]]
    for _ in range(count):
        u = polynomials[-1]
        following = [Fraction(0)] * (len(u) + 3)
        for power, c in enumerate(u):
            following[power + 1] += c * (Fraction(power, 2) + Fraction(1, 8 * (power + 1)))
            following[power + 3] -= c * (Fraction(power, 2) + Fraction(5, 8 * (power + 3)))
        polynomials.append(following)
    return polynomials


def airy_coefficients(count):
    u, v = [Fraction(1)], [Fraction(1)]
    for k in range(1, count):
        u.append(u[-1] * (6 * k - 5) * (6 * k - 3) * (6 * k - 1) / ((2 * k - 1) * 216 * k))
        v.append(u[-1] * Fraction(6 * k + 1, 1 - 6 * k))
    return u, v


def exact(x):
    return mpf(x.numerator) / x.denominator


DEBYE = [[exact(c) for c in p] for p in debye_polynomials(2 * A_COUNT)]
AIRY_U, AIRY_V = [[exact(c) for c in s] for s in airy_coefficients(2 * A_COUNT)]


def cubic_factor(s):
    """F in zeta = s^2 F^(2/3), s^2 = 1 - z^2."""
    return mpf(3) / 2 * (mpmath.atanh(s) - s) / s**3


def root_at(zeta, guess):
    """s with s^2 F(s)^(2/3) = zeta."""
    return mpmath.findroot(lambda s: s * cubic_factor(s) ** (mpf(1) / 3) - mpmath.sqrt(zeta), guess)


def sums(zeta, s):
    """A_k and B_k by the explicit sums; the roots of zeta and s belong together."""
    root = s * cubic_factor(s) ** (mpf(1) / 3)
    polynomial = [sum(c * s**-k for k, c in enumerate(p)) for p in DEBYE]
    step = mpf(3) / 2 / root**3
    a = [sum(step**j * AIRY_V[j] * polynomial[2 * k - j] for j in range(2 * k + 1)) for k in range(A_COUNT)]
    b = [-sum(step**j * AIRY_U[j] * polynomial[2 * k + 1 - j] for j in range(2 * k + 2)) / root for k in range(B_COUNT)]
    return a + b


values = []
guess = root_at(RADIUS, mpf("0.95"))
for i in range(POINTS // 2 + 1):
    zeta = RADIUS * mpmath.expjpi(mpf(2 * i) / POINTS)
    guess = root_at(zeta, guess)
    values.append(sums(zeta, guess))


def taylor(index, n):
    ends = values[0][index] + values[-1][index] * (-1) ** n
    inner = sum(values[i][index] * mpmath.expjpi(-mpf(2 * i * n) / POINTS) for i in range(1, POINTS // 2))
    return mpmath.re(ends + 2 * mpmath.re(inner)) / POINTS / RADIUS**n


def array(name, index, power):
    coefficients = [taylor(index, n) for n in range(60)]
    while abs(coefficients[-1]) < INVISIBLE * mpf(ORDER) ** power:
        coefficients.pop()
    print("inline constexpr double %s[] = {" % name)
    print("\n".join("    %s," % repr(float(c)) for c in coefficients))
    print("};")


assert abs(taylor(A_COUNT, 0) - mpf(2) ** (mpf(1) / 3) / 70) < mpf(10) ** -25
assert abs(taylor(1, 0) + mpf(1) / 225) < mpf(10) ** -25
print("""// Taylor coefficients, in zeta around the turning point, of A_1 to A_%d and B_0 to B_%d of Olver's expansions: as many as
// count for orders from %d on within |zeta| <= 1. Printed by make_uniform_coefficients.py.
#pragma once

namespace nxl::bessel {

// clang-format off""" % (A_COUNT - 1, B_COUNT - 1, ORDER))
for k in range(1, A_COUNT):
    array("olver_a%d" % k, k, 2 * k)
for k in range(B_COUNT):
    array("olver_b%d" % k, A_COUNT + k, 2 * k + 1)
print("""// clang-format on

} // namespace nxl::bessel""")
