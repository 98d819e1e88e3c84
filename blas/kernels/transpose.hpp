// Square blocks of elements in registers, transposed.
#pragma once
#include "service/vec_complex.hpp"

namespace nxl::NXL_TARGET {
namespace { // each source has its own: shared functions would be weak symbols

/// Elements in a register of W doubles, and registers in a block.
template <class T, int W> constexpr int kElements = W / kParts<T>;
template <class T, int W> using SquareBlock = Vec<W>[kElements<T, W>];

/// Exchanges the two blocks off the diagonal, of `distance` elements and registers, in a, b = v[i], v[i + distance].
template <class T, int W, int distance> [[gnu::always_inline]] inline void exchange(Vec<W>& a, Vec<W>& b) {
    constexpr auto stays = [](int lane) { return (lane / kParts<T> & distance) == 0; };
    constexpr int lanes = distance * kParts<T>;
    [&]<int... L>(std::integer_sequence<int, L...>) __attribute__((always_inline)) {
        const Vec<W> upper = __builtin_shufflevector(a, b, (stays(L) ? L : W + L - lanes)...);
        b = __builtin_shufflevector(a, b, (stays(L) ? L + lanes : W + L)...);
        a = upper;
    }(std::make_integer_sequence<int, W>{});
}
template <class T, int W, int distance = kElements<T, W> / 2>
[[gnu::always_inline]] inline void transpose(SquareBlock<T, W>& v) {
    if constexpr (distance > 0) {
        repeat<kElements<T, W>>([&](auto i) {
            if constexpr ((i & distance) == 0) exchange<T, W, distance>(v[i], v[i + distance]);
        });
        transpose<T, W, distance / 2>(v);
    }
}

} // namespace
} // namespace nxl::NXL_TARGET
