// The target that a BLAS or LAPACK kernel is being compiled for: its class, beside the width of service/vec.hpp.
#pragma once
#include "service/kernel_table.hpp"
#include "service/vec.hpp"

namespace nxl::NXL_TARGET {

constexpr CpuClass kClass = static_cast<CpuClass>(NXL_TARGET_CLASS);

/// Index of the vector's first element in memory order of the published BLAS: a negative increment starts at the far
/// end.
[[gnu::always_inline]] inline i64 first_index(i64 n, i64 inc) { return inc < 0 ? (1 - n) * inc : 0; }

} // namespace nxl::NXL_TARGET
