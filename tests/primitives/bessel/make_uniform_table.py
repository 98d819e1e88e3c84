#!/usr/bin/env python3
"""I and K of large orders to 17 digits. Needs mpmath.

K is the integral of exp(-z cosh t + nu t) / 2 along the path of steepest descent through its saddle, by Gauss's rule on
short pieces: no expansion, and no limit on the order. I follows from K by the Wronskian, with I(nu + 1) / I(nu) from
its continued fraction. Where mpmath's own functions are fast, the result is held against them.

    make_uniform_table.py > tables/uniform.csv
"""
import cmath
import math

import mpmath
from mpmath import mpc, mpf

mpmath.mp.dps = 40
LARGEST = 4.2e6
DROP = 60.0  # the path ends where the integrand is exp(-DROP) of its largest value
NODES = [(mpf(x), mpf(w)) for x, w in mpmath.calculus.quadrature.GaussLegendre(mpmath.mp).calc_nodes(4, 150)]


def descend(nu, z, start, direction):
    """Points down the valley that leaves the saddle in this direction, each about 1.5 below the one before."""
    def slope(t):
        return nu - z * cmath.sinh(t)

    points, here, fallen = [start + direction], start + direction, 0.0
    while fallen < DROP:
        for _ in range(30):
            middle = here - 0.025 / slope(here)
            here -= 0.05 / slope(middle)
        fallen += 1.5
        points.append(here)
    return points


def path(nu, z):
    saddle = cmath.log((nu + cmath.sqrt(complex(nu) * nu + z * z)) / z)

    def fall(step):
        change = cmath.cosh(saddle) * (cmath.cosh(step) - 1) + cmath.sinh(saddle) * (cmath.sinh(step) - step)
        return (-z * change).real

    second = abs(z * cmath.cosh(saddle))
    radius = min((2.0 / second) ** 0.5 if second else math.inf, (6.0 / nu) ** (1 / 3))
    circle = [cmath.rect(radius, 2 * math.pi * k / 360) for k in range(360)]
    falls = [fall(step) for step in circle]
    valleys = [circle[k] for k in range(360) if falls[k] < falls[k - 1] and falls[k] <= falls[(k + 1) % 360]]
    right = min(valleys, key=lambda d: abs(cmath.phase(d)))
    left = min(valleys, key=lambda d: abs(cmath.phase(d * cmath.rect(1.0, -2 * math.pi / 3))))
    left *= cmath.rect(1.0, -0.15)  # a second saddle may lie straight ahead: pass it on the side of the path's end
    return descend(nu, z, saddle, left)[::-1] + [saddle] + descend(nu, z, saddle, right)


def k_value(nu, z):
    """K as mantissa and logarithm."""
    points = path(nu, z)
    exact = mpc(z)
    at_saddle = mpc(min(points, key=lambda t: abs(nu - z * cmath.sinh(t))))
    top = nu * at_saddle - exact * mpmath.cosh(at_saddle)
    total = mpc(0)
    for a, b in zip(points, points[1:]):
        middle, half = (mpc(a) + mpc(b)) / 2, (mpc(b) - mpc(a)) / 2
        for x, w in NODES:
            t = middle + half * x
            total += w * half * mpmath.exp(nu * t - exact * mpmath.cosh(t) - top)
    return total / 2 * mpmath.expj(mpmath.im(top)), mpmath.re(top)


def i_ratio(nu, z):
    """I(nu + 1) / I(nu), the continued fraction from far behind."""
    exact = mpc(z)
    ratio, two_over_z = mpc(0), 2 / exact
    for k in range(int(max(0.0, 1.02 * abs(z) - nu)) + 4 * int(abs(z) ** 0.5) + 400, 0, -1):
        ratio = 1 / ((nu + k) * two_over_z + ratio)
    return ratio


def references(nu, z):
    nu = mpf(nu)
    (k0, log0), (k1, log1) = k_value(nu, z), k_value(nu + 1, z)
    i0 = 1 / (mpc(z) * (k1 * mpmath.exp(log1 - log0) + i_ratio(nu, z) * k0))
    if nu < 101 and 0.05 * nu < abs(z) < 30 * nu:
        for other, value in ((mpmath.besselk, k0 * mpmath.exp(log0)), (mpmath.besseli, i0 / mpmath.exp(log0))):
            assert abs(value / other(nu, z) - 1) < mpf(10) ** -22, (nu, z, value)
    return (i0, -log0), (k0, log0)


def printed(pair):
    mantissa, log_scale = pair
    log_of_size = log_scale + mpmath.log(abs(mantissa))
    scale = float(log_of_size)
    rest = mantissa * mpmath.exp(log_scale - mpf(scale))
    return [float(part) if abs(part) > mpf(10) ** -25 else 0.0 for part in (rest.real, rest.imag)] + [scale]


ORDERS = [86.0, 100.3, 1e3, 4e6]
ZERO_OF_U2 = math.sqrt(770 / (462 - math.sqrt(462**2 - 4 * 385 * 81)) - 1)  # one term of Debye's sums vanishes
REAL = [0.01, 0.66274, 1.0, 30.0, ZERO_OF_U2]
# beside the axes, on both sides of where the phase is turned, and in the middle
POLAR = [(0.5, 0.5), (1.0, 0.46), (1.0, 0.47), (2.0, -0.9), (0.9, math.pi / 3 - 1e-3), (0.7, 1.4), (1.3, -1.4),
         (3.0, 1.55), (0.2, 1.57), (40.0, 1.57), (1.1, 1e-7)]
# i times these, and i moved by these: the turning point, and the borders of the expansion that serves it
IMAGINARY = [1.0, 1 + 1e-9, 1 - 1e-9, 1.001, 0.999, 0.38, 0.4, 0.7, 1.6, 1.95, 2.02, 7.3]
AROUND = [(0.02, 0.3), (0.5, 0.1), (0.84, 0.0), (0.88, 0.0), (0.25, 0.93), (0.6, 1.0), (0.5, -0.49), (0.15, -0.61)]

print("""\
# Written by make_uniform_table.py: I and K of large orders to the last digit, as mantissa and natural logarithm.
# nu, Re z, Im z, Re I, Im I, log I, Re K, Im K, log K""")
for order in ORDERS:
    places = [complex(order * x, 0) for x in REAL] + [complex(1e-38, 0), complex(0, 1e-38), complex(1e-5, 2e-5)]
    places += [complex(order * r * math.cos(a), order * r * math.sin(a)) for r, a in POLAR]
    places += [complex(0, order * y) for y in IMAGINARY] + [complex(order * x, order * (1 + y)) for x, y in AROUND]
    for place in places:
        if abs(place) > LARGEST and abs(place) > 1.05 * order:
            continue
        upper = complex(place.real, abs(place.imag))  # the lower quadrant by reflection
        values = references(order, upper)
        if place.imag < 0.0:
            values = [(mpmath.conj(m), s) for m, s in values]
        print(",".join(map(repr, [order, place.real, place.imag] + printed(values[0]) + printed(values[1]))), flush=True)
