// The blocks that one thread keeps for reuse, and the rule by which a request picks one. Which record is whose, and
// what happens when no slot is free, stands in memory.cpp.
#pragma once
#include "service/types.hpp"

namespace nxl {

struct BufferSlot {
    void* raw;     // as the allocator gave it; null when the slot is empty
    void* aligned; // as the caller got it
    i64 requested; // bytes asked for when the slot was filled or taken over for another size
    i64 capacity;  // bytes at raw: size and alignment of the request that filled the slot
    bool in_use;
};

inline constexpr int buffer_slot_count = 5; // of a thread

/// Blocks taken out of a record. They go back to the allocator when this dies, which may be after a lock was opened.
class DetachedBlocks {
    void* blocks_[buffer_slot_count];
    int count_ = 0;

  public:
    void add(void* block) { blocks_[count_++] = block; }
    DetachedBlocks() = default;
    ~DetachedBlocks();
    DetachedBlocks(const DetachedBlocks&) = delete;
    DetachedBlocks& operator=(const DetachedBlocks&) = delete;
};

/// All zero is an empty record. Only its own thread takes and gives back, so nothing here is locked.
struct ThreadBufferRecord {
    BufferSlot slots[buffer_slot_count];
    int count;      // slots filled so far
    i64 total;      // sum of the capacities
    bool ended;     // its thread has, and holds no block of it
    i64 next_ended; // place in the table of another such record; 0: none

    /// The slot for a request of `need` bytes, alignment included, in this order: a free one of that very capacity, one
    /// not filled so far, the first free larger one, the first free smaller one. Null when all are in use.
    BufferSlot* choose(i64 need);

    /// Puts the slot to use and returns its block, a fresh one if what it holds is too small: `size` bytes at a
    /// multiple of `alignment`, a power of two or 0. Null when there is no memory; the slot is then empty and free.
    void* take(BufferSlot& slot, i64 size, i64 alignment);

    /// False when the block is none of this record.
    bool give_back(const void* block);

    /// Empties every free slot. True when no block remains in use.
    bool detach_free_blocks(DetachedBlocks& blocks);

    /// Empties every slot, whether its block is in use or not.
    void detach_all_blocks(DetachedBlocks& blocks);

  private:
    bool fill(BufferSlot& slot, i64 need);
    void* empty(BufferSlot& slot);
};

} // namespace nxl
