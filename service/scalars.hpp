// What templates over double and zcomplex ask of one number.
#pragma once
#include "service/types.hpp"
#include <cmath>
#include <type_traits>

namespace nxl {

template <class T> inline constexpr bool is_complex_scalar = std::is_same_v<T, zcomplex>;

inline double real_part(double x) { return x; }
inline double real_part(const zcomplex& x) { return x.real(); }

/// |re| + |im|: the modulus to a factor of sqrt(2), without a root.
inline double abs1(double x) { return std::fabs(x); }
inline double abs1(const zcomplex& x) { return std::fabs(x.real()) + std::fabs(x.imag()); }

inline double conj_if(bool, double x) { return x; }
inline zcomplex conj_if(bool conjugate, const zcomplex& x) { return conjugate ? std::conj(x) : x; }
/// The same where it is known beforehand.
template <bool Conjugate, class T> T conj_if(const T& x) {
    if constexpr (Conjugate && is_complex_scalar<T>) return std::conj(x);
    else return x;
}

} // namespace nxl
