// How a range of rows, columns or elements is cut into one part for each block of a parallel region.
#pragma once
#include "service/types.hpp"
#include <algorithm>

namespace nxl {

constexpr i64 round_down(i64 value, i64 unit) { return value / unit * unit; }
constexpr i64 round_up(i64 value, i64 unit) { return (value + unit - 1) / unit * unit; }

/// Items start .. start + count - 1.
struct Slice {
    i64 start;
    i64 count;

    constexpr i64 end() const { return start + count; }
};

/// Slice `index` of `slices`: `chunk` items, of which the last slice takes all that remain. The start lies within the
/// range even for slices that get nothing, so that a pointer may be formed.
constexpr Slice slice_of(i64 length, i64 chunk, i64 index, i64 slices) {
    const i64 start = std::max(std::min(index * chunk, length - 1), i64{0});
    const i64 rest = std::max(length - index * chunk, i64{0});
    return {start, index == slices - 1 ? rest : std::min(chunk, rest)};
}

/// Slice `index` of `slices` of nearly equal lengths, multiples of `unit` but for the last.
constexpr Slice balanced_slice(i64 length, i64 unit, i64 index, i64 slices) {
    const i64 start = round_down(length * index / slices, unit);
    return {start, (index + 1 == slices ? length : round_down(length * (index + 1) / slices, unit)) - start};
}

} // namespace nxl
