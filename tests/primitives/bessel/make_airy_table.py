#!/usr/bin/env python3
"""Ai and Ai' to 17 digits, scaled by exp(zeta), across the borders of the method. Needs mpmath.

    make_airy_table.py > tables/airy.csv
"""
import math

import mpmath
from mpmath import mpc

mpmath.mp.dps = 60

RADII = [1e-12, 0.3, 0.499, 0.501, 1.0, 2.5, 4.7, 6.4, 8.999, 9.001, 12.0, 40.0, 900.0, 2.7e4]
ANGLES = [0.4, math.pi / 3, 1.5, 2 * math.pi / 3 - 1e-3, 2 * math.pi / 3 + 1e-3, 2.6, 3.1, math.pi - 1e-6, -0.9, -2.9]
ZEROS = [-2.338107410459767, -1.0187929716474711, -9.02265085334098, -11.475056633480245, -104.04979104]

points = [0j] + [complex(x, 0) for r in RADII for x in (r, -r)] + [complex(x, 0) for x in ZEROS]
points += [complex(r * math.cos(a), r * math.sin(a)) for k, r in enumerate(RADII) for a in ANGLES[k % 2::2]]
# exactly on axes and half-way between four points of the lattice
points += [1j, -7j, 1e6 + 0j, complex(3.5, 2.5), complex(-3.5, 0.5), complex(-4.0, -1e-300)]


def reference(z):
    exact = mpc(z)
    zeta = exact * mpmath.sqrt(exact) * 2 / 3
    scale = mpmath.exp(zeta)
    return [zeta] + [mpmath.airyai(exact, derivative=k) * scale for k in (0, 1)]


print("""\
# Written by make_airy_table.py: Ai and Ai' at z times exp(zeta), zeta = 2/3 z^1.5, to the last digit.
# Re z, Im z, Re zeta, Im zeta, Re Ai, Im Ai, Re Ai', Im Ai'""")
for z in points:
    print(",".join(repr(float(part)) for f in [mpc(z)] + reference(z) for part in (f.real, f.imag)))
