#include "solvers_ds/kernel/default/pardiso/bitvec.hpp"
#include "service/assertion.hpp"
#include "service/handle_memory.hpp"
#include <algorithm>
#include <cstring>

namespace nxl::pardiso {

Bitvec* bitvec_wrap(u32 size, u32* bits) {
    auto* bv = take_for_handle<Bitvec>(1);
    if (bv) *bv = {.size = size, .words = bitvec_words(size), .own = 0, .bits = bits};
    return bv;
}

Bitvec* bitvec_create(u32 size) {
    auto* bits = take_for_handle<u32>(i64{bitvec_words(size)});
    Bitvec* bv = bits ? bitvec_wrap(size, bits) : nullptr;
    if (!bv) {
        give_back(bits);
        return nullptr;
    }
    bv->own = 1;
    bitvec_clear_all(bv);
    return bv;
}

void bitvec_free(Bitvec* bv) {
    if (!bv) return;
    if (bv->own == 1) give_back(bv->bits);
    give_back(bv);
}

void bitvec_set(Bitvec* bv, u32 bit) {
    require(bit < bv->size, "bit < bv->size");
    bv->bits[bit / 32] |= u32{1} << bit % 32;
}

int bitvec_get(const Bitvec* bv, u32 bit) {
    require(bit < bv->size, "bit < bv->size");
    return static_cast<int>(bv->bits[bit / 32] >> bit % 32 & 1U);
}

void bitvec_clear_all(Bitvec* bv) { std::fill_n(bv->bits, bv->words, u32{0}); }

Bitvec* bitvec_permute(const Bitvec* src, const Perm* perm) {
    require(src != nullptr, "src");
    require(src->size == static_cast<u32>(perm->n), "src->size == perm->n");
    Bitvec* moved = bitvec_create(src->size);
    if (!moved) return nullptr;
    for (u32 bit = 0; bit < src->size; ++bit)
        if (bitvec_get(src, bit)) bitvec_set(moved, static_cast<u32>(perm->p[bit]));
    return moved;
}

bool bitvec_permute_in_place(Bitvec* bv, const Perm* perm) {
    const OwnedBitvec moved(bitvec_permute(bv, perm));
    if (!moved) return false;
    std::memcpy(bv->bits, moved->bits, std::size_t{bv->words} * sizeof(u32));
    return true;
}

} // namespace nxl::pardiso
