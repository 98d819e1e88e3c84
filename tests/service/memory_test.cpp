// The memory service over an allocator that counts and fails on demand: slot rules, release, threads that come and go,
// exhaustion. Every test ends with all blocks back at the allocator.
#include "nxl.h"
#include "service/memory_seams.hpp"
#include "service/scratch.hpp"
#include "tests/support/child.hpp"
#include "tests/support/host_allocator.hpp"
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <gtest/gtest.h>
#include <pthread.h>
#include <semaphore>
#include <thread>
#include <utility>
#include <vector>

namespace nxl {
namespace {

using nxl_test::allocations, nxl_test::live_blocks, nxl_test::fail_allocation;

constexpr i64 largest_cached = 40 << 20;
constexpr i64 huge = i64{1} << 62;

class Memory : public ::testing::Test {
  protected:
    void SetUp() override {
        NXL_FreeBuffers();
        ASSERT_EQ(live_blocks(), 0);
    }
    void TearDown() override {
        fail_allocation(0);
        NXL_FreeBuffers();
        EXPECT_EQ(live_blocks(), 0);
    }
};

/// Blocks of these sizes, without alignment, taken together and given back: the slots then hold them in this order.
void fill_slots(std::initializer_list<i64> sizes) {
    std::vector<void*> blocks;
    for (const i64 size : sizes) blocks.push_back(nxl_buffer_alloc(size, 0));
    for (void* block : blocks) nxl_buffer_free(block);
}

std::vector<i64> capacities() {
    std::vector<i64> result;
    for (int i = 0; i < thread_buffers()->count; ++i) result.push_back(thread_buffers()->slots[i].capacity);
    return result;
}

void in_new_thread(const std::function<void()>& body) { std::thread(body).join(); }

TEST_F(Memory, AlignmentsAreNormalised) {
    struct Alignment {
        int asked;
        std::uintptr_t given;
        i64 reserved;
    };
    for (const auto& [asked, given, reserved] : {Alignment{128, 128, 128},
                                                 {64, 64, 64},
                                                 {4096, 4096, 4096},
                                                 {4, 4, 4},
                                                 {24, 32, 32},
                                                 {129, 32, 32},
                                                 {2, 1, 0},
                                                 {0, 1, 0},
                                                 {-128, 1, 0}}) {
        void* block = nxl_buffer_alloc(1000, asked);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % given, 0U) << asked;
        EXPECT_EQ(capacities(), std::vector<i64>{1000 + reserved}) << asked;
        std::memset(block, -1, 1000); // the sanitizer sees a block that ends too early
        nxl_buffer_free(block);
        NXL_FreeBuffers();
    }
}

TEST_F(Memory, ImpossibleSizesGiveNull) {
    for (const i64 size : {i64{0}, i64{-1}, -huge, huge, std::numeric_limits<i64>::max()})
        EXPECT_EQ(nxl_buffer_alloc(size, 128), nullptr) << size;
    nxl_buffer_free(nullptr);
    EXPECT_EQ(Scratch<double>(huge).data(), nullptr); // its bytes overflow 64 bits
    EXPECT_EQ(Scratch<double>(-huge).data(), nullptr);
}

TEST_F(Memory, ExactMatchIsReusedWithoutTheAllocator) {
    fill_slots({3000, 1000, 2000});
    void* const expected = thread_buffers()->slots[1].raw;
    const long before = allocations();
    for (int i = 0; i < 3; ++i) {
        void* block = nxl_buffer_alloc(1000, 0);
        EXPECT_EQ(block, expected); // not the first larger one
        nxl_buffer_free(block);
    }
    EXPECT_EQ(allocations(), before);
    nxl_buffer_free(nxl_buffer_alloc(1000, 64)); // another alignment is another capacity
    EXPECT_EQ(capacities(), (std::vector<i64>{3000, 1000, 2000, 1064}));
    EXPECT_EQ(thread_buffers()->total, 7064);
}

TEST_F(Memory, SixthSizeTakesTheFirstLargerBlock) {
    fill_slots({100, 500, 300, 200, 400});
    const long before = allocations();
    void* block = nxl_buffer_alloc(250, 0);
    const BufferSlot& slot = thread_buffers()->slots[1];
    EXPECT_EQ(block, slot.raw);
    EXPECT_EQ(slot.requested, 250);
    void* next = nxl_buffer_alloc(20, 256); // the one at 500 is in use now; this one is aligned anew in its block
    EXPECT_EQ(thread_buffers()->slots[2].aligned, next);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(next) % 256, 0U);
    EXPECT_EQ(allocations(), before);
    nxl_buffer_free(block);
    nxl_buffer_free(next);
}

TEST_F(Memory, SixthSizeReplacesTheFirstSmallerBlock) {
    fill_slots({300, 100, 200, 400, 500});
    void* block = nxl_buffer_alloc(1000, 0);
    EXPECT_EQ(capacities(), (std::vector<i64>{1000, 100, 200, 400, 500}));
    EXPECT_EQ(thread_buffers()->total, 2200);
    EXPECT_EQ(live_blocks(), 1 + 5); // the record and its blocks: the old one went back
    nxl_buffer_free(block);
}

TEST_F(Memory, SixthHeldBlockGoesStraightBack) {
    void* blocks[6];
    for (void*& block : blocks) block = nxl_buffer_alloc(1000, 128);
    EXPECT_EQ(live_blocks(), 1 + 6);
    nxl_buffer_free(blocks[5]);
    EXPECT_EQ(live_blocks(), 1 + 5);
    for (int i = 0; i < 5; ++i) nxl_buffer_free(blocks[i]);
    EXPECT_EQ(live_blocks(), 1 + 5);
}

TEST_F(Memory, BlocksAbove40MiBAreNotCached) {
    nxl_buffer_free(nxl_buffer_alloc(largest_cached, 0));
    EXPECT_EQ(capacities(), std::vector<i64>{largest_cached});
    nxl_buffer_free(nxl_buffer_alloc(largest_cached + 1, 0));
    EXPECT_EQ(live_blocks(), 1 + 1);
    in_new_thread([] { // a thread without a record has to give it back as well
        nxl_buffer_free(nxl_buffer_alloc(largest_cached + 1, 128));
        EXPECT_EQ(thread_buffers(), nullptr);
    });
    EXPECT_EQ(live_blocks(), 1 + 1);
}

TEST_F(Memory, ForeignBlockOnAThreadWithoutRecordIsLeftAlone) {
    void* block = nxl_buffer_alloc(1000, 128);
    in_new_thread([block] { nxl_buffer_free(block); });
    EXPECT_TRUE(thread_buffers()->slots[0].in_use);
    nxl_buffer_free(block);
}

TEST_F(Memory, FreeBuffersKeepsWhatIsHeld) {
    void* held = nxl_buffer_alloc(1000, 128);
    void* other = nxl_buffer_alloc(2000, 128);
    nxl_buffer_free(other);
    NXL_FreeBuffers();
    NXL_FreeBuffers();
    EXPECT_EQ(live_blocks(), 1 + 1);
    EXPECT_EQ(thread_buffers()->total, 1128);
    std::memset(held, 1, 1000);
    nxl_buffer_free(nxl_buffer_alloc(3000, 0)); // takes the emptied slot or another, and is cached
    EXPECT_EQ(live_blocks(), 1 + 2);
    nxl_buffer_free(held);
    NXL_FreeBuffers();
    NXL_FreeBuffers();
    EXPECT_EQ(thread_buffers(), nullptr);
}

TEST_F(Memory, ReleasedAddressIsForgotten) {
    void* held = nxl_buffer_alloc(1000, 128);
    nxl_buffer_free(nxl_buffer_alloc(largest_cached, 0));
    NXL_FreeBuffers();
    nxl_buffer_free(nxl_buffer_alloc(largest_cached + 1, 0)); // as a rule the allocator gives the same address again
    EXPECT_EQ(live_blocks(), 1 + 1);
    nxl_buffer_free(held);
}

/// A thread that takes and gives back one block whenever it is asked to.
class Worker {
    std::counting_semaphore<> asked_{0}, done_{0};
    void* held_ = nullptr;
    bool more_ = true;
    bool hold_ = false;
    std::thread thread_{[this] {
        for (asked_.acquire(); more_; asked_.acquire()) {
            nxl_buffer_free(held_);
            held_ = nxl_buffer_alloc(500, 64);
            std::memset(held_, 1, 500);
            if (!hold_) nxl_buffer_free(std::exchange(held_, nullptr));
            done_.release();
        }
        nxl_buffer_free(held_);
    }};

  public:
    void work(bool hold = false) {
        hold_ = hold;
        asked_.release();
        done_.acquire();
    }
    Worker() = default;
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() {
        more_ = false;
        asked_.release();
        thread_.join();
    }
};

TEST_F(Memory, ThreadThatComesBackAfterReleaseStartsAnew) {
    Worker first, second;
    first.work();
    second.work();
    NXL_FreeBuffers();
    EXPECT_EQ(live_blocks(), 0);
    second.work(); // now at the place in the table that the first one had
    first.work();
    first.work();
    EXPECT_EQ(live_blocks(), 2 * (1 + 1));
}

TEST_F(Memory, ReleaseBesideAThreadThatHoldsABlock) {
    Worker before, holder, after;
    before.work();
    holder.work(true);
    after.work();
    NXL_FreeBuffers(); // releases the first record, keeps the second, empties the third but keeps it
    EXPECT_EQ(live_blocks(), 0 + (1 + 1) + 1);
    NXL_FreeBuffers();
    for (Worker* worker : {&before, &holder, &after}) worker->work();
    EXPECT_EQ(live_blocks(), 3 * (1 + 1));
}

TEST_F(Memory, ThreadsThatEndLeaveTheirRecordsForOthers) {
    const auto work = [](int threads, bool cached) {
        for (int i = 0; i < threads; ++i)
            in_new_thread([cached] {
                fill_slots({8, 1000});
                EXPECT_EQ(thread_buffers() != nullptr, cached);
            });
    };
    work(4000, true);
    void* held = nxl_buffer_alloc(1000, 128);
    work(4192, true);
    EXPECT_EQ(live_blocks(), 8193 + 1);
    NXL_FreeBuffers(); // releases the records before the busy one; those behind it are there to be taken over
    Worker last;
    last.work(true);
    work(10, true);
    EXPECT_EQ(live_blocks(), 4193 + 2);
    nxl_buffer_free(held);
    NXL_FreeBuffers();
    work(10, false); // there is no record left but the last, which is busy
    EXPECT_EQ(live_blocks(), 1 + 1);
}

/// In a process that may end in disorder: every record there can be belongs to a thread that ended with a block in use.
void end_in_use() {
    const auto hold = [] {
        nxl_buffer_free(nxl_buffer_alloc(1000, 0));
        nxl_buffer_alloc(1000, 0);
        nxl_buffer_free(nxl_buffer_alloc(8, 0));
    };
    for (int i = 0; i < 8193; ++i) in_new_thread(hold);
    in_new_thread([] { nxl_buffer_free(nxl_buffer_alloc(8, 0)); }); // without a record, yet given back
}

/// Runs after the library's own, which leaves a process that ends as it is: other threads may be in a call.
bool count_at_the_end = false;
[[gnu::destructor(101)]] void count_blocks() {
    if (count_at_the_end) std::printf("%ld", live_blocks());
}

/// Runs at the end of a thread, after the library's own destructor, whose key is older.
pthread_key_t later_key(void (*destructor)(void*)) {
    fill_slots({100});
    pthread_key_t key;
    pthread_key_create(&key, destructor);
    return key;
}

TEST_F(Memory, DestructorsOfOtherLibrariesMayStillCall) {
    const pthread_key_t key = later_key([](void* held) {
        nxl_buffer_free(held);
        fill_slots({700, 800});
    });
    const long before = live_blocks();
    in_new_thread([key] { pthread_setspecific(key, nxl_buffer_alloc(500, 64)); });
    in_new_thread([key] {
        fill_slots({500});
        pthread_setspecific(key, nxl_buffer_alloc(largest_cached + 1, 0)); // leaves no block of the record in use
    });
    EXPECT_EQ(live_blocks(), before + 2); // the records
    pthread_key_delete(key);
}

/// Takes what a busy thread takes: fills the slots, goes to a sixth block and a large one, replaces a small one.
void use_all_roads() {
    std::vector<std::pair<char*, i64>> held;
    const auto take = [&held](i64 size) {
        if (auto* block = static_cast<char*>(nxl_buffer_alloc(size, 64))) held.emplace_back(block, size);
    };
    const auto give_back_all = [&held] {
        for (const auto& [block, size] : held) {
            block[0] = block[size - 1] = 1;
            nxl_buffer_free(block);
        }
        held.clear();
    };
    for (const i64 size : {100, 200, 300, 400, 500, 600}) take(size);
    take(largest_cached + 1);
    give_back_all();
    for (const i64 size : {700, 800, 50}) take(size);
    give_back_all();
}

TEST_F(Memory, NoFailureLeaksABlockOrLosesASlot) {
    long k = 0;
    for (long made = 1, needed = 0; k < made; made = std::max(made, needed)) {
        const long before = allocations();
        fail_allocation(++k);
        use_all_roads();
        fail_allocation(0);
        needed = allocations() - before;
        for (const BufferSlot& slot : thread_buffers()->slots) EXPECT_FALSE(slot.in_use) << k;
        use_all_roads();
        EXPECT_EQ(thread_buffers()->count, 5) << k;
        EXPECT_EQ(live_blocks(), 1 + 5) << k;
        NXL_FreeBuffers();
        EXPECT_EQ(live_blocks(), 0) << k;
    }
    EXPECT_GE(k, 10); // the record, five slots, two raw blocks, two replaced blocks
}

TEST_F(Memory, ForkWhileAnotherThreadHoldsTheLock) {
    void* held = nxl_buffer_alloc(100, 128); // the first record stays, and so do all others: a long walk under the lock
    for (int i = 0; i < 2000; ++i) in_new_thread([] { nxl_buffer_free(nxl_buffer_alloc(8, 0)); });
    std::atomic<bool> more{true};
    std::thread releasing([&more] {
        for (int i = 0; more; ++i) {
            NXL_FreeBuffers();
            if (i % 16 == 0) std::this_thread::yield(); // so that the fork gets the lock in its turn
        }
    });
    for (int i = 0; i < 20 && !HasFailure(); ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(20); // a lock that nobody will open
            NXL_FreeBuffers();
            void* block = nxl_buffer_alloc(200, 128);
            nxl_buffer_free(block);
            _exit(block && nxl_buffer_alloc(200, 128) == block ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    more = false;
    releasing.join();
    nxl_buffer_free(held);
}

struct InAProcess {
    const char* order;
    const char* setting;
    const char* blocks_kept;
};

TEST(MemoryOfAProcess, IsKeptAsToldAndNoMore) {
    for (const auto& [order, setting, blocks_kept] : {InAProcess{"call", "NXL_MM_DISABLE=0", "0"}, // any text counts
                                                      {"call", "NXL_DISABLE_FAST_MM=1", "0"},
                                                      {"call", "NXL_MM_DISABLE=", "2"},
                                                      {"call", "NXL_DISABLE_FAST_MM=", "2"},
                                                      {"end-in-use", "NXL_MM_DISABLE=", "16386"}}) {
        const auto [status, output] = nxl_test::run_self({order}, {setting});
        EXPECT_EQ(status, 0);
        EXPECT_EQ(output, blocks_kept) << order << ' ' << setting;
    }
}

TEST(AllocatorHooksOfTheHost, AreTakenTogetherOrNotAtAll) {
    static void (*other_free)(void*) = [](void*) {};
    static void (*no_function)(void*) = nullptr;
    EXPECT_NE(allocator.free, std::free); // this program's own, found when the library was loaded
    const auto all = [](const char* name) { return dlsym(RTLD_DEFAULT, name); };
    const auto one_missing = [](const char* name) {
        return std::string(name) == "i_calloc_dll" ? nullptr : dlsym(RTLD_DEFAULT, name);
    };
    const auto one_null = [](const char* name) -> void* {
        return std::string(name) == "i_free_dll" ? &no_function : dlsym(RTLD_DEFAULT, name);
    };
    const auto another_free = [](const char* name) -> void* {
        return std::string(name) == "i_free_dll" ? &other_free : dlsym(RTLD_DEFAULT, name);
    };
    EXPECT_EQ(find_allocator_hooks(all).malloc, allocator.malloc);
    EXPECT_EQ(find_allocator_hooks(one_missing).malloc, std::malloc);
    EXPECT_EQ(find_allocator_hooks(one_null).free, std::free);
    EXPECT_EQ(find_allocator_hooks(another_free).free, other_free);
}

} // namespace
} // namespace nxl

int main(int argc, char** argv) {
    const std::string order = argc > 1 ? argv[1] : "";
    nxl::count_at_the_end = order == "call" || order == "end-in-use";
    if (order == "call") nxl::nxl_buffer_free(nxl::nxl_buffer_alloc(100, 128));
    if (order == "end-in-use") nxl::end_in_use();
    if (nxl::count_at_the_end) return 0;
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
