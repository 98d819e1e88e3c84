// Cuts of symmetric products and rank updates.
#include "blas/kernel/default_em64t/level3/level3_rules.hpp"
#include <cmath>

namespace nxl {
namespace {

constexpr i64 strip_unit = 8; // rows of the tallest register tile

/// Of a triangle the share above row b is (b / n)^2, so that equal areas end at square roots.
i64 strip_border(i64 n, i64 index, i64 strips) {
    if (index == strips) return n;
    const double share = static_cast<double>(index) / static_cast<double>(strips);
    const auto border = static_cast<i64>(static_cast<double>(n) * std::sqrt(share));
    return std::min(round_down(border + strip_unit / 2, strip_unit), n);
}

} // namespace

TriangleStrip triangle_strip(bool lower, i64 n, i64 index, i64 strips) {
    const i64 from = strip_border(n, index, strips);
    const Slice own{from, strip_border(n, index + 1, strips) - from}, before{0, from};
    return {own, lower ? own : before, lower ? before : own};
}

int strips_for(i64 n, int threads) {
    return static_cast<int>(std::min(i64{2} * threads, std::max(n / strip_unit, i64{1})));
}

} // namespace nxl
