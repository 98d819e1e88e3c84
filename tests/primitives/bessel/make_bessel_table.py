#!/usr/bin/env python3
"""Reference values of the Bessel and Airy functions, by mpmath.

Every value is computed at two precisions and has to agree. Orders that are out of reach for mpmath's series come from
recurrences in multiple precision (K upwards; I by the continued fraction of I(nu+1)/I(nu) and the Wronskian), and far
from the turning points z = +- i nu from Debye's expansion.

    make_bessel_table.py > tables/bessel.csv
"""
import functools
import struct
import sys

from mpmath import mp, mpc, mpf

LOWEST, HIGHEST = mpf(2) ** -126, mpf(2) ** 128 * (1 - mpf(2) ** -25)


def single(x):
    """x rounded to single precision, exactly represented."""
    return struct.unpack("f", struct.pack("f", float(x)))[0]


def debye_polynomials(count):
    """Coefficients of U_k(p) by powers of p, DLMF 10.41.9."""
    polynomials = [[mpf(1)]]
    for _ in range(count):
        u = polynomials[-1]
        new = [mpf(0)] * (len(u) + 3)
        for power, c in enumerate(u):
            new[power + 1] += c * power / 2 + c / (8 * (power + 1))
            new[power + 3] -= c * power / 2 + 5 * c / (8 * (power + 3))
        polynomials.append(new)
    return polynomials


def debye(nu, t, terms):
    """I and K of large order, DLMF 10.41.3 and 10.41.4."""
    root = mp.sqrt(1 + (t / nu) ** 2)
    if root.imag * t.imag < 0:  # on the imaginary axis, the limit from the right
        root = -root
    p = 1 / root
    eta = root + mp.log((t / nu) / (1 + root))
    sum_i = sum_k = mpf(0)
    for k, u in enumerate(debye_polynomials(terms)):
        term = mp.polyval(u[::-1], p) / nu**k
        sum_i, sum_k = sum_i + term, sum_k + (-1) ** k * term
    growing = mp.exp(nu * eta) / mp.sqrt(2 * mp.pi * nu * root) * sum_i
    falling = mp.sqrt(mp.pi / (2 * nu * root)) * mp.exp(-nu * eta) * sum_k
    if abs(t.imag) > nu:  # on the imaginary axis beyond the turning point both exponentials count
        sign = 1 if t.imag > 0 else -1
        growing += sign * mpc(0, 1) * mp.expjpi(sign * nu) * falling / mp.pi
    return growing, falling


def by_recurrence(nu, t):
    """I and K: K from orders below 1 upwards, I by the continued fraction of its ratio."""
    steps = int(nu)
    mu = nu - steps
    k, k_next = mp.besselk(mu, t), mp.besselk(mu + 1, t)
    two_over_t = 2 / t
    order = mu + 1
    for _ in range(steps):
        k, k_next = k_next, k + order * two_over_t * k_next
        order += 1
    top = max(nu, abs(t))
    tail = int(top - nu + 4 * mp.dps + 4 * mp.dps * top ** (mpf(1) / 3))
    ratio = mpc(0)
    order = nu + tail
    for _ in range(tail):
        ratio = 1 / (order * two_over_t + ratio)
        order -= 1
    return 1 / (t * (k_next + ratio * k)), k


@functools.lru_cache(maxsize=None)
def right_half_plane(nu, t, digits):
    """I and K, Re t >= 0."""
    if nu >= 2000 and nu * abs(1 + (t / nu) ** 2) ** 1.5 > 180:
        return debye(nu, t, 8 + digits // 5)
    return by_recurrence(nu, t)


def continued(name, nu, z):
    """The functions in the upper half plane, Im z >= 0, from I and K in the right half plane."""
    power = lambda q: mp.expjpi(nu * q / 2)
    if name in "IK":
        t = z if z.real >= 0 else -z
        i, k = right_half_plane(nu, t, mp.dps)
        if z.real >= 0:
            return i if name == "I" else k
        return power(2) * i if name == "I" else power(-2) * k - mpc(0, mp.pi) * i
    i, k = right_half_plane(nu, mpc(z.imag, -z.real), mp.dps)
    j = power(1) * i
    h1 = -mpc(0, 2) / mp.pi * power(-1) * k
    return {"J": j, "H1": h1, "H2": 2 * j - h1, "Y": (h1 - j) / mpc(0, 1)}[name]


def bessel(name, nu, z):
    if nu > 160 or (nu > 5 and 200 < abs(z) < nu * nu):
        if z.imag >= 0:
            return continued(name, nu, z)
        mirrored = {"H1": "H2", "H2": "H1"}.get(name, name)
        return mp.conj(continued(mirrored, nu, mp.conj(z)))
    if name == "H1" and z.imag > 0:  # where it decays J + iY would cancel
        return -mpc(0, 2) / mp.pi * mp.expjpi(-nu / 2) * mp.besselk(nu, mpc(z.imag, -z.real))
    if name == "H2" and z.imag < 0:
        return mp.conj(bessel("H1", nu, mp.conj(z)))
    functions = {"I": mp.besseli, "J": mp.besselj, "K": mp.besselk, "Y": mp.bessely, "H1": mp.hankel1, "H2": mp.hankel2}
    return mp.mpmathify(functions[name](nu, z))


def airy(name, z):
    derivative = 1 if name.endswith("'") else 0
    return mp.mpmathify((mp.airyai if name.startswith("A") else mp.airybi)(z, derivative=derivative))


def scaling(name, z):
    """The logarithm of KODE 2's factor."""
    zeta = mpf(2) / 3 * z * mp.sqrt(z)
    return {"I": -abs(z.real), "J": -abs(z.imag), "Y": -abs(z.imag), "K": z, "H1": -mpc(0, 1) * z, "H2": mpc(0, 1) * z,
            "Ai": zeta, "Ai'": zeta, "Bi": -abs(zeta.real), "Bi'": -abs(zeta.real)}[name]


def reference(name, nu, z):
    """The value, at two precisions that agree to 12 digits."""
    values = []
    for digits in (25, 40):
        with mp.workdps(digits):
            values.append(mpc(airy(name, z) if name[0] in "AB" else bessel(name, mpf(nu), z)))
    if values[1] == 0 or abs(values[0] - values[1]) > abs(values[1]) * mpf(10) ** -12:
        sys.exit(f"{name} {nu} {z}: {mp.nstr(values[0])} against {mp.nstr(values[1])}")
    return values[1]


def part(x):
    """Ten digits; what lies outside doubles shows as a number far outside single precision."""
    if x == 0:
        return "0"
    if not mpf("1e-290") < abs(x) < mpf("1e290"):
        x = mpf("1e290") if abs(x) > 1 else mpf("1e-290")
    return mp.nstr(x, 11, strip_zeros=True, min_fixed=-3, max_fixed=8)


def emit(name, nu, z, kode, value):
    """One row; value is the one of KODE 1."""
    value *= mp.exp(scaling(name, z)) if kode == 2 else 1
    real, imag = (x if abs(x) > abs(value) * mpf(10) ** -12 else mpf(0) for x in (value.real, value.imag))
    where = ",".join(f"{float(x):.9g}" for x in (nu, z.real, z.imag))
    print(f"{name},{kode},{where},{part(real)},{part(imag)}", flush=True)


def in_range(value):
    """Within single precision."""
    return LOWEST < abs(value) and max(abs(value.real), abs(value.imag)) < HIGHEST


def point(radius, turn):
    """A point of single precision; `turn` in units of pi/2, exact on the axes."""
    axis = {0: (1, 0), 1: (0, 1), 2: (-1, 0), -1: (0, -1)}.get(turn)
    x, y = axis if axis else (mp.cospi(mpf(turn) / 2), mp.sinpi(mpf(turn) / 2))
    return mpc(single(radius * x), single(radius * y))


NAMES = ["I", "J", "K", "Y", "H1", "H2"]
TURNS = [0, 2, 1, -1, 0.4, 1.3, -0.6, -1.7, 1.0001, 0.003, 1.998, -0.9, 0.97, -1.2, 1.6]


def bessel_rows():
    """Radii at the regions' borders and at fractions of the order, angles and functions in rotation."""
    group = 0
    for nu in [0, single(1 / 3), 0.5, 1, single(2.7), 10, 40, 85, 85.5, 86, 87, 150, 2047, 1e4, 1e6]:
        radii = [r for r in (1e-30, 1e-3, 0.6, 1.99, 2.01, 5, 11.5, 12.5, 17, 40, 300, 2.5e3, 5e4, 4e6)
                 if nu < 2000 or r > 1e4] + [nu * f for f in (0.1, 0.5, 0.95, 1, 1.05, 1.5, 4) if nu >= 10]
        for index, radius in enumerate(r for r in radii if r <= 4194304):
            repeat = 0 if group % 2 == 0 else 3  # changes the KODE, and moves the angle on
            count = 4 * group + repeat + 1
            group += 1
            name = NAMES[(count + index) % 6]
            turn = TURNS[(7 * count + index + 5 * repeat) % len(TURNS)]
            if nu >= 1e5 and 0.9 < radius / nu < 1.1 and repeat > 0:
                continue  # a million steps each
            z = point(radius, turn)
            value = reference(name, nu, z)
            if in_range(value):
                emit(name, nu, z, 1 + count % 2, value)
            else:
                scaled = in_range(value * mp.exp(scaling(name, z)))
                if scaled or count % 4 == 0:
                    emit(name, nu, z, 2 if scaled and count % 5 else 1, value)


def rows_next_to_zeros():
    """Where the function is 1e-5 to 1e-6 of its size nearby: an error of a large phase would show."""
    for nu, x in ((0, 2084386.25), (20.5, 101894.4140625), (100.25, 1296176.75), (1000.25, 1918431.75)):
        for name, z in (("J", mpc(x)), ("I", mpc(0, -x))):
            emit(name, nu, z, 1, reference(name, nu, z))


def airy_rows():
    third = mpf(2) / 3
    turns = [0, 2, third, 2 * third, -third, -2 * third, 1, 0.3, -1.7, 1.95, 0.7, -0.01]
    count = 0
    for row, radius in enumerate((1e-30, 1e-3, 0.7, 0.99, 1.01, 1.5, 3, 4.5, 6, 9, 14, 30, 100, 161, 1000, 2.6e4)):
        for column, turn in enumerate(turns):
            count += 1
            if (row + column // 4) % 2:
                continue  # half of the angles, in turn
            name = ["Ai", "Bi'", "Bi", "Ai'"][count % 4 if (count // 12) % 2 else (count + 1) % 4]
            z = point(radius, turn)
            value = reference(name, 0, z)
            emit(name, 0, z, 1 if in_range(value) and (count // 3) % 2 else 2, value)


def main():
    mp.dps = 40
    print("""\
# Written by make_bessel_table.py: values to 10 digits. A modulus below the range of single precision stands for an
# underflow, a part above it for an overflow.
# function, KODE, order, Re z, Im z, Re value, Im value""")
    bessel_rows()
    rows_next_to_zeros()
    airy_rows()


if __name__ == "__main__":
    main()
