// The counting allocator and the four variables by which the library finds it.
#include "tests/support/host_allocator.hpp"
#include <atomic>
#include <cstdlib>

namespace nxl_test {
namespace {

// Plain atomics, so that a child process forked in the middle of a call finds no lock taken.
std::atomic<long> live{0}, taken{0}, until_failure{0};
constexpr std::size_t largest = std::size_t{1}
                                << 40; // what no machine has: the sanitizers' allocator would end the test

void* count(void* block) {
    if (block) ++live;
    return block;
}

bool refused(std::size_t size) {
    ++taken;
    return size > largest || until_failure.fetch_sub(1) == 1;
}

void* counted_malloc(std::size_t size) { return refused(size) ? nullptr : count(std::malloc(size)); }

void* counted_calloc(std::size_t n, std::size_t size) { return refused(size) ? nullptr : count(std::calloc(n, size)); }

void* counted_realloc(void* block, std::size_t size) {
    if (!block) return counted_malloc(size);
    return refused(size) ? nullptr : std::realloc(block, size);
}

void counted_free(void* block) {
    if (block) --live;
    std::free(block);
}

} // namespace

long live_blocks() { return live; }
long allocations() { return taken; }
void fail_allocation(long k) { until_failure = k; }

} // namespace nxl_test

extern "C" {
void* (*i_malloc_dll)(std::size_t) = nxl_test::counted_malloc;
void* (*i_calloc_dll)(std::size_t, std::size_t) = nxl_test::counted_calloc;
void* (*i_realloc_dll)(void*, std::size_t) = nxl_test::counted_realloc;
void (*i_free_dll)(void*) = nxl_test::counted_free;
}
