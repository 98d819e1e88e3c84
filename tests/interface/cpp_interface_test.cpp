// nxl.h from C++, with strict warnings, and the two routines that a host may replace: the library's own reports come here.
#include "nxl.h"
#include <cstdio>
#include <cstring>

static int reports = 0;

extern "C" __attribute__((visibility("default"))) void XERBLA(const char*, const int*, int) noexcept { ++reports; }
extern "C" __attribute__((visibility("default"))) int NXL_PROGRESS(const int*, const int* step, const char* stage,
                                                                   int stage_length) noexcept {
    return std::strncmp(stage, "stage", static_cast<std::size_t>(stage_length)) == 0 ? *step : -1;
}

// The library asks this allocator for memory too large to cache, and gets none.
static void* no_memory(std::size_t) { return nullptr; }
static void* no_zeroed_memory(std::size_t, std::size_t) { return nullptr; }
static void* no_more_memory(void*, std::size_t) { return nullptr; }
static void release(void*) {}
extern "C" {
__attribute__((visibility("default"))) void* (*i_malloc_dll)(std::size_t) = no_memory;
__attribute__((visibility("default"))) void* (*i_calloc_dll)(std::size_t, std::size_t) = no_zeroed_memory;
__attribute__((visibility("default"))) void* (*i_realloc_dll)(void*, std::size_t) = no_more_memory;
__attribute__((visibility("default"))) void (*i_free_dll)(void*) = release;
}

int main() {
    const int one = 1, seven = 7;
    const std::complex<double> x(0.0, 1.0), alpha(0.0, 2.0);
    std::complex<double> y(1.0, 0.0), dot;
    zaxpy(&one, &alpha, &x, &one, &y, &one);
    zdotu(&dot, &one, &x, &one, &y, &one);
    const bool right = y == -1.0 && dot == std::complex<double>(0.0, -1.0);

    zgthr(&one, &x, &y, &one); // needs scratch memory for its index array
    const bool reported = reports == 1 && y == -1.0;
    const bool replaced = NXL_PROGRESS(&one, &seven, "stage", 5) == 7;
    std::printf("results %d, report reached the host %d, progress replaced %d\n", right, reported, replaced);
    return right && reported && replaced ? 0 : 1;
}
