// nxl.h from C++, with strict warnings, and the two routines that a host may replace: the library's own reports come
// here.
#include "nxl.h"
#include "tests/support/host_allocator.hpp"
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

static int reports = 0;
static std::string last_report;

extern "C" __attribute__((visibility("default"))) void XERBLA(const char* srname, const int* info, int len) noexcept {
    ++reports;
    last_report = std::string(srname, static_cast<std::size_t>(len)) + std::to_string(*info);
}
extern "C" __attribute__((visibility("default"))) int NXL_PROGRESS(const int*, const int* step, const char* stage,
                                                                   int stage_length) noexcept {
    return std::strncmp(stage, "stage", static_cast<std::size_t>(stage_length)) == 0 ? *step : -1;
}

/// The name comes with its blanks and its length.
static bool bad_arguments_reach_the_host() {
    const int two = 2, one = 1;
    const double a[4] = {1.0, 0.0, 0.0, 1.0}, x[2] = {1.0, 1.0}, factor = 1.0;
    const std::complex<double> z[4];
    std::complex<double> c[4];
    double b[4] = {1.0, 2.0, 3.0, 4.0}, y[2] = {0.0, 0.0};
    dgemv("N", &two, &two, &factor, a, &one, x, &one, &factor, y, &one);
    const bool dgemv_told = last_report == "DGEMV 6";
    dtrsm("L", "U", "N", "X", &two, &two, &factor, a, &two, b, &two);
    const bool dtrsm_told = last_report == "DTRSM 4";
    zherk("U", "T", &two, &two, &factor, z, &two, &factor, c, &two);
    const bool zherk_told = last_report == "ZHERK 2";
    return dgemv_told && dtrsm_told && zherk_told && reports == 3 && b[3] == 4.0;
}

int main() {
    const int one = 1, seven = 7;
    const std::complex<double> x(0.0, 1.0), alpha(0.0, 2.0);
    std::complex<double> y(1.0, 0.0), dot;
    zaxpy(&one, &alpha, &x, &one, &y, &one);
    zdotu(&dot, &one, &x, &one, &y, &one);
    const bool right = y == -1.0 && dot == std::complex<double>(0.0, -1.0);

    const bool arguments_reported = bad_arguments_reach_the_host();
    reports = 0;

    // The copy of this index array is too large to be cached: one allocation, which fails.
    const int nz = 6000000;
    const std::vector<int> places(6000000, 1);
    std::vector<double> gathered(6000000, 0.0);
    const double dense = 1.0;
    nxl_test::fail_allocation(1);
    dgthr(&nz, &dense, gathered.data(), places.data());
    const bool reported = reports == 1 && gathered[0] == 0.0;
    const bool replaced = NXL_PROGRESS(&one, &seven, "stage", 5) == 7;
    std::printf("results %d, reports reached the host %d and %d, progress replaced %d\n", right, arguments_reported,
                reported, replaced);
    return right && arguments_reported && reported && replaced ? 0 : 1;
}
