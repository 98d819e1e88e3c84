// How threads share the trailing update of the tridiagonal reduction.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// `width` columns of a triangle of order m, at `offset` from the end at which its columns are short: a rectangle of
/// offset by width and a triangle of order width.
struct TrailingBlock {
    i64 offset, width;
};

/// The two blocks of one thread: a short one and a tall one, so that all threads have nearly the same area.
///
///     offset    0 b 2b 3b          thread 0 of 2 has the blocks at 0 and 3 b, thread 1 those at b and 2 b; what is
///               . | | |            left of m beyond a multiple of 2 threads b belongs to the last block.
///                 . | |
///                   . |            b is even, which keeps blocks aligned.
///                     .
struct TrailingShare {
    TrailingBlock low, high;
};

constexpr TrailingShare trailing_share(i64 m, i64 threads, i64 thread) {
    const i64 blocks = 2 * threads, width = m / blocks / 2 * 2, offset = (blocks - thread - 1) * width;
    return {{thread * width, width}, {offset, thread == 0 ? m - offset : width}};
}

} // namespace nxl
