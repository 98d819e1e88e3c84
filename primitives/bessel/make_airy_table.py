#!/usr/bin/env python3
"""Prints airy_table.hpp: Ai and Ai' at the points of the integer lattice. Needs mpmath."""
import mpmath

mpmath.mp.dps = 40
COLUMNS, ROWS = 9, 9  # real parts -9..9, imaginary parts 0..9


def number(x):
    return repr(float(x))


def row(z):
    numbers = [part for order in (0, 1) for f in [mpmath.airyai(z, derivative=order)]
               for part in (mpmath.re(f), mpmath.im(f))]
    return "{{%s, %s}, {%s, %s}}," % tuple(number(x) for x in numbers)


print("""// Ai and Ai' at the points of the integer lattice around the origin, upper half plane: what airy.cpp starts from.
// Printed by make_airy_table.py.
#pragma once
#include "service/types.hpp"

namespace nxl::bessel {

struct AiryNode {
    zcomplex value, derivative;
};

/// airy_nodes[y][x + airy_columns]: at x + i y, |x| <= airy_columns, 0 <= y <= airy_rows.
inline constexpr int airy_columns = %d, airy_rows = %d;
// clang-format off
inline constexpr AiryNode airy_nodes[airy_rows + 1][2 * airy_columns + 1] = {""" % (COLUMNS, ROWS))
for y in range(ROWS + 1):
    print("    {")
    for x in range(-COLUMNS, COLUMNS + 1):
        print("        " + row(mpmath.mpc(x, y)))
    print("    },")
print("""};
// clang-format on

} // namespace nxl::bessel""")
