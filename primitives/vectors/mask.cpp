// Elements picked by a mask.
#include "primitives/vectors/kernels.hpp"
#include "primitives/vectors/lanes.hpp"
#include <immintrin.h>

namespace nxl::NXL_TARGET {
namespace {

/// For each set of lanes to keep, where the 32-bit pieces of a register come from that has those lanes in front.
struct Compaction {
    alignas(32) std::int32_t from[16][8];
};
template <int Lanes> consteval Compaction make_compaction() {
    Compaction table{};
    constexpr int pieces = 8 / Lanes;
    for (int set = 0; set < 1 << Lanes; ++set)
        for (int lane = 0, next = 0; lane < Lanes; ++lane)
            if (set >> lane & 1)
                for (int piece = 0; piece < pieces; ++piece) table.from[set][next++] = lane * pieces + piece;
    return table;
}

/// Elements of a step: a register's, where registers can be put in order by a table.
template <class T> constexpr int kStep = kWidth > 2 ? kWidth / kParts<T> : 4;

/// Writes as many elements as a step has, those to keep in front; returns how many these are.
template <class T, int W>
[[gnu::always_inline]] inline int step(const T* from, T* dst, const std::int32_t* take)
    requires(W > 2)
{
    static constexpr Compaction compaction = make_compaction<kStep<T>>();
    __m128i mask = _mm_setzero_si128();
    __builtin_memcpy(&mask, take, kStep<T> * sizeof *take);
    const int set = _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpgt_epi32(mask, _mm_setzero_si128())));
    const __m256i order = _mm256_load_si256(reinterpret_cast<const __m256i*>(compaction.from[set]));
    const __m256 elements = __builtin_bit_cast(__m256, load<W>(parts(from)));
    store<W>(parts(dst), __builtin_bit_cast(Vec<W>, _mm256_permutevar8x32_ps(elements, order)));
    return __builtin_popcount(static_cast<unsigned>(set));
}

template <class T, int W> [[gnu::always_inline]] inline int step(const T* from, T* dst, const std::int32_t* take) {
    int kept = 0;
    for (int k = 0; k < kStep<T>; ++k) {
        __builtin_memcpy(dst + kept, from + k, sizeof(T)); // in one piece, complex elements too
        kept += take[k] > 0;
    }
    return kept;
}

/// Appends src[i] to dst for each i with mask[i] above 0; returns how many. A block's elements are counted first: then
/// a step can store without asking, at the place of the next one to keep, and nothing lands beyond the last of them.
template <class T> i64 pack_by_mask(i64 n, const T* src, T* dst, const std::int32_t* mask) {
    constexpr i64 block = 2048; // its mask stays in the first-level cache between counting and packing
    T* const start = dst;
    for (i64 first = 0; first < n; first += block) {
        const i64 length = n - first < block ? n - first : block;
        std::int32_t kept = 0;
        for (i64 i = 0; i < length; ++i) kept += mask[first + i] > 0;
        T* const end = dst + kept;
        const T* from = src + first;
        const std::int32_t* take = mask + first;
        for (; end - dst >= kStep<T>; from += kStep<T>, take += kStep<T>) dst += step<T, kWidth>(from, dst, take);
        for (; dst < end; ++from, ++take) {
            __builtin_memcpy(dst, from, sizeof(T));
            dst += *take > 0;
        }
    }
    return dst - start;
}

} // namespace

i64 pack_by_mask_d(i64 n, const double* src, double* dst, const std::int32_t* mask) {
    return pack_by_mask(n, src, dst, mask);
}
i64 pack_by_mask_c(i64 n, const zcomplex* src, zcomplex* dst, const std::int32_t* mask) {
    return pack_by_mask(n, scalars(src), scalars(dst), mask);
}

} // namespace nxl::NXL_TARGET
