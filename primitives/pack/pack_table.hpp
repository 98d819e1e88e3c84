// The kernels of the pack family on real arrays, once per group of its processor classes. Indices count from 0; a
// length of 0 or less does nothing.
#pragma once
#include "service/types.hpp"

namespace nxl {

struct PackTable {
    /// y[i incy] = a[i inca]: both directions of packing by stride.
    void (*strided_d)(int n, const double* a, int inca, double* y, int incy);
    void (*pack_indexed_d)(int n, const double* a, const int* ia, double* y);
    void (*pack_masked_d)(int n, const double* a, const int* ma, double* y);
    void (*unpack_indexed_d)(int n, const double* a, double* y, const int* iy);
    void (*unpack_masked_d)(int n, const double* a, double* y, const int* my);
};

/// The kernels of a class, 0 to 4, as nxl_pack_cpu_class counts them.
const PackTable& pack_kernels_of(int pack_class);

} // namespace nxl
