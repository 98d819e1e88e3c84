// Splitting, scaling and sorting for the QL and QR iterations.
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include <algorithm>

namespace nxl {

double block_scale(const double* d, const double* e, i64 n) {
    constexpr double largest = 0x1p509, least = 0x1p-405; // their squares, and those by a few roundoffs, are normal
    const double size = std::max(largest_abs1(n, d), largest_abs1(n - 1, e));
    if (size == 0.0 || !std::isfinite(size) || (size >= least && size <= largest)) return 1.0;
    return std::ldexp(1.0, -std::clamp(std::ilogb(size), -1000, 1000));
}

Slice next_block(i64 n, const double* d, double* e, i64 start) {
    i64 last = start;
    for (; last + 1 < n; ++last) {
        const double size = std::fabs(e[last]);
        if (size == 0.0 || size <= std::sqrt(std::fabs(d[last])) * std::sqrt(std::fabs(d[last + 1])) * unit_roundoff) {
            e[last] = 0.0;
            break;
        }
    }
    return {start, last + 1 - start};
}

i64 count_nonzeros(i64 n, const double* e) {
    i64 count = 0;
    for (i64 i = 0; i + 1 < n; ++i) count += e[i] != 0.0 ? 1 : 0;
    return count;
}

void sort_ascending(i64 n, double* values) {
    std::sort(values, values + n, [](double x, double y) { return x < y || (std::isnan(y) && !std::isnan(x)); });
}

} // namespace nxl
