// What the machine can do at best, measured: floating-point operations and memory traffic.
#pragma once
#include <array>

namespace nxl::bench {

/// Multiply-adds in registers, each counted as two operations; one core.
double peak_flops_per_second();

/// Multiplications and additions of SSE2, as many of each, in registers; one core.
double peak_sse2_flops_per_second();

/// What a loop does with its arrays; bytes count each load and each store once.
struct Traffic {
    enum Kind { reads, stores, copies };

    const char* name;
    Kind kind;
    int arrays;
    int bytes_per_element;
    void (*pass)(double* x, double* y, double* z, long n);
};
extern const std::array<Traffic, 4> traffic_patterns;

/// Bytes per second of that many cores together, each on `bytes` of its own.
double bandwidth(const Traffic& traffic, double bytes, int threads);

/// The best pattern that only reads, or that stores too, or that copies; measured once per size (a power of two) and
/// thread count.
double peak_bandwidth(Traffic::Kind kind, double bytes, int threads);

/// Far beyond any cache.
inline constexpr double memory_bytes = 128.0 * (1 << 20);

} // namespace nxl::bench
