#!/usr/bin/env python3
"""K and I of the orders nu and nu + 1, 50 digits rounded to 17, about every border of the regions and between them.
Needs mpmath.

    make_right_half_plane_table.py > tables/right_half_plane.csv
"""
import cmath
import itertools
import math

from mpmath import besseli, besseljzero, besselk, exp, fabs, log, mp, mpc, mpf, nint

mp.dps = 50
ORDERS = [0.0, 1e-7, 1 / 3, 0.5, 1.0, 2.75, 10.0, 37.5, 64.2, 85.0, 85.9]
ANGLES = [0.0, math.pi / 2, -math.pi / 2, 0.3, -1.2, math.pi / 2 - 1e-3, -math.pi / 2 + 1e-9, 0.9, -1e-6]


def radii(nu):
    """Points inside each region and on both sides of each border, by order."""
    borders = [2.0, 2.0 * math.sqrt(nu + 1.0), 21.78, 0.5 * (nu + 1.0) ** 2]
    return [1e-38, 1e-12, 0.04, 1.1, 5.0, 13.0, 60.0, 900.0, 4.2e6] + [b * s for b in borders for s in (0.999, 1.001)]


def argument(radius, angle):
    if angle == 0.0:
        return complex(radius, 0.0)
    if abs(angle) == math.pi / 2:
        return complex(0.0, math.copysign(radius, angle))
    return cmath.rect(radius, angle)


def scaled_pair(function, nu, z):
    """The scale, then real and imaginary parts of both mantissas."""
    pair = [function(mpf(nu) + k, mpc(z)) for k in (0, 1)]
    scale = nint(log(max(map(fabs, pair))))
    return [scale] + [part for f in pair for part in ((f * exp(-scale)).real, (f * exp(-scale)).imag)]


def rows():
    angles = itertools.cycle(ANGLES)
    for nu in ORDERS:
        for radius in radii(nu):
            yield nu, argument(radius, next(angles))
    for nu, count in ((0.0, 1), (0.0, 7), (1.0, 2), (1 / 3, 5), (10.0, 3), (64.2, 4), (85.0, 20)):
        yield nu, complex(0.0, float(besseljzero(nu, count)))  # I is near a zero


print("""\
# Written by make_right_half_plane_table.py: K and I of the orders nu and nu + 1, each value times exp(-scale).
# nu, Re z, Im z, scale of K, Re K, Im K, Re K up, Im K up, scale of I, Re I, Im I, Re I up, Im I up""")
for nu, z in rows():
    cells = [nu, z.real, z.imag] + scaled_pair(besselk, nu, z) + scaled_pair(besseli, nu, z)
    print(",".join("%.17g" % (float(cell) + 0.0) for cell in cells))  # + 0.0: no zero has a sign
