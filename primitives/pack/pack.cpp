// The tables of the pack family: plain loops for classes 0 and 1, unrolled by four from class 2 on.
// Packing by a mask is the vector primitive.
#include "primitives/pack/pack.hpp"
#include "primitives/pack/pack_loops.hpp"
#include "primitives/vectors/slots.hpp"

namespace nxl {
namespace {

template <int Unroll>
constexpr PackTable table = {
    .strided_d = [](int n, const double* a, int inca, double* y,
                    int incy) { copy_strided<Unroll, double>(n, a, inca, y, incy); },
    .pack_indexed_d = [](int n, const double* a, const int* ia, double* y) { pack_indexed<Unroll>(n, a, ia, y); },
    .pack_masked_d = [](int n, const double* a, const int* ma,
                        double* y) { slot<&VectorTable::pack_by_mask_d>(n, a, y, ma); },
    .unpack_indexed_d = [](int n, const double* a, double* y, const int* iy) { unpack_indexed<Unroll>(n, a, y, iy); },
    .unpack_masked_d = [](int n, const double* a, double* y, const int* my) { unpack_masked<Unroll>(n, a, y, my); },
};

} // namespace

const PackTable& pack_kernels_of(int pack_class) { return pack_class < 2 ? table<1> : table<4>; }

template <> const PackTable& bound_table() { return pack_kernels_of(nxl_pack_cpu_class()); }

} // namespace nxl
