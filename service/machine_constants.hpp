// The machine constants of D1MACH and R1MACH.
#pragma once

namespace nxl {

/// Constant `i` of double precision, for i from 1 to 5: smallest positive number, largest number, smallest relative
/// spacing, largest relative spacing, log10 of 2. 0 for any other i.
double machine_constant_double(int i);

/// The same for single precision.
float machine_constant_single(int i);

} // namespace nxl
