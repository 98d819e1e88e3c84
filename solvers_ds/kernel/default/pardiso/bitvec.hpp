// bitvec: a bit vector.
#pragma once
#include "solvers_ds/kernel/default/pardiso/perm.hpp"
#include <memory>

namespace nxl::pardiso {

using u32 = std::uint32_t;

/// Bit i is bit i % 32 of word i / 32.
struct Bitvec {
    u32 size;  // bits
    u32 words; // (size - 1) / 32 + 1
    i32 own;   // 1: the words are released with the record
    u32* bits;
};

/// 32-bit words that hold `size` bits.
constexpr u32 bitvec_words(u32 size) { return (size - 1) / 32 + 1; }

/// All bits 0. Null when there is no memory.
Bitvec* bitvec_create(u32 size);
/// A vector in the words of the caller, bitvec_words(size) of them. Null when there is no memory.
Bitvec* bitvec_wrap(u32 size, u32* bits);
void bitvec_free(Bitvec* bv);

void bitvec_set(Bitvec* bv, u32 bit);
/// 0 or 1.
int bitvec_get(const Bitvec* bv, u32 bit);
void bitvec_clear_all(Bitvec* bv);

/// A new vector with bit p[i] set for each bit i that is set. Null when there is no memory.
Bitvec* bitvec_permute(const Bitvec* src, const Perm* perm);
/// False when there is no memory; the vector is then as it was.
bool bitvec_permute_in_place(Bitvec* bv, const Perm* perm);

struct FreeBitvec {
    void operator()(Bitvec* bv) const { bitvec_free(bv); }
};
using OwnedBitvec = std::unique_ptr<Bitvec, FreeBitvec>;

} // namespace nxl::pardiso
