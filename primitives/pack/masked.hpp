// Packing by a mask, for the pack family and the vector primitives.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Appends src[i] to dst for each i with mask[i] above 0; returns how many. A block's elements are counted first: then
/// each can be stored without asking, at the place of the next one to keep, and nothing lands beyond the last of them.
template <int Unroll, class T> i64 pack_masked(i64 n, const T* src, T* dst, const std::int32_t* mask) {
    constexpr i64 block = 2048; // its mask stays in the first-level cache between counting and packing
    T* const start = dst;
    for (i64 first = 0; first < n; first += block) {
        const i64 length = n - first < block ? n - first : block;
        std::int32_t kept = 0;
        for (i64 i = 0; i < length; ++i) kept += mask[first + i] > 0;
        T* const end = dst + kept;
        const T* from = src + first;
        const std::int32_t* take = mask + first;
        for (; end - dst >= Unroll; from += Unroll, take += Unroll)
            for (int k = 0; k < Unroll; ++k) {
                __builtin_memcpy(dst, from + k, sizeof(T)); // in one piece, complex elements too
                dst += take[k] > 0;
            }
        for (; dst < end; ++from, ++take) {
            __builtin_memcpy(dst, from, sizeof(T));
            dst += *take > 0;
        }
    }
    return dst - start;
}

} // namespace nxl
