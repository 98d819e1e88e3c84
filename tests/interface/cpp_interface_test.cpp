// nxl.h from C++, with strict warnings, and the two routines that a host may replace: the library's own reports come
// here.
#include "nxl.h"
#include "tests/support/host_allocator.hpp"
#include <cstdio>
#include <cstring>
#include <vector>

static int reports = 0;

extern "C" __attribute__((visibility("default"))) void XERBLA(const char*, const int*, int) noexcept { ++reports; }
extern "C" __attribute__((visibility("default"))) int NXL_PROGRESS(const int*, const int* step, const char* stage,
                                                                   int stage_length) noexcept {
    return std::strncmp(stage, "stage", static_cast<std::size_t>(stage_length)) == 0 ? *step : -1;
}

int main() {
    const int one = 1, seven = 7;
    const std::complex<double> x(0.0, 1.0), alpha(0.0, 2.0);
    std::complex<double> y(1.0, 0.0), dot;
    zaxpy(&one, &alpha, &x, &one, &y, &one);
    zdotu(&dot, &one, &x, &one, &y, &one);
    const bool right = y == -1.0 && dot == std::complex<double>(0.0, -1.0);

    // The copy of this index array is too large to be cached: one allocation, which fails.
    const int nz = 6000000;
    const std::vector<int> places(6000000, 1);
    std::vector<double> gathered(6000000, 0.0);
    const double dense = 1.0;
    nxl_test::fail_allocation(1);
    dgthr(&nz, &dense, gathered.data(), places.data());
    const bool reported = reports == 1 && gathered[0] == 0.0;
    const bool replaced = NXL_PROGRESS(&one, &seven, "stage", 5) == 7;
    std::printf("results %d, report reached the host %d, progress replaced %d\n", right, reported, replaced);
    return right && reported && replaced ? 0 : 1;
}
