// Parts of a 512-bit register: what a mask leaves out is neither read nor written.
#pragma once
#include "service/vec.hpp"
#include <immintrin.h>

namespace nxl::NXL_TARGET {

/// Lanes by their bits.
struct Lanes {
    __mmask8 mask;

    [[gnu::always_inline]] explicit Lanes(unsigned bits) : mask(static_cast<__mmask8>(bits)) {}
    /// The first so many, all of them from 8 on.
    [[gnu::always_inline]] static Lanes first(i64 count) { return Lanes(count >= 8 ? 0xff : (1U << count) - 1); }

    [[gnu::always_inline]] Vec<8> load(const double* p) const { return _mm512_maskz_loadu_pd(mask, p); }
    [[gnu::always_inline]] void store(double* p, Vec<8> v) const { _mm512_mask_storeu_pd(p, mask, v); }
    /// These lanes of one vector, the others of another.
    [[gnu::always_inline]] Vec<8> pick(Vec<8> these, Vec<8> others) const {
        return _mm512_mask_mov_pd(others, mask, these);
    }
};

/// In their place where a vector is whole.
struct AllLanes {
    [[gnu::always_inline]] static AllLanes first(i64) { return {}; }

    [[gnu::always_inline]] Vec<8> load(const double* p) const { return nxl::NXL_TARGET::load<8>(p); }
    [[gnu::always_inline]] void store(double* p, Vec<8> v) const { nxl::NXL_TARGET::store<8>(p, v); }
};

} // namespace nxl::NXL_TARGET
