// Where a matrix product keeps its packed operands: one allocation, three places in it.
#pragma once
#include "blas/kernels/level3/gemm_blocks.hpp"
#include "blas/kernels/target.hpp"
#include "service/memory.hpp"

namespace nxl::NXL_TARGET {

/// A and B stand on pages of their own. The strip, 64 bytes per step of k, stands 256 bytes past a multiple of 128, so
/// that it does not share cache sets with the starts of A and B.
///
///     raw     page                          128                            page
///     |.......| A block, mb kb elements |...|.256.| strip, 64 kb |.512 or more.| B panel, nb kb elements |
///
/// Without a block of A (mb = 0) the strip comes first; without a panel of B (nb = 0) nothing follows it.
class GemmBuffers {
    char* const raw_;
    const GemmPlan plan_;

    static char* up_to_multiple(char* p, unsigned long unit) {
        const auto address = reinterpret_cast<unsigned long>(p);
        return p + (unit - address % unit) % unit;
    }

  public:
    GemmBuffers(i64 mb, i64 nb, i64 kb, i64 element)
        : raw_(static_cast<char*>(nxl_buffer_alloc(gemm_plan(mb, nb, kb, element).bytes, 128))),
          plan_(gemm_plan(mb, nb, kb, element)) {}
    ~GemmBuffers() { nxl_buffer_free(raw_); }
    GemmBuffers(const GemmBuffers&) = delete;
    GemmBuffers& operator=(const GemmBuffers&) = delete;

    bool there() const { return raw_ != nullptr; }
    double* a() const { return reinterpret_cast<double*>(up_to_multiple(raw_, 4096)); }
    double* strip() const { return reinterpret_cast<double*>(strip_place()); }
    double* b() const {
        return reinterpret_cast<double*>(up_to_multiple(strip_place() - 256 + plan_.strip_bytes + 768, 4096));
    }

  private:
    char* strip_place() const {
        char* const before = plan_.has_a ? up_to_multiple(raw_, 4096) + plan_.a_bytes : raw_;
        return up_to_multiple(before, 128) + 256;
    }
};

} // namespace nxl::NXL_TARGET
