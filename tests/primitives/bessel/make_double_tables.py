#!/usr/bin/env python3
"""References to 17 digits, on both sides of every border of the methods and between them. Needs mpmath.

    make_double_tables.py airy > tables/airy.csv
    make_double_tables.py right_half_plane > tables/right_half_plane.csv
    make_double_tables.py uniform > tables/uniform.csv   (minutes: some rows are millions of steps)

airy: Ai and Ai' times exp(zeta), zeta = 2/3 z^1.5. right_half_plane: K and I of the orders nu and nu + 1, each value
times exp(-scale). uniform: I and K of large orders as mantissa and natural logarithm.
"""
import cmath
import itertools
import math
import sys

from make_bessel_table import right_half_plane
from mpmath import airyai, besseli, besseljzero, besselk, exp, fabs, log, mp, mpc, mpf, nint, sqrt

PI = math.pi


def parts(*values):
    """Real and imaginary parts in turn, without signs of zero."""
    return [float(part) + 0.0 for value in values for part in (mpc(value).real, mpc(value).imag)]


def point(radius, angle):
    """Exact on the axes."""
    axis = {0.0: complex(radius, 0.0), PI / 2: complex(0.0, radius), -PI / 2: complex(0.0, -radius)}.get(angle)
    return cmath.rect(radius, angle) if axis is None else axis


def airy():
    radii = [1e-12, 0.3, 0.499, 0.501, 1.0, 2.5, 4.7, 6.4, 8.999, 9.001, 12.0, 40.0, 900.0, 2.7e4]
    angles = [0.4, PI / 3, 1.5, 2 * PI / 3 - 1e-3, 2 * PI / 3 + 1e-3, 2.6, 3.1, PI - 1e-6, -0.9, -2.9]
    zeros = [-2.338107410459767, -1.0187929716474711, -9.02265085334098, -11.475056633480245, -104.04979104]
    points = [0j] + [complex(x, 0) for r in radii for x in (r, -r)] + [complex(x, 0) for x in zeros]
    points += [complex(r * math.cos(a), r * math.sin(a)) for k, r in enumerate(radii) for a in angles[k % 2::2]]
    # exactly on axes and half-way between four points of the lattice
    points += [1j, -7j, 1e6 + 0j, complex(3.5, 2.5), complex(-3.5, 0.5), complex(-4.0, -1e-300)]
    for z in points:
        zeta = mpc(z) * sqrt(mpc(z)) * 2 / 3
        yield parts(z, zeta, airyai(mpc(z)) * exp(zeta), airyai(mpc(z), derivative=1) * exp(zeta))


def near_every_border():
    """Orders and arguments inside each region of the right half plane and on both sides of each border, by order."""
    angles = itertools.cycle([0.0, PI / 2, -PI / 2, 0.3, -1.2, PI / 2 - 1e-3, -PI / 2 + 1e-9, 0.9, -1e-6])
    for nu in [0.0, 1e-7, 1 / 3, 0.5, 1.0, 2.75, 10.0, 37.5, 64.2, 85.0, 85.9]:
        borders = [2.0, 2.0 * math.sqrt(nu + 1.0), 21.78, 0.5 * (nu + 1.0) ** 2]
        for radius in [1e-38, 1e-12, 0.04, 1.1, 5.0, 13.0, 60.0, 900.0, 4.2e6] + [
                b * s for b in borders for s in (0.999, 1.001)]:
            yield nu, point(radius, next(angles))
    for nu, count in ((0.0, 1), (0.0, 7), (1.0, 2), (1 / 3, 5), (10.0, 3), (64.2, 4), (85.0, 20)):
        yield nu, complex(0.0, float(besseljzero(nu, count)))  # I is near a zero


def right_half_plane_rows():
    for nu, z in near_every_border():
        row = [nu] + parts(z)
        for function in (besselk, besseli):
            pair = [function(mpf(nu) + k, mpc(z)) for k in (0, 1)]
            scale = nint(log(max(map(fabs, pair))))
            row += [float(scale)] + parts(*(f * exp(-scale) for f in pair))
        yield row


def uniform():
    orders = [86.0, 100.3, 1e3, 4e6]
    zero_of_u2 = math.sqrt(770 / (462 - math.sqrt(462**2 - 4 * 385 * 81)) - 1)  # one term of Debye's sums vanishes
    # beside the axes, on both sides of where the phase is turned, and in the middle
    polar = [(0.5, 0.5), (1.0, 0.46), (1.0, 0.47), (2.0, -0.9), (0.9, PI / 3 - 1e-3), (0.7, 1.4), (1.3, -1.4),
             (3.0, 1.55), (0.2, 1.57), (40.0, 1.57), (1.1, 1e-7)]
    # i times these, and i moved by these: the turning point, and the borders of the expansion that serves it
    imaginary = [1.0, 1 + 1e-9, 1 - 1e-9, 1.001, 0.999, 0.38, 0.4, 0.7, 1.6, 1.95, 2.02, 7.3]
    around = [(0.02, 0.3), (0.5, 0.1), (0.84, 0.0), (0.88, 0.0), (0.25, 0.93), (0.6, 1.0), (0.5, -0.49), (0.15, -0.61)]
    for nu in orders:
        places = [complex(nu * x, 0) for x in (0.01, 0.66274, 1.0, 30.0, zero_of_u2)]
        places += [complex(1e-38, 0), complex(0, 1e-38), complex(1e-5, 2e-5)]
        places += [complex(nu * r * math.cos(a), nu * r * math.sin(a)) for r, a in polar]
        places += [complex(0, nu * y) for y in imaginary] + [complex(nu * x, nu * (1 + y)) for x, y in around]
        for z in places:
            if abs(z) > 4.2e6 and abs(z) > 1.05 * nu:
                continue
            row = [nu] + parts(z)
            for value in right_half_plane(mpf(nu), mpc(z.real, abs(z.imag)), mp.dps):
                scale = float(log(abs(value)))
                rest = value * exp(-mpf(scale))
                row += parts(*(x if abs(x) > mpf(10) ** -25 else 0 for x in (rest.real, rest.imag)))[::2]
                row[-1] = -row[-1] if z.imag < 0 else row[-1]  # the lower quadrant by reflection
                row.append(scale)
            yield row


TABLES = {"airy": (airy, 60, "Re z, Im z, Re zeta, Im zeta, Re Ai, Im Ai, Re Ai', Im Ai'"),
          "right_half_plane": (right_half_plane_rows, 50, "nu, Re z, Im z, scale of K, Re K, Im K, Re K up, Im K up, "
                               "scale of I, Re I, Im I, Re I up, Im I up"),
          "uniform": (uniform, 40, "nu, Re z, Im z, Re I, Im I, log I, Re K, Im K, log K")}

rows, mp.dps, columns = TABLES[sys.argv[1]]
print(f"# Written by make_double_tables.py {sys.argv[1]}, to the last digit.\n# {columns}")
for row in rows():
    print(",".join(f"{cell:.17g}" for cell in row), flush=True)
