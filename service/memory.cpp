// Scratch memory: each thread's record of cached blocks, the table of all records, and the straight road to the
// allocator. The slots inside a record are thread_buffers.hpp's.
#include "service/memory.hpp"
#include "service/allocator_hooks.hpp"
#include "service/memory_seams.hpp"
#include "service/spin_lock.hpp"
#include "service/thread_buffers.hpp"
#include <bit>
#include <cstdlib>
#include <pthread.h>

namespace nxl {
namespace {

constexpr i64 largest_cached = 41943040; // bytes, 40 MiB: beyond this the allocator's own cost is small change
constexpr i64 record_limit = 8192;       // no new record once there are more
constexpr int default_alignment = 32;

/// Guards the table, and with it the environment's one reading. Taking and giving back blocks need no lock.
constinit SpinLock table_lock;
constinit ThreadBufferRecord* table[record_limit + 2] = {}; // from entry 1 upward; null again once released
constinit i64 table_count = 0;
constinit i64 table_generation = 0; // raised when the table is emptied, so that entries of before count for nothing
constinit i64 first_ended = 0;      // place of a record whose thread has ended, the head of a list; 0: there is none

/// Threads know their record by its place, not by its address: a released record leaves nothing that dangles.
struct ThreadState {
    i64 entry;      // 0: none, and table[0] is null
    i64 generation; // of the table, when the entry was taken
    i64 raw_blocks; // taken straight from the allocator and not yet given back
    bool ended;     // the record was given up: what other libraries still ask for at the thread's end is not cached
};
constinit thread_local ThreadState this_thread = {};

/// By this key a thread tells that it ends, whoever started it. It lives from the first record until the library is
/// unloaded; threads that end later find no destructor.
constinit pthread_key_t end_key = 0;
constinit bool end_key_exists = false;

enum class Caching : int { unknown = -1, on = 0, off = 1 };
constinit std::atomic<Caching> caching{Caching::unknown};

// A fork while another thread holds the lock would leave it held in the child for ever.
[[gnu::constructor]] void keep_lock_over_fork() {
    pthread_atfork([] { table_lock.lock(); }, [] { table_lock.unlock(); }, [] { table_lock.unlock(); });
}

[[gnu::cold]] void read_environment() {
    const SpinGuard guard(table_lock);
    if (caching.load(std::memory_order_relaxed) != Caching::unknown) return;
    caching.store(cache_turned_off() ? Caching::off : Caching::on, std::memory_order_relaxed);
}

bool caching_is_off() {
    if (caching.load(std::memory_order_relaxed) == Caching::unknown) [[unlikely]]
        read_environment();
    return caching.load(std::memory_order_relaxed) == Caching::off;
}

ThreadBufferRecord* own_record() {
    return this_thread.generation == table_generation ? table[this_thread.entry] : nullptr;
}

void add_to_ended(i64 entry) {
    table[entry]->ended = true;
    table[entry]->next_ended = first_ended;
    first_ended = entry;
}

/// The thread's free blocks go back, and its record waits for another thread. A block in use stays, with its record,
/// since nobody can know who uses it; a destructor of another library may yet give it back, hence the second look.
void end_of_thread(void*) {
    DetachedBlocks blocks; // freed without the lock, as in new_record
    const SpinGuard guard(table_lock);
    ThreadBufferRecord* record = own_record();
    if (record && !record->detach_free_blocks(blocks)) {
        pthread_setspecific(end_key, &this_thread); // the system repeats that a few times, then lets it be
        return;
    }
    if (record) add_to_ended(this_thread.entry);
    this_thread.entry = 0;
    this_thread.ended = true;
}

/// Tells the end of the process from dlclose, which runs destructors before the handlers of atexit. At the end handlers
/// run, the last registered first, and all destructors are one of them, registered just before main. A library may call
/// us before that, hence again whenever twice as many threads have come.
constinit bool process_ends = false;
constinit std::atomic<unsigned> threads_come{0};

void notice_the_end_of_the_process() {
    const unsigned threads = threads_come.fetch_add(1, std::memory_order_relaxed) + 1;
    if (std::has_single_bit(threads)) std::atexit([] { process_ends = true; });
}

/// False when the end of this thread would go unnoticed, for want of memory or of a key.
bool end_will_be_noticed() {
    {
        const SpinGuard guard(table_lock);
        if (!end_key_exists) end_key_exists = pthread_key_create(&end_key, end_of_thread) == 0;
        if (!end_key_exists) return false;
    }
    return pthread_setspecific(end_key, &this_thread) == 0;
}

void own(i64 entry) {
    this_thread.entry = entry;
    this_thread.generation = table_generation;
}

bool enter_in_table(ThreadBufferRecord* record) {
    const SpinGuard guard(table_lock);
    if (table_count > record_limit) return false;
    table[++table_count] = record;
    own(table_count);
    return true;
}

/// The record of a thread that has ended, once the table is full; null when there is none.
ThreadBufferRecord* take_over_record() {
    const SpinGuard guard(table_lock);
    if (table_count <= record_limit || first_ended == 0) return nullptr;
    own(first_ended);
    ThreadBufferRecord* record = table[first_ended];
    first_ended = record->next_ended;
    *record = {};
    return record;
}

/// Null when there is no memory or the table is full. The lock is not held while the allocator works: at a fork the
/// allocator's own lock may be taken before ours.
[[gnu::cold]] ThreadBufferRecord* new_record() {
    notice_the_end_of_the_process();
    if (this_thread.ended || !end_will_be_noticed()) return nullptr;
    if (ThreadBufferRecord* record = take_over_record()) return record;
    auto* record = static_cast<ThreadBufferRecord*>(allocator.malloc(sizeof(ThreadBufferRecord)));
    if (!record) return nullptr;
    *record = {};
    if (enter_in_table(record)) return record;
    allocator.free(record);
    return nullptr;
}

/// Whoever unloads the library has no call running in it, so blocks still in use are lost ones. At the end of the
/// process other threads may run calls to the last, and the system takes all back.
[[gnu::destructor]] void give_all_back() {
    const SpinGuard guard(table_lock);
    if (end_key_exists) pthread_key_delete(end_key);
    end_key_exists = false;
    if (process_ends) return;
    for (i64 entry = 1; entry <= table_count; ++entry) {
        if (!table[entry]) continue;
        DetachedBlocks blocks;
        table[entry]->detach_all_blocks(blocks);
        allocator.free(table[entry]);
    }
    table_count = 0;
}

void* take_raw(i64 size) {
    void* block = allocator.malloc(static_cast<std::size_t>(size));
    if (block) ++this_thread.raw_blocks;
    return block;
}

void give_back_raw(void* block) {
    if (this_thread.raw_blocks > 0) --this_thread.raw_blocks;
    allocator.free(block);
}

i64 normal_alignment(int alignment) {
    if (alignment < 4) return 0;
    return std::has_single_bit(static_cast<unsigned>(alignment)) ? alignment : default_alignment;
}

} // namespace

void* nxl_buffer_alloc(i64 size, int alignment) {
    if (size < 1) return nullptr;
    if (size > largest_cached || caching_is_off()) return take_raw(size);
    ThreadBufferRecord* record = own_record();
    if (!record) record = new_record();
    if (!record) return take_raw(size);
    const i64 aligned_to = normal_alignment(alignment);
    BufferSlot* slot = record->choose(size + aligned_to);
    return slot ? record->take(*slot, size, aligned_to) : take_raw(size);
}

void nxl_buffer_free(void* block) {
    if (!block) return;
    if (caching_is_off()) return give_back_raw(block);
    ThreadBufferRecord* record = own_record();
    if (record) {
        if (!record->give_back(block)) give_back_raw(block);
    } else if (this_thread.raw_blocks > 0) { // else it is no block of this thread, and not ours to judge
        give_back_raw(block);
    }
}

void free_buffers() {
    if (caching_is_off()) return;
    const SpinGuard guard(table_lock);
    bool busy = false;
    first_ended = 0;
    for (i64 entry = 1; entry <= table_count; ++entry) {
        ThreadBufferRecord*& record = table[entry];
        if (!record) continue;
        DetachedBlocks blocks;
        if (!record->detach_free_blocks(blocks)) busy = true;
        if (busy) { // once a block was in use, the records that follow stay, emptied
            if (record->ended) add_to_ended(entry);
            continue;
        }
        allocator.free(record);
        record = nullptr;
    }
    if (busy) return;
    table_count = 0;
    ++table_generation;
}

const ThreadBufferRecord* thread_buffers() { return own_record(); }

} // namespace nxl
