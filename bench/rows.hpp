// What the tables of routines share: rows, and scalars. Scalars are such that values neither grow nor vanish over
// millions of calls, and never 0 or 1, which have short cuts: a sum decays as fast as it is fed, or one call undoes
// what the call before it did.
#pragma once
#include "bench/routines.hpp"
#include <type_traits>

namespace nxl::bench {

inline constexpr int one = 1;

template <class Scalar> const Scalar& next(Operands& o, const Scalar (&pair)[2]) { return pair[o.turn++ & 1]; }

/// A row whose body calls `f`, a pointer to `Function`.
template <class Function, class Body> Routine row(const char* name, Work (*work)(const Case&), Body) {
    return {name, work, [](Symbol symbol, Operands& o, i64 calls) {
                auto* f = reinterpret_cast<Function*>(symbol.address);
                for (i64 call = 0; call < calls; ++call) Body{}(f, o);
            }};
}

// Scalars of levels 2 and 3, by type.
template <class T> inline constexpr T alpha = 0.7;
template <> inline constexpr zcomplex alpha<zcomplex>{0.6, 0.3};
template <class T> inline constexpr T beta = 0.5;
template <> inline constexpr zcomplex beta<zcomplex>{0.4, 0.3};
template <class T> inline constexpr T alphas_of_both_signs[2] = {alpha<T>, -alpha<T>};
template <class T> inline constexpr T doubling_and_halving[2] = {2.0, 0.5};

template <class T> inline constexpr bool is_complex = std::is_same_v<T, zcomplex>;
template <class T> inline constexpr int doubles_per_element = is_complex<T> ? 2 : 1;

/// Work in elements: multiply-adds, each 2 operations or in complex numbers 8, and elements loaded and stored.
template <class T> Work work_in_elements(double multiply_adds, double loaded, double stored, int terms, Layout layout) {
    layout.doubles_per_element = doubles_per_element<T>;
    return {(is_complex<T> ? 8.0 : 2.0) * multiply_adds, sizeof(T) * loaded, sizeof(T) * stored, terms, layout};
}

} // namespace nxl::bench
