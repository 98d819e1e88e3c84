// The scalar types of the library's inside: 64-bit integers, double complex, the processor class.
#pragma once
#include <complex>
#include <cstdint>

namespace nxl {

using i64 = std::int64_t;
using i32 = std::int32_t; ///< indices of the sparse direct solver
using zcomplex = std::complex<double>;

/// Decides kernels, blocking and thread gates. Not an instruction set: the vector width is chosen apart from it.
enum class CpuClass : int { def = 0, p4n = 1, mc = 2, mc3 = 3 };
inline constexpr int cpu_class_count = 4;

} // namespace nxl
