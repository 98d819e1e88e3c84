// The one list of vector kernels: loops over arrays, once per vector width. Lengths count elements.
#pragma once
#include "service/types.hpp"

namespace nxl {

struct VectorTable {
    void (*add_value_d)(const double* src, double* dst, double value, i64 n);
};

} // namespace nxl
