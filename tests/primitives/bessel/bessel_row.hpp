// A row of the table of reference values, and the functions that it names.
#pragma once

namespace nxl_test {

/// Hankel functions of kinds 1 and 2, Airy functions A and B and their derivatives (1).
enum BesselName { I, J, K, Y, H1, H2, A0, A1, B0, B1 };
inline constexpr int bessel_names = 10;
inline constexpr const char* bessel_texts[] = {"I", "J", "K", "Y", "H1", "H2", "Ai", "Ai'", "Bi", "Bi'"};

struct BesselRow {
    BesselName function;
    int kode;
    double order, x, y; // exact in single precision
    double re, im;
};

} // namespace nxl_test
