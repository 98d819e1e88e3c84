// Where a matrix product keeps its packed operands: one allocation, three places in it.
#pragma once
#include "blas/kernels/level3/gemm_blocks.hpp"
#include "blas/kernels/target.hpp"
#include "service/page_buffer.hpp"

namespace nxl::NXL_TARGET {

/// A and B stand on pages of their own. The strip, 64 bytes per step of k, stands 256 bytes past a multiple of 128, so
/// that it does not share cache sets with the starts of A and B.
///
///     raw     page                          128                            page
///     |.......| A block, mb kb elements |...|.256.| strip, 64 kb |.512 or more.| B panel, nb kb elements |
///
/// Without a block of A (mb = 0) the strip comes first; without a panel of B (nb = 0) nothing follows it.
class GemmBuffers {
    const GemmPlan plan_;
    const PageBuffer<char> memory_;

  public:
    GemmBuffers(i64 mb, i64 nb, i64 kb, i64 element) : plan_(gemm_plan(mb, nb, kb, element)), memory_(plan_.bytes) {}

    bool there() const { return memory_.raw() != nullptr; }
    double* a() const { return reinterpret_cast<double*>(memory_.data()); }
    double* strip() const { return reinterpret_cast<double*>(strip_place()); }
    double* b() const {
        return reinterpret_cast<double*>(moved_up(strip_place() - 256 + plan_.strip_bytes + 768, page_bytes));
    }

  private:
    char* strip_place() const {
        char* const before = plan_.has_a ? memory_.data() + plan_.a_bytes : memory_.raw();
        return moved_up(before, 128) + 256;
    }
};

} // namespace nxl::NXL_TARGET
