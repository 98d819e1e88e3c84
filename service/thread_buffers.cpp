// The slot rules of the memory service.
#include "service/thread_buffers.hpp"
#include "service/allocator_hooks.hpp"

namespace nxl {
namespace {

void* align_up(void* raw, i64 alignment) {
    if (alignment == 0) return raw;
    const i64 past =
        static_cast<i64>(reinterpret_cast<std::uintptr_t>(raw) & static_cast<std::uintptr_t>(alignment - 1));
    return past == 0 ? raw : static_cast<char*>(raw) + (alignment - past);
}

} // namespace

DetachedBlocks::~DetachedBlocks() {
    for (int i = 0; i < count_; ++i) allocator.free(blocks_[i]);
}

BufferSlot* ThreadBufferRecord::choose(i64 need) {
    BufferSlot *larger = nullptr, *smaller = nullptr;
    for (BufferSlot* slot = slots; slot != slots + count; ++slot) {
        if (slot->in_use) continue;
        if (slot->capacity == need) return slot;
        BufferSlot*& first = slot->capacity > need ? larger : smaller;
        if (!first) first = slot;
    }
    if (count < buffer_slot_count)
        return slots + count; // so the slots fill with distinct sizes before any is put to another use
    return larger ? larger : smaller;
}

bool ThreadBufferRecord::fill(BufferSlot& slot, i64 need) {
    if (void* smaller = empty(slot)) allocator.free(smaller);
    slot.raw = allocator.malloc(static_cast<std::size_t>(need));
    if (!slot.raw) return false;
    slot.capacity = need;
    total += need;
    if (&slot == slots + count) ++count;
    return true;
}

void* ThreadBufferRecord::take(BufferSlot& slot, i64 size, i64 alignment) {
    const i64 need = size + alignment;
    const bool exact = slot.capacity == need;
    if (slot.capacity < need && !fill(slot, need)) return nullptr;
    if (!exact) slot.requested = size;
    slot.in_use = true;
    slot.aligned = align_up(slot.raw, alignment); // anew each time: the slot may have served another alignment
    return slot.aligned;
}

bool ThreadBufferRecord::give_back(const void* block) {
    for (BufferSlot* slot = slots; slot != slots + count; ++slot)
        if (slot->aligned == block) {
            slot->in_use = false;
            return true;
        }
    return false;
}

bool ThreadBufferRecord::detach_free_blocks(DetachedBlocks& blocks) {
    bool all_free = true;
    for (BufferSlot* slot = slots; slot != slots + count; ++slot)
        if (slot->in_use) all_free = false;
        else if (void* block = empty(*slot)) blocks.add(block);
    return all_free;
}

void ThreadBufferRecord::detach_all_blocks(DetachedBlocks& blocks) {
    for (BufferSlot& slot : slots) slot.in_use = false;
    detach_free_blocks(blocks);
}

/// What the slot held. The address goes too: the allocator may hand it out again, for a block that is none of this
/// record.
void* ThreadBufferRecord::empty(BufferSlot& slot) {
    void* block = slot.raw;
    total -= slot.capacity;
    slot = {};
    return block;
}

} // namespace nxl
