// What the factorisation and the solves ask of their scalars.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <type_traits>

namespace nxl::pardiso {

template <class T> inline constexpr bool is_complex_scalar = std::is_same_v<T, zcomplex>;

/// |x|, or |re| + |im|: how pivots are compared.
inline double abs1(double x) { return std::fabs(x); }
inline double abs1(const zcomplex& x) { return std::fabs(x.real()) + std::fabs(x.imag()); }

inline double real_part(double x) { return x; }
inline double real_part(const zcomplex& x) { return x.real(); }

template <bool Conjugate> double conj_if(double x) { return x; }
template <bool Conjugate> zcomplex conj_if(const zcomplex& x) {
    if constexpr (Conjugate) return std::conj(x);
    else return x;
}

} // namespace nxl::pardiso
